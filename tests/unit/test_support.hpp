// Helpers shared by the unit tests: host arrays of every class, gateway calls, and a
// catcher for message-ID errors that keeps the identifier and the arguments.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "gateway/netcdflib.hpp"
#include "qvhost/qvhost.hpp"

namespace test {

// ---- host arrays ------------------------------------------------------------------

// The host class of an element type, from the host's own list of numeric classes.
template <class T, std::size_t I = 0>
constexpr qvClassID classOf() {
  if constexpr (std::is_same_v<T, char16_t>)
    return qvCHAR_CLASS;
  else if constexpr (std::is_same_v<T, std::tuple_element_t<I, qvNumericTypes>>)
    return static_cast<qvClassID>(qvDOUBLE_CLASS + I);
  else
    return classOf<T, I + 1>();
}

// Zero-filled real array of a numeric, char or logical class.
inline qvArrayPtr zeros(qvClassID cls, std::initializer_list<std::uint64_t> dims,
                        qvComplexity complexity = qvREAL) {
  const std::vector<std::uint64_t> d(dims);
  return matrix::detail::do_create_numeric(d, cls, complexity);
}

// Array of T filled column-major from values; dims default to a row.
template <class T>
qvArrayPtr array(std::vector<T> values, std::vector<std::uint64_t> dims = {}) {
  if (dims.empty()) dims = {1, values.size()};
  qvArrayPtr a = matrix::detail::do_create_numeric(dims, classOf<T>(), qvREAL);
  auto* out = static_cast<T*>(qvGetData(a.get()));
  for (std::size_t i = 0; i < values.size(); ++i) out[i] = values[i];
  return a;
}

template <class T>
qvArrayPtr scalar(T value) {
  return array<T>({value}, {1, 1});
}

inline qvArrayPtr complexScalar(double re, double im) {
  qvArrayPtr a = zeros(qvDOUBLE_CLASS, {1, 1}, qvCOMPLEX);
  *static_cast<double*>(qvGetData(a.get())) = re;
  *static_cast<double*>(qvGetImagData(a.get())) = im;
  return a;
}

inline qvArrayPtr logicalScalar(bool value) {
  qvArrayPtr a = zeros(qvLOGICAL_CLASS, {1, 1});
  qvGetLogicals(a.get())[0] = value;
  return a;
}

inline qvArrayPtr charRow(const std::string& text) {
  return matrix::create(text.data(), text.size());
}
inline qvArrayPtr charRow(const std::u16string& text) {
  return matrix::create(text.data(), text.size());
}
// A char array of any shape, filled column-major.
inline qvArrayPtr charArray(const std::u16string& units, std::uint64_t rows, std::uint64_t cols) {
  qvArrayPtr a = zeros(qvCHAR_CLASS, {rows, cols});
  auto* out = static_cast<char16_t*>(qvGetData(a.get()));
  for (std::size_t i = 0; i < units.size(); ++i) out[i] = units[i];
  return a;
}

inline qvArrayPtr stringScalar(const std::u16string& text) { return createStringArray(text); }

inline qvArrayPtr emptyCell() {
  const std::array<std::uint64_t, 2> dims{1, 1};
  return matrix::detail::do_create_cell(dims);
}

inline qvArrayPtr structScalar() {
  const std::array<std::uint64_t, 2> dims{1, 1};
  return qvCreateOpaque(dims, qvSTRUCT_CLASS);
}

inline std::u16string charText(const qvArray* a) { return matrix::get_ustring(a); }

// ---- reading results ----------------------------------------------------------------

using Dims = std::vector<std::uint64_t>;

inline Dims dimsOf(const qvArray* a) {
  return {qvGetDimensions(a), qvGetDimensions(a) + qvGetNumberOfDimensions(a)};
}
inline Dims dimsOf(const qvArrayPtr& a) { return dimsOf(a.get()); }

// The elements of a numeric array, in linear order.
template <class T>
std::vector<T> valuesOf(const qvArray* a) {
  const auto* p = static_cast<const T*>(qvGetData(a));
  return {p, p + qvGetNumberOfElements(a)};
}
template <class T>
std::vector<T> valuesOf(const qvArrayPtr& a) {
  return valuesOf<T>(a.get());
}

// The first element of a double array (scalar outputs).
inline double number(const qvArrayPtr& a) {
  return *static_cast<const double*>(qvGetData(a.get()));
}

// ---- gateway calls ----------------------------------------------------------------

using Outputs = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

// An argument of call(): a host array, or a number, flag or text made into one that lives
// until the call's statement ends.
class Arg {
 public:
  Arg(const qvArray* a) : p_(a) {}
  Arg(const qvArrayPtr& a) : p_(a.get()) {}
  Arg(qvArrayPtr&& a) : owned_(std::move(a)), p_(owned_.get()) {}
  Arg(double v) : Arg(scalar<double>(v)) {}
  Arg(int v) : Arg(scalar<double>(v)) {}
  Arg(std::same_as<bool> auto v) : Arg(logicalScalar(v)) {}  // no pointer becomes a flag
  Arg(const char* text) : Arg(charRow(text)) {}
  Arg(const std::string& text) : Arg(charRow(text)) {}
  Arg(const std::u16string& text) : Arg(charRow(text)) {}
  Arg(const char16_t* text) : Arg(charRow(std::u16string(text))) {}
  const qvArray* get() const { return p_; }

