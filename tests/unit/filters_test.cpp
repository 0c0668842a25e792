// Compression filters, quantization and byte order through the entry point: round trips,
// classic files, argument checks, and settings netCDF-C 4.9.0 mishandles.
#include <gtest/gtest.h>
#include <netcdf.h>
#include <netcdf_filter.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "test_support.hpp"

namespace {

using test::args;
using test::call;
using test::call1;
using test::number;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";
constexpr const char* kNotOfKind = "QUARNA:imagesci:netcdf:argumentNotOfKind";
constexpr const char* kUnsigned32 = "whole numbers from 0 to 4294967295 (unsigned 32-bit)";

std::string text(const qvArrayPtr& a) {
  const std::u16string t = test::charText(a.get());
  return {t.begin(), t.end()};
}
bool flag(const qvArrayPtr& a) { return qvGetLogicals(a.get())[0]; }
qvArrayPtr num(double v) { return test::scalar<double>(v); }
qvArrayPtr row(std::vector<double> v) { return test::array<double>(std::move(v)); }
// An argument written as text in a table: a number, "[n ...]" for a double row, else text.
qvArrayPtr token(const std::string& t) {
  if (t.starts_with('[')) {
    std::vector<double> values;
    std::istringstream in(t.substr(1, t.size() - 2));
    for (double v; in >> v;) values.push_back(v);
    return row(values);
  }
  char* end = nullptr;
  const double v = std::strtod(t.c_str(), &end);
  return *end == '\0' && !t.empty() ? num(v) : test::charRow(t);
}

// Calls an operation with inputs held in a table.
void callWith(const std::string& op, const std::vector<const qvArray*>& inputs) {
  const qvArrayPtr name = test::charRow(op);
  std::vector<const qvArray*> in{name.get()};
  in.insert(in.end(), inputs.begin(), inputs.end());
  test::Outputs out;
  netcdflib(3, out.data(), static_cast<int>(in.size()), in.data());
}

// The status name a libraryFailure carries, or what else happened.
template <class F>
std::string statusOf(F&& f) {
  const auto caught = test::catchMsgId(f);
  if (!caught) return "no error";
  if (caught->id != kLibraryFailure) return caught->id;
  return std::get<std::string>(caught->args[1]);
}

// A file with a float variable "v" (x = 1000) in the given format.
class FilterFile : public ::testing::Test {
 protected:
  void open(const char* mode) {
    id_ = call1("create", {dir_.file("f.nc"), mode});
    const double x = number(call1("defDim", {id_, "x", 1000}));
    var_ = number(call1("defVar", {id_, "v", NC_FLOAT, x}));
  }
  void TearDown() override {
    if (id_ != nullptr) call("close", {id_});
  }
  std::vector<double> filterIds() {
    return valuesOf<double>(call1("inqVarFilterIds", {id_, var_}));
  }

  test::ScratchDir dir_;
  qvArrayPtr id_;
  double var_ = -1;
};

TEST_F(FilterFile, SettingsRoundTripThroughTheInquiries) {
  open("netcdf4");
  EXPECT_TRUE(filterIds().empty());
  call("defVarSzip", {id_, var_, NC_SZIP_NN, 8});
  call("defVarBzip2", {id_, var_, 6});
  call("defVarFilter", {id_, var_, 32004, test::array<std::uint32_t>({1u << 16})});
  call("defVarQuantize", {id_, var_, "granularbitround", 4});
  call("defVarEndian", {id_, var_, "Big"});
  EXPECT_EQ((std::vector<double>{4, 307, 32004}), filterIds());
  EXPECT_EQ((std::vector<double>{65536}),
            valuesOf<double>(call1("inqVarFilterInfo", {id_, var_, 32004})));
  EXPECT_EQ((std::vector<double>{6}),
            valuesOf<double>(call1("inqVarFilterInfo", {id_, var_, 307})));
  const auto szip = call("inqVarSzip", {id_, var_});
  EXPECT_EQ(NC_SZIP_NN, number(szip[0]));
  EXPECT_EQ(8, number(szip[1]));
  const auto bzip2 = call("inqVarBzip2", {id_, var_});
  EXPECT_TRUE(flag(bzip2[0]));
  EXPECT_EQ(6, number(bzip2[1]));
  const auto quantize = call("inqVarQuantize", {id_, var_});
  EXPECT_EQ("GranularBitRound", text(quantize[0]));
  EXPECT_EQ(4, number(quantize[1]));
  EXPECT_EQ("big", text(call1("inqVarEndian", {id_, var_})));
  EXPECT_EQ(kLibraryFailure, test::catchMsgId([&] {
                               call("inqVarFilterInfo", {id_, var_, 1});
                             })->id);

  // Every mode and byte order by name in any case and by number, answered by name.
  for (const auto& [given, name, code] : std::vector<std::tuple<std::string, std::string, int>>{
           {"NONE", "none", 0}, {"bitgroom", "BitGroom", 1}, {"BitRound", "BitRound", 3}}) {
    call("defVarQuantize", {id_, var_, given, 3});
    EXPECT_EQ(name, text(call("inqVarQuantize", {id_, var_})[0]));
    call("defVarQuantize", {id_, var_, code, 3});
    EXPECT_EQ(name, text(call("inqVarQuantize", {id_, var_})[0]));
  }
  for (const auto& [given, name] : std::vector<std::pair<std::string, std::string>>{
           {"LITTLE", "little"}, {"2", "big"}, {"Native", "native"}}) {
    call("defVarEndian", {id_, var_, token(given)});
    EXPECT_EQ(name, text(call1("inqVarEndian", {id_, var_})));
  }
  EXPECT_MSGID(call("defVarQuantize", {id_, var_, "fast", 3}),
               "QUARNA:imagesci:netcdf:unrecognizedCharParameter", args("fast"));
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("defVarQuantize", {id_, var_, 7, 3}); }));
}

