// Message-ID errors: what() formatting and the host's raising path.
#include <boost/locale/encoding_utf.hpp>
#include <exception>

#include "qvhost/msgid.hpp"

namespace foundation::core::except {

const char* formatWhat(const resource_core::BaseMsgID& id, std::string& cache) noexcept {
  if (!cache.empty()) return cache.c_str();
  try {
    const std::u16string text = resource_core::messageText(id);
    cache = id.fullIdentifier() + ": " +
            boost::locale::conv::utf_to_utf<char>(text, boost::locale::conv::skip);
  } catch (...) {
    // Out of memory while formatting: the identifier alone still says what failed.
    return "message-ID error (message text unavailable)";
  }
  return cache.c_str();
}

}  // namespace foundation::core::except

namespace matrix::detail {

void do_legacy_qv_error(const foundation::core::except::IMsgIDException& e) {
  e.rethrowAsThrown();
  // An override that returned would break every caller's no-return guarantee.
  std::terminate();
}

}  // namespace matrix::detail
