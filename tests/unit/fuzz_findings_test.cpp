// Faults the fuzzing of the entry point showed (crashes, exceptions that are not message-ID
// errors, huge allocations, files left open), each as the calls that showed it, with what
// they must give now.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstdint>
#include <limits>
#include <string>

#include "gateway/registry.hpp"

#include "test_support.hpp"

namespace {

using test::args;
using test::callGateway;
using test::charRow;
using test::scalar;

constexpr const char* kInvalidChar = "QUARNA:imagesci:netcdf:invalidCharErr";

double number(const qvArrayPtr& a) { return *static_cast<const double*>(qvGetData(a.get())); }

// Text with a lone surrogate has no UTF-8 form; the converter's exception used to escape
// the entry point.
TEST(FuzzFindings, LoneSurrogatesInNamesAndTextAreInvalidCharacters) {
  const test::ScratchDir dir;
  const qvArrayPtr ncid = std::move(
      callGateway("create", {charRow(dir.file("s.nc")).get(), charRow("netcdf4").get()})[0]);
  const qvArrayPtr lead = charRow(std::u16string(u"a\xd800"));
  const qvArrayPtr trail = charRow(std::u16string(u"\xdc00z"));
  const qvArrayPtr global = scalar<double>(NC_GLOBAL);
  EXPECT_MSGID(callGateway("defDim", {ncid.get(), lead.get(), scalar<double>(2).get()}),
               kInvalidChar, args());
  EXPECT_MSGID(callGateway("putAttText", {ncid.get(), global.get(), charRow("t").get(),
                                          scalar<double>(NC_CHAR).get(), trail.get()}),
               kInvalidChar, args());
  qvArrayPtr texts = createStringArray(1, 2);
  setStringElement(texts.get(), 1, u"\xd800");
  EXPECT_MSGID(callGateway("putAttString", {ncid.get(), global.get(), charRow("s").get(),
                                            scalar<double>(NC_STRING).get(), texts.get()}),
               kInvalidChar, args());
  EXPECT_MSGID(callGateway("parameter", {lead.get()}), kInvalidChar, args());
  // Nothing of the refused calls reached the file, and it still works.
  const test::Outputs info = callGateway("inq", {ncid.get()});
  EXPECT_EQ(number(info[0]), 0.0);
  EXPECT_EQ(number(info[2]), 0.0);
  callGateway("close", {ncid.get()});
}

// netCDF-C 4.9.0 crashed on these modes: creating a file of an unregistered user-defined
// format, and opening a path as an in-memory image.
TEST(FuzzFindings, ModesThatCrashNetcdfAreRefused) {
  const test::ScratchDir dir;
  const qvArrayPtr path = charRow(dir.file("m.nc"));
  const qvArrayPtr zero = scalar<double>(0);
  for (const int mode : {NC_UDF0, NC_UDF1, NC_UDF0 | NC_NETCDF4, NC_UDF1 | NC_64BIT_OFFSET}) {
    SCOPED_TRACE(mode);
    const qvArrayPtr m = scalar<double>(mode);
    EXPECT_MSGID(callGateway("create", {path.get(), m.get()}),
                 "QUARNA:imagesci:netcdf:fileCreateErr", args());
    EXPECT_MSGID(callGateway("pCreate", {path.get(), m.get(), zero.get(), zero.get()}),
                 "QUARNA:imagesci:netcdf:fileCreateErr", args());
  }
  const qvArrayPtr created = std::move(callGateway("create", {path.get(), zero.get()})[0]);
  callGateway("close", {created.get()});
  const qvArrayPtr inMemory = scalar<double>(NC_INMEMORY);
  const std::string message = nc_strerror(NC_EINVAL) + 8;
  EXPECT_MSGID(callGateway("open", {path.get(), inMemory.get()}),
               "QUARNA:imagesci:netcdf:libraryFailure", args("open", "NC_EINVAL", message));
  EXPECT_MSGID(callGateway("pOpen", {path.get(), inMemory.get(), zero.get()}),
               "QUARNA:imagesci:netcdf:libraryFailure", args("pOpen", "NC_EINVAL", message));
  const qvArrayPtr opened = std::move(callGateway("open", {path.get(), zero.get()})[0]);
  callGateway("close", {opened.get()});
}

// An attribute of an invalid type leaves a netCDF-4 file that netCDF-C 4.9.0 refuses to
// close; unload used to leave such a file open.
TEST(FuzzFindings, UnloadReleasesAFileThatRefusesToClose) {
  const test::ScratchDir dir;
  const qvArrayPtr ncid = std::move(
      callGateway("create", {charRow(dir.file("u.nc")).get(), charRow("netcdf4").get()})[0]);
  const int id = static_cast<int>(number(ncid));
  EXPECT_MSGID(
      callGateway("putAttInt64", {ncid.get(), scalar<double>(NC_GLOBAL).get(), charRow("a").get(),
                                  scalar<double>(74).get(), scalar<std::int64_t>(-1).get()}),
      "QUARNA:imagesci:netcdf:libraryFailure",
      args("putAttInt64", "NC_EBADTYPID", nc_strerror(NC_EBADTYPID) + 8));
  const qvWarningHandler previous =
      qvSetWarningHandler([](const resource_core::BaseMsgID&, const std::u16string&) {});
  QNTerminate();
  qvSetWarningHandler(previous);
  int format = 0;
  EXPECT_EQ(nc_inq_format(id, &format), NC_EBADID);
  for (const int open : OpenFileRegistry::ids()) OpenFileRegistry::remove(open);
}

// nc_abort given the id of a group a netCDF-4 file does not have failed, but netCDF-C
// forgot the file anyway and left it open: closing it was no longer possible.
TEST(FuzzFindings, AbortOfAGroupIdTheFileLacksLeavesTheFileUsable) {
  const test::ScratchDir dir;
  const std::string path = dir.file("a.nc");
  for (const char* mode : {"netcdf4", "clobber"}) {
    SCOPED_TRACE(mode);
    const qvArrayPtr ncid =
        std::move(callGateway("create", {charRow(path).get(), charRow(mode).get()})[0]);
    const qvArrayPtr missing = scalar<double>(number(ncid) + 4);
    EXPECT_MSGID(callGateway("abort", {missing.get()}), "QUARNA:imagesci:netcdf:libraryFailure",
                 args("abort", "NC_EBADID", nc_strerror(NC_EBADID) + 8));
    EXPECT_NO_THROW(callGateway("close", {ncid.get()}));
  }
}

// A COUNT past the end of a dimension used to size the result first: 2^62 elements failed
// the host's allocation (std::bad_alloc), 2^31 asked for 16 GiB before netCDF-C refused.
TEST(FuzzFindings, SubsetReadsRefuseCountsPastTheDimensionBeforeAllocating) {
  const test::ScratchDir dir;
  const std::string path = dir.file("c.nc");
  int nc = -1, x = -1, t = -1, v = -1, r = -1;
  ASSERT_EQ(nc_create(path.c_str(), NC_CLOBBER, &nc), NC_NOERR);
  ASSERT_EQ(nc_def_dim(nc, "x", 4, &x), NC_NOERR);
  ASSERT_EQ(nc_def_dim(nc, "t", NC_UNLIMITED, &t), NC_NOERR);
  ASSERT_EQ(nc_def_var(nc, "v", NC_DOUBLE, 1, &x, &v), NC_NOERR);
  const int rdims[] = {t, x};
  ASSERT_EQ(nc_def_var(nc, "r", NC_INT, 2, rdims, &r), NC_NOERR);
  ASSERT_EQ(nc_enddef(nc), NC_NOERR);
  // netCDF-C's own answer to a COUNT one past the end.
  const std::size_t start[] = {0}, five[] = {5};
  double buffer[5] = {};
  EXPECT_EQ(nc_get_vara_double(nc, v, start, five, buffer), NC_EEDGE);
  ASSERT_EQ(nc_close(nc), NC_NOERR);

  const qvArrayPtr ncid =
      std::move(callGateway("open", {charRow(path).get(), charRow("nowrite").get()})[0]);
  const qvArrayPtr varid = scalar<double>(0), recid = scalar<double>(1);
  const qvArrayPtr zero = test::array<double>({0}), zeros = test::array<double>({0, 0});
  const std::string edge = nc_strerror(NC_EEDGE) + 8;
  for (const double count : {5.0, 2147483648.0, 4611686018427387904.0}) {
    SCOPED_TRACE(count);
    const qvArrayPtr c = test::array<double>({count});
    EXPECT_MSGID(callGateway("getVaraDouble", {ncid.get(), varid.get(), zero.get(), c.get()}),
                 "QUARNA:imagesci:netcdf:libraryFailure", args("getVaraDouble", "NC_EEDGE", edge));
    EXPECT_MSGID(callGateway("getVarsString", {ncid.get(), varid.get(), zero.get(), c.get(),
                                               test::array<double>({1}).get()}),
                 "QUARNA:imagesci:netcdf:libraryFailure", args("getVarsString", "NC_EEDGE", edge));
  }
  // Along the unlimited dimension the length is the number of records, none here: a small
  // count gets netCDF-C's own answer, a huge one the same before allocating.
  for (const double records : {4.0, 2147483648.0}) {
    SCOPED_TRACE(records);
    EXPECT_MSGID(callGateway("getVaraInt", {ncid.get(), recid.get(), zeros.get(),
                                            test::array<double>({records, 1}).get()}),
                 "QUARNA:imagesci:netcdf:libraryFailure",
                 args("getVaraInt", "NC_EINVALCOORDS", nc_strerror(NC_EINVALCOORDS) + 8));
  }
  // A start past the end is still reported as such, and a count within bounds still reads.
  EXPECT_MSGID(
      callGateway("getVaraDouble", {ncid.get(), varid.get(), test::array<double>({9}).get(),
                                    test::array<double>({9}).get()}),
      "QUARNA:imagesci:netcdf:libraryFailure",
      args("getVaraDouble", "NC_EINVALCOORDS", nc_strerror(NC_EINVALCOORDS) + 8));
  const test::Outputs all = callGateway(
      "getVaraDouble", {ncid.get(), varid.get(), zero.get(), test::array<double>({4}).get()});
  EXPECT_EQ(qvGetNumberOfElements(all[0].get()), 4u);
  callGateway("close", {ncid.get()});
}

// Switching fill values off for a variable-length variable made netCDF-C 4.9.0 write a
// file that HDF5 cannot finish: close failed and the file descriptor stayed open.
TEST(FuzzFindings, FillValuesOfVariableLengthDataStayOn) {
  const test::ScratchDir dir;
  const std::string path = dir.file("f.nc");
  const qvArrayPtr ncid =
      std::move(callGateway("create", {charRow(path).get(), charRow("netcdf4").get()})[0]);
  const qvArrayPtr x = std::move(
      callGateway("defDim", {ncid.get(), charRow("x").get(), scalar<double>(2).get()})[0]);
  const qvArrayPtr vlen = std::move(
      callGateway("defVlen", {ncid.get(), charRow("vi").get(), scalar<double>(NC_INT).get()})[0]);
  const qvArrayPtr varid =
      std::move(callGateway("defVar", {ncid.get(), charRow("v").get(), vlen.get(), x.get()})[0]);
  const qvArrayPtr noFill = test::logicalScalar(true);
  const std::string invalid = nc_strerror(NC_EINVAL) + 8;
  EXPECT_MSGID(callGateway("defVarFill", {ncid.get(), varid.get(), noFill.get(), noFill.get()}),
               "QUARNA:imagesci:netcdf:libraryFailure", args("defVarFill", "NC_EINVAL", invalid));
  // What netCDF-C itself answers for strings.
  const qvArrayPtr s = std::move(callGateway(
      "defVar", {ncid.get(), charRow("s").get(), scalar<double>(NC_STRING).get(), x.get()})[0]);
  EXPECT_MSGID(callGateway("defVarFill", {ncid.get(), s.get(), noFill.get(), noFill.get()}),
               "QUARNA:imagesci:netcdf:libraryFailure", args("defVarFill", "NC_EINVAL", invalid));
  const test::Outputs fill = callGateway("inqVarFill", {ncid.get(), varid.get()});
  EXPECT_FALSE(qvGetLogicals(fill[0].get())[0]);
  EXPECT_NO_THROW(callGateway("close", {ncid.get()}));
  const qvArrayPtr reopened =
      std::move(callGateway("open", {charRow(path).get(), charRow("nowrite").get()})[0]);
  callGateway("close", {reopened.get()});
}

// A netCDF-4 dimension sharing its name with a variable, group or type of its group left
// netCDF-C 4.9.0 with a file it could neither close nor abort. Classic files keep the
// name spaces apart.
TEST(FuzzFindings, Netcdf4DimensionsShareNoNames) {
  const test::ScratchDir dir;
  const std::string inUse = nc_strerror(NC_ENAMEINUSE) + 8;
  for (const char* mode : {"netcdf4", "clobber"}) {
    SCOPED_TRACE(mode);
    const std::string path = dir.file(std::string(mode) + ".nc");
    const qvArrayPtr ncid =
        std::move(callGateway("create", {charRow(path).get(), charRow(mode).get()})[0]);
    const qvArrayPtr x = std::move(
        callGateway("defDim", {ncid.get(), charRow("x").get(), scalar<double>(4).get()})[0]);
    callGateway("defVar", {ncid.get(), charRow("s").get(), scalar<double>(NC_INT).get(), x.get()});
    const bool netcdf4 = std::string(mode) == "netcdf4";
    if (netcdf4) {
      EXPECT_MSGID(callGateway("defDim", {ncid.get(), charRow("s").get(), scalar<double>(2).get()}),
                   "QUARNA:imagesci:netcdf:libraryFailure", args("defDim", "NC_ENAMEINUSE", inUse));
      EXPECT_MSGID(callGateway("renameDim", {ncid.get(), x.get(), charRow("s").get()}),
                   "QUARNA:imagesci:netcdf:libraryFailure",
                   args("renameDim", "NC_ENAMEINUSE", inUse));
      EXPECT_MSGID(callGateway("defGrp", {ncid.get(), charRow("x").get()}),
                   "QUARNA:imagesci:netcdf:libraryFailure", args("defGrp", "NC_ENAMEINUSE", inUse));
      EXPECT_MSGID(
          callGateway("defVlen", {ncid.get(), charRow("x").get(), scalar<double>(NC_INT).get()}),
          "QUARNA:imagesci:netcdf:libraryFailure", args("defVlen", "NC_ENAMEINUSE", inUse));
      // A subgroup may still name a dimension like one of its parent's.
      const qvArrayPtr g = std::move(callGateway("defGrp", {ncid.get(), charRow("g").get()})[0]);
      callGateway("defDim", {g.get(), charRow("s").get(), scalar<double>(2).get()});
    } else {
      callGateway("defDim", {ncid.get(), charRow("s").get(), scalar<double>(2).get()});
    }
    EXPECT_NO_THROW(callGateway("close", {ncid.get()}));
    const qvArrayPtr reopened =
        std::move(callGateway("open", {charRow(path).get(), charRow("nowrite").get()})[0]);
    EXPECT_EQ(number(callGateway("inq", {reopened.get()})[0]), netcdf4 ? 1.0 : 2.0);
    callGateway("close", {reopened.get()});
  }
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

  const qvArrayPtr ncid =
      std::move(callGateway("open", {charRow(path).get(), charRow("write").get()})[0]);
  const std::uint64_t wraps = (std::uint64_t{1} << 63) + 1;
  EXPECT_MSGID(callGateway("putVaraInt", {ncid.get(), scalar<double>(0).get(),
                                          test::array<std::uint64_t>({0, 0}).get(),
                                          test::array<std::uint64_t>({wraps, wraps}).get(),
                                          scalar<std::int32_t>(7).get()}),
               "QUARNA:imagesci:netcdf:countNotEqualToData",
               args(std::numeric_limits<long>::max(), 1));
  const test::Outputs dim = callGateway("inqDim", {ncid.get(), scalar<double>(0).get()});
  EXPECT_EQ(number(dim[1]), 0.0);
  callGateway("close", {ncid.get()});
}

}  // namespace
