#include "gateway/status.hpp"

#include <gtest/gtest.h>
#include <netcdf.h>

#include <string>

#include "gateway/operation.hpp"
#include "test_support.hpp"

namespace {

using test::args;

const OperationRow kRow{0, "someOperation", 0, nullptr};

TEST(CheckStatus, ZeroReturns) { EXPECT_NO_THROW(checkStatus(NC_NOERR, kRow)); }

TEST(CheckStatus, BadIdCarriesOperationNameAndStrippedMessage) {
  EXPECT_MSGID(checkStatus(NC_EBADID, kRow), "QUARNA:imagesci:netcdf:libraryFailure",
               args("someOperation", "NC_EBADID", "Not a valid ID"));
}

TEST(CheckStatus, ClassifiesEveryCode) {
  constexpr const char* kDap = "QUARNA:imagesci:netcdf:librarydapFailure";
  constexpr const char* kLibrary = "QUARNA:imagesci:netcdf:libraryFailure";
  struct Case {
    int status;
    const char* id;
  };
  // Both remote-access runs at their ends; -69 and -65 and -76 just outside them.
  const Case cases[] = {
      {-75, kDap},    {-72, kDap},      {-70, kDap},      {-68, kDap},     {-67, kDap},
      {-66, kDap},    {-69, kLibrary},  {-65, kLibrary},  {-76, kLibrary}, {-33, kLibrary},
      {-1, kLibrary}, {-128, kLibrary}, {-130, kLibrary}, {2, kLibrary},   {-90, kLibrary},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.status);
    EXPECT_MSGID(checkStatus(c.status, kRow), c.id,
                 args("someOperation", errorName(c.status), netcdfMessage(c.status)));
  }
  EXPECT_MSGID(checkStatus(NC_EVARSIZE, kRow), "QUARNA:imagesci:netcdf:formatConstraintsViolation",
               args());
}

TEST(ErrorName, NamedAndDecimal) {
  EXPECT_EQ(errorName(-1), "NC2_ERR");
  EXPECT_EQ(errorName(-69), "NC_ENODATA");
  EXPECT_EQ(errorName(-76), "NC_ETRANSLATION");
  EXPECT_EQ(errorName(-101), "NC_EHDFERR");
  EXPECT_EQ(errorName(-128), "NC_ENOTBUILT");
  EXPECT_EQ(errorName(-77), "-77");
  EXPECT_EQ(errorName(-100), "-100");
  EXPECT_EQ(errorName(-129), "-129");
  EXPECT_EQ(errorName(-130), "-130");
  EXPECT_EQ(errorName(0), "0");
  EXPECT_EQ(errorName(2), "2");
}

TEST(ErrorName, ExactlyTheSeventyThreeCodes) {
  int named = 0;
  for (int status = -300; status <= 300; ++status) {
    if (errorName(status) != std::to_string(status)) {
      ++named;
      EXPECT_TRUE(status == -1 || (status <= -33 && status >= -76) ||
                  (status <= -101 && status >= -128))
          << status;
    }
  }
  EXPECT_EQ(named, 73);
}

TEST(NetcdfMessage, StripsOnlyALeadingPrefix) {
  EXPECT_EQ(netcdfMessage(NC_EINVAL), "Invalid argument");
  // System errors come from strerror, without the prefix.
  EXPECT_EQ(netcdfMessage(2), nc_strerror(2));
  EXPECT_EQ(std::string(nc_strerror(2)).rfind("NetCDF:", 0), std::string::npos);
  for (int status = -140; status <= 0; ++status) {
    const std::string raw = nc_strerror(status);
    SCOPED_TRACE(raw);
    if (raw.rfind("NetCDF: ", 0) == 0) {
      EXPECT_EQ(netcdfMessage(status), raw.substr(8));
    } else {
      EXPECT_EQ(netcdfMessage(status), raw);
    }
  }
}

}  // namespace
