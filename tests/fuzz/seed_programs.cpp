// Variable ids of the "#nc4" fixture (see fuzz_fixtures.cpp): d 0 double(y,x), i 1 int(x),
// c 2 char(y,x), u 3 short(t,x), b 4 byte(x), f 5 float scalar, ll 6 uint64(x), s 7
// string(x), vl 8 vlen of int(x), vv 9 vlen of vlen, vs 10 vlen of string, vc 11 vlen of
// char, ch 12 float(y,x) chunked, us 13 ushort(x), ui 14 uint(x), ub 15 ubyte(x), l 16
// int64(x); x = 4, y = 3, t unlimited with 2 records. Host order reverses netCDF order.
#include "seed_programs.hpp"

#include <netcdf.h>

#include "seed_builder.hpp"

namespace seeds {

namespace {

using D = std::vector<double>;

Call openNc4(const char* mode) { return call("open", {word("#nc4"), word(mode)}); }

// A variable of each data kind with its START, COUNT and STRIDE for one, block and
// strided access, and data of the right class for each.
struct KindCase {
  const char* suffix;
  int varid;
  bool twoD;
  ArgSpec one, block;  // data for one element and for a block of two or four
};

std::vector<KindCase> kindCases() {
  using std::int16_t, std::int32_t, std::int64_t, std::int8_t;
  using std::uint16_t, std::uint32_t, std::uint64_t, std::uint8_t;
  return {
      {"Double", 0, true, column<double>({1.5}), values<double>({1, 2, 3, 4}, 2, 2)},
      {"Float", 12, true, column<float>({2.5f}), values<float>({1, 2, 3, 4}, 2, 2)},
      {"Int64", 16, false, column<int64_t>({-5}), column<int64_t>({7, 8})},
      {"Uint64", 6, false, column<uint64_t>({5}), column<uint64_t>({7, 8})},
      {"Int", 1, false, column<int32_t>({-5}), column<int32_t>({7, 8})},
      {"Uint", 14, false, column<uint32_t>({5}), column<uint32_t>({7, 8})},
      {"Short", 3, true, column<int16_t>({-5}), values<int16_t>({1, 2, 3, 4}, 2, 2)},
      {"Ushort", 13, false, column<uint16_t>({5}), column<uint16_t>({7, 8})},
      {"Schar", 4, false, column<int8_t>({-5}), column<int8_t>({7, 8})},
      {"Uchar", 15, false, column<uint8_t>({5}), column<uint8_t>({7, 8})},
      {"Text", 2, true, chars("q"), chars("abcd", 2)},
      {"String", 7, false, strings({"one"}), strings({"", "two"})},
      {"Vlen", 8, false, cell({column<int32_t>({9})}),
       cell({column<int32_t>({1, 2}), column<int32_t>({3})})},
  };
}

// Operation names with the odd capitalisation the table keeps.
std::string writeOneName(const std::string& suffix) {
  if (suffix == "Uint64") return "putVar1UInt64";
  if (suffix == "Uint") return "putVar1UInt";
  return "putVar1" + suffix;
}

void addSubsetSeeds(std::map<std::string, fuzz::Program>& out) {
  for (const KindCase& k : kindCases()) {
    const ArgSpec start = k.twoD ? row<double>({0, 0}) : row<double>({1});
    const ArgSpec count = k.twoD ? row<double>({2, 2}) : row<double>({2});
    const ArgSpec stride = k.twoD ? row<double>({1, 1}) : row<double>({2});
    const std::string s = k.suffix;
    out["read-" + s] = {
        openNc4("nowrite"),
        call(("getVar" + s).c_str(), {ncid(), num(k.varid)}),
        call(("getVar1" + s).c_str(), {ncid(), num(k.varid), start}),
        call(("getVara" + s).c_str(), {ncid(), num(k.varid), start, count}),
        call(("getVars" + s).c_str(), {ncid(), num(k.varid), start, count, stride}),
    };
    out["write-" + s] = {
        openNc4("write"),
        call(writeOneName(s).c_str(), {ncid(), num(k.varid), start, k.one}),
        call(("putVara" + s).c_str(), {ncid(), num(k.varid), start, count, k.block}),
        call(("putVars" + s).c_str(), {ncid(), num(k.varid), start, count, stride, k.block}),
        call(("getVara" + s).c_str(), {ncid(), num(k.varid), start, count}),
    };
  }
}

void addWholeWriteSeeds(std::map<std::string, fuzz::Program>& out) {
  using std::int16_t, std::int32_t, std::int64_t, std::int8_t;
  using std::uint16_t, std::uint32_t, std::uint64_t, std::uint8_t;
  const D twelve = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
  out["put-whole-1"] = {
      openNc4("write"),
      call("putVarDouble", {ncid(), num(0), values<double>(twelve, 4, 3)}),
      call("putVarFloat",
           {ncid(), num(12), values<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 1, 2}, 4, 3)}),
      call("putVarInt64", {ncid(), num(16), column<int64_t>({1, 2, 3, 4})}),
      call("putVarUint64", {ncid(), num(6), column<uint64_t>({1, 2, 3, 4})}),
      call("putVarInt", {ncid(), num(1), column<int32_t>({1, 2, 3, 4})}),
      call("putVarUint", {ncid(), num(14), column<uint32_t>({1, 2, 3, 4})}),
      call("putVarShort", {ncid(), num(3), values<int16_t>({1, 2, 3, 4, 5, 6, 7, 8}, 4, 2)}),
  };
  out["put-whole-2"] = {
      openNc4("write"),
      call("putVarUshort", {ncid(), num(13), column<uint16_t>({1, 2, 3, 4})}),
      call("putVarSchar", {ncid(), num(4), column<int8_t>({1, 2, 3, 4})}),
      call("putVarUchar", {ncid(), num(15), column<uint8_t>({1, 2, 3, 4})}),
      call("putVarText", {ncid(), num(2), chars("abcdefghijkl", 4)}),
      call("putVarString", {ncid(), num(7), strings({"a", "bb", "", "\x7f"})}),
      call("putVarVlen",
           {ncid(), num(8),
            cell({column<int32_t>({1}), empty(6), column<int32_t>({2, 3}), column<int32_t>({4})})}),
      call("getVarVlen", {ncid(), num(8)}),
  };
}