TEST_F(FilterFile, DataReadsBackThroughEveryLosslessFilter) {
  open("netcdf4");
  std::vector<float> values(1000);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<float>(i) * 0.25f;
  std::vector<double> vars;
  const double x = number(call1("inqDimID", {id_, "x"}));
  for (const auto& [name, id, params] :
       std::vector<std::tuple<std::string, int, std::vector<double>>>{{"lz4", 32004, {}},
                                                                      {"bzip2", 307, {9}},
                                                                      {"szip", 4, {NC_SZIP_EC, 16}},
                                                                      {"deflate", 1, {5}}}) {
    vars.push_back(number(call1("defVar", {id_, name, NC_FLOAT, x})));
    call("defVarFilter", {id_, vars.back(), id, test::array<double>(params, {1, params.size()})});
  }
  call("endDef", {id_});
  for (const double v : vars) call("putVarFloat", {id_, v, test::array<float>(values)});
  call("close", {id_});
  id_ = call1("open", {dir_.file("f.nc"), "nowrite"});
  for (const double v : vars) EXPECT_EQ(values, valuesOf<float>(call1("getVarFloat", {id_, v})));
}

TEST_F(FilterFile, AvailabilityOfDebiansFilters) {
  open("netcdf4");
  for (const double id : {1.0, 2.0, 3.0, 4.0, 307.0, 32004.0, 32001.0}) {
    EXPECT_TRUE(flag(call1("inqFilterAvail", {id_, id}))) << id;
  }
  for (const double id : {32015.0, 12345.0, 65535.0}) {
    EXPECT_FALSE(flag(call1("inqFilterAvail", {id_, id}))) << id;
  }
  // HDF5 filter ids end at 65535; netCDF-C passes HDF5's refusal of larger ones on.
  EXPECT_EQ("NC_EHDFERR", statusOf([&] { call("inqFilterAvail", {id_, 4294967295.0}); }));
  EXPECT_EQ("NC_EBADID", statusOf([&] { call("inqFilterAvail", {12345678, 1}); }));
}

// Each of these reports success from netCDF-C 4.9.0 without doing anything, or accepts a
// value that crashes HDF5 or leaves a file that neither closes nor aborts.
TEST_F(FilterFile, MishandledSettingsAreRefusedAndTheFileStillCloses) {
  open("netcdf4");
  EXPECT_EQ("-136", statusOf([&] { call("defVarZstandard", {id_, var_, 3}); }));
  EXPECT_EQ("-136", statusOf([&] { call("inqVarZstandard", {id_, var_}); }));
  EXPECT_EQ("-136", statusOf([&] {
              call("defVarFilter", {id_, var_, 32001, test::array<double>({0, 0, 0, 0, 5, 1, 1})});
            }));
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("defVarEndian", {id_, var_, 5}); }));
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("defVarFilter", {id_, var_, 307, 99}); }));
  EXPECT_EQ("-132", statusOf([&] { call("defVarFilter", {id_, var_, 4, 32}); }));
  const double text =
      number(call1("defVar", {id_, "text", NC_CHAR, call1("inqDimID", {id_, "x"})}));
  EXPECT_EQ("-132", statusOf([&] { call("defVarSzip", {id_, text, NC_SZIP_NN, 8}); }));
  call("defVarSzip", {id_, var_, NC_SZIP_NN, 32});
  for (const int pixels : {0, 7, 64, -2}) {
    EXPECT_EQ("NC_EINVAL", statusOf([&] {
                call("defVarSzip", {id_, var_, NC_SZIP_NN, pixels});
              }))
        << pixels;
  }
  EXPECT_EQ("NC_EINVAL", statusOf([&] {
              call("defVarFilter", {id_, var_, 4, test::array<double>({NC_SZIP_NN, 0})});
            }));
  EXPECT_EQ("NC_EINVAL", statusOf([&] { call("defVarChunking", {id_, var_, NC_CHUNKED, 4}); }));
  call("defVarChunking", {id_, var_, NC_CHUNKED, 500});
  EXPECT_EQ((std::vector<double>{4}), filterIds());
  EXPECT_EQ((std::vector<double>{NC_SZIP_NN, 32}),
            valuesOf<double>(call1("inqVarFilterInfo", {id_, var_, 4})));
  call("endDef", {id_});
  call("putVarFloat", {id_, var_, test::array<float>(std::vector<float>(1000, 1.5f))});
}

