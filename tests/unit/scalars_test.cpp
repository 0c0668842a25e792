#include "convert/scalars.hpp"

#include <gtest/gtest.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>

#include "test_support.hpp"

namespace {

using test::args;

constexpr const char* kBadScalar = "QUARNA:imagesci:netcdf:badScalarArgument";
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

enum class Outcome { Value, NegativeOverflow, PositiveOverflow };

// Every target seen through one type wide enough to hold all their values exactly.
template <class T>
long double convertAs(const qvArray* a) {
  return static_cast<long double>(getScalar<T>(a, "x"));
}

struct RangeCase {
  const char* label;
  long double (*convert)(const qvArray*);
  std::function<qvArrayPtr()> source;
  Outcome outcome;
  long double expected = 0;
};

template <class T>
std::function<qvArrayPtr()> src(T v) {
  return [v] { return test::scalar<T>(v); };
}
auto d(double v) { return src<double>(v); }
auto s(float v) { return src<float>(v); }

void runRangeCases(const std::vector<RangeCase>& cases) {
  for (const RangeCase& c : cases) {
    SCOPED_TRACE(c.label);
    const qvArrayPtr a = c.source();
    switch (c.outcome) {
      case Outcome::Value:
        EXPECT_EQ(c.convert(a.get()), c.expected);
        break;
      case Outcome::NegativeOverflow:
        EXPECT_THROW(c.convert(a.get()), boost::numeric::negative_overflow);
        break;
      case Outcome::PositiveOverflow:
        EXPECT_THROW(c.convert(a.get()), boost::numeric::positive_overflow);
        break;
    }
  }
}

constexpr auto V = Outcome::Value;
constexpr auto NEG = Outcome::NegativeOverflow;
constexpr auto POS = Outcome::PositiveOverflow;

// Representative bounds: truncation, each overflow direction, from doubles, singles and
// integer classes.
TEST(GetScalar, RangeBoundsOfEveryTarget) {
  const auto i = convertAs<int>;
  const auto z = convertAs<std::size_t>;
  const auto u = convertAs<unsigned long long>;
  const auto l = convertAs<long long>;
  const auto u16 = convertAs<unsigned short>;
  const auto i8 = convertAs<signed char>;
  const auto dbl = convertAs<double>;
  const auto flt = convertAs<float>;
  constexpr double kFltMax = 3.4028234663852886e38;
  runRangeCases({
      {"3.9", i, d(3.9), V, 3},
      {"-3.9", i, d(-3.9), V, -3},
      {"2^31", i, d(2147483648.0), POS},
      {"-2147483649", i, d(-2147483649.0), NEG},
      {"single 2^31", i, s(2147483648.0f), POS},
      {"uint32 max", i, src<std::uint32_t>(4294967295u), POS},
      {"int8 -128", i, src<std::int8_t>(-128), V, -128},
      {"size_t -0.5", z, d(-0.5), V, 0},
      {"size_t -1", z, d(-1.0), NEG},
      {"size_t 2^64", z, d(18446744073709551616.0), POS},
      {"size_t uint64 max", z, src<std::uint64_t>(UINT64_MAX), V, 18446744073709551615.0L},
      {"ull int64 -1", u, src<std::int64_t>(-1), NEG},
      {"-2^63", l, d(-9223372036854775808.0), NEG},
      {"u16 int32 70000", u16, src<std::int32_t>(70000), POS},
      {"i8 -128.9", i8, d(-128.9), V, -128},
      {"i8 uint8 128", i8, src<std::uint8_t>(128), POS},
      {"double from uint64 max", dbl, src<std::uint64_t>(UINT64_MAX), V, 18446744073709551616.0L},
      {"float above FLT_MAX", flt, d(std::nextafter(kFltMax, kInf)), POS},
  });
}

TEST(GetScalar, EveryNumericClassIsAccepted) {
  const std::vector<std::function<qvArrayPtr()>> sources = {
      src<double>(7),       src<float>(7),         src<std::int8_t>(7),  src<std::uint8_t>(7),
      src<std::int16_t>(7), src<std::uint16_t>(7), src<std::int32_t>(7), src<std::uint32_t>(7),
      src<std::int64_t>(7), src<std::uint64_t>(7)};
  for (const auto& make : sources) {
    const qvArrayPtr a = make();
    SCOPED_TRACE(qvGetClassID(a.get()));
    EXPECT_EQ(getScalar<int>(a.get(), "ncid"), 7);
    EXPECT_EQ(getScalar<double>(a.get(), "x"), 7.0);
    EXPECT_EQ(getScalar<signed char>(a.get(), "x"), 7);
  }
}

TEST(GetScalar, NonFiniteOnlyForFillValue) {
  for (const double v : {kNaN, kInf, -kInf}) {
    SCOPED_TRACE(v);
    const qvArrayPtr dv = test::scalar<double>(v);
    const qvArrayPtr sv = test::scalar<float>(static_cast<float>(v));
    EXPECT_MSGID(getScalar<int>(dv.get(), "ncid"), kBadScalar, args("ncid", "numeric"));
    EXPECT_MSGID(getScalar<double>(dv.get(), "value"), kBadScalar, args("value", "numeric"));
    EXPECT_MSGID(getScalar<std::size_t>(sv.get(), "len"), kBadScalar, args("len", "numeric"));
    // The exception is exact and case-sensitive.
    EXPECT_MSGID(getScalar<double>(dv.get(), "fillvalue"), kBadScalar,
                 args("fillvalue", "numeric"));
  }
  const qvArrayPtr nan = test::scalar<double>(kNaN);
  const qvArrayPtr inf = test::scalar<double>(kInf);
  const qvArrayPtr negInf = test::scalar<double>(-kInf);
  const qvArrayPtr singleInf = test::scalar<float>(std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(getScalar<double>(nan.get(), "FILLVALUE", ScalarUse::FillValue)));
  EXPECT_TRUE(std::isnan(getScalar<float>(nan.get(), "FILLVALUE", ScalarUse::FillValue)));
  EXPECT_EQ(getScalar<double>(inf.get(), "FILLVALUE", ScalarUse::FillValue), kInf);
  EXPECT_EQ(getScalar<float>(singleInf.get(), "FILLVALUE", ScalarUse::FillValue), std::numeric_limits<float>::infinity());
  // A double Inf does not fit a single: the float range check is strict.
  EXPECT_THROW(getScalar<float>(inf.get(), "FILLVALUE", ScalarUse::FillValue), boost::numeric::positive_overflow);
  EXPECT_THROW(getScalar<int>(inf.get(), "FILLVALUE", ScalarUse::FillValue), boost::numeric::positive_overflow);
  EXPECT_THROW(getScalar<short>(negInf.get(), "FILLVALUE", ScalarUse::FillValue), boost::numeric::negative_overflow);
  // NaN passes the integer range check; it has no integer value and gives 0.
  EXPECT_EQ(getScalar<int>(nan.get(), "FILLVALUE", ScalarUse::FillValue), 0);
}

TEST(GetScalar, NotOneElement) {
  const qvArrayPtr empty = test::zeros(qvDOUBLE_CLASS, {1, 0});
  const qvArrayPtr emptyCols = test::zeros(qvDOUBLE_CLASS, {0, 3});
  const qvArrayPtr pair = test::array<double>({1, 2});
  constexpr const char* kFillBad = "QUARNA:imagesci:netcdf:fillValueBadArgument";
  EXPECT_MSGID(getScalar<int>(empty.get(), "ncid"), kBadScalar, args("ncid", "numeric"));
  EXPECT_MSGID(getScalar<int>(emptyCols.get(), "ncid"), kBadScalar, args("ncid", "numeric"));
  EXPECT_MSGID(getScalar<int>(pair.get(), "ncid"), kBadScalar, args("ncid", "numeric"));
  EXPECT_MSGID(getScalar<double>(empty.get(), "FILLVALUE", ScalarUse::FillValue), kFillBad, args());
  EXPECT_MSGID(getScalar<float>(pair.get(), "FILLVALUE", ScalarUse::FillValue), kFillBad, args());
  EXPECT_MSGID(getScalar<int>(empty.get(), "FILLVALUE", ScalarUse::FillValue), kBadScalar, args("FILLVALUE", "numeric"));
  EXPECT_MSGID(getScalar<double>(pair.get(), "value"), kBadScalar, args("value", "numeric"));
}

TEST(GetScalar, NonNumericAndComplexRefused) {
  std::vector<std::pair<const char*, qvArrayPtr>> refused;
  refused.emplace_back("char '5'", test::charRow(std::string("5")));
  refused.emplace_back("logical", test::logicalScalar(true));
  refused.emplace_back("cell", test::emptyCell());
  refused.emplace_back("string", test::stringScalar(u"5"));
  refused.emplace_back("struct", test::structScalar());
  refused.emplace_back("complex", test::complexScalar(5, 1));
  refused.emplace_back("complex, zero imaginary part", test::complexScalar(5, 0));
  for (const auto& c : refused) {
    SCOPED_TRACE(c.first);
    const qvArray* a = c.second.get();
    EXPECT_MSGID(getScalar<int>(a, "varid"), kBadScalar, args("varid", "numeric"));
    EXPECT_MSGID(getScalar<double>(a, "FILLVALUE", ScalarUse::FillValue), kBadScalar, args("FILLVALUE", "numeric"));
  }
}

TEST(GetLogicalFlag, OnlyLogicalScalars) {
  const qvArrayPtr yes = test::logicalScalar(true);
  const qvArrayPtr no = test::logicalScalar(false);
  EXPECT_TRUE(getLogicalFlag(yes.get(), "shuffle"));
  EXPECT_FALSE(getLogicalFlag(no.get(), "shuffle"));

  const qvArrayPtr one = test::scalar<double>(1);
  const qvArrayPtr pair = test::zeros(qvLOGICAL_CLASS, {1, 2});
  const qvArrayPtr empty = test::zeros(qvLOGICAL_CLASS, {0, 0});
  constexpr const char* kExpectedLogical = "QUARNA:imagesci:netcdf:expectedLogicalType";
  for (const qvArray* a : {one.get(), pair.get(), empty.get()}) {
    EXPECT_MSGID(getLogicalFlag(a, "shuffle"), kExpectedLogical, args("shuffle"));
  }
}

TEST(CheckFiniteForInteger, LooksAtTheFirstCountElements) {
  const qvArrayPtr values = test::array<double>({1, 2, kNaN, 4, kInf});
  constexpr const char* kNotFinite = "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType";
  EXPECT_NO_THROW(checkFiniteForInteger(values.get(), 2, "chunkSize"));
  EXPECT_NO_THROW(checkFiniteForInteger(values.get(), 0, "chunkSize"));
  EXPECT_NO_THROW(checkFiniteForInteger(values.get(), -1, "chunkSize"));
  EXPECT_MSGID(checkFiniteForInteger(values.get(), 3, "chunkSize"), kNotFinite, args("chunkSize"));

  const qvArrayPtr inf = test::array<double>({0, -kInf});
  EXPECT_MSGID(checkFiniteForInteger(inf.get(), 2, "dimids"), kNotFinite, args("dimids"));
}

}  // namespace
