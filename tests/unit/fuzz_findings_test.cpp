// Faults the fuzzing of the entry point showed (crashes, exceptions that are not message-ID
// errors, huge allocations, files left open), each as the calls that showed it, with what
// they must give now.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cerrno>
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

constexpr const char* kInvalidChar = "QUARNA:imagesci:netcdf:invalidCharErr";
constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

// netCDF-C's message for a status, without its "NetCDF: " prefix.
std::string message(int status) { return nc_strerror(status) + 8; }

// Text with a lone surrogate has no UTF-8 form; the converter's exception used to escape
// the entry point.
TEST(FuzzFindings, LoneSurrogatesInNamesAndTextAreInvalidCharacters) {
  const test::ScratchDir dir;
  const qvArrayPtr ncid = call1("create", {dir.file("s.nc"), "netcdf4"});
  const std::u16string lead(u"a\xd800"), trail(u"\xdc00z");
  EXPECT_MSGID(call("defDim", {ncid, lead, 2}), kInvalidChar, args());
  EXPECT_MSGID(call("putAttText", {ncid, NC_GLOBAL, "t", NC_CHAR, trail}), kInvalidChar, args());
  qvArrayPtr texts = createStringArray(1, 2);
  setStringElement(texts.get(), 1, u"\xd800");
  EXPECT_MSGID(call("putAttString", {ncid, NC_GLOBAL, "s", NC_STRING, texts}), kInvalidChar,
               args());
  EXPECT_MSGID(call("parameter", {lead}), kInvalidChar, args());
  // Nothing of the refused calls reached the file, and it still works.
  const test::Outputs info = call("inq", {ncid});
  EXPECT_EQ(number(info[0]), 0.0);
  EXPECT_EQ(number(info[2]), 0.0);
  call("close", {ncid});
}

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

// nc_abort given the id of a group a netCDF-4 file does not have failed, but netCDF-C
// forgot the file anyway and left it open: closing it was no longer possible.
TEST(FuzzFindings, AbortOfAGroupIdTheFileLacksLeavesTheFileUsable) {
  const test::ScratchDir dir;
  const std::string path = dir.file("a.nc");
  for (const char* mode : {"netcdf4", "clobber"}) {
    SCOPED_TRACE(mode);
    const qvArrayPtr ncid = call1("create", {path, mode});
    EXPECT_MSGID(call("abort", {number(ncid) + 4}), kLibraryFailure,
                 args("abort", "NC_EBADID", message(NC_EBADID)));
    EXPECT_NO_THROW(call("close", {ncid}));
  }
}

// Creating a file over one that is open here truncated it underneath netCDF-C, which then
// crashed closing it. HDF5 refuses that for netCDF-4 with EACCES; so does netcdflib now,
// whatever the format of either file.
TEST(FuzzFindings, CreateOverAFileOpenHereIsRefused) {
  const test::ScratchDir dir;
  for (const char* format : {"netcdf4", "clobber"}) {
    SCOPED_TRACE(format);
    const std::string path = dir.file(std::string(format) + ".nc");
    call("close", {call1("create", {path, format})});
    const qvArrayPtr ncid = call1("open", {path, "nowrite"});
    EXPECT_MSGID(call("create", {path, "clobber"}), kLibraryFailure,
                 args("create", "13", std::strerror(EACCES)));
    EXPECT_MSGID(call("pCreate", {path, "clobber", 0, 65536}), kLibraryFailure,
                 args("pCreate", "13", std::strerror(EACCES)));
    EXPECT_NO_THROW(call("inq", {ncid}));
    EXPECT_NO_THROW(call("close", {ncid}));
    // Once closed, the file may be created anew.
    call("close", {call1("create", {path, "clobber"})});
  }
}