void addAttributeSeeds(std::map<std::string, fuzz::Program>& out) {
  using std::int16_t, std::int32_t, std::int64_t, std::int8_t;
  using std::uint16_t, std::uint32_t, std::uint64_t, std::uint8_t;
  const ArgSpec global = num(-1);
  out["get-att-1"] = {
      openNc4("nowrite"),
      call("getAttDouble", {ncid(), global, chars("nums")}),
      call("getAttFloat", {ncid(), global, chars("ai")}),
      call("getAttInt64", {ncid(), global, chars("al")}),
      call("getAttUint64", {ncid(), global, chars("aub")}),
      call("getAttInt", {ncid(), global, chars("ai")}),
      call("getAttUint", {ncid(), global, chars("ai")}),
      call("getAttUshort", {ncid(), global, chars("ai")}),
  };
  out["get-att-2"] = {
      openNc4("nowrite"),
      call("getAttShort", {ncid(), global, chars("ai")}),
      call("getAttSchar", {ncid(), global, chars("ai")}),
      call("getAttUchar", {ncid(), global, chars("ai")}),
      call("getAttUbyte", {ncid(), global, chars("aub")}),
      call("getAttText", {ncid(), global, chars("title")}),
      call("getAttString", {ncid(), global, chars("sa")}),
      call("getAttVlen", {ncid(), global, chars("va")}),
  };
  out["put-att-1"] = {
      openNc4("write"),
      call("putAttDouble", {ncid(), global, chars("pd"), num(6), row<double>({1, 2})}),
      call("putAttFloat", {ncid(), num(0), chars("pf"), num(5), row<float>({1})}),
      call("putAttInt64", {ncid(), global, chars("pl"), num(10), row<int64_t>({-1})}),
      call("putAttUint64", {ncid(), global, chars("pul"), num(11), row<uint64_t>({1})}),
      call("putAttInt", {ncid(), global, chars("pi"), num(4), row<int32_t>({1, 2})}),
      call("putAttUint", {ncid(), global, chars("pui"), num(9), row<uint32_t>({1})}),
      call("putAttShort", {ncid(), global, chars("ps"), num(3), row<int16_t>({1})}),
  };
  out["put-att-2"] = {
      openNc4("write"),
      call("putAttUshort", {ncid(), global, chars("pus"), num(8), row<uint16_t>({1})}),
      call("putAttSchar", {ncid(), global, chars("pb"), num(1), row<int8_t>({-1})}),
      call("putAttUchar", {ncid(), global, chars("pub"), num(7), row<uint8_t>({1})}),
      call("putAttUbyte", {ncid(), global, chars("pu2"), num(7), row<uint8_t>({2})}),
      call("putAttText", {ncid(), global, chars("pt"), num(2), chars("t\x84xt")}),
      call("putAttString", {ncid(), global, chars("pst"), num(12), strings({"a", ""})}),
      call("putAttVlen", {ncid(), global, chars("pv"), num(32), cell({column<int32_t>({1, 2})})}),
  };
  out["att-management"] = {
      openNc4("write"),
      call("inqAtt", {ncid(), global, word("title")}),
      call("inqAttID", {ncid(), global, word("nums")}),
      call("inqAttName", {ncid(), global, num(0)}),
      call("copyAtt", {ncid(), global, word("title"), ncid(), num(0)}),
      call("renameAtt", {ncid(), num(0), word("title"), chars("t2")}),
      call("delAtt", {ncid(), num(0), chars("t2")}),
  };
}

}  // namespace

void addFileSeeds(std::map<std::string, fuzz::Program>& out);
void addUserTypeSeeds(std::map<std::string, fuzz::Program>& out);
void addCompressionSeeds(std::map<std::string, fuzz::Program>& out);

