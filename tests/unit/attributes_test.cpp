// Attribute values and management, and storage settings, through the entry point.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cmath>
#include <cstring>
#include <string>

#include "test_support.hpp"

namespace {

using test::args;
using test::array;
using test::charRow;
using test::Dims;
using test::dimsOf;
using test::number;
using test::scalar;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

// A file made with netCDF-C holding a variable v(x); the gateway gets its ncid.
class AttributeFile : public ::testing::Test {
 protected:
  void SetUp() override { open(NC_NETCDF4); }
  void open(int mode) {
    ASSERT_EQ(NC_NOERR, nc_create(dir_.file("att.nc").c_str(), mode | NC_CLOBBER, &ncid_));
    ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "x", 4, &x_));
    ASSERT_EQ(NC_NOERR, nc_def_var(ncid_, "v", NC_DOUBLE, 1, &x_, &varid_));
  }
  void TearDown() override { nc_close(ncid_); }

  // ncid, then the given inputs.
  test::Outputs call(const std::string& op, std::initializer_list<const qvArray*> rest) {
    const qvArrayPtr id = scalar<double>(ncid_);
    const qvArrayPtr name = charRow(op);
    std::vector<const qvArray*> all{name.get(), id.get()};
    all.insert(all.end(), rest);
    test::Outputs out;
    netcdflib(kNetcdflibMaxOutputs, out.data(), static_cast<int>(all.size()), all.data());
    return out;
  }
  qvArrayPtr var() const { return scalar<double>(varid_); }

  test::ScratchDir dir_;
  int ncid_ = -1, x_ = -1, varid_ = -1;
};

TEST_F(AttributeFile, NumericAttributesAreRowsAndNetcdfConverts) {
  const qvArrayPtr v = var(), global = scalar<double>(NC_GLOBAL), name = charRow("scale");
  const qvArrayPtr asInt = scalar<double>(NC_INT);
  call("putAttDouble", {v.get(), name.get(), asInt.get(), array<double>({2.7, -1.5, 3}).get()});
  const qvArrayPtr back = std::move(call("getAttInt", {v.get(), name.get()})[0]);
  EXPECT_EQ((Dims{1, 3}), dimsOf(back));
  EXPECT_EQ((std::vector<std::int32_t>{2, -1, 3}), valuesOf<std::int32_t>(back));
  const auto inq = call("inqAtt", {v.get(), name.get()});
  EXPECT_EQ(NC_INT, number(inq[0]));
  EXPECT_EQ(3, number(inq[1]));

  const qvArrayPtr empty = charRow("empty"), ubyte = scalar<double>(NC_UBYTE);
  call("putAttUbyte",
       {global.get(), empty.get(), ubyte.get(), test::zeros(qvUINT8_CLASS, {0, 0}).get()});
  const qvArrayPtr none = std::move(call("getAttUchar", {global.get(), empty.get()})[0]);
  EXPECT_EQ((Dims{0, 0}), dimsOf(none));
  EXPECT_EQ(qvUINT8_CLASS, qvGetClassID(none.get()));
  EXPECT_MSGID(call("putAttFloat", {v.get(), name.get(), asInt.get(), array<double>({1}).get()}),
               "QUARNA:imagesci:netcdf:argumentHasBadDatatype", args("data"));
}

TEST_F(AttributeFile, TextIsUtf8BothWaysAndStopsAtAZeroByte) {
  const qvArrayPtr v = var(), name = charRow("units"), type = scalar<double>(NC_CHAR);
  call("putAttText", {v.get(), name.get(), type.get(), charRow(u"caf\u00e9").get()});
  std::size_t len = 0;
  ASSERT_EQ(NC_NOERR, nc_inq_attlen(ncid_, varid_, "units", &len));
  EXPECT_EQ(5u, len);
  EXPECT_EQ(u"caf\u00e9", test::charText(call("getAttText", {v.get(), name.get()})[0].get()));

  ASSERT_EQ(NC_NOERR, nc_put_att_text(ncid_, varid_, "zero", 5, "ab\0cd"));
  const qvArrayPtr zero = charRow("zero");
  EXPECT_EQ(u"ab", test::charText(call("getAttText", {v.get(), zero.get()})[0].get()));
  ASSERT_EQ(NC_NOERR, nc_put_att_text(ncid_, varid_, "blank", 0, ""));
  const qvArrayPtr blank = std::move(call("getAttText", {v.get(), charRow("blank").get()})[0]);
  EXPECT_EQ(0u, qvGetNumberOfElements(blank.get()));
  EXPECT_EQ(qvCHAR_CLASS, qvGetClassID(blank.get()));
}

