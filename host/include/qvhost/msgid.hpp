// Message-ID errors and warnings: an identifier "<component>:<id>" plus ordered
// arguments that the host's message catalogue substitutes into its text.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace resource_core {

using MsgArg = std::variant<long, std::string, std::u16string>;

class BaseMsgID {
 public:
  BaseMsgID(std::string component, std::string identifier, std::vector<MsgArg> arguments = {})
      : arguments_(std::move(arguments)),
        component_(std::move(component)),
        identifier_(std::move(identifier)) {}

  const std::vector<MsgArg>& arguments() const noexcept { return arguments_; }
  const std::string& component() const noexcept { return component_; }
  const std::string& identifier() const noexcept { return identifier_; }
  // component:identifier
  std::string fullIdentifier() const { return component_ + ":" + identifier_; }

 private:
  std::vector<MsgArg> arguments_;
  std::string component_;
  std::string identifier_;
};

// Catalogue text of an identifier with its arguments substituted; identifiers the
// catalogue does not know get a generic text naming the identifier and its arguments.
std::u16string messageText(const BaseMsgID& id);
// True when the catalogue has a text for the full identifier.
bool catalogueHas(const std::string& fullIdentifier);

}  // namespace resource_core

namespace foundation::core::except {

class IMsgIDException {
 public:
  virtual ~IMsgIDException() = default;
  virtual const resource_core::BaseMsgID& GetID() const noexcept = 0;
  // The full message identifier, component:identifier.
  virtual std::string get_error_id() const = 0;
  virtual std::u16string GetUnicodeMessageTxt() const = 0;
  // Throws the most-derived exception object (a copy of this).
  [[noreturn]] virtual void rethrowAsThrown() const = 0;
};

// Formats what() (UTF-8 "identifier: text") into cache once; never throws.
const char* formatWhat(const resource_core::BaseMsgID& id, std::string& cache) noexcept;

template <class ID, class Base = std::exception, class Extra = void>
class Exception : public IMsgIDException, public Base {
  static_assert(std::is_base_of_v<resource_core::BaseMsgID, ID>);

 public:
  explicit Exception(ID id) : id_(std::move(id)) {}

  const resource_core::BaseMsgID& GetID() const noexcept override { return id_; }
  const ID& identifier() const noexcept { return id_; }
  std::string get_error_id() const override { return id_.fullIdentifier(); }
  std::u16string GetUnicodeMessageTxt() const override { return resource_core::messageText(id_); }
  const char* what() const noexcept override { return formatWhat(id_, what_); }
  [[noreturn]] void rethrowAsThrown() const override { throw *this; }

 private:
  ID id_;
  mutable std::string what_;
};

}  // namespace foundation::core::except

namespace matrix::detail {
// The host's path for turning a user exception into a host error. The substitute host
// throws the exception itself; it never returns.
[[noreturn]] void do_legacy_qv_error(const foundation::core::except::IMsgIDException& e);
}  // namespace matrix::detail

// Raises a message-ID error; never returns.
template <class ID>
[[noreturn]] void qvErrMsgId(const ID& id) {
  const foundation::core::except::Exception<ID> e(id);
  matrix::detail::do_legacy_qv_error(e);
}

// Issues a host warning and returns.
void qvWarningMsgId(const resource_core::BaseMsgID& id);

// Embedding programs observe warnings by installing a handler (for the whole process);
// the previous handler is returned. Without one, warnings go to stderr as
// "Warning: <text>".
using qvWarningHandler = std::function<void(const resource_core::BaseMsgID& id, const std::u16string& text)>;
qvWarningHandler qvSetWarningHandler(qvWarningHandler handler);

// Host-defined error: a missing element in a string array where text is required.
namespace QUARNA::string {
struct MissingNotSupported : resource_core::BaseMsgID {
  MissingNotSupported() : BaseMsgID("QUARNA:string", "MissingNotSupported") {}
};
}  // namespace QUARNA::string