// Numeric attribute data given a vlen of vlens as its type crashed netCDF-C 4.9.0, which
// read the numbers as vlen records.
TEST(FuzzFindings, NumericAttributesOfUserDefinedTypesAreRefused) {
  const test::ScratchDir dir;
  const qvArrayPtr ncid = call1("create", {dir.file("t.nc"), "netcdf4"});
  const qvArrayPtr inner = call1("defVlen", {ncid, "inner", NC_INT});
  const double outer = number(call1("defVlen", {ncid, "outer", inner}));
  for (const double type : {number(inner), outer}) {
    SCOPED_TRACE(type);
    EXPECT_MSGID(call("putAttSchar", {ncid, NC_GLOBAL, "a", type, test::scalar<std::int8_t>(-1)}),
                 kLibraryFailure, args("putAttSchar", "NC_EBADTYPE", message(NC_EBADTYPE)));
  }
  EXPECT_NO_THROW(call("close", {ncid}));
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

  const qvArrayPtr ncid = call1("open", {path, "nowrite"});
  const std::string edge = message(NC_EEDGE);
  for (const double count : {5.0, 2147483648.0, 4611686018427387904.0}) {
    SCOPED_TRACE(count);
    EXPECT_MSGID(call("getVaraDouble", {ncid, 0, 0, count}), kLibraryFailure,
                 args("getVaraDouble", "NC_EEDGE", edge));
    EXPECT_MSGID(call("getVarsString", {ncid, 0, 0, count, 1}), kLibraryFailure,
                 args("getVarsString", "NC_EEDGE", edge));
  }
  // Along the unlimited dimension the length is the number of records, none here: a small
  // count gets netCDF-C's own answer, a huge one the same before allocating.
  for (const double records : {4.0, 2147483648.0}) {
    SCOPED_TRACE(records);
    EXPECT_MSGID(call("getVaraInt",
                      {ncid, 1, test::array<double>({0, 0}), test::array<double>({records, 1})}),
                 kLibraryFailure, args("getVaraInt", "NC_EINVALCOORDS", message(NC_EINVALCOORDS)));
  }
  // A start past the end is still reported as such, and a count within bounds still reads.
  EXPECT_MSGID(call("getVaraDouble", {ncid, 0, 9, 9}), kLibraryFailure,
               args("getVaraDouble", "NC_EINVALCOORDS", message(NC_EINVALCOORDS)));
  EXPECT_EQ(qvGetNumberOfElements(call1("getVaraDouble", {ncid, 0, 0, 4}).get()), 4u);
  call("close", {ncid});
}

// Switching fill values off for a variable-length variable made netCDF-C 4.9.0 write a
// file that HDF5 cannot finish: close failed and the file descriptor stayed open.
TEST(FuzzFindings, FillValuesOfVariableLengthDataStayOn) {
  const test::ScratchDir dir;
  const std::string path = dir.file("f.nc");
  const qvArrayPtr ncid = call1("create", {path, "netcdf4"});
  const qvArrayPtr x = call1("defDim", {ncid, "x", 2});
  const qvArrayPtr varid = call1("defVar", {ncid, "v", call1("defVlen", {ncid, "vi", NC_INT}), x});
  const std::string invalid = message(NC_EINVAL);
  EXPECT_MSGID(call("defVarFill", {ncid, varid, true, true}), kLibraryFailure,
               args("defVarFill", "NC_EINVAL", invalid));
  // What netCDF-C itself answers for strings.
  const qvArrayPtr s = call1("defVar", {ncid, "s", NC_STRING, x});
  EXPECT_MSGID(call("defVarFill", {ncid, s, true, true}), kLibraryFailure,
               args("defVarFill", "NC_EINVAL", invalid));
  EXPECT_FALSE(qvGetLogicals(call1("inqVarFill", {ncid, varid}).get())[0]);
  EXPECT_NO_THROW(call("close", {ncid}));
  call("close", {call1("open", {path, "nowrite"})});
}

// A netCDF-4 dimension sharing its name with a variable, group or type of its group left
// netCDF-C 4.9.0 with a file it could neither close nor abort. Classic files keep the
// name spaces apart.
TEST(FuzzFindings, Netcdf4DimensionsShareNoNames) {
  const test::ScratchDir dir;
  const std::string inUse = message(NC_ENAMEINUSE);
  for (const char* mode : {"netcdf4", "clobber"}) {
    SCOPED_TRACE(mode);
    const std::string path = dir.file(std::string(mode) + ".nc");
    const qvArrayPtr ncid = call1("create", {path, mode});
    const qvArrayPtr x = call1("defDim", {ncid, "x", 4});
    call("defVar", {ncid, "s", NC_INT, x});
    const bool netcdf4 = std::string(mode) == "netcdf4";
    if (netcdf4) {
      EXPECT_MSGID(call("defDim", {ncid, "s", 2}), kLibraryFailure,
                   args("defDim", "NC_ENAMEINUSE", inUse));
      EXPECT_MSGID(call("renameDim", {ncid, x, "s"}), kLibraryFailure,
                   args("renameDim", "NC_ENAMEINUSE", inUse));
      EXPECT_MSGID(call("defGrp", {ncid, "x"}), kLibraryFailure,
                   args("defGrp", "NC_ENAMEINUSE", inUse));
      EXPECT_MSGID(call("defVlen", {ncid, "x", NC_INT}), kLibraryFailure,
                   args("defVlen", "NC_ENAMEINUSE", inUse));
      // A subgroup may still name a dimension like one of its parent's.
      call("defDim", {call1("defGrp", {ncid, "g"}), "s", 2});
    } else {
      call("defDim", {ncid, "s", 2});
    }
    EXPECT_NO_THROW(call("close", {ncid}));
    const qvArrayPtr reopened = call1("open", {path, "nowrite"});
    EXPECT_EQ(number(call1("inq", {reopened})), netcdf4 ? 1.0 : 2.0);
    call("close", {reopened});
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
