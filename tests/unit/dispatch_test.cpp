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
  const qvArray* first;  // the inputs die with the call: keep the first one's address
  const OperationRow* row;
} received;

// Records what it got and answers its row's id; some rows fail instead.
void handler(int nlhs, qvArrayPtr* plhs, int n, const qvArray* const* in, const OperationRow& row) {
  received = {nlhs, n, n > 0 ? in[0] : nullptr, &row};
  if (row.opId == 14) getScalar<int>(in[0], "ncid");
  if (row.opId == 15) qvErrMsgId(QUARNA::imagesci::netcdf::badScalarArgument("ncid", "numeric"));
  if (row.opId == 16) throw std::runtime_error("host failure");
  plhs[0] = scalar<double>(row.opId);
}

constexpr OperationRow kTestTable[] = {
    {10, "alpha", 1, handler},  {12, "alpha", 2, handler},  // never reached: the first wins
    {14, "scalar", 1, handler}, {15, "failing", 0, handler}, {16, "throwing", 0, handler},
};

TEST(LookupOperation, FirstMatchDecidesAndUnknownNamesCarryTheName) {
  EXPECT_EQ(lookupOperation(kTestTable, "alpha", 1).opId, 10);
  EXPECT_MSGID(lookupOperation(kTestTable, "alpha", 2), kWrongCount, args());
  for (const char* name : {"Alpha", "alpha ", "alph", ""})
    EXPECT_MSGID(lookupOperation(kTestTable, name, 1), kUnrecognized, args(name));
  EXPECT_MSGID(lookupOperation(kTestTable, nullptr, 0), kUnrecognized, args(""));
  // The library's own table is indexed; there too the first row of a name decides.
  EXPECT_MSGID(call("inqDimIDs", {1}), kWrongCount, args());
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
  EXPECT_EQ(std::tie(received.nlhs, received.nInputs, received.first, received.row),
            std::make_tuple(1, 1, arg.get(), &kTestTable[0]));
  EXPECT_MSGID(run({}), kUnrecognized, args(""));
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

// The process's own holder, through netcdflib, in a fresh process (it starts on the first
// call any test makes), with a lookup that fails its first call.
bool firstCallsOfAProcess() {
  int calls = 0;
  const auto service = std::make_shared<int>(42);
  serviceLookup() = [&]() -> std::shared_ptr<void> {
    if (++calls == 1) throw std::runtime_error("The bundle context is no longer valid");
    return service;
  };
  try {
    call("getConstantNames");
    return false;
  } catch (const std::runtime_error&) {
  }
  if (processServiceHolder().held()) return false;  // nothing of the failed call was done
  call("getConstantNames");
  return call("getConstantNames")[0] && calls == 2 && processServiceHolder().held() == service;
}

TEST(ServiceHolderDeathTest, NetcdflibRetriesAFailedStartUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(firstCallsOfAProcess() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
