#include <gtest/gtest.h>

#include <netcdf.h>

#include <algorithm>
#include <boost/numeric/conversion/converter_policies.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "convert/scalars.hpp"
#include "gateway/dispatch.hpp"
#include "gateway/errors.hpp"
#include "gateway/operation.hpp"
#include "gateway/row_shapes.hpp"
#include "test_support.hpp"

namespace {

using test::args;

constexpr const char* kUnrecognized = "QUARNA:imagesci:netcdf:unrecognizedOperation";
constexpr const char* kWrongCount = "QUARNA:imagesci:validate:wrongNumberOfInputs";

// What the last handler call received.
struct Received {
  int nlhs = -1;
  int nInputs = -1;
  const qvArray* const* inputs = nullptr;
  const OperationRow* row = nullptr;
};
Received received;

void recordingHandler(int nlhs, qvArrayPtr* plhs, int nInputs, const qvArray* const* inputs,
                      const OperationRow& row) {
  received = {nlhs, nInputs, inputs, &row};
  plhs[0] = test::scalar<double>(row.opId);
}
void overflowingHandler(int, qvArrayPtr*, int, const qvArray* const*, const OperationRow&) {
  throw boost::numeric::negative_overflow();
}
void scalarHandler(int, qvArrayPtr* plhs, int, const qvArray* const* inputs, const OperationRow&) {
  plhs[0] = test::scalar<double>(getScalar<int>(inputs[0], "ncid"));
}
void failingHandler(int, qvArrayPtr*, int, const qvArray* const*, const OperationRow&) {
  qvErrMsgId(QUARNA::imagesci::netcdf::badScalarArgument("ncid", "numeric"));
}
void throwingHandler(int, qvArrayPtr*, int, const qvArray* const*, const OperationRow&) {
  throw std::runtime_error("host failure");
}

constexpr OperationRow kTestTable[] = {
    {10, "alpha", 1, recordingHandler},      {11, "none", 0, recordingHandler},
    {12, "alpha", 2, recordingHandler},  // never reached: the first "alpha" wins
    {13, "overflow", 0, overflowingHandler}, {14, "scalar", 1, scalarHandler},
    {15, "failing", 0, failingHandler},      {16, "throwing", 0, throwingHandler},
};

TEST(LookupOperation, FirstMatchDecides) {
  EXPECT_EQ(lookupOperation(kTestTable, "alpha", 1).opId, 10);
  EXPECT_EQ(lookupOperation(kTestTable, "none", 0).opId, 11);
  EXPECT_MSGID(lookupOperation(kTestTable, "alpha", 2), kWrongCount, args());
  EXPECT_MSGID(lookupOperation(kTestTable, "none", 1), kWrongCount, args());
}

TEST(LookupOperation, UnknownNamesCarryTheName) {
  for (const char* name : {"Alpha", "alpha ", "alph", "", "getconstantnames"}) {
    EXPECT_MSGID(lookupOperation(kTestTable, name, 1), kUnrecognized, args(name));
  }
  EXPECT_MSGID(lookupOperation(kTestTable, nullptr, 0), kUnrecognized, args(""));
}

TEST(Dispatch, HandlerGetsTheInputsAfterTheName) {
  const qvArrayPtr name = test::charRow(std::string("alpha"));
  const qvArrayPtr arg = test::scalar<double>(5);
  const qvArray* prhs[] = {name.get(), arg.get()};
  test::Outputs outputs;
  dispatchOperation(kTestTable, 1, outputs.data(), 2, prhs);
  EXPECT_EQ(received.nlhs, 1);
  EXPECT_EQ(received.nInputs, 1);
  EXPECT_EQ(received.inputs, prhs + 1);
  EXPECT_EQ(received.row, &kTestTable[0]);
  ASSERT_TRUE(outputs[0]);
  EXPECT_EQ(*static_cast<const double*>(qvGetData(outputs[0].get())), 10.0);
}

TEST(Dispatch, MissingOrNonTextNameIsUnrecognized) {
  test::Outputs outputs;
  EXPECT_MSGID(dispatchOperation(kTestTable, 1, outputs.data(), 0, nullptr), kUnrecognized,
               args(""));
  const qvArrayPtr number = test::scalar<double>(1);
  const qvArray* prhs[] = {number.get()};
  EXPECT_MSGID(dispatchOperation(kTestTable, 1, outputs.data(), 1, prhs), kUnrecognized, args(""));
}

TEST(Dispatch, RangeFailuresBecomeArgumentOutOfBounds) {
  constexpr const char* kOutOfBounds = "QUARNA:imagesci:validate:argumentOutOfBounds";
  const qvArrayPtr overflow = test::charRow(std::string("overflow"));
  const qvArray* direct[] = {overflow.get()};
  test::Outputs outputs;
  EXPECT_MSGID(dispatchOperation(kTestTable, 1, outputs.data(), 1, direct), kOutOfBounds, args());

  const qvArrayPtr scalar = test::charRow(std::string("scalar"));
  const qvArrayPtr huge = test::scalar<double>(1e30);
  const qvArray* converted[] = {scalar.get(), huge.get()};
  EXPECT_MSGID(dispatchOperation(kTestTable, 1, outputs.data(), 2, converted), kOutOfBounds,
               args());
  EXPECT_FALSE(outputs[0]);
}

TEST(Dispatch, OtherFailuresPassUnchanged) {
  test::Outputs outputs;
  const qvArrayPtr failing = test::charRow(std::string("failing"));
  const qvArray* a[] = {failing.get()};
  EXPECT_MSGID(dispatchOperation(kTestTable, 1, outputs.data(), 1, a),
               "QUARNA:imagesci:netcdf:badScalarArgument", args("ncid", "numeric"));
  const qvArrayPtr throwing = test::charRow(std::string("throwing"));
  const qvArray* b[] = {throwing.get()};
  EXPECT_THROW(dispatchOperation(kTestTable, 1, outputs.data(), 1, b), std::runtime_error);
}

// Each row is found by its name and count, except the one-input "inqDimIDs" that the
// two-input row of the same name shadows. Through the entry, one input too many is refused
// by count; the exact count of empty inputs reaches a handler, which refuses them by its own
// rules.
}  // namespace

