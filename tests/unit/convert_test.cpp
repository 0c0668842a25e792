// The argument converters (scalars, flags, index vectors, id and size rows, file modes), the
// status check and what operation names mean.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <cmath>
#include <cstring>
#include <sstream>

#include "convert/index.hpp"
#include "convert/scalars.hpp"
#include "gateway/operation.hpp"
#include "gateway/status.hpp"
#include "ops/files/file_mode.hpp"
#include "test_support.hpp"

namespace {

using test::args;
using test::array;
using test::scalar;
using test::zeros;

constexpr double kInf = HUGE_VAL, kNaN = NAN, k2p63 = 9223372036854775808.0;
constexpr const char* kBadScalar = "QUARNA:imagesci:netcdf:badScalarArgument";
constexpr const char* kNotFinite = "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType";
constexpr const char* kBadRow = "QUARNA:imagesci:netcdf:badRowDatatype";

// What a conversion gives, printed; or which way it overflowed; or the error it raised.
template <class F>
std::string outcome(F&& f) {
  try {
    std::ostringstream out;
    out << std::setprecision(21) << f();
    return out.str();
  } catch (const boost::numeric::negative_overflow&) {
    return "-overflow";
  } catch (const boost::numeric::positive_overflow&) {
    return "+overflow";
  } catch (const foundation::core::except::IMsgIDException& e) {
    return e.GetID().fullIdentifier();
  }
}

template <class T, ScalarUse U = ScalarUse::Plain>
long double as(const qvArray* a) {
  return getScalar<T>(a, "x", U);
}
template <class T>
constexpr auto asFill = as<T, ScalarUse::FillValue>;

TEST(GetScalar, TruncatesChecksRangeAndFiniteness) {
  const auto empty = [] { return zeros(qvDOUBLE_CLASS, {1, 0}); };
  const auto pair = [] { return array<double>({1, 2}); };
  const char* fillBad = "QUARNA:imagesci:netcdf:fillValueBadArgument";
  const struct {
    long double (*convert)(const qvArray*);
    qvArrayPtr source;
    std::string result;
  } cases[] = {
      {as<int>, scalar(3.9), "3"},
      {as<int>, scalar(-3.9), "-3"},
      {as<int>, scalar(2147483648.0), "+overflow"},
      {as<int>, scalar(-2147483649.0), "-overflow"},
      {as<int>, scalar(2147483648.0f), "+overflow"},
      {as<int>, scalar<std::uint32_t>(4294967295u), "+overflow"},
      {as<std::size_t>, scalar(-0.5), "0"},
      {as<std::size_t>, scalar(-1.0), "-overflow"},
      {as<std::size_t>, scalar(18446744073709551616.0), "+overflow"},
      {as<unsigned long long>, scalar<std::int64_t>(-1), "-overflow"},
      {as<long long>, scalar(-k2p63), "-overflow"},
      {as<unsigned short>, scalar<std::int32_t>(70000), "+overflow"},
      {as<signed char>, scalar(-128.9), "-128"},
      {as<signed char>, scalar<std::uint8_t>(128), "+overflow"},
      {as<double>, scalar<std::uint64_t>(UINT64_MAX), "18446744073709551616"},
      {as<float>, scalar(std::nextafter(3.4028234663852886e38, kInf)), "+overflow"},
      // Non-finite values only as fill values; a double Inf does not fit a single.
      {as<int>, scalar(kNaN), kBadScalar},
      {as<double>, scalar(-kInf), kBadScalar},
      {as<std::size_t>, scalar<float>(kInf), kBadScalar},
      {asFill<double>, scalar(kNaN), "nan"},
      {asFill<float>, scalar<float>(kInf), "inf"},
      {asFill<float>, scalar(kInf), "+overflow"},
      {asFill<short>, scalar(-kInf), "-overflow"},
      {asFill<int>, scalar(kNaN), "0"},
      // Not one element.
      {as<int>, empty(), kBadScalar},
      {as<int>, pair(), kBadScalar},
      {asFill<double>, empty(), fillBad},
      {asFill<float>, pair(), fillBad},
      {asFill<int>, empty(), kBadScalar},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.result, outcome([&] { return c.convert(c.source.get()); })) << c.result;
  }
  EXPECT_MSGID(getScalar<int>(pair().get(), "ncid"), kBadScalar, args("ncid", "numeric"));
}