// For one atomic type: a fill value of its class, and a vlen of it written and read.
template <class T>
fuzz::Program fillAndVlen(int xtype, const char* file) {
  return {call("create", {chars(file), word("netcdf4")}),
          call("defDim", {ncid(), word("x"), num(2)}),
          call("defVar", {ncid(), word("d"), num(xtype), row<double>({0})}),
          call("defVarFill", {ncid(), num(0), logical(false), column<T>({1})}),
          call("defVlen", {ncid(), word("vli"), num(xtype)}),
          call("defVar", {ncid(), word("vl"), id(Pool::Typeid), row<double>({0})}),
          call("putVarVlen", {ncid(), num(1), cell({column<T>({1, 2}), column<T>({3})})}),
          call("getVarVlen", {ncid(), num(1)})};
}

void addTypeSeeds(std::map<std::string, fuzz::Program>& out) {
  out["type-byte"] = fillAndVlen<std::int8_t>(NC_BYTE, "b.nc");
  out["type-ubyte"] = fillAndVlen<std::uint8_t>(NC_UBYTE, "b.nc");
  out["type-short"] = fillAndVlen<std::int16_t>(NC_SHORT, "b.nc");
  out["type-ushort"] = fillAndVlen<std::uint16_t>(NC_USHORT, "b.nc");
  out["type-int"] = fillAndVlen<std::int32_t>(NC_INT, "b.nc");
  out["type-uint"] = fillAndVlen<std::uint32_t>(NC_UINT, "b.nc");
  out["type-int64"] = fillAndVlen<std::int64_t>(NC_INT64, "b.nc");
  out["type-uint64"] = fillAndVlen<std::uint64_t>(NC_UINT64, "b.nc");
  out["type-float"] = fillAndVlen<float>(NC_FLOAT, "b.nc");
  out["type-text"] = {
      call("create", {chars("t.nc"), word("netcdf4")}),
      call("defDim", {ncid(), word("x"), num(2)}),
      call("defVar", {ncid(), word("c"), num(NC_CHAR), row<double>({0})}),
      call("defVarFill", {ncid(), num(0), logical(false), chars("z")}),
      call("defVar", {ncid(), word("s"), num(NC_STRING), row<double>({0})}),
      call("defVarFill", {ncid(), num(1), logical(false), chars("none")}),
      call("defVlen", {ncid(), word("vlc"), num(NC_CHAR)}),
      call("defVar", {ncid(), word("vc"), id(Pool::Typeid), row<double>({0})})};
  out["type-text-vlen"] = {
      call("open", {word("#nc4"), word("write")}),
      call("putVarVlen", {ncid(), num(11), cell({chars("ab"), chars("c"), chars("d"), chars("e")})}),
      call("getVarVlen", {ncid(), num(11)}),
      call("defVarFill", {ncid(), num(2), logical(false), chars("ab")})};
  const char* fills[] = {"FILL_BYTE", "FILL_UBYTE", "FILL_SHORT",  "FILL_USHORT",
                         "FILL_INT",  "FILL_UINT",  "FILL_INT64",  "FILL_UINT64",
                         "FILL_FLOAT", "FILL_CHAR", "fill_string"};
  for (std::size_t i = 0; i < std::size(fills); ++i) {
    out["fill-constants-" + std::to_string(i / fuzz::kMaxCalls + 1)].push_back(
        call("parameter", {word(fills[i])}));
  }
  // Storage inquiries that classic files refuse, and a format without a name.
  out["classic-storage"] = {
      call("open", {word("#classic"), word("nowrite")}),
      call("inqVarChunking", {ncid(), num(0)}),
      call("inqVarFletcher32", {ncid(), num(0)}),
      call("inqVarDeflate", {ncid(), num(0)}),
      call("open", {word("#cdf5"), word("nowrite")}),
      call("inqFormat", {ncid(1)})};
  // Chunk sizes that do not match the rank, and an unknown storage code.
  out["storage-errors"] = {
      call("create", {chars("e.nc"), word("netcdf4")}),
      call("defDim", {ncid(), word("x"), num(4)}),
      call("defVar", {ncid(), word("d"), num(NC_DOUBLE), row<double>({0})}),
      call("defVarChunking", {ncid(), num(0), num(NC_CHUNKED), row<double>({2, 2})}),
      call("defVarChunking", {ncid(), num(0), num(7), row<double>({2})}),
      call("defVarFill", {ncid(), num(0), logical(false), chars("ab")}),
      call("defVarFill", {ncid(), num(0), logical(false), row<double>({1, 2})})};
}

const std::map<std::string, fuzz::Program>& programs() {
  static const std::map<std::string, fuzz::Program> all = [] {
    std::map<std::string, fuzz::Program> out;
    addSubsetSeeds(out);
    addWholeWriteSeeds(out);
    addAttributeSeeds(out);
    addFileSeeds(out);
    addTypeSeeds(out);
    addUserTypeSeeds(out);
    addCompressionSeeds(out);
    return out;
  }();
  return all;
}

}  // namespace seeds
