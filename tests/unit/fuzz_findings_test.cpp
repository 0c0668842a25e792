// Faults found by fuzzing where a test says more than a replayed input can: unload, the exact
// refusal of modes that crash netCDF-C, a count that wraps. The other findings are inputs of
// the corpus (tests/fuzz/corpus/regression-*), replayed by every build.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "gateway/registry.hpp"

#include "test_support.hpp"

namespace {

using test::args;
using test::call;
using test::call1;
using test::number;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

// netCDF-C's message for a status, without its "NetCDF: " prefix.
std::string message(int status) { return nc_strerror(status) + 8; }

// netCDF-C 4.9.0 crashed on these modes: creating a file of an unregistered user-defined
// format, and opening a path as an in-memory image.
TEST(FuzzFindings, ModesThatCrashNetcdfAreRefused) {
  const test::ScratchDir dir;
  const std::string path = dir.file("m.nc");
  for (const int mode : {NC_UDF0, NC_UDF1, NC_UDF0 | NC_NETCDF4, NC_UDF1 | NC_64BIT_OFFSET}) {
    SCOPED_TRACE(mode);
    EXPECT_MSGID(call("create", {path, mode}), "QUARNA:imagesci:netcdf:fileCreateErr", args());
    EXPECT_MSGID(call("pCreate", {path, mode, 0, 0}), "QUARNA:imagesci:netcdf:fileCreateErr",
                 args());
  }
  call("close", {call1("create", {path, 0})});
  EXPECT_MSGID(call("open", {path, NC_INMEMORY}), kLibraryFailure,
               args("open", "NC_EINVAL", message(NC_EINVAL)));
  EXPECT_MSGID(call("pOpen", {path, NC_INMEMORY, 0}), kLibraryFailure,
               args("pOpen", "NC_EINVAL", message(NC_EINVAL)));
  call("close", {call1("open", {path, 0})});
}

// An attribute of an invalid type leaves a netCDF-4 file that netCDF-C 4.9.0 refuses to
// close; unload used to leave such a file open.
TEST(FuzzFindings, UnloadReleasesAFileThatRefusesToClose) {
  const test::ScratchDir dir;
  const qvArrayPtr ncid = call1("create", {dir.file("u.nc"), "netcdf4"});
  const int id = static_cast<int>(number(ncid));
  EXPECT_MSGID(call("putAttInt64", {ncid, NC_GLOBAL, "a", 74, test::scalar<std::int64_t>(-1)}),
               kLibraryFailure, args("putAttInt64", "NC_EBADTYPID", message(NC_EBADTYPID)));
  const qvWarningHandler previous =
      qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {});
  QNTerminate();
  qvSetWarningHandler(previous);
  int format = 0;
  EXPECT_EQ(nc_inq_format(id, &format), NC_EBADID);
  for (const int open : OpenFileRegistry::ids()) OpenFileRegistry::remove(open);
}

// Found while choosing the fuzzer's special values: counts whose product wraps around 64
// bits matched a one-element data block, and netCDF-C (HDF5 wrapping the same way) then
// grew both dimensions to 2^63 + 1.
TEST(FuzzFindings, SelectionsTooLargeToCountAreNotTheData) {
  const test::ScratchDir dir;
  const std::string path = dir.file("w.nc");
  int nc = -1, a = -1, b = -1, v = -1;
  ASSERT_EQ(nc_create(path.c_str(), NC_CLOBBER | NC_NETCDF4, &nc), NC_NOERR);
  ASSERT_EQ(nc_def_dim(nc, "a", NC_UNLIMITED, &a), NC_NOERR);
  ASSERT_EQ(nc_def_dim(nc, "b", NC_UNLIMITED, &b), NC_NOERR);
  const int dims[] = {a, b};
  ASSERT_EQ(nc_def_var(nc, "v", NC_INT, 2, dims, &v), NC_NOERR);
  ASSERT_EQ(nc_close(nc), NC_NOERR);

  const qvArrayPtr ncid = call1("open", {path, "write"});
  const std::uint64_t wraps = (std::uint64_t{1} << 63) + 1;
  EXPECT_MSGID(call("putVaraInt",
                    {ncid, 0, test::array<std::uint64_t>({0, 0}),
                     test::array<std::uint64_t>({wraps, wraps}), test::scalar<std::int32_t>(7)}),
               "QUARNA:imagesci:netcdf:countNotEqualToData",
               args(std::numeric_limits<long>::max(), 1));
  EXPECT_EQ(number(call("inqDim", {ncid, 0})[1]), 0.0);
  call("close", {ncid});
}

}  // namespace
