// Looking up and dispatching operations, the count of outputs, and the start-up of the
// host's services on the first call.
#include <gtest/gtest.h>
#include <netcdf.h>

#include <boost/numeric/conversion/converter_policies.hpp>
#include <stdexcept>

#include "convert/scalars.hpp"
#include "gateway/dispatch.hpp"
#include "gateway/errors.hpp"
#include "gateway/operation.hpp"
#include "gateway/row_shapes.hpp"
#include "gateway/startup.hpp"
#include "test_support.hpp"

namespace {

using test::args;

constexpr const char* kUnrecognized = "QUARNA:imagesci:netcdf:unrecognizedOperation";
constexpr const char* kWrongCount = "QUARNA:imagesci:validate:wrongNumberOfInputs";
constexpr const char* kOutOfBounds = "QUARNA:imagesci:validate:argumentOutOfBounds";

// What the last recording handler call received.
struct {
  int nlhs, nInputs;
  const qvArray* const* inputs;
  const OperationRow* row;
} received;

void recordingHandler(int nlhs, qvArrayPtr* plhs, int n, const qvArray* const* inputs,
                      const OperationRow& row) {
  received = {nlhs, n, inputs, &row};
  plhs[0] = test::scalar<double>(row.opId);
}
void overflowingHandler(int, qvArrayPtr*, int, const qvArray* const*, const OperationRow&) {
  throw boost::numeric::negative_overflow();
}
void scalarHandler(int, qvArrayPtr* plhs, int, const qvArray* const* in, const OperationRow&) {
  plhs[0] = test::scalar<double>(getScalar<int>(in[0], "ncid"));
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

TEST(LookupOperation, FirstMatchDecidesAndUnknownNamesCarryTheName) {
  EXPECT_EQ(lookupOperation(kTestTable, "alpha", 1).opId, 10);
  EXPECT_EQ(lookupOperation(kTestTable, "none", 0).opId, 11);
  EXPECT_MSGID(lookupOperation(kTestTable, "alpha", 2), kWrongCount, args());
  EXPECT_MSGID(lookupOperation(kTestTable, "none", 1), kWrongCount, args());
  for (const char* name : {"Alpha", "alpha ", "alph", ""})
    EXPECT_MSGID(lookupOperation(kTestTable, name, 1), kUnrecognized, args(name));
  EXPECT_MSGID(lookupOperation(kTestTable, nullptr, 0), kUnrecognized, args(""));
}

// Dispatches the inputs (the name first, if any) on the test table, one output asked for.
test::Outputs run(std::initializer_list<test::Arg> prhs) {
  std::vector<const qvArray*> in;
  for (const test::Arg& a : prhs) in.push_back(a.get());
  test::Outputs out;
  dispatchOperation(kTestTable, 1, out.data(), static_cast<int>(in.size()), in.data());
  return out;
}

TEST(Dispatch, HandlersGetTheInputsAfterTheNameAndFailuresAreMapped) {
  const qvArrayPtr arg = test::scalar(5.0);
  EXPECT_EQ(10, test::number(run({"alpha", arg})[0]));
  EXPECT_EQ(std::tie(received.nlhs, received.nInputs, received.inputs[0], received.row),
            std::make_tuple(1, 1, arg.get(), &kTestTable[0]));
  EXPECT_MSGID(run({}), kUnrecognized, args(""));
  EXPECT_MSGID(run({1.0}), kUnrecognized, args(""));
  // Range failures, thrown or from converting an input, become argumentOutOfBounds.
  EXPECT_MSGID(run({"overflow"}), kOutOfBounds, args());
  EXPECT_MSGID(run({"scalar", 1e30}), kOutOfBounds, args());
  EXPECT_MSGID(run({"failing"}), "QUARNA:imagesci:netcdf:badScalarArgument",
               args("ncid", "numeric"));
  EXPECT_THROW(run({"throwing"}), std::runtime_error);
}

// More outputs than a row makes are refused before its handler runs: here the handler
// would have refused the empty inputs.
TEST(OperationTable, TooManyOutputsAreRefusedFirst) {
  const qvArrayPtr empty = test::zeros(qvDOUBLE_CLASS, {0, 0});
  for (const OperationRow& row : operationTable()) {
    // The one row an earlier row hides is never reached.
    if (test::catchMsgId([&] { lookupOperation(operationTable(), row.name, row.nInputs); }))
      continue;
    const qvArrayPtr name = test::charRow(row.name);
    std::vector<const qvArray*> inputs(static_cast<std::size_t>(row.nInputs) + 1, empty.get());
    inputs[0] = name.get();
    test::Outputs out;
    EXPECT_MSGID(
        netcdflib(outputCount(row) + 1, out.data(), static_cast<int>(inputs.size()), inputs.data()),
        "QUARNA:imagesci:validate:tooManyOutputs", args(row.name, outputCount(row)));
  }
}

// The counts are what the operations make: each fills exactly that many slots.
TEST(OperationTable, OutputCountsAreWhatOperationsMake) {
  const test::ScratchDir dir;
  const qvArrayPtr id = test::call1("create", {dir.file("counts.nc"), "netcdf4"});
  const qvArrayPtr type = test::call1("defVlen", {id, "ragged", NC_INT});
  const qvArrayPtr var =
      test::call1("defVar", {id, "v", NC_DOUBLE, test::call1("defDim", {id, "x", 2})});
  const auto check = [](const char* op, int made, std::initializer_list<test::Arg> in) {
    const test::Outputs out = test::call(op, in, made);
    EXPECT_EQ(made, std::ranges::count_if(out, [](const qvArrayPtr& p) { return p != nullptr; }));
    EXPECT_EQ(made, outputCount(lookupOperation(operationTable(), op, int(in.size())))) << op;
  };
  check("inq", 4, {id});
  check("inqVar", 4, {id, var});
  check("inqVarDeflate", 3, {id, var});
  check("inqUserType", 5, {id, type});
  check("getChunkCache", 3, {});
  check("putVarDouble", 0, {id, var, test::zeros(qvDOUBLE_CLASS, {2, 1})});
  check("close", 0, {id});
}

// A lookup that fails its first call, then finds a service.
struct FlakyLookup {
  int calls = 0;
  std::shared_ptr<void> service = std::make_shared<int>(42);
  ServiceLookup function() {
    return [this]() -> std::shared_ptr<void> {
      if (++calls == 1) throw std::runtime_error("The bundle context is no longer valid");
      return service;
    };
  }
};

TEST(ServiceHolder, FailedStartIsRetriedSuccessIsKept) {
  FlakyLookup lookup;
  ServiceHolder holder(lookup.function());
  EXPECT_THROW(holder.ensureStarted(), std::runtime_error);
  EXPECT_FALSE(holder.held());
  for (int i = 0; i < 3; ++i) holder.ensureStarted();
  EXPECT_EQ(lookup.calls, 2);
  EXPECT_EQ(holder.held(), lookup.service);
}

// The process's own holder, through netcdflib, in a fresh process: it starts on the first
// call any test makes.
bool firstCallsOfAProcess() {
  FlakyLookup lookup;
  serviceLookup() = lookup.function();
  try {
    test::call("getConstantNames");
    return false;
  } catch (const std::runtime_error&) {
  }
  if (processServiceHolder().held()) return false;  // nothing of the failed call was done
  test::call("getConstantNames");
  return test::call("getConstantNames")[0] && lookup.calls == 2 &&
         processServiceHolder().held() == lookup.service;
}

TEST(ServiceHolderDeathTest, NetcdflibRetriesAFailedStartUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(firstCallsOfAProcess() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
