// Looking up and dispatching operations, and the start-up of the host's services on the
// first call.
#include "gateway/dispatch.hpp"
#include "convert/scalars.hpp"
#include "gateway/errors.hpp"
#include "gateway/operation.hpp"
#include "gateway/startup.hpp"
#include "test_support.hpp"

namespace {

using namespace test;

constexpr const char* kUnrecognized = "unrecognizedOperation";
constexpr const char* kWrongCount = "QUARNA:imagesci:validate:wrongNumberOfInputs";
constexpr const char* kOutOfBounds = "QUARNA:imagesci:validate:argumentOutOfBounds";

// What the last recording handler call received (the inputs die with the call: the first
// one's address).
std::tuple<int, int, const qvArray*, const OperationRow*> received;

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
  EXPECT_MSGID(lookupOperation(kTestTable, "alpha", 2), kWrongCount);
  for (const char* name : {"Alpha", "alpha ", "alph", ""})
    EXPECT_MSGID(lookupOperation(kTestTable, name, 1), kUnrecognized, name);
  // The library's own table is indexed; there too the first row of a name decides.
  EXPECT_MSGID(call("inqDimIDs", {1}), kWrongCount);
}

// Dispatches the inputs (the name first, if any) on the test table, one output asked for.
Outputs run(std::initializer_list<Arg> prhs) {
  std::vector<const qvArray*> in;
  for (const Arg& a : prhs) in.push_back(a.get());
  Outputs out;
  dispatchOperation(kTestTable, 1, out.data(), int(in.size()), in.data());
  return out;
}

TEST(Dispatch, HandlersGetTheInputsAfterTheNameAndFailuresAreMapped) {
  const qvArrayPtr arg = scalar(5.0);
  EXPECT_EQ(10, number(run({"alpha", arg})[0]));
  EXPECT_EQ(received, std::make_tuple(1, 1, arg.get(), &kTestTable[0]));
  EXPECT_MSGID(run({}), kUnrecognized, "");
  // Range failures in converting an input become argumentOutOfBounds.
  EXPECT_MSGID(run({"scalar", 1e30}), kOutOfBounds);
  EXPECT_MSGID(run({"failing"}), "badScalarArgument", "ncid", "numeric");
  EXPECT_THROW(run({"throwing"}), std::runtime_error);
}

// The process's own holder, through netcdflib, in a fresh process (it starts on the first
// call any test makes), with a lookup that fails its first call: nothing of the failed call
// stays, and the next one starts the services.
void firstCallsOfAProcess() {
  int calls = 0;
  const auto service = std::make_shared<int>(42);
  serviceLookup() = [&]() -> std::shared_ptr<void> {
    if (++calls == 1) throw std::runtime_error("The bundle context is no longer valid");
    return service;
  };
  bool failedClean = false;
  try {
    call("getConstantNames");
  } catch (const std::runtime_error&) {
    failedClean = !processServiceHolder().held();
  }
  call("getConstantNames");
  const bool ok =
      call1("getConstantNames") && calls == 2 && processServiceHolder().held() == service;
  std::exit(failedClean && ok ? 0 : 1);
}

TEST(ServiceHolderDeathTest, NetcdflibRetriesAFailedStartUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(firstCallsOfAProcess(), testing::ExitedWithCode(0), "");
}

}  // namespace
