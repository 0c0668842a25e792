// Host warnings: delivered to the process-wide handler, or to stderr without one.
#include <boost/locale/encoding_utf.hpp>
#include <cstdio>
#include <mutex>

#include "qvhost/msgid.hpp"

namespace {

std::mutex handlerMutex;
qvWarningHandler& installedHandler() {
  static qvWarningHandler handler;
  return handler;
}

}  // namespace

qvWarningHandler qvSetWarningHandler(qvWarningHandler handler) {
  const std::lock_guard<std::mutex> lock(handlerMutex);
  std::swap(installedHandler(), handler);
  return handler;
}

void qvWarningMsgId(const resource_core::BaseMsgID& id) {
  const std::u16string text = resource_core::messageText(id);
  qvWarningHandler handler;
  {
    // A copy, so that a handler may install another handler without deadlock.
    const std::lock_guard<std::mutex> lock(handlerMutex);
    handler = installedHandler();
  }
  if (handler) {
    handler(id, text);
    return;
  }
  const std::string narrow = boost::locale::conv::utf_to_utf<char>(text, boost::locale::conv::skip);
  std::fprintf(stderr, "Warning: %s\n", narrow.c_str());
}
