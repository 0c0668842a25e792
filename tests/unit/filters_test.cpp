// Filters, quantization and byte order: settings netCDF-C 4.9.0 mishandles, exact unsigned
// 32-bit arguments, and settings read back from the file in the forms they were given.
#include <sstream>

#include "test_support.hpp"

#include <netcdf_filter.h>  // after netcdf.h, which it needs

namespace {

using namespace test;

constexpr const char* kNotOfKind = "argumentNotOfKind";

// An argument written in a table: "[n,...]" for a double row, a number, else text.
qvArrayPtr token(std::string t) {
  const bool row = t.starts_with('[');
  std::ranges::replace(t, ',', ' ');
  std::istringstream in(row ? t.substr(1, t.size() - 2) : t);
  std::vector<double> values;
  for (double v; in >> v;) values.push_back(v);
  if (row) return array<double>(values);
  return values.size() == 1 && in.eof() ? scalar<double>(values[0]) : charRow(t);
}

// The status (see statusOf) of "op arg ..." run on variable var of file id.
std::string statusOfLine(const qvArrayPtr& id, const qvArrayPtr& var, const std::string& line) {
  std::istringstream in(line);
  std::vector<qvArrayPtr> held;
  for (std::string t; in >> t;) held.push_back(token(t));
  std::vector<const qvArray*> inputs{held[0].get(), id.get(), var.get()};
  for (std::size_t k = 1; k < held.size(); ++k) inputs.push_back(held[k].get());
  Outputs out;
  return statusOf([&] { netcdflib(0, out.data(), int(inputs.size()), inputs.data()); });
}

// netCDF-C 4.9.0 reports these done without doing them, stores them blindly, or accepts
// them and then crashes HDF5 (szip 0) or leaves a file that neither closes nor aborts.
// Filter ids and parameters are exact unsigned 32-bit numbers. Every guard must leave the
// file closable.
TEST(FilterFile, MishandledSettingsAndIdsAreRefused) {
  const ScratchDir dir;
  const qvArrayPtr id = call1("create", {dir.file("f.nc"), "netcdf4"});
  const qvArrayPtr var = call1("defVar", {id, "v", NC_FLOAT, call1("defDim", {id, "x", 1000})});
  const double text = number(call1("defVar", {id, "c", NC_CHAR, 0}));
  EXPECT_EQ("-132", statusOf([&] { call("defVarSzip", {id, text, NC_SZIP_NN, 8}); }));
  // Operations with their arguments after id and var => the status (see statusOf). HDF5's
  // filter ids end at 65535.
  std::istringstream table(
      "defVarSzip 32 32 => no error; defVarZstandard 3 => -136; inqVarFletcher32 => no error; "
      "inqVarZstandard => -136; defVarFilter 32001 [0,0,0,0,5,1,1] => -136; "
      "defVarEndian 5 => NC_EINVAL; defVarFilter 307 99 => NC_EINVAL; defVarFilter 4 32 => -132; "
      "defVarSzip 32 0 => NC_EINVAL; defVarSzip 32 64 => NC_EINVAL; "
      "defVarFilter 4 [32,0] => NC_EINVAL; defVarChunking 0 4 => NC_EINVAL; "
      "defVarChunking 0 500 => no error; defVarQuantize fast 3 => unrecognizedCharParameter; "
      "defVarQuantize 7 3 => NC_EINVAL; defVarFilter 32004 [] => no error; "
      "defVarFilter 65535 [] => -136; defVarFilter 4294967295 [] => NC_EHDFERR; "
      "defVarFilter 4294967296 [] => argumentNotOfKind; defVarFilter a [] => argumentNotOfKind; "
      "defVarFilter 307 [1,-1] => argumentNotOfKind; defVarFilter 307 ab => argumentNotOfKind;");
  for (std::string line; std::getline(table >> std::ws, line, ';');) {
    const std::size_t arrow = line.find(" => ");
    EXPECT_EQ(line.substr(arrow + 4), statusOfLine(id, var, line.substr(0, arrow))) << line;
  }
  EXPECT_EQ((std::vector<double>{NC_SZIP_NN, 32}),
            valuesOf(call1("inqVarFilterInfo", {id, var, 4})));
  EXPECT_EQ((std::vector<double>{4, 32004}), valuesOf(call1("inqVarFilterIds", {id, var})));
  EXPECT_MSGID(call("defVarFilter", {id, var, 307, 0.5}), kNotOfKind, "params",
               "whole numbers from 0 to 4294967295 (unsigned 32-bit)");
  EXPECT_EQ(kNotOfKind, statusOf([&] { call("inqFilterAvail", {id, NAN}); }));
  call("endDef", {id});
  call("putVarFloat", {id, var, array<float>(std::vector<float>(1000, 1.5f))});
  call("close", {id});
}

// Each setting on a variable of its own, with data: after reopening, the data and the
// setting read back, in the forms given.
TEST(FilterFile, SettingsAndDataReadBackAfterReopening) {
  const ScratchDir dir;
  const qvArrayPtr id = call1("create", {dir.file("s.nc"), "netcdf4"});
  const qvArrayPtr x = call1("defDim", {id, "x", 1000}),
                   data = array(std::vector<float>(1000, 1.5f));
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"defVarBzip2 9", "inqVarBzip2", "1 9"},
      {"defVarSzip 4 16", "inqVarSzip", "4 16"},
      {"defVarFilter 32004 []", "inqVarFilterIds", "32004"},
      {"defVarEndian big", "inqVarEndian", "big"},
      {"defVarQuantize bitgroom 3", "inqVarQuantize", "BitGroom 3"},
      {"defVarQuantize GRANULARBITROUND 4", "inqVarQuantize", "GranularBitRound 4"},
      {"defVarQuantize 3 10", "inqVarQuantize", "BitRound 10"}};
  std::vector<qvArrayPtr> vars;
  for (const auto& [def, inq, _] : cases) {
    const std::string name = std::string("v").append(std::to_string(vars.size()));
    vars.push_back(call1("defVar", {id, name, NC_FLOAT, x}));
    EXPECT_EQ("no error", statusOfLine(id, vars.back(), def)) << def;
  }
  call("endDef", {id});
  for (const qvArrayPtr& v : vars) call("putVarFloat", {id, v, data});
  call("close", {id});
  const qvArrayPtr nc = call1("open", {dir.file("s.nc"), "nowrite"});
  for (std::size_t k = 0; k < vars.size(); ++k) {
    const auto& [def, inq, expected] = cases[k];
    std::ostringstream got;
    for (const qvArrayPtr& out : call(inq, {nc, vars[k]})) {
      const qvClassID cls = out ? qvGetClassID(out.get()) : qvUNKNOWN_CLASS;
      const std::u16string text = cls == qvCHAR_CLASS ? matrix::get_ustring(out.get()) : u"";
      if (cls == qvCHAR_CLASS) got << ' ' << std::string(text.begin(), text.end());  // ASCII
      if (cls == qvDOUBLE_CLASS) got << ' ' << number(out);
      if (cls == qvLOGICAL_CLASS) got << ' ' << int(*qvGetLogicals(out.get()));
    }
    EXPECT_EQ(" " + expected, got.str()) << def;
    // Lossless but for quantization, which keeps 1.5 within its digits (BitGroom alternates).
    for (const float v : valuesOf<float>(call1("getVarFloat", {nc, vars[k]})))
      ASSERT_NEAR(1.5f, v, def.starts_with("defVarQuantize") ? 1e-3 : 0) << def;
  }
  call("close", {nc});
}

}  // namespace