TEST_F(AttributeFile, StringAndVlenAttributes) {
  const qvArrayPtr global = scalar<double>(NC_GLOBAL), name = charRow("names"),
                   type = scalar<double>(NC_STRING);
  qvArrayPtr strings = createStringArray(1, 2);
  setStringElement(strings.get(), 0, u"\u00e9t\u00e9");
  call("putAttString", {global.get(), name.get(), type.get(), strings.get()});
  const qvArrayPtr back = std::move(call("getAttString", {global.get(), name.get()})[0]);
  EXPECT_EQ((Dims{1, 2}), dimsOf(back));
  EXPECT_EQ(u"\u00e9t\u00e9", getString(back.get()).at(0));
  EXPECT_EQ(u"", getString(back.get()).at(1));

  nc_type ragged = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "ragged", NC_SHORT, &ragged));
  qvArrayPtr cells = matrix::detail::do_create_cell(Dims{1, 2});
  qvSetCell(cells.get(), 1, array<std::int16_t>({5, 6}, {2, 1}));
  const qvArrayPtr vlenName = charRow("r"), vlenType = scalar<double>(ragged);
  call("putAttVlen", {global.get(), vlenName.get(), vlenType.get(), cells.get()});
  const qvArrayPtr vlen = std::move(call("getAttVlen", {global.get(), vlenName.get()})[0]);
  EXPECT_EQ((Dims{1, 2}), dimsOf(vlen));
  EXPECT_EQ((Dims{0, 0}), dimsOf((qvGetCell(vlen.get(), 0))));
  EXPECT_EQ((std::vector<std::int16_t>{5, 6}), valuesOf<std::int16_t>((qvGetCell(vlen.get(), 1))));
  EXPECT_MSGID(call("getAttVlen", {global.get(), name.get()}),
               "QUARNA:imagesci:netcdf:unrecognizedVarDatatype", args(NC_STRING));
}

TEST_F(AttributeFile, ManagementCopiesDeletesRenames) {
  const qvArrayPtr v = var(), global = scalar<double>(NC_GLOBAL), a = charRow("a"),
                   b = charRow("b");
  const qvArrayPtr type = scalar<double>(NC_DOUBLE);
  call("putAttDouble", {v.get(), a.get(), type.get(), scalar<double>(1).get()});
  call("putAttDouble", {v.get(), b.get(), type.get(), scalar<double>(2).get()});
  EXPECT_EQ(1, number(call("inqAttID", {v.get(), b.get()})[0]));
  EXPECT_EQ(u"a", test::charText(call("inqAttName", {v.get(), scalar<double>(0).get()})[0].get()));
  const qvArrayPtr self = scalar<double>(ncid_);
  call("copyAtt", {v.get(), a.get(), self.get(), global.get()});
  EXPECT_EQ(1, number(call("getAttDouble", {global.get(), a.get()})[0]));
  EXPECT_MSGID(call("renameAtt", {v.get(), a.get(), b.get()}), kLibraryFailure,
               args("renameAtt", "NC_ENAMEINUSE", "String match to name in use"));
  const qvArrayPtr c = charRow("c");
  call("renameAtt", {v.get(), a.get(), c.get()});
  call("delAtt", {v.get(), c.get()});
  EXPECT_MSGID(call("getAttDouble", {v.get(), c.get()}), kLibraryFailure,
               args("getAttDouble", "NC_ENOTATT", "Attribute not found"));
  EXPECT_MSGID(call("renameAtt", {v.get(), b.get(), scalar<double>(3).get()}),
               "QUARNA:imagesci:netcdf:argumentWasNotChar", args("attribute"));
}

TEST_F(AttributeFile, ChunkingDeflateAndChecksums) {
  int y = 0, grid = 0;
  ASSERT_EQ(NC_NOERR, nc_def_dim(ncid_, "y", 30, &y));
  const int dims[2] = {y, x_};
  ASSERT_EQ(NC_NOERR, nc_def_var(ncid_, "grid", NC_FLOAT, 2, dims, &grid));
  const qvArrayPtr g = scalar<double>(grid), chunked = scalar<double>(NC_CHUNKED);
  call("defVarChunking", {g.get(), chunked.get(), array<double>({2, 10}).get()});
  std::size_t sizes[2] = {};
  ASSERT_EQ(NC_NOERR, nc_inq_var_chunking(ncid_, grid, nullptr, sizes));
  EXPECT_EQ(10u, sizes[0]);
  EXPECT_EQ(2u, sizes[1]);
  const auto chunking = call("inqVarChunking", {g.get()});
  EXPECT_EQ(u"chunked", test::charText(chunking[0].get()));
  EXPECT_EQ((std::vector<double>{2, 10}), valuesOf<double>(chunking[1]));
  EXPECT_MSGID(call("defVarChunking", {g.get(), chunked.get(), array<double>({2}).get()}),
               "QUARNA:imagesci:netcdf:invalidChunkParameter", args(1, 2));
  EXPECT_MSGID(call("defVarChunking", {g.get(), scalar<double>(7).get(), array<double>({2}).get()}),
               "QUARNA:imagesci:netcdf:unrecognizedChunkStorage", args());

  const qvArrayPtr yes = test::logicalScalar(true), no = test::logicalScalar(false);
  call("defVarDeflate", {g.get(), yes.get(), no.get(), charRow("ignored").get()});
  call("defVarDeflate", {g.get(), yes.get(), yes.get(), scalar<double>(5).get()});
  const auto deflate = call("inqVarDeflate", {g.get()});
  EXPECT_TRUE(qvGetLogicals(deflate[0].get())[0]);
  EXPECT_TRUE(qvGetLogicals(deflate[1].get())[0]);
  EXPECT_EQ(5, number(deflate[2]));
  EXPECT_MSGID(
      call("defVarDeflate", {g.get(), scalar<double>(1).get(), yes.get(), scalar<double>(5).get()}),
      "QUARNA:imagesci:netcdf:expectedLogicalType", args("shuffle flag"));

  EXPECT_EQ(u"NOCHECKSUM", test::charText(call("inqVarFletcher32", {g.get()})[0].get()));
  call("defVarFletcher32", {g.get(), scalar<double>(NC_FLETCHER32).get()});
  EXPECT_EQ(u"FLETCHER32", test::charText(call("inqVarFletcher32", {g.get()})[0].get()));
}