TEST(GetScalar, EveryNumericClassOnlyReal) {
  for (int c = qvDOUBLE_CLASS; c <= qvUINT64_CLASS; ++c) {
    const qvArrayPtr a = test::numeric(qvClassID(c), {7});
    EXPECT_EQ(
        (std::vector<long double>{as<int>(a.get()), as<double>(a.get()), as<signed char>(a.get())}),
        std::vector<long double>(3, 7))
        << c;
  }
  std::vector<qvArrayPtr> refused = test::nonNumeric();
  refused.push_back(zeros(qvDOUBLE_CLASS, {1, 1}, qvCOMPLEX));
  for (const auto& a : refused) {
    EXPECT_EQ(kBadScalar, outcome([&] { return as<int>(a.get()); }));
    EXPECT_EQ(kBadScalar, outcome([&] { return asFill<double>(a.get()); }));
  }
}

TEST(GetScalar, FlagsAndFiniteIntegers) {
  EXPECT_TRUE(getLogicalFlag(scalar(true).get(), "shuffle"));
  EXPECT_FALSE(getLogicalFlag(scalar(false).get(), "shuffle"));
  for (const auto& a :
       {scalar(1.0), zeros(qvLOGICAL_CLASS, {1, 2}), zeros(qvLOGICAL_CLASS, {0, 0})})
    EXPECT_MSGID(getLogicalFlag(a.get(), "shuffle"), "QUARNA:imagesci:netcdf:expectedLogicalType",
                 args("shuffle"));
  const qvArrayPtr values = array<double>({1, 2, kNaN, 4, -kInf});
  EXPECT_NO_THROW(checkFiniteForInteger(values.get(), 2, "chunkSize"));
  EXPECT_MSGID(checkFiniteForInteger(values.get(), 3, "chunkSize"), kNotFinite, args("chunkSize"));
}

TEST(IndexVector, EveryClassReversedIntoNetcdfOrder) {
  for (int c = qvDOUBLE_CLASS; c <= qvUINT64_CLASS; ++c) {
    const qvArrayPtr v = test::numeric(qvClassID(c), {2, 0, 5}, {3, 1});
    EXPECT_EQ((IndexList{5, 0, 2}), getIndexVector(v.get(), "START")) << c;
  }
  EXPECT_EQ((IndexList{5, 0, 2}), getIndexVector(array<double>({2.9, -0.5, 5}).get(), "COUNT"));
  EXPECT_EQ((StrideList{-1, 3}), getStrideVector(array<std::int64_t>({3, -1}).get(), "STRIDE"));
}

