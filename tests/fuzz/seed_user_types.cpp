// Seeds for enum, compound and opaque types and data in its own type, each on a new
// netCDF-4 file whose first user type has id 32. Compound data is written back from what
// a read returned, as no argument description makes a struct with fields.
#include <map>
#include <string>
#include <vector>

#include "seed_builder.hpp"

namespace seeds {

void addUserTypeSeeds(std::map<std::string, fuzz::Program>& out) {
  using std::int8_t, std::uint8_t;
  const auto create = [](const char* file) { return call("create", {chars(file), word("netcdf4")}); };
  const auto defRecordVar = [] {
    return std::vector<Call>{call("defDim", {ncid(), word("x"), num(2)}),
                             call("defVar", {ncid(), word("v"), num(32), row<double>({0})})};
  };
  const auto compound = [&](const char* file) {
    std::vector<Call> calls = {
        create(file), call("defCompound", {ncid(), word("g"), num(8)}),
        call("insertCompound", {ncid(), num(32), word("x"), num(0), num(4)}),
        call("insertArrayCompound", {ncid(), num(32), word("y"), num(4), num(3), row<double>({2})})};
    for (Call& c : defRecordVar()) calls.push_back(std::move(c));
    return calls;
  };
  out["enum-define"] = {
      create("e.nc"),
      call("defEnum", {ncid(), word("g"), num(1)}),
      call("insertEnum", {ncid(), num(32), word("x"), num(1)}),
      call("insertEnum", {ncid(), num(32), word("y"), num(-128, I8)}),
      call("inqEnum", {ncid(), num(32)}),
      call("inqEnumMember", {ncid(), num(32), num(1)}),
      call("inqEnumIdent", {ncid(), num(32), num(1)}),
  };
  out["enum-data"] = {
      create("f.nc"),
      call("defEnum", {ncid(), word("g"), num(1)}),
      call("insertEnum", {ncid(), num(32), word("x"), num(1)}),
      defRecordVar()[0],
      defRecordVar()[1],
      call("putAtt", {ncid(), num(0), word("_FillValue"), num(32), column<int8_t>({1})}),
      call("putVar", {ncid(), num(0), column<int8_t>({1, 1})}),
      call("getVar", {ncid(), num(0)}),
  };
  out["compound-define"] = {
      create("g.nc"),
      call("defCompound", {ncid(), word("g"), num(8)}),
      call("insertCompound", {ncid(), num(32), word("x"), num(0), num(4)}),
      call("insertArrayCompound", {ncid(), num(32), word("y"), num(4), num(3), row<double>({2})}),
      call("inqCompound", {ncid(), num(32)}),
      call("inqCompoundField", {ncid(), num(32), num(1)}),
      call("inqCompoundFieldIndex", {ncid(), num(32), word("y")}),
  };
  // Outputs so far: ncid, type id, dimension id, variable id; then what the calls return.
  auto whole = compound("h.nc");
  whole.push_back(call("getVar", {ncid(), num(0)}));
  whole.push_back(call("putVar", {ncid(), num(0), output(4)}));
  out["compound-whole"] = whole;
  auto one = compound("i.nc");
  one.push_back(call("getVar1", {ncid(), num(0), row<double>({1})}));
  one.push_back(call("putVar1", {ncid(), num(0), row<double>({0}), output(4)}));
  out["compound-one"] = one;
  auto block = compound("j.nc");
  block.push_back(call("getVara", {ncid(), num(0), row<double>({0}), row<double>({2})}));
  block.push_back(call("putVara", {ncid(), num(0), row<double>({0}), row<double>({2}), output(4)}));
  out["compound-block"] = block;
  auto strided = compound("k.nc");
  strided.push_back(call("getVars", {ncid(), num(0), row<double>({0}), row<double>({1}), row<double>({2})}));
  strided.push_back(call("putVars", {ncid(), num(0), row<double>({1}), row<double>({1}), row<double>({1}), output(4)}));
  out["compound-strided"] = strided;
  out["opaque"] = {
      create("l.nc"),
      call("defOpaque", {ncid(), word("g"), num(3)}),
      call("inqOpaque", {ncid(), num(32)}),
      defRecordVar()[0],
      defRecordVar()[1],
      call("putAtt", {ncid(), num(0), word("units"), num(32), column<uint8_t>({1, 2, 3})}),
      call("putVar", {ncid(), num(0), column<uint8_t>({1, 2, 3, 4, 5, 6})}),
      call("getAtt", {ncid(), num(0), word("units")}),
  };
}

}  // namespace seeds