TEST_F(FilterFile, ClassicFilesAreRefusedAsNetcdfRefusesThem) {
  open("clobber");
  const qvArrayPtr var = num(var_);
  for (const auto& [op, extra, status] :
       std::vector<std::tuple<std::string, std::vector<std::string>, std::string>>{
           {"defVarFilter", {"307", "[5]"}, "NC_ENOTNC4"},
           {"defVarSzip", {"32", "8"}, "NC_ENOTNC4"},
           {"defVarBzip2", {"5"}, "-136"},
           {"defVarZstandard", {"5"}, "-136"},
           {"defVarQuantize", {"BitRound", "5"}, "NC_ENOTNC4"},
           {"defVarEndian", {"big"}, "NC_ENOTNC4"},
           {"inqVarQuantize", {}, "NC_ENOTNC4"},
           {"inqVarEndian", {}, "NC_ENOTNC4"},
           {"inqVarBzip2", {}, "-136"}}) {
    std::vector<qvArrayPtr> held;
    std::vector<const qvArray*> in{id_.get(), held.emplace_back(num(var_)).get()};
    for (const auto& t : extra) in.push_back(held.emplace_back(token(t)).get());
    EXPECT_EQ(status, statusOf([&] { callWith(op, in); })) << op;
  }
  EXPECT_TRUE(filterIds().empty());
  const auto szip = call("inqVarSzip", {id_, var_});
  EXPECT_EQ(0, number(szip[0]) + number(szip[1]));
  EXPECT_FALSE(flag(call1("inqFilterAvail", {id_, 307})));
}

TEST(FilterArguments, IdsAndParametersAreExactUnsigned32BitValues) {
  std::vector<qvArrayPtr> badIds;
  for (const double v : {-1.0, 1.5, 4294967296.0, std::nan("")}) badIds.push_back(num(v));
  badIds.push_back(test::charRow("a"));
  badIds.push_back(test::zeros(qvDOUBLE_CLASS, {0, 0}));
  badIds.push_back(row({1, 2}));
  badIds.push_back(test::complexScalar(1, 1));
  badIds.push_back(test::array<std::int8_t>({-1}));
  for (const auto& bad : badIds) {
    EXPECT_MSGID(call("inqFilterAvail", {1, bad}), kNotOfKind, args("filterID", kUnsigned32));
  }
  std::vector<qvArrayPtr> badParams;
  badParams.push_back(row({1, -1}));
  badParams.push_back(row({0.5}));
  badParams.push_back(test::zeros(qvDOUBLE_CLASS, {2, 2}));
  badParams.push_back(test::charRow("ab"));
  badParams.push_back(test::array<std::uint64_t>({1ull << 32}));
  for (const auto& bad : badParams) {
    EXPECT_MSGID(call("defVarFilter", {1, 0, 307, bad}), kNotOfKind, args("params", kUnsigned32));
  }
  // Good values of any class reach netCDF-C, which knows no such file.
  std::vector<qvArrayPtr> good;
  good.push_back(test::zeros(qvUINT8_CLASS, {0, 0}));
  good.push_back(test::array<std::uint32_t>({4294967295u}));
  good.push_back(test::array<double>({1, 2}, {2, 1}));
  for (const auto& g : good) {
    EXPECT_EQ("NC_EBADID", statusOf([&] { call("defVarFilter", {12345678, 0, 307, g}); }));
  }
}

}  // namespace
