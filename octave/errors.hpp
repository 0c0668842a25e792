// Failures inside a call become Octave errors only after every host array of the call is
// released: they are captured here first and raised once the host side is gone.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>

#include "qvhost/msgid.hpp"

namespace octbridge {

// A failure of the bridge itself, with its Octave identifier.
class BridgeError : public std::runtime_error {
 public:
  BridgeError(std::string id, const std::string& message)
      : std::runtime_error(message), id_(std::move(id)) {}
  const std::string& id() const noexcept { return id_; }

 private:
  std::string id_;
};

class PendingError {
 public:
  // Records the exception; Octave's own exceptions (errors raised through Octave,
  // interrupts) are kept as they are, everything else becomes identifier and message.
  void capture(const std::exception_ptr& e) noexcept;
  explicit operator bool() const noexcept { return !id_.empty() || octave_ || undescribed_; }
  const std::string& id() const noexcept { return id_; }
  const std::string& message() const noexcept { return message_; }
  // Throws the Octave error.
  [[noreturn]] void raise() const;

 private:
  std::string id_;
  std::string message_;
  std::exception_ptr octave_;
  bool undescribed_ = false;
};

// Shows a host warning as an Octave warning with its identifier. Must not throw into the
// library: when Octave turns the warning into an error, that error waits for
// takeDeferredWarningError.
void showWarning(const resource_core::BaseMsgID& id, const std::u16string& text) noexcept;
std::exception_ptr takeDeferredWarningError() noexcept;

}  // namespace octbridge
