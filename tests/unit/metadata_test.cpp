// Dimensions, groups, variables and user types through the entry point.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <cmath>
#include <string>

#include "test_support.hpp"

namespace {

using test::args;
using test::call;
using test::call1;
using test::Dims;
using test::dimsOf;
using test::number;
using test::valuesOf;

constexpr const char* kLibraryFailure = "QUARNA:imagesci:netcdf:libraryFailure";

std::u16string text(const qvArrayPtr& a) { return test::charText(a.get()); }

// A netCDF-4 file created through the gateway, closed through it at the end.
class Netcdf4File : public ::testing::Test {
 protected:
  void SetUp() override {
    id_ = call1("create", {dir_.file("meta.nc"), "netcdf4"});
    ncid_ = static_cast<int>(number(id_));
  }
  void TearDown() override { call("close", {id_}); }

  test::ScratchDir dir_;
  int ncid_ = -1;
  qvArrayPtr id_;
};

TEST_F(Netcdf4File, DimensionsRoundTripAndUnlimitedOnesAreListed) {
  const double x = number(call1("defDim", {id_, "x", 3})),
               t = number(call1("defDim", {id_, "time", 0}));
  const auto inq = call("inqDim", {id_, x});
  EXPECT_EQ(u"x", text(inq[0]));
  EXPECT_EQ(3, number(inq[1]));
  EXPECT_EQ(t, number(call1("inqDimID", {id_, "time"})));
  EXPECT_EQ((std::vector<double>{x, t}), valuesOf<double>(call1("inqDimIDs", {id_, true})));
  EXPECT_EQ((std::vector<double>{t}), valuesOf<double>(call1("inqUnlimDims", {id_})));
  call("renameDim", {id_, x, u"Temp\u00e9rature"});
  EXPECT_EQ(u"Temp\u00e9rature", text(call1("inqDim", {id_, x})));

  EXPECT_MSGID(call("inqDimIDs", {id_, 1}), "QUARNA:imagesci:netcdf:expectedLogicalType",
               args("include_parents flag"));
  EXPECT_MSGID(call("inqDimIDs", {id_}), "QUARNA:imagesci:validate:wrongNumberOfInputs", args());
  EXPECT_MSGID(call("defDim", {id_, "big", 1e30}), "QUARNA:imagesci:validate:argumentOutOfBounds",
               args());
}

TEST_F(Netcdf4File, EmptyListsAreZeroByZero) {
  for (const char* op : {"inqUnlimDims", "inqGrps", "inqVarIDs"}) {
    EXPECT_EQ((Dims{0, 0}), dimsOf(call1(op, {id_}))) << op;
  }
  EXPECT_EQ((Dims{0, 0}), dimsOf(call1("inqDimIDs", {id_, false})));
}

TEST_F(Netcdf4File, GroupsThreeLevelsDeep) {
  double parent = ncid_;
  std::vector<double> ids;
  for (const char* name : {"a", "b", "c"}) {
    parent = number(call1("defGrp", {parent, name}));
    ids.push_back(parent);
  }
  EXPECT_EQ(u"/a/b/c", text(call1("inqGrpNameFull", {ids[2]})));
  EXPECT_EQ(u"c", text(call1("inqGrpName", {ids[2]})));
  EXPECT_EQ(ids[1], number(call1("inqGrpParent", {ids[2]})));
  EXPECT_EQ((std::vector<double>{ids[0]}), valuesOf<double>(call1("inqGrps", {id_})));
  EXPECT_EQ(ids[0], number(call1("inqNcid", {id_, "a"})));
  EXPECT_EQ(u"/", text(call1("inqGrpNameFull", {id_})));
  EXPECT_MSGID(call("inqGrpParent", {id_}), kLibraryFailure,
               args("inqGrpParent", "NC_ENOGRP", "No group found."));
}

TEST_F(Netcdf4File, VariablesKeepHostDimensionOrder) {
  const double d0 = number(call1("defDim", {id_, "d0", 2})),
               d1 = number(call1("defDim", {id_, "d1", 3}));
  const double varid = number(call1("defVar", {id_, "v", NC_FLOAT, test::array<double>({d0, d1})}));
  int netcdfOrder[2] = {};
  ASSERT_EQ(NC_NOERR, nc_inq_vardimid(ncid_, static_cast<int>(varid), netcdfOrder));
  EXPECT_EQ(d1, netcdfOrder[0]);
  EXPECT_EQ(d0, netcdfOrder[1]);

  const auto inq = call("inqVar", {id_, varid});
  EXPECT_EQ(u"v", text(inq[0]));
  EXPECT_EQ(NC_FLOAT, number(inq[1]));
  EXPECT_EQ((std::vector<double>{d0, d1}), valuesOf<double>(inq[2]));
  EXPECT_EQ(0, number(inq[3]));

  const double s =
      number(call1("defVar", {id_, "s", NC_FLOAT, test::zeros(qvDOUBLE_CLASS, {0, 0})}));
  EXPECT_EQ((Dims{0, 0}), dimsOf(call("inqVar", {id_, s})[2]));
  EXPECT_EQ(s, number(call1("inqVarID", {id_, "s"})));
  EXPECT_EQ((std::vector<double>{varid, s}), valuesOf<double>(call1("inqVarIDs", {id_})));
  call("renameVar", {id_, s, "w"});
  EXPECT_EQ(s, number(call1("inqVarID", {id_, "w"})));

  EXPECT_MSGID(call("inqVar", {id_, NC_GLOBAL}), "QUARNA:imagesci:netcdf:inqVarNcGlobal", args());
  EXPECT_MSGID(call("inqVar", {id_, 42}), kLibraryFailure,
               args("inqVar", "NC_ENOTVAR", "Variable not found"));
  EXPECT_MSGID(call("defVar", {id_, "x", NC_FLOAT, test::array<double>({d0, std::nan("")})}),
               "QUARNA:imagesci:netcdf:invalidNaNInfForIntegerType", args("dimids"));
}

}  // namespace
