// The argument converters (scalars, flags, index vectors, id and size rows, file modes) and
// the status check.
#include <boost/numeric/conversion/converter_policies.hpp>
#include <sstream>

#include "convert/index.hpp"
#include "convert/scalars.hpp"
#include "gateway/operation.hpp"
#include "gateway/status.hpp"
#include "ops/files/file_mode.hpp"
#include "test_support.hpp"

namespace {

using namespace test;

constexpr double kInf = HUGE_VAL, kNaN = NAN, k2p63 = 9223372036854775808.0;
constexpr const char* kBadScalar = "badScalarArgument";
constexpr const char* kNotFinite = "invalidNaNInfForIntegerType";

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
    return e.GetID().fullIdentifier().substr(23);  // all of QUARNA:imagesci:netcdf
  }
}

template <class T, ScalarUse U = ScalarUse::Plain>
long double as(const qvArray* a) {
  return getScalar<T>(a, "x", U);
}
template <class T>
constexpr auto asFill = as<T, ScalarUse::FillValue>;

// A row of numeric class cls holding values.
qvArrayPtr ofClass(int cls, const std::vector<double>& v) {
  return qvVisitNumeric(qvClassID(cls), [&](auto t) {
    return array<decltype(t)>({v.begin(), v.end()});
  });
}

// Representative bounds of each direction and source, the fill-value exceptions, and only
// real numbers of one element of any numeric class.
TEST(GetScalar, TruncatesChecksRangeFinitenessAndClass) {
  const char* fillBad = "fillValueBadArgument";
  const std::tuple<long double (*)(const qvArray*), qvArrayPtr, std::string> cases[] = {
      {as<unsigned long long>, scalar<std::int64_t>(-1), "-overflow"},
      {as<unsigned short>, scalar<std::int32_t>(70000), "+overflow"},
      {as<double>, scalar<std::uint64_t>(UINT64_MAX), "18446744073709551616"},
      {as<float>, scalar(std::nextafter(3.4028234663852886e38, kInf)), "+overflow"},
      // Non-finite values only as fill values; a double Inf does not fit a single.
      {as<std::size_t>, scalar<float>(kInf), kBadScalar},
      {asFill<double>, scalar(kNaN), "nan"},
      {asFill<int>, scalar(kNaN), "0"},
      {asFill<float>, array<double>({1, 2}), fillBad},
      {as<int>, zeros(qvDOUBLE_CLASS, {1, 1}, qvCOMPLEX), kBadScalar},
  };
  for (const auto& [convert, source, result] : cases)
    EXPECT_EQ(result, outcome([&] { return convert(source.get()); })) << result;
  for (int c = qvDOUBLE_CLASS; c <= qvUINT64_CLASS; ++c) {
    const qvArrayPtr a = ofClass(c, {7});
    EXPECT_EQ(14, as<double>(a.get()) + as<signed char>(a.get())) << c;
  }
  for (const qvArrayPtr& a : {charRow("5"), cell(scalar(5.0)), createStringArray(u"5")})
    EXPECT_EQ(kBadScalar, outcome([&] { return as<int>(a.get()); }));
  EXPECT_MSGID(getLogicalFlag(scalar(1.0).get(), "shuffle"), "expectedLogicalType", "shuffle");
  EXPECT_MSGID(checkFiniteForInteger(array<double>({1, kNaN}).get(), 2, "chunkSize"), kNotFinite,
               "chunkSize");
}

TEST(IndexVector, ReversedRangeCheckedFiniteNonEmptyNumeric) {
  for (int c = qvDOUBLE_CLASS; c <= qvUINT64_CLASS; ++c)
    EXPECT_EQ((IndexList{5, 0, 2}), getIndexVector(ofClass(c, {2, 0, 5}).get(), "START")) << c;
  EXPECT_EQ((StrideList{-1, 3}), getStrideVector(array<std::int64_t>({3, -1}).get(), "STRIDE"));
  // Finiteness is judged before any element overflows; emptiness before the class.
  const std::tuple<qvArrayPtr, std::string, std::string> cases[] = {
      {array<double>({-1}), "-overflow", "1"},
      {array<std::uint64_t>({std::uint64_t{1} << 63}), "1", "+overflow"},
      {array<float>({1e30f, NAN}), "indexArgumentNotFinite", ""},
      {zeros(qvCHAR_CLASS, {1, 0}), "argumentIsEmpty", ""},
  };
  for (const auto& [value, start, stride] : cases) {
    EXPECT_EQ(start, outcome([&] { return getIndexVector(value.get(), "START").size(); }));
    EXPECT_EQ(stride.empty() ? start : stride,
              outcome([&] { return getStrideVector(value.get(), "STRIDE").size(); }));
  }
  EXPECT_MSGID(getIndexVector(scalar(true).get(), "COUNT"), "argumentHasBadDatatype", "COUNT");
}

TEST(IndexRows, DimensionIdsAndChunkSizes) {
  EXPECT_EQ(1024u, getDimensionIdRow(zeros(qvDOUBLE_CLASS, {1, 1024}).get(), "dimids").size());
  EXPECT_MSGID(getDimensionIdRow(zeros(qvDOUBLE_CLASS, {1, 1025}).get(), "dimids"),
               "rowLengthOutOfBounds", "dimids", 1024);
  EXPECT_EQ((std::vector<std::size_t>{(std::size_t{1} << 63) + 2048, ~std::size_t{0}, 10}),
            getChunkSizeRow(array<double>({10.9, -1, k2p63 + 2048}).get(), "chunk"));
  // Too few bytes for even one double: nothing is read past the data.
  EXPECT_MSGID(getChunkSizeRow(array<std::uint8_t>({0xFF, 0xFF}).get(), "chunk"), "badRowDatatype",
               "chunk");
}

// Emptiness is looked at before the class.
TEST(FileMode, NamesNumbersAndRefusals) {
  EXPECT_MSGID(getFileMode(charRow("Nc_Foo ").get()), "unrecognizedFileMode", "NC_FOO ");
  EXPECT_MSGID(getFileMode(scalar<float>(4).get()), "badModeDatatype");
  EXPECT_MSGID(getFileMode(zeros(qvLOGICAL_CLASS, {0, 3}).get()), "argumentIsEmptySet", "MODE");
  EXPECT_MSGID(getFileMode(zeros(qvCHAR_CLASS, {2, 3}).get()), "argumentWasNotChar", "file mode");
}

TEST(CheckStatus, RemoteRunsAndFormatLimits) {
  static constexpr OperationRow row{0, "op", 0, nullptr};
  checkStatus(NC_NOERR, row);
  const char* dap = "librarydapFailure";
  const char* library = "libraryFailure";
  // Both remote-access runs at their ends, and just outside them.
  for (const auto& [id, statuses] : {std::pair{dap, std::vector{-75, -70, -68, -66}},
                                     std::pair{library, std::vector{-76, -69, -65, -1, 2}}})
    for (const int status : statuses)
      EXPECT_MSGID(checkStatus(status, row), id, "op", errorName(status), netcdfMessage(status));
  EXPECT_MSGID(checkStatus(NC_EVARSIZE, row), "formatConstraintsViolation");
}

}  // namespace
