// Seeds for compression filters, quantization, byte order and files held in memory, and
// for the settings the library refuses because netCDF-C mishandles them.
#include "seed_builder.hpp"
#include "seed_programs.hpp"

namespace seeds {

namespace {
// A netCDF-4 file with float variable 0 over x = 64.
std::vector<Call> floatVariable(const char* file) {
  return {call("create", {chars(file), word("netcdf4")}),
          call("defDim", {ncid(), word("x"), num(64)}),
          call("defVar", {ncid(), word("f"), num(5), row<double>({0})})};
}
fuzz::Program with(std::vector<Call> head, std::vector<Call> tail) {
  head.insert(head.end(), tail.begin(), tail.end());
  return head;
}
}  // namespace

void addCompressionSeeds(std::map<std::string, fuzz::Program>& out) {
  out["filters"] =
      with(floatVariable("f1.nc"),
           {call("defVarFilter", {ncid(), num(0), num(4), row<std::uint32_t>({32, 8})}),
            call("defVarBzip2", {ncid(), num(0), num(5)}),
            call("defVarFilter", {ncid(), num(0), row<double>({32004}), empty(0)}),
            call("inqVarFilterIds", {ncid(), num(0)}),
            call("inqVarFilterInfo", {ncid(), num(0), num(4)})});
  out["filter-inquiries"] = {
      call("open", {word("#nc4"), word("nowrite")}),
      call("inqVarFilterIds", {ncid(), num(12)}),
      call("inqFilterAvail", {ncid(), row<double>({307})}),
      call("inqVarSzip", {ncid(), num(12)}),
      call("inqVarBzip2", {ncid(), num(12)}),
      call("inqVarZstandard", {ncid(), num(12)}),
      call("inqVarQuantize", {ncid(), num(12)}),
      call("inqVarEndian", {ncid(), num(12)}),
  };
  out["quantize-endian"] = with(
      floatVariable("f2.nc"), {call("defVarQuantize", {ncid(), num(0), chars("BitRound"), num(9)}),
                               call("defVarEndian", {ncid(), num(0), chars("big")}),
                               call("defVarSzip", {ncid(), num(0), num(32), num(8)}),
                               call("defVarZstandard", {ncid(), num(0), num(3)}),
                               call("inqVarQuantize", {ncid(), num(0)})});
  // Each refused before netCDF-C sees it: a crash, a file that no longer closes, or a
  // setting netCDF-C reports done without doing it.
  out["refused-filter-settings"] = with(
      floatVariable("f3.nc"), {call("defVarSzip", {ncid(), num(0), num(32), num(32)}),
                               call("defVarSzip", {ncid(), num(0), num(32), num(0)}),
                               call("defVarChunking", {ncid(), num(0), num(0), row<double>({4})}),
                               call("defVarFilter", {ncid(), num(0), num(307), num(99)}),
                               call("defVarEndian", {ncid(), num(0), num(5)})});
  out["memory-files"] = {
      call("createMem", {chars("m.nc"), word("clobber"), num(0)}),
      call("defDim", {ncid(), word("x"), num(3)}),
      call("closeMem", {ncid()}),
      call("openMem", {chars("m.nc"), word("nowrite"), output(2)}),
      call("inqDim", {ncid(1), num(0)}),
      call("closeMem", {ncid(1)}),
      call("openMem", {chars("w.nc"), word("write"), output(6)}),
      call("createMem", {chars("n.nc"), num(64), num(0)}),
  };
}

}  // namespace seeds