namespace {

// Calls through the entry with nlhs outputs asked for; the number of slots filled.
std::size_t filledSlots(int nlhs, const std::string& op, std::initializer_list<test::Arg> in) {
  const qvArrayPtr name = test::charRow(op);
  std::vector<const qvArray*> inputs{name.get()};
  for (const test::Arg& a : in) inputs.push_back(a.get());
  test::Outputs out;
  netcdflib(nlhs, out.data(), static_cast<int>(inputs.size()), inputs.data());
  return static_cast<std::size_t>(std::ranges::count_if(out, [](const qvArrayPtr& p) { return p != nullptr; }));
}

int outputsOf(const std::string& name) {
  const auto row = std::ranges::find(operationTable(), name, &OperationRow::name);
  return outputCount(*row);
}

}  // namespace

// More outputs than a row makes are refused before its handler runs: here the handler
// would have refused the empty inputs.
TEST(OperationTable, TooManyOutputsAreRefusedFirst) {
  const qvArrayPtr empty = test::zeros(qvDOUBLE_CLASS, {0, 0});
  for (const OperationRow& row : operationTable()) {
    // The one row an earlier row hides is never reached.
    if (test::catchMsgId([&] { lookupOperation(operationTable(), row.name, row.nInputs); })) {
      continue;
    }
    SCOPED_TRACE(row.name);
    const qvArrayPtr name = test::charRow(row.name);
    std::vector<const qvArray*> inputs(static_cast<std::size_t>(row.nInputs) + 1, empty.get());
    inputs[0] = name.get();
    const int made = outputCount(row);
    test::Outputs out;
    EXPECT_MSGID(netcdflib(made + 1, out.data(), static_cast<int>(inputs.size()), inputs.data()),
                 "QUARNA:imagesci:validate:tooManyOutputs", args(row.name, made));
  }
}

// The counts are what the operations make: each fills exactly that many slots.
TEST(OperationTable, OutputCountsAreWhatOperationsMake) {
  test::ScratchDir dir;
  const std::string path = dir.file("counts.nc");
  const qvArrayPtr id = test::call1("create", {path, "netcdf4"});
  const qvArrayPtr dim = test::call1("defDim", {id, "x", 2});
  const qvArrayPtr type = test::call1("defVlen", {id, "ragged", NC_INT});
  const qvArrayPtr var = test::call1("defVar", {id, "v", NC_DOUBLE, dim.get()});
  test::call("putAttDouble", {id, var.get(), "a", NC_DOUBLE, 1.0});
  const auto check = [](const char* op, std::size_t made, std::initializer_list<test::Arg> in) {
    EXPECT_EQ(static_cast<int>(made), outputsOf(op)) << op;
    EXPECT_EQ(made, filledSlots(static_cast<int>(made), op, in)) << op;
  };
  check("inq", 4, {id});
  check("inqDim", 2, {id, dim.get()});
  check("inqVar", 4, {id, var.get()});
  check("inqVarChunking", 2, {id, var.get()});
  check("inqVarDeflate", 3, {id, var.get()});
  check("inqVarFill", 2, {id, var.get()});
  check("inqUserType", 5, {id, type.get()});
  check("inqVlen", 3, {id, type.get()});
  check("inqAtt", 2, {id, var.get(), "a"});
  check("inqVarFletcher32", 1, {id, var.get()});
  check("getChunkCache", 3, {});
  check("setFill", 1, {id, NC_FILL});
  check("defVarDeflate", 0, {id, var.get(), false, true, 1});
  check("getVaraDouble", 1, {id, var.get(), 0.0, 1.0});
  check("putVarDouble", 0, {id, var.get(), test::zeros(qvDOUBLE_CLASS, {2, 1})});
  check("close", 0, {id});
  const auto opened = test::call("pOpen", {path, "nowrite", 8192});
  EXPECT_EQ(2, outputsOf("pOpen"));
  EXPECT_TRUE(opened[1]);
  test::call("close", {opened[1]});
}
