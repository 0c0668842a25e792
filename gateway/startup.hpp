// The first-call step: obtain and hold the libcurl initialiser service for the life of
// the process, so that remote data access stays initialised.
#pragma once

#include <functional>
#include <memory>
#include <mutex>

using ServiceLookup = std::function<std::shared_ptr<void>()>;

// Runs the lookup once. A lookup that throws is not marked done: the exception passes
// and the next ensureStarted() tries again. Concurrent first callers wait.
class ServiceHolder {
 public:
  explicit ServiceHolder(ServiceLookup lookup) : lookup_(std::move(lookup)) {}
  void ensureStarted();
  const std::shared_ptr<void>& held() const noexcept { return held_; }

 private:
  ServiceLookup lookup_;
  std::once_flag once_;
  std::shared_ptr<void> held_;
};

// The lookup the process uses: through CppMicroServices when built with it, otherwise
// one that finds nothing. Tests replace it before the first call.
ServiceLookup& serviceLookup();

// The process's holder (first use creates it with serviceLookup()).
ServiceHolder& processServiceHolder();