TEST(IndexVector, RangeFinitenessEmptinessAndClass) {
  const struct {
    qvArrayPtr value;
    std::string start, stride;
  } cases[] = {
      {array<double>({-0.99}), "1", "1"},
      {array<double>({-1}), "-overflow", "1"},
      {array<double>({18446744073709551616.0}), "+overflow", "+overflow"},
      {array<double>({k2p63}), "1", "+overflow"},
      {array<std::uint64_t>({std::uint64_t{1} << 63}), "1", "+overflow"},
      // Finiteness is judged before any element overflows; emptiness before the class.
      {array<double>({-5, kNaN}), "QUARNA:imagesci:netcdf:indexArgumentNotFinite", ""},
      {array<float>({1, HUGE_VALF}), "QUARNA:imagesci:netcdf:indexArgumentNotFinite", ""},
      {zeros(qvCHAR_CLASS, {1, 0}), "QUARNA:imagesci:netcdf:argumentIsEmpty", ""},
      {zeros(qvLOGICAL_CLASS, {0, 1}), "QUARNA:imagesci:netcdf:argumentIsEmpty", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.start, outcome([&] { return getIndexVector(c.value.get(), "START").size(); }));
    const std::string stride = c.stride.empty() ? c.start : c.stride;
    EXPECT_EQ(stride, outcome([&] { return getStrideVector(c.value.get(), "STRIDE").size(); }));
  }
  for (const auto& bad : test::nonNumeric())
    EXPECT_MSGID(getIndexVector(bad.get(), "COUNT"),
                 "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("COUNT"));
}

TEST(IndexRows, DimensionIdsAndChunkSizes) {
  EXPECT_EQ((std::vector<int>{3, 1, 0}),
            getDimensionIdRow(array<double>({0.7, 1, 3.9}).get(), "dimids"));
  EXPECT_TRUE(getDimensionIdRow(zeros(qvDOUBLE_CLASS, {0, 0}).get(), "dimids").empty());
  EXPECT_EQ(1024u, getDimensionIdRow(zeros(qvDOUBLE_CLASS, {1, 1024}).get(), "dimids").size());
  EXPECT_MSGID(getDimensionIdRow(zeros(qvDOUBLE_CLASS, {1, 1025}).get(), "dimids"),
               "QUARNA:imagesci:netcdf:rowLengthOutOfBounds", args("dimids", 1024));
  // The class is checked first; a non-double row that reads as NaN is non-finite.
  std::int64_t nanBits = 0;
  std::memcpy(&nanBits, &kNaN, sizeof nanBits);
  const struct {
    qvArrayPtr row;
    const char* id;
  } refused[] = {{zeros(qvINT32_CLASS, {0, 0}), kBadRow},
                 {zeros(qvINT16_CLASS, {1, 1025}), kBadRow},
                 {array<double>({0, kNaN}), kNotFinite},
                 {array<std::int64_t>({nanBits}), kNotFinite}};
  for (const auto& r : refused)
    EXPECT_MSGID(getDimensionIdRow(r.row.get(), "dimids"), r.id, args("dimids"));

  EXPECT_EQ((std::vector<std::size_t>{(std::size_t{1} << 63) + 2048, ~std::size_t{0}, 10}),
            getChunkSizeRow(array<double>({10.9, -1, k2p63 + 2048}).get(), "chunk"));
  // Too few bytes for even one double: nothing is read past the data.
  EXPECT_MSGID(getChunkSizeRow(array<std::uint8_t>({0xFF, 0xFF}).get(), "chunk"), kBadRow,
               args("chunk"));
  EXPECT_MSGID(getChunkSizeRow(array<double>({kInf}).get(), "chunk"), kNotFinite, args("chunk"));
}

TEST(FileMode, NamesNumbersAndRefusals) {
  for (const auto& [text, mode] : std::vector<std::pair<std::string, int>>{
           {"NC_NOCLOBBER", NC_NOCLOBBER}, {"nc_write", NC_WRITE}, {"NetCDF4", NC_NETCDF4}})
    EXPECT_EQ(mode, getFileMode(test::charRow(text).get())) << text;
  for (const char* t : {"nc_noclobber ", "Nc_Foo", "nc_nc_write"}) {
    std::string upper = t;
    for (char& ch : upper) ch = static_cast<char>(std::toupper(ch));
    EXPECT_MSGID(getFileMode(test::charRow(t).get()), "QUARNA:imagesci:netcdf:unrecognizedFileMode",
                 args(upper));
  }
  EXPECT_EQ(4100, getFileMode(scalar<std::int32_t>(4100).get()));
  EXPECT_EQ(512, getFileMode(array<double>({512.9, 1}).get()));
  for (const auto& mode : {scalar<float>(4), scalar<std::int64_t>(4), scalar(true)})
    EXPECT_MSGID(getFileMode(mode.get()), "QUARNA:imagesci:netcdf:badModeDatatype", args());
  // Emptiness is looked at before the class.
  EXPECT_MSGID(getFileMode(zeros(qvLOGICAL_CLASS, {0, 3}).get()),
               "QUARNA:imagesci:netcdf:argumentIsEmptySet", args("MODE"));
  EXPECT_MSGID(getFileMode(test::array<char16_t>({u'c', u'l', u'o', u'b', u'b', u'e'}, {2, 3}).get()),
               "QUARNA:imagesci:netcdf:argumentWasNotChar", args("file mode"));
}

TEST(CheckStatus, RemoteRunsAndFormatLimits) {
  const OperationRow row{0, "op", 0, nullptr};
  EXPECT_NO_THROW(checkStatus(NC_NOERR, row));
  const char* dap = "QUARNA:imagesci:netcdf:librarydapFailure";
  const char* library = "QUARNA:imagesci:netcdf:libraryFailure";
  // Both remote-access runs at their ends, and just outside them.
  for (const auto& [status, id] : std::vector<std::pair<int, const char*>>{{-75, dap},
                                                                           {-72, dap},
                                                                           {-70, dap},
                                                                           {-66, dap},
                                                                           {-69, library},
                                                                           {-65, library},
                                                                           {-76, library},
                                                                           {-1, library},
                                                                           {2, library}})
    EXPECT_MSGID(checkStatus(status, row), id,
                 args("op", errorName(status), netcdfMessage(status)));
  EXPECT_EQ("Not a valid ID", netcdfMessage(NC_EBADID));
  EXPECT_EQ(nc_strerror(2), netcdfMessage(2));
  EXPECT_MSGID(checkStatus(NC_EVARSIZE, row), "QUARNA:imagesci:netcdf:formatConstraintsViolation",
               args());
}

TEST(RowMeaning, ReadFromNames) {
  constexpr auto V = Target::Variable, A = Target::Attribute;
  const struct {
    std::string_view name;
    RowMeaning meaning;
  } cases[] = {
      {"getVarDouble", {Access::Get, V, Form::Whole, DataKind::Double, DataInput::Plain}},
      {"getVar1Short", {Access::Get, V, Form::One, DataKind::Short, DataInput::Plain}},
      {"getVarsVlen", {Access::Get, V, Form::Strided, DataKind::Vlen, DataInput::Plain}},
      {"putVarText", {Access::Put, V, Form::Whole, DataKind::Text, DataInput::Bytes}},
      {"putVar1UInt64", {Access::Put, V, Form::One, DataKind::Uint64, DataInput::Plain}},
      {"putVarsString", {Access::Put, V, Form::Strided, DataKind::String, DataInput::Strings}},
      {"putVaraVlen", {Access::Put, V, Form::Block, DataKind::Vlen, DataInput::Vlen}},
      {"getAttUbyte", {Access::Get, A, Form::Whole, DataKind::Ubyte, DataInput::Plain}},
      {"putAttText", {Access::Put, A, Form::Whole, DataKind::Text, DataInput::Plain}},
      {"putAtt", {Access::Put, A, Form::Whole, std::nullopt, DataInput::OwnType}},
      {"getVar1", {Access::Get, V, Form::One, std::nullopt, DataInput::Plain}},
      {"defVarFill", {Access::None, V, Form::Whole, std::nullopt, DataInput::Vlen}},
      {"getChunkCache", {Access::None, V, Form::Whole, std::nullopt, DataInput::Plain}},
      {"getVarDoubles", {Access::None, V, Form::Whole, std::nullopt, DataInput::Plain}},
  };
  for (const auto& c : cases) {
    const RowMeaning m = meaningOf(c.name);
    EXPECT_EQ(std::tie(c.meaning.access, c.meaning.target, c.meaning.form, c.meaning.kind,
                       c.meaning.data),
              std::tie(m.access, m.target, m.form, m.kind, m.data))
        << c.name;
  }
}

}  // namespace