 private:
  qvArrayPtr owned_;
  const qvArray* p_;
};

// Calls netcdflib with the operation name as a char row followed by the arguments.
inline Outputs call(const std::string& operation, std::initializer_list<Arg> arguments = {}) {
  std::vector<const qvArray*> inputs;
  for (const Arg& a : arguments) inputs.push_back(a.get());
  const qvArrayPtr name = charRow(operation);
  inputs.insert(inputs.begin(), name.get());
  Outputs outputs;
  // Handlers fill every output they make; asking for none is never asking for too many.
  netcdflib(0, outputs.data(), static_cast<int>(inputs.size()), inputs.data());
  return outputs;
}

// The first output of call().
inline qvArrayPtr call1(const std::string& operation, std::initializer_list<Arg> arguments = {}) {
  return std::move(call(operation, arguments)[0]);
}

// ---- message-ID errors ------------------------------------------------------------

using Args = std::vector<resource_core::MsgArg>;

struct CaughtError {
  std::string id;  // component:identifier
  Args args;
};

inline std::ostream& operator<<(std::ostream& os, const CaughtError& e) { return os << e.id; }

// Message arguments as errors carry them: texts as UTF-8 strings, whole numbers as long.
template <class... T>
Args args(T&&... values) {
  [[maybe_unused]] auto one = [](auto&& v) -> resource_core::MsgArg {
    if constexpr (std::is_integral_v<std::decay_t<decltype(v)>>)
      return static_cast<long>(v);
    else
      return std::string(v);
  };
  return Args{one(std::forward<T>(values))...};
}

// Runs f and returns the message-ID error it raised, or nothing when it returned.
// Other exceptions pass.
template <class F>
std::optional<CaughtError> catchMsgId(F&& f) {
  try {
    std::forward<F>(f)();
  } catch (const foundation::core::except::IMsgIDException& e) {
    return CaughtError{e.get_error_id(), e.GetID().arguments()};
  }
  return std::nullopt;
}

// Asserts inside a test that f raises exactly this identifier with these arguments.
#define EXPECT_MSGID(statement, fullId, expectedArgs)                 \
  do {                                                                \
    const auto caught_ = ::test::catchMsgId([&] { statement; });      \
    ASSERT_TRUE(caught_.has_value()) << "no error from: " #statement; \
    EXPECT_EQ(caught_->id, fullId) << "from: " #statement;            \
    EXPECT_EQ(caught_->args, expectedArgs) << "from: " #statement;    \
  } while (false)

// ---- files ------------------------------------------------------------------------

// A fresh directory for files a test writes: under NETCDFLIB_TEST_TMP when set, otherwise
// in the system's temporary directory. Removed with its contents at the end of the scope.
class ScratchDir {
 public:
  ScratchDir() {
    const char* base = std::getenv("NETCDFLIB_TEST_TMP");
    std::filesystem::path root = base != nullptr ? base : std::filesystem::temp_directory_path();
    std::filesystem::create_directories(root);
    std::string pattern = (root / "netcdflib-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
  }
  ~ScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace test