TEST(ClassicFile, StorageInquiriesAreRefusedAfterTheFormatCall) {
  test::ScratchDir dir;
  int ncid = 0;
  ASSERT_EQ(NC_NOERR, nc_create(dir.file("classic.nc").c_str(), NC_CLOBBER, &ncid));
  const qvArrayPtr id = scalar<double>(ncid), badVar = scalar<double>(99);
  EXPECT_MSGID(test::callGateway("inqVarChunking", {id.get(), badVar.get()}),
               "QUARNA:imagesci:netcdf:attemptedChunkingInquiryOnNetcdf3File", args());
  EXPECT_MSGID(test::callGateway("inqVarFletcher32", {id.get(), badVar.get()}),
               "QUARNA:imagesci:netcdf:attemptedChecksumInquiryOnNetcdf3File", args());
  nc_close(ncid);
  EXPECT_MSGID(test::callGateway("inqVarChunking", {id.get(), badVar.get()}), kLibraryFailure,
               args("inqVarChunking", "NC_EBADID", "Not a valid ID"));
}

TEST_F(AttributeFile, FillValuesOfEveryKind) {
  const qvArrayPtr no = test::logicalScalar(false), yes = test::logicalScalar(true);
  auto defVar = [&](const char* name, nc_type type) {
    int id = 0;
    EXPECT_EQ(NC_NOERR, nc_def_var(ncid_, name, type, 1, &x_, &id));
    return scalar<double>(id);
  };
  const qvArrayPtr d = defVar("d", NC_DOUBLE);
  call("defVarFill", {d.get(), no.get(), scalar<double>(std::nan("")).get()});
  auto fill = call("inqVarFill", {d.get()});
  EXPECT_FALSE(qvGetLogicals(fill[0].get())[0]);
  EXPECT_TRUE(std::isnan(number(fill[1])));

  const qvArrayPtr c = defVar("c", NC_CHAR);
  EXPECT_MSGID(call("defVarFill", {c.get(), no.get(), charRow("ab").get()}),
               "QUARNA:imagesci:netcdf:badScalarArgument", args("FILLVALUE", "7-bit ASCII char"));
  call("defVarFill", {c.get(), no.get(), charRow("").get()});
  EXPECT_EQ(u"\0"[0], test::charText(call("inqVarFill", {c.get()})[1].get()).at(0));

  const qvArrayPtr s = defVar("s", NC_STRING);
  call("defVarFill", {s.get(), no.get(), charRow(u"n/\u00e4").get()});
  EXPECT_EQ(u"n/\u00e4", getString(call("inqVarFill", {s.get()})[1].get()).at(0));

  const qvArrayPtr u = defVar("u", NC_USHORT);
  EXPECT_EQ(65535, valuesOf<std::uint16_t>(call("inqVarFill", {u.get()})[1]).at(0));
  EXPECT_MSGID(call("defVarFill", {u.get(), no.get(), scalar<double>(70000).get()}),
               "QUARNA:imagesci:validate:argumentOutOfBounds", args());
  call("defVarFill", {u.get(), yes.get(), charRow("not read").get()});
  EXPECT_TRUE(qvGetLogicals(call("inqVarFill", {u.get()})[0].get())[0]);

  nc_type ragged = 0;
  ASSERT_EQ(NC_NOERR, nc_def_vlen(ncid_, "ragged", NC_INT, &ragged));
  const qvArrayPtr r = defVar("r", ragged);
  qvArrayPtr cell = matrix::detail::do_create_cell(Dims{1, 1});
  qvSetCell(cell.get(), 0, array<std::int32_t>({-1, -2}, {2, 1}));
  call("defVarFill", {r.get(), no.get(), cell.get()});
  const qvArrayPtr vlenFill = std::move(call("inqVarFill", {r.get()})[1]);
  EXPECT_EQ((std::vector<std::int32_t>{-1, -2}),
            valuesOf<std::int32_t>((qvGetCell(vlenFill.get(), 0))));
}

}  // namespace
