#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "test_support.hpp"

namespace {

using test::args;

constexpr const char* kUnrecognized = "QUARNA:imagesci:netcdf:unrecognizedCharParameter";

qvArrayPtr parameter(const std::string& name) {
  const qvArrayPtr arg = test::charRow(name);
  return std::move(test::call("parameter", {arg.get()})[0]);
}

double doubleParameter(const std::string& name) {
  const qvArrayPtr v = parameter(name);
  EXPECT_EQ(qvGetClassID(v.get()), qvDOUBLE_CLASS) << name;
  EXPECT_EQ(qvGetNumberOfElements(v.get()), 1u) << name;
  return *static_cast<const double*>(qvGetData(v.get()));
}

TEST(Parameter, CaseAndPrefixDoNotMatter) {
  for (const char* name : {"NC_CLOBBER", "CLOBBER", "nc_clobber", "clobber", "Nc_ClObBeR"}) {
    EXPECT_EQ(doubleParameter(name), 0.0) << name;
  }
  for (const char* name : {"NC2_ERR", "nc2_err", "NC_NC2_ERR", "nc_Nc2_Err"}) {
    EXPECT_EQ(doubleParameter(name), -1.0) << name;
  }
  EXPECT_EQ(doubleParameter("nc_64bit_offset"), 512.0);
}

TEST(Parameter, UnrecognizedNamesAfterProcessing) {
  const std::vector<std::pair<std::string, std::string>> cases = {{"NC_", "NC_"},
                                                                  {"nc_", "NC_"},
                                                                  {"NC_BYTE ", "BYTE "},
                                                                  {" NC_BYTE", " NC_BYTE"},
                                                                  {"NC_NC_BYTE", "NC_BYTE"},
                                                                  {"BYT", "BYT"},
                                                                  {"nc_nope", "NOPE"},
                                                                  {"", ""},
                                                                  {"FILL_", "FILL_"},
                                                                  {"NC_ebadid2", "EBADID2"},
                                                                  // Not a netCDF name: no NUL check.
                                                                  {std::string("NC_BYTE\0x", 9), std::string("BYTE\0X", 6)}};
  // Not structured bindings: clang 14 cannot capture those in the macro's lambda.
  for (const auto& c : cases) {
    EXPECT_MSGID(parameter(c.first), kUnrecognized, args(c.second));
  }
}

TEST(Parameter, NameMustBeText) {
  constexpr const char* kNotChar = "QUARNA:imagesci:netcdf:argumentWasNotChar";
  const qvArrayPtr number = test::scalar<double>(4);
  const qvArrayPtr text = test::stringScalar(u"NC_INT");
  for (const qvArray* a : {number.get(), text.get()}) {
    EXPECT_MSGID(test::call("parameter", {a}), kNotChar, args("parameter"));
  }
  // An empty char array of any shape is the empty name.
  const qvArrayPtr empty = test::charArray(u"", 0, 4);
  EXPECT_MSGID(test::call("parameter", {empty.get()}), kUnrecognized, args(""));
}

TEST(Parameter, ValuesAsPublished) {
  struct Case {
    const char* name;
    double value;
  };
  // Values that differ from netCDF-C's own, repeat, or stand out of order.
  const Case published[] = {
      {"NC_LONG", 4},    {"NC_INT", 4},         {"NC_NOFILL", 256},    {"NC_CLASSIC_MODEL", 256},
      {"NC_FATAL", 1},   {"NC_VERBOSE", 2},     {"NC_FILL", 0},        {"NC_UNLIMITED", 0},
      {"NC_GLOBAL", -1}, {"NC_EATTMETA", -107}, {"NC_EDIMMETA", -106}, {"NC_NAT", 0},
      {"NC_CHUNKED", 0}, {"NC_CONTIGUOUS", 1},  {"NC_FLETCHER32", 1},  {"NC_LOCK", 1024},
  };
  for (const Case& c : published) EXPECT_EQ(doubleParameter(c.name), c.value) << c.name;

  // The rest agree with netCDF-C.
  const Case netcdf[] = {
      {"NC_BYTE", NC_BYTE},
      {"NC_UINT64", NC_UINT64},
      {"NC_STRING", NC_STRING},
      {"NC_NETCDF4", NC_NETCDF4},
      {"NC_MMAP", NC_MMAP},
      {"NC_MAX_NAME", NC_MAX_NAME},
      {"NC_EBADID", NC_EBADID},
      {"NC_EBADCHUNK", NC_EBADCHUNK},
      {"NC_FORMAT_NETCDF4_CLASSIC", NC_FORMAT_NETCDF4_CLASSIC},
  };
  for (const Case& c : netcdf) EXPECT_EQ(doubleParameter(c.name), c.value) << c.name;
}

std::vector<std::string> constantNames() {
  const qvArrayPtr cell = test::call1("getConstantNames");
  EXPECT_EQ(qvGetClassID(cell.get()), qvCELL_CLASS);
  EXPECT_EQ(qvGetNumberOfDimensions(cell.get()), 2u);
  EXPECT_EQ(qvGetDimensions(cell.get())[0], 118u);
  EXPECT_EQ(qvGetDimensions(cell.get())[1], 1u);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < qvGetNumberOfElements(cell.get()); ++i) {
    const qvArray* element = qvGetCell(cell.get(), i);
    EXPECT_TRUE(element != nullptr && qvIsCharVector(element)) << i;
    if (element == nullptr) return names;
    const std::u16string text = test::charText(element);
    names.emplace_back(text.begin(), text.end());
  }
  return names;
}

// A column of distinct long names in table order, each of them a parameter; the twelve FILL
// rows answer in their own classes, FILL_DOUBLE among them.
TEST(GetConstantNames, ColumnOfLongNamesEachAParameter) {
  const std::vector<std::string> names = constantNames();
  ASSERT_EQ(names.size(), 118u);
  EXPECT_EQ(names[0], "NC_BYTE");
  EXPECT_EQ(names[117], "NC_FLETCHER32");
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 118u);
  int doubles = 0;
  for (const std::string& name : names) {
    const qvArrayPtr v = parameter(name);
    ASSERT_TRUE(v) << name;
    if (name.rfind("NC_FILL_", 0) != 0) {
      EXPECT_EQ(qvGetClassID(v.get()), qvDOUBLE_CLASS) << name;
    }
    doubles += qvGetClassID(v.get()) == qvDOUBLE_CLASS ? 1 : 0;
  }
  EXPECT_EQ(doubles, 118 - 12 + 1);
}

}  // namespace
