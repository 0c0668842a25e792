#include "gateway/startup.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "test_support.hpp"

namespace {

// A lookup that fails its first `failures` calls, then finds a service.
struct CountingLookup {
  int calls = 0;
  int failures = 0;
  std::shared_ptr<void> service = std::make_shared<int>(42);

  ServiceLookup function() {
    return [this]() -> std::shared_ptr<void> {
      ++calls;
      if (calls <= failures) throw std::runtime_error("The bundle context is no longer valid");
      return service;
    };
  }
};

TEST(ServiceHolder, FailedStartIsRetriedSuccessIsKept) {
  CountingLookup lookup{.failures = 1};
  ServiceHolder holder(lookup.function());
  EXPECT_THROW(holder.ensureStarted(), std::runtime_error);
  EXPECT_FALSE(holder.held());
  holder.ensureStarted();
  EXPECT_EQ(holder.held(), lookup.service);
  holder.ensureStarted();
  holder.ensureStarted();
  EXPECT_EQ(lookup.calls, 2);
  EXPECT_EQ(holder.held(), lookup.service);
}

TEST(ServiceHolder, NoServiceIsSuccessToo) {
  int calls = 0;
  ServiceHolder holder([&calls] {
    ++calls;
    return std::shared_ptr<void>();
  });
  holder.ensureStarted();
  holder.ensureStarted();
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(holder.held());
}

// The process's own holder, seen through netcdflib. It runs in a fresh process of its own,
// since the holder starts on the first call any test makes.
bool firstCallsOfAProcess() {
  CountingLookup lookup{.failures = 1};
  serviceLookup() = lookup.function();
  test::Outputs outputs;
  try {
    outputs = test::call("getConstantNames");
    return false;
  } catch (const std::runtime_error&) {
  }
  // Nothing of the failed call was done.
  if (outputs[0] || processServiceHolder().held()) return false;
  outputs = test::call("getConstantNames");
  outputs = test::call("getConstantNames");
  return outputs[0] && lookup.calls == 2 && processServiceHolder().held() == lookup.service;
}

TEST(ServiceHolderDeathTest, NetcdflibRetriesAFailedStartUp) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(std::exit(firstCallsOfAProcess() ? 0 : 1), testing::ExitedWithCode(0), "");
}

}  // namespace
