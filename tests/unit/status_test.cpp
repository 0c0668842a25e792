#include "gateway/status.hpp"

#include <gtest/gtest.h>
#include <netcdf.h>

#include <string>

#include "gateway/operation.hpp"
#include "test_support.hpp"

namespace {

using test::args;

const OperationRow kRow{0, "someOperation", 0, nullptr};

TEST(CheckStatus, ClassifiesEveryCode) {
  EXPECT_NO_THROW(checkStatus(NC_NOERR, kRow));
  EXPECT_MSGID(checkStatus(NC_EBADID, kRow), "QUARNA:imagesci:netcdf:libraryFailure",
               args("someOperation", "NC_EBADID", "Not a valid ID"));
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

TEST(NetcdfMessage, StripsOnlyALeadingPrefix) {
  EXPECT_EQ(netcdfMessage(NC_EINVAL), "Invalid argument");
  // System errors come from strerror, without the prefix.
  EXPECT_EQ(netcdfMessage(2), nc_strerror(2));
}

}  // namespace
