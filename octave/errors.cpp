#include "errors.hpp"

#include <octave/interpreter.h>
#include <octave/oct.h>
#include <octave/quit.h>

#include <cstdio>
#include <new>
#include <utility>

#include "text_codec.hpp"

namespace octbridge {
namespace {

std::exception_ptr deferredWarningError;

void describe(const std::exception_ptr& e, std::string& id, std::string& message,
              std::exception_ptr& octaveException) {
  try {
    std::rethrow_exception(e);
  } catch (const octave::execution_exception&) {
    octaveException = e;
  } catch (const octave::interrupt_exception&) {
    octaveException = e;
  } catch (const octave::exit_exception&) {
    octaveException = e;
  } catch (const foundation::core::except::IMsgIDException& err) {
    id = err.get_error_id();
    message = encodeUnits(err.GetUnicodeMessageTxt());
  } catch (const BridgeError& err) {
    id = err.id();
    message = std::string("netcdflib: ") + err.what();
  } catch (const std::bad_alloc&) {
    id = "netcdflib:outOfMemory";
    message = "netcdflib: out of memory";
  } catch (const std::exception& err) {
    id = "netcdflib:internalError";
    message = std::string("netcdflib: unexpected failure: ") + err.what();
  } catch (...) {
    id = "netcdflib:internalError";
    message = "netcdflib: unexpected failure of unknown kind";
  }
}

}  // namespace

void PendingError::capture(const std::exception_ptr& e) noexcept {
  try {
    describe(e, id_, message_, octave_);
  } catch (...) {
    // Describing the failure failed too, for want of memory.
    undescribed_ = true;
  }
}

void PendingError::raise() const {
  if (octave_) std::rethrow_exception(octave_);
  if (undescribed_ || id_.empty())
    error_with_id("netcdflib:outOfMemory", "netcdflib: out of memory");
  error_with_id(id_.c_str(), "%s", message_.c_str());
}

void showWarning(const resource_core::BaseMsgID& id, const std::u16string& text) noexcept {
  try {
    const std::string message = encodeUnits(text);
    if (octave::interpreter::the_interpreter() == nullptr) {
      std::fprintf(stderr, "warning: %s\n", message.c_str());
      return;
    }
    warning_with_id(id.fullIdentifier().c_str(), "%s", message.c_str());
  } catch (...) {
    if (!deferredWarningError) deferredWarningError = std::current_exception();
  }
}

std::exception_ptr takeDeferredWarningError() noexcept {
  return std::exchange(deferredWarningError, nullptr);
}

}  // namespace octbridge
