#include <gtest/gtest.h>
#include <netcdf.h>

#include <bit>
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
  return std::move(test::callGateway("parameter", {arg.get()})[0]);
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
                                                                  {"NC_ebadid2", "EBADID2"}};
  for (const auto& [given, reported] : cases) {
    EXPECT_MSGID(parameter(given), kUnrecognized, args(reported));
  }
}

TEST(Parameter, NameMustBeText) {
  constexpr const char* kNotChar = "QUARNA:imagesci:netcdf:argumentWasNotChar";
  const qvArrayPtr number = test::scalar<double>(4);
  const qvArrayPtr text = test::stringScalar(u"NC_INT");
  for (const qvArray* a : {number.get(), text.get()}) {
    EXPECT_MSGID(test::callGateway("parameter", {a}), kNotChar, args("parameter"));
  }
  // An empty char array of any shape is the empty name.
  const qvArrayPtr empty = test::charArray(u"", 0, 4);
  EXPECT_MSGID(test::callGateway("parameter", {empty.get()}), kUnrecognized, args(""));
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
      {"NC_UBYTE", NC_UBYTE},
      {"NC_UINT64", NC_UINT64},
      {"NC_STRING", NC_STRING},
      {"NC_WRITE", NC_WRITE},
      {"NC_NOCLOBBER", NC_NOCLOBBER},
      {"NC_SHARE", NC_SHARE},
      {"NC_NETCDF4", NC_NETCDF4},
      {"NC_DISKLESS", NC_DISKLESS},
      {"NC_MMAP", NC_MMAP},
      {"NC_FORMAT_64BIT", NC_FORMAT_64BIT},
      {"NC_FORMAT_NETCDF4_CLASSIC", NC_FORMAT_NETCDF4_CLASSIC},
      {"NC_MAX_NAME", NC_MAX_NAME},
      {"NC_MAX_VAR_DIMS", NC_MAX_VAR_DIMS},
      {"NC_MAX_ATTRS", NC_MAX_ATTRS},
      {"NC_NOERR", NC_NOERR},
      {"NC_EBADID", NC_EBADID},
      {"NC_EBADTYPE", NC_EBADTYPE},
      {"NC_EBADDIM", NC_EBADDIM},
      {"NC_ETRUNC", NC_ETRUNC},
      {"NC_EHDFERR", NC_EHDFERR},
      {"NC_EBADCHUNK", NC_EBADCHUNK},
  };
  for (const Case& c : netcdf) EXPECT_EQ(doubleParameter(c.name), c.value) << c.name;
}

template <class T>
void expectFill(const char* name, qvClassID cls, T value) {
  SCOPED_TRACE(name);
  const qvArrayPtr v = parameter(name);
  ASSERT_EQ(qvGetClassID(v.get()), cls);
  ASSERT_EQ(qvGetNumberOfDimensions(v.get()), 2u);
  EXPECT_EQ(qvGetDimensions(v.get())[0], 1u);
  EXPECT_EQ(qvGetDimensions(v.get())[1], 1u);
  EXPECT_FALSE(qvIsComplex(v.get()));
  EXPECT_EQ(*static_cast<const T*>(qvGetData(v.get())), value);
}

TEST(Parameter, FillValuesInTheirClasses) {
  expectFill<std::int8_t>("NC_FILL_BYTE", qvINT8_CLASS, -127);
  expectFill<std::uint8_t>("fill_ubyte", qvUINT8_CLASS, 255);
  expectFill<char16_t>("NC_FILL_CHAR", qvCHAR_CLASS, 0);
  expectFill<std::int16_t>("NC_FILL_SHORT", qvINT16_CLASS, -32767);
  expectFill<std::uint16_t>("NC_FILL_USHORT", qvUINT16_CLASS, 65535);
  expectFill<std::int32_t>("NC_FILL_INT", qvINT32_CLASS, -2147483647);
  expectFill<std::uint32_t>("NC_FILL_UINT", qvUINT32_CLASS, 4294967295u);
  expectFill<std::int64_t>("NC_FILL_INT64", qvINT64_CLASS, -9223372036854775806LL);
  expectFill<std::uint64_t>("NC_FILL_UINT64", qvUINT64_CLASS, 18446744073709551614ULL);
  expectFill<std::uint32_t>("NC_FILL_FLOAT", qvSINGLE_CLASS, 0x7CF00000u);
  expectFill<std::uint64_t>("FILL_DOUBLE", qvDOUBLE_CLASS, 0x479E000000000000ULL);

  const qvArrayPtr s = parameter("nc_fill_string");
  ASSERT_TRUE(isString(s.get()));
  const StringArrayView view = getString(s.get());
  ASSERT_EQ(view.count, 1u);
  ASSERT_FALSE(view.isMissing(0));
  EXPECT_EQ(view.at(0), u"");
}

std::vector<std::string> constantNames() {
  const qvArrayPtr cell = std::move(test::callGateway("getConstantNames")[0]);
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

TEST(GetConstantNames, ColumnOfLongNamesInTableOrder) {
  const std::vector<std::string> names = constantNames();
  ASSERT_EQ(names.size(), 118u);
  EXPECT_EQ(names[0], "NC_BYTE");
  EXPECT_EQ(names[1], "NC_UBYTE");
  EXPECT_EQ(names[14], "NC_FILL_BYTE");
  EXPECT_EQ(names[46], "NC2_ERR");
  EXPECT_EQ(names[60], "NC_EBADTYPE");
  EXPECT_EQ(names[61], "NC_EBADDIM");
  EXPECT_EQ(names[90], "NC_EATTMETA");
  EXPECT_EQ(names[117], "NC_FLETCHER32");
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), 118u);
}

TEST(GetConstantNames, EveryNameIsAParameter) {
  int doubles = 0;
  for (const std::string& name : constantNames()) {
    const qvArrayPtr v = parameter(name);
    ASSERT_TRUE(v) << name;
    const bool isFill = name.rfind("NC_FILL_", 0) == 0;
    if (!isFill) {
      EXPECT_EQ(qvGetClassID(v.get()), qvDOUBLE_CLASS) << name;
    }
    doubles += qvGetClassID(v.get()) == qvDOUBLE_CLASS ? 1 : 0;
  }
  // The twelve FILL rows answer in their own classes, FILL_DOUBLE among them.
  EXPECT_EQ(doubles, 118 - 12 + 1);
}

}  // namespace
