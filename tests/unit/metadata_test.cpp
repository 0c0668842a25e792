// Dimensions, groups, variables and user types through the entry point.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cmath>
#include <string>

#include "test_support.hpp"

namespace {

using test::args;
using test::callGateway;
using test::charRow;
using test::dimsOf;
using test::number;
using test::scalar;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

// A netCDF-4 file created through the gateway, closed with netCDF-C at the end.
class Netcdf4File : public ::testing::Test {
 protected:
  void SetUp() override {
    const qvArrayPtr path = charRow(dir_.file("meta.nc"));
    const qvArrayPtr mode = charRow("netcdf4");
    ncid_ = static_cast<int>(number(callGateway("create", {path.get(), mode.get()})[0]));
    id_ = scalar<double>(ncid_);
  }
  void TearDown() override { callGateway("close", {id_.get()}); }
  double defDim(const char* name, double length) {
    const qvArrayPtr n = charRow(name), len = scalar<double>(length);
    return number(callGateway("defDim", {id_.get(), n.get(), len.get()})[0]);
  }

  test::ScratchDir dir_;
  int ncid_ = -1;
  qvArrayPtr id_;
};

TEST_F(Netcdf4File, DimensionsRoundTripAndUnlimitedOnesAreListed) {
  const double x = defDim("x", 3), t = defDim("time", 0);
  const qvArrayPtr xid = scalar<double>(x);
  const auto inq = callGateway("inqDim", {id_.get(), xid.get()});
  EXPECT_EQ(u"x", test::charText(inq[0].get()));
  EXPECT_EQ(3, number(inq[1]));
  const qvArrayPtr timeName = charRow("time");
  EXPECT_EQ(t, number(callGateway("inqDimID", {id_.get(), timeName.get()})[0]));
  const qvArrayPtr yes = test::logicalScalar(true);
  EXPECT_EQ((std::vector<double>{x, t}),
            valuesOf<double>(callGateway("inqDimIDs", {id_.get(), yes.get()})[0]));
  EXPECT_EQ((std::vector<double>{t}),
            valuesOf<double>(callGateway("inqUnlimDims", {id_.get()})[0]));
  const qvArrayPtr newName = charRow(u"Temp\u00e9rature");
  callGateway("renameDim", {id_.get(), xid.get(), newName.get()});
  EXPECT_EQ(u"Temp\u00e9rature",
            test::charText(callGateway("inqDim", {id_.get(), xid.get()})[0].get()));

  const qvArrayPtr one = scalar<double>(1);
  EXPECT_MSGID(callGateway("inqDimIDs", {id_.get(), one.get()}),
               "QUARNA:imagesci:netcdf:expectedLogicalType", args("include_parents flag"));
  EXPECT_MSGID(callGateway("inqDimIDs", {id_.get()}),
               "QUARNA:imagesci:validate:wrongNumberOfInputs", args());
  const qvArrayPtr huge = scalar<double>(1e30), name = charRow("big");
  EXPECT_MSGID(callGateway("defDim", {id_.get(), name.get(), huge.get()}),
               "QUARNA:imagesci:validate:argumentOutOfBounds", args());
}

TEST_F(Netcdf4File, EmptyListsAreZeroByZero) {
  const qvArrayPtr no = test::logicalScalar(false);
  for (const char* op : {"inqUnlimDims", "inqGrps", "inqVarIDs"}) {
    EXPECT_EQ((std::vector<std::uint64_t>{0, 0}), dimsOf(callGateway(op, {id_.get()})[0])) << op;
  }
  EXPECT_EQ((std::vector<std::uint64_t>{0, 0}),
            dimsOf(callGateway("inqDimIDs", {id_.get(), no.get()})[0]));
}

TEST_F(Netcdf4File, GroupsThreeLevelsDeep) {
  double parent = ncid_;
  std::vector<double> ids;
  for (const char* name : {"a", "b", "c"}) {
    const qvArrayPtr p = scalar<double>(parent), n = charRow(name);
    parent = number(callGateway("defGrp", {p.get(), n.get()})[0]);
    ids.push_back(parent);
  }
  const qvArrayPtr deepest = scalar<double>(ids[2]);
  EXPECT_EQ(u"/a/b/c", test::charText(callGateway("inqGrpNameFull", {deepest.get()})[0].get()));
  EXPECT_EQ(u"c", test::charText(callGateway("inqGrpName", {deepest.get()})[0].get()));
  EXPECT_EQ(ids[1], number(callGateway("inqGrpParent", {deepest.get()})[0]));
  EXPECT_EQ((std::vector<double>{ids[0]}),
            valuesOf<double>(callGateway("inqGrps", {id_.get()})[0]));
  const qvArrayPtr a = charRow("a");
  EXPECT_EQ(ids[0], number(callGateway("inqNcid", {id_.get(), a.get()})[0]));
  EXPECT_EQ(u"/", test::charText(callGateway("inqGrpNameFull", {id_.get()})[0].get()));
  EXPECT_MSGID(callGateway("inqGrpParent", {id_.get()}), kLibraryFailure,
               args("inqGrpParent", "NC_ENOGRP", "No group found."));
}

TEST_F(Netcdf4File, VariablesKeepHostDimensionOrder) {
  const double d0 = defDim("d0", 2), d1 = defDim("d1", 3);
  const qvArrayPtr name = charRow("v"), type = scalar<double>(NC_FLOAT);
  const qvArrayPtr dims = test::array<double>({d0, d1});
  const double varid =
      number(callGateway("defVar", {id_.get(), name.get(), type.get(), dims.get()})[0]);
  int netcdfOrder[2] = {};
  ASSERT_EQ(NC_NOERR, nc_inq_vardimid(ncid_, static_cast<int>(varid), netcdfOrder));
  EXPECT_EQ(d1, netcdfOrder[0]);
  EXPECT_EQ(d0, netcdfOrder[1]);

  const qvArrayPtr vid = scalar<double>(varid);
  const auto inq = callGateway("inqVar", {id_.get(), vid.get()});
  EXPECT_EQ(u"v", test::charText(inq[0].get()));
  EXPECT_EQ(NC_FLOAT, number(inq[1]));
  EXPECT_EQ((std::vector<double>{d0, d1}), valuesOf<double>(inq[2]));
  EXPECT_EQ(0, number(inq[3]));

  const qvArrayPtr scalarName = charRow("s"), noDims = test::zeros(qvDOUBLE_CLASS, {0, 0});
  const double s =
      number(callGateway("defVar", {id_.get(), scalarName.get(), type.get(), noDims.get()})[0]);
  const qvArrayPtr sid = scalar<double>(s);
  EXPECT_EQ((std::vector<std::uint64_t>{0, 0}),
            dimsOf(callGateway("inqVar", {id_.get(), sid.get()})[2]));
  EXPECT_EQ(s, number(callGateway("inqVarID", {id_.get(), scalarName.get()})[0]));
  EXPECT_EQ((std::vector<double>{varid, s}),
            valuesOf<double>(callGateway("inqVarIDs", {id_.get()})[0]));
  const qvArrayPtr renamed = charRow("w");
  callGateway("renameVar", {id_.get(), sid.get(), renamed.get()});
  EXPECT_EQ(s, number(callGateway("inqVarID", {id_.get(), renamed.get()})[0]));

  const qvArrayPtr global = scalar<double>(NC_GLOBAL), missing = scalar<double>(42);
  EXPECT_MSGID(callGateway("inqVar", {id_.get(), global.get()}),
               "QUARNA:imagesci:netcdf:inqVarNcGlobal", args());
  EXPECT_MSGID(callGateway("inqVar", {id_.get(), missing.get()}), kLibraryFailure,
               args("inqVar", "NC_ENOTVAR", "Variable not found"));
  const qvArrayPtr nanDims = test::array<double>({d0, std::nan("")}), other = charRow("x");
  EXPECT_MSGID(callGateway("defVar", {id_.get(), other.get(), type.get(), nanDims.get()}),
               "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType", args("dimids"));
}

TEST_F(Netcdf4File, VlenTypesDefinedAndInquired) {
  const qvArrayPtr name = charRow("ragged"), base = scalar<double>(NC_INT);
  const double type = number(callGateway("defVlen", {id_.get(), name.get(), base.get()})[0]);
  const qvArrayPtr tid = scalar<double>(type);
  const auto vlen = callGateway("inqVlen", {id_.get(), tid.get()});
  EXPECT_EQ(u"ragged", test::charText(vlen[0].get()));
  EXPECT_EQ(sizeof(nc_vlen_t), number(vlen[1]));
  EXPECT_EQ(NC_INT, number(vlen[2]));
  const auto user = callGateway("inqUserType", {id_.get(), tid.get()});
  EXPECT_EQ(u"ragged", test::charText(user[0].get()));
  EXPECT_EQ(NC_INT, number(user[2]));
  EXPECT_EQ(0, number(user[3]));
  EXPECT_EQ(NC_VLEN, number(user[4]));
  const qvArrayPtr atomic = scalar<double>(NC_DOUBLE);
  EXPECT_MSGID(callGateway("inqVlen", {id_.get(), atomic.get()}), kLibraryFailure,
               args("inqVlen", "NC_EBADTYPE", "Not a valid data type or _FillValue type mismatch"));
}

}  // namespace
