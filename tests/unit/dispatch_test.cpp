// Looking up and dispatching operations, the count of outputs, and the start-up of the
// host's services on the first call.

#include <stdexcept>

#include "convert/scalars.hpp"
#include "gateway/dispatch.hpp"
#include "gateway/errors.hpp"
#include "gateway/operation.hpp"
#include "gateway/row_shapes.hpp"
#include "gateway/startup.hpp"
#include "test_support.hpp"

namespace {

using namespace test;

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
  plhs[0] = scalar<double>(row.opId);
}
void scalarHandler(int, qvArrayPtr* plhs, int, const qvArray* const* in, const OperationRow&) {
  plhs[0] = scalar<double>(getScalar<int>(in[0], "ncid"));
}
void failingHandler(int, qvArrayPtr*, int, const qvArray* const*, const OperationRow&) {
  qvErrMsgId(QUARNA::imagesci::netcdf::badScalarArgument("ncid", "numeric"));
}
void throwingHandler(int, qvArrayPtr*, int, const qvArray* const*, const OperationRow&) {
  throw std::runtime_error("host failure");
}

constexpr OperationRow kTestTable[] = {
    {10, "alpha", 1, recordingHandler},   {11, "none", 0, recordingHandler},
    {12, "alpha", 2, recordingHandler},  // never reached: the first "alpha" wins
    {14, "scalar", 1, scalarHandler},     {15, "failing", 0, failingHandler},
    {16, "throwing", 0, throwingHandler},
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
Outputs run(std::initializer_list<Arg> prhs) {
  std::vector<const qvArray*> in;
  for (const Arg& a : prhs) in.push_back(a.get());
  Outputs out;
  dispatchOperation(kTestTable, 1, out.data(), static_cast<int>(in.size()), in.data());
  return out;
}

TEST(Dispatch, HandlersGetTheInputsAfterTheNameAndFailuresAreMapped) {
  const qvArrayPtr arg = scalar(5.0);
  EXPECT_EQ(10, number(run({"alpha", arg})[0]));
  EXPECT_EQ(std::tie(received.nlhs, received.nInputs, received.inputs[0], received.row),
            std::make_tuple(1, 1, arg.get(), &kTestTable[0]));
  EXPECT_MSGID(run({}), kUnrecognized, args(""));
  EXPECT_MSGID(run({1.0}), kUnrecognized, args(""));
  // Range failures in converting an input become argumentOutOfBounds.
  EXPECT_MSGID(run({"scalar", 1e30}), kOutOfBounds, args());
  EXPECT_MSGID(run({"failing"}), "QUARNA:imagesci:netcdf:badScalarArgument",
               args("ncid", "numeric"));
  EXPECT_THROW(run({"throwing"}), std::runtime_error);
}

// More outputs than a row makes are refused before its handler runs: here the handler
// would have refused the empty inputs.
TEST(OperationTable, TooManyOutputsAreRefusedFirst) {
  const qvArrayPtr empty = zeros(qvDOUBLE_CLASS, {0, 0});
  for (const OperationRow& row : operationTable()) {
    // The one row an earlier row hides is never reached.
    if (catchMsgId([&] { lookupOperation(operationTable(), row.name, row.nInputs); })) continue;
    const qvArrayPtr name = charRow(row.name);
    std::vector<const qvArray*> inputs(static_cast<std::size_t>(row.nInputs) + 1, empty.get());
    inputs[0] = name.get();
    Outputs out;
    EXPECT_MSGID(
        netcdflib(outputCount(row) + 1, out.data(), static_cast<int>(inputs.size()), inputs.data()),
        "QUARNA:imagesci:validate:tooManyOutputs", args(row.name, outputCount(row)));
  }
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

// The process's own holder, through netcdflib, in a fresh process: it starts on the first
// call any test makes.
bool firstCallsOfAProcess() {
  FlakyLookup lookup;
  serviceLookup() = lookup.function();
  try {
    call("getConstantNames");
    return false;
  } catch (const std::runtime_error&) {
  }
  if (processServiceHolder().held()) return false;  // nothing of the failed call was done
  call("getConstantNames");
  return call("getConstantNames")[0] && lookup.calls == 2 &&
         processServiceHolder().held() == lookup.service;
}

TEST(ServiceHolderDeathTest, NetcdflibRetriesAFailedStartUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(firstCallsOfAProcess() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
