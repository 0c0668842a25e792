#include "gateway/startup.hpp"

#if defined(NETCDFLIB_WITH_CPPMICROSERVICES)
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/ServiceObjects.h>

#include <stdexcept>

// Supplied by the host environment: the accessor of its framework (invalid when the
// host runs without one) and the service interface whose instance keeps libcurl set up.
namespace foundation::cppmicroservices {
::cppmicroservices::Framework getFramework();
}
namespace foundation::httpclient_core::libcurlinitializer {
class LibCurlInitializer;
}
#endif

namespace {

#if defined(NETCDFLIB_WITH_CPPMICROSERVICES)
std::shared_ptr<void> lookUpLibCurlInitializer() {
  using foundation::httpclient_core::libcurlinitializer::LibCurlInitializer;
  const cppmicroservices::LDAPFilter filter;
  cppmicroservices::Framework framework = foundation::cppmicroservices::getFramework();
  if (!framework) {
    return {};
  }
  cppmicroservices::BundleContext context = framework.GetBundleContext();
  // Throws ServiceException when the interface has no identifier; that is the host's to
  // see, and the next call tries again.
  const auto references = context.GetServiceReferences<LibCurlInitializer>(filter.ToString());
  if (references.empty()) {
    return {};
  }
  if (!context) {
    throw std::runtime_error("The bundle context is no longer valid");
  }
  cppmicroservices::ServiceObjects<LibCurlInitializer> objects =
      context.GetServiceObjects(references.front());
  return objects.GetService();
}
#else
// Without a service framework there is nothing to hold, and that is no error.
std::shared_ptr<void> lookUpLibCurlInitializer() { return {}; }
#endif

}  // namespace

void ServiceHolder::ensureStarted() {
  // A throwing lookup leaves the flag unset, so the next caller tries again.
  std::call_once(once_, [this] { held_ = lookup_(); });
}

ServiceLookup& serviceLookup() {
  static ServiceLookup lookup = lookUpLibCurlInitializer;
  return lookup;
}

ServiceHolder& processServiceHolder() {
  // Asks serviceLookup() at each attempt rather than copying it, so a replacement made
  // before the first successful start-up is the one used. Destroyed at process exit,
  // releasing the held service.
  static ServiceHolder holder([] { return serviceLookup()(); });
  return holder;
}
