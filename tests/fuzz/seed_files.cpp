// Seeds for files, define mode, dimensions, groups, variables, storage settings, types
// and constants, and seeds that fail in the argument conversions.
#include "seed_builder.hpp"
#include "seed_programs.hpp"

namespace seeds {

void addFileSeeds(std::map<std::string, fuzz::Program>& out) {
  const ArgSpec global = num(-1);
  out["constants"] = {
      call("parameter", {word("NC_DOUBLE")}),
      call("parameter", {word("FILL_DOUBLE")}),
      call("getConstantNames", {}),
      call("inqLibVers", {}),
      call("getChunkCache", {}),
      call("setChunkCache", {num(100), num(10), row<float>({0.5f})}),
      call("setDefaultFormat", {num(2)}),
      call("setDefaultFormat", {num(1)}),
  };
  out["create-classic"] = {
      call("create", {chars("a.nc"), word("clobber")}),
      call("defDim", {ncid(), word("x"), num(4)}),
      call("defDim", {ncid(), word("t"), num(0)}),
      call("defVar", {ncid(), word("d"), num(6), row<double>({0, 1})}),
      call("putAttText", {ncid(), global, word("title"), num(2), chars("hi")}),
      call("endDef", {ncid()}),
      call("putVaraDouble", {ncid(), num(0), row<double>({0, 0}), row<double>({4, 1}),
                             column<double>({1, 2, 3, 4})}),
      call("getVarDouble", {ncid(), num(0)}),
  };
  out["create-nc4"] = {
      call("create", {chars("b.nc"), word("netcdf4")}),
      call("defDim", {ncid(), word("x"), num(8)}),
      call("defVar", {ncid(), word("f"), num(5), row<double>({0})}),
      call("defVarChunking", {ncid(), num(0), num(0), row<double>({4})}),
      call("defVarDeflate", {ncid(), num(0), logical(true), logical(true), num(3)}),
      call("defVarFletcher32", {ncid(), num(0), num(1)}),
      call("defVarFill", {ncid(), num(0), logical(false), row<float>({2.5f})}),
      call("inqVarFill", {ncid(), num(0)}),
  };
  out["define-vlen"] = {
      call("create", {chars("c.nc"), word("netcdf4")}),
      call("defDim", {ncid(), word("x"), num(2)}),
      call("defVlen", {ncid(), word("vli"), num(4)}),
      call("defVar", {ncid(), word("vl"), id(Pool::Typeid), row<double>({0})}),
      call("defVarFill", {ncid(), num(0), logical(false), cell({column<std::int32_t>({1, 2})})}),
      call("putVarVlen",
           {ncid(), num(0), cell({column<std::int32_t>({1}), column<std::int32_t>({2, 3})})}),
      call("getVarVlen", {ncid(), num(0)}),
      call("inqVarFill", {ncid(), num(0)}),
  };
  out["storage-inquiries"] = {
      call("open", {word("#nc4"), word("nowrite")}), call("inqVarChunking", {ncid(), num(12)}),
      call("inqVarDeflate", {ncid(), num(12)}),      call("inqVarFletcher32", {ncid(), num(12)}),
      call("inqVarFill", {ncid(), num(3)}),          call("inqVarFill", {ncid(), num(7)}),
      call("inqVarFill", {ncid(), num(8)}),          call("inqFormat", {ncid()}),
  };
  out["types"] = {
      call("open", {word("#nc4"), word("nowrite")}),
      call("inqVar", {ncid(), num(9)}),
      call("inqUserType", {ncid(), id(Pool::Typeid)}),
      call("inqVlen", {ncid(), id(Pool::Typeid)}),
      call("getVarVlen", {ncid(), num(9)}),
      call("getVarVlen", {ncid(), num(10)}),
      call("getVarVlen", {ncid(), num(11)}),
      call("inqVarChunking", {ncid(), num(0)}),
  };
  out["groups"] = {
      call("open", {word("#nc4"), word("nowrite")}),
      call("inqNcid", {ncid(), word("g")}),
      call("inqGrps", {ncid()}),
      call("inqGrpName", {ncid(1)}),
      call("inqGrpNameFull", {ncid(1)}),
      call("inqGrpParent", {ncid(1)}),
      call("inqDimIDs", {ncid(1), logical(true)}),
      call("inqVarIDs", {ncid(1)}),
  };
  out["define-group"] = {
      call("open", {word("#nc4"), word("write")}),
      call("defGrp", {ncid(), chars("ng")}),
      call("defDim", {ncid(1), word("x"), num(3)}),
      call("defVar", {ncid(1), word("v"), num(12), row<double>({0})}),
      call("putVarString", {ncid(1), num(0), strings({"a", "b", "c"})}),
      call("getVarString", {ncid(1), num(0)}),
      call("inqVarIDs", {ncid(1)}),
      call("inqGrpNameFull", {ncid(1)}),
  };
  out["dimensions"] = {
      call("open", {word("#nc4"), word("nowrite")}),
      call("inqDim", {ncid(), num(0)}),
      call("inqDimID", {ncid(), word("t")}),
      call("inqUnlimDims", {ncid()}),
      call("inq", {ncid()}),
      call("inqVarID", {ncid(), word("d")}),
      call("inqVar", {ncid(), num(0)}),
      call("inqDimIDs", {ncid(), logical(false)}),
  };
  out["rename-classic"] = {
      call("open", {word("#classic"), word("write")}),
      call("redef", {ncid()}),
      call("renameDim", {ncid(), num(0), chars("xx")}),
      call("renameVar", {ncid(), num(0), chars("dd")}),
      call("defDim", {ncid(), chars("z"), num(5)}),
      call("endDef", {ncid()}),
      call("sync", {ncid()}),
      call("close", {ncid()}),
  };
  out["abort-and-tuning"] = {
      call("create", {chars("e.nc"), word("clobber")}),
      call("abort", {ncid()}),
      call("pCreate", {chars("p.nc"), num(0), num(0), num(100)}),
      call("pEndDef", {ncid(1), num(0), num(4), num(0), num(4)}),
      call("redef", {ncid(1)}),
      call("setFill", {ncid(1), special(26)}),
      call("pOpen", {word("#offset"), word("nowrite"), num(0)}),
      call("inqFormat", {ncid(2)}),
  };
  out["formats"] = {
      call("open", {word("#cdf5"), word("nowrite")}),
      call("inqFormat", {ncid()}),
      call("open", {word("#nc4classic"), num(0)}),
      call("inqFormat", {ncid(1)}),
      call("getVarUint64", {ncid(), num(6)}),
      call("getVaraShort", {ncid(1), num(3), row<double>({0, 0}), row<double>({4, 2})}),
      call("open", {word("#truncated"), word("nowrite")}),
      call("open", {word("#garbage"), word("nowrite")}),
  };
  out["hostile-names"] = {
      call("open", {word("#dir"), word("nowrite")}),
      call("open", {word("#missing"), word("nowrite")}),
      call("open", {word("#empty"), word("nowrite")}),
      call("open", {word("#url"), word("nowrite")}),
      call("create", {chars("\x80\x81"), word("noclobber")}),
      call("create", {chars("a.nc"), word("noclobber")}),
      call("create", {chars("a.nc"), word("noclobber")}),
      call("pOpen", {word("#missing"), num(0), num(0)}),
  };
  out["argument-errors"] = {
      call("parameter", {strings({"NC_INT"})}),
      call("parameter", {opaque(0)}),
      call("create", {cell({chars("a")}), word("clobber")}),
      call("create", {chars("a.nc"), opaque(4)}),
      call("defDim", {special(8), word("x"), num(1)}),
      call("defDim", {num(1), word("x"), special(22)}),
      call("getVaraDouble", {num(0), num(0), row<double>({0, 0}), empty(0)}),
      call("defVar", {num(0), word("v"), num(6), row<std::int32_t>({0})}),
  };
  // Char bytes from 0x80 stand for awkward code units: 0x80 a lone lead surrogate, 0x82 a
  // lone trail surrogate, 0x8C the NUL character.
  out["invalid-text"] = {
      call("create", {chars("t.nc"), word("netcdf4")}),
      call("defDim", {ncid(), chars("a\x80"), num(2)}),
      call("putAttText", {ncid(), num(-1), word("title"), num(2), chars("x\x82")}),
      call("putAttString", {ncid(), num(-1), word("sa"), num(12), strings({"ok", "\x80"})}),
      call("parameter", {chars("NC\x80")}),
      call("defGrp", {ncid(), chars("g\x8c")}),
      call("create", {chars("n\x80.nc"), word("clobber")}),
  };
  out["dispatch-errors"] = {
      raw(200, {num(1)}), raw(250, {}),      raw(201, {word("x"), num(1), num(2)}),
      raw(102, {num(0)}), raw(95, {num(1)}), raw(0, {}),
      raw(230, {num(1)}), raw(211, {}),
  };
  out["index-errors"] = {
      call("open", {word("#nc4"), word("nowrite")}),
      call("getVaraDouble", {ncid(), num(0), row<double>({0, 0}), row<double>({1e6, 1})}),
      call("getVarsInt", {ncid(), num(1), row<double>({0}), row<double>({2}), row<double>({-1})}),
      call("getVar1Double", {ncid(), num(0), row<double>({0.5, 2.7})}),
      call("getVaraDouble", {ncid(), num(0), column<std::uint64_t>({0, 0}), row<float>({1, 1})}),
      call("putVaraDouble",
           {ncid(), num(0), row<double>({0, 0}), row<double>({2, 2}), row<double>({1})}),
      call("defVarChunking", {ncid(), num(12), num(0), row<double>({1, 1, 1})}),
      call("getVarDouble", {ncid(), num(5)}),
  };
}

}  // namespace seeds
