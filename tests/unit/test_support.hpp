// Helpers shared by the unit tests: host arrays, gateway calls, message-ID errors, and a
// scratch directory.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <concepts>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "gateway/netcdflib.hpp"
#include "qvhost/qvhost.hpp"

namespace test {

using Dims = std::vector<std::uint64_t>;

// The host class of an element type: char16_t is char, bool logical, the rest numeric.
template <class T, std::size_t I = 0>
constexpr qvClassID classOf() {
  if constexpr (std::is_same_v<T, char16_t>)
    return qvCHAR_CLASS;
  else if constexpr (std::is_same_v<T, bool>)
    return qvLOGICAL_CLASS;
  else if constexpr (std::is_same_v<T, std::tuple_element_t<I, qvNumericTypes>>)
    return static_cast<qvClassID>(qvDOUBLE_CLASS + I);
  else
    return classOf<T, I + 1>();
}

inline qvArrayPtr zeros(qvClassID cls, const Dims& dims, qvComplexity c = qvREAL) {
  return matrix::detail::do_create_numeric(dims, cls, c);
}

// Array of T filled column-major from values; a row unless dims are given.
template <class T>
qvArrayPtr array(const std::vector<T>& values, Dims dims = {}) {
  qvArrayPtr a = zeros(classOf<T>(), dims.empty() ? Dims{1, values.size()} : dims);
  std::copy(values.begin(), values.end(), static_cast<T*>(qvGetData(a.get())));
  return a;
}
template <class T>
qvArrayPtr scalar(T value) {
  return array<T>({value}, {1, 1});
}
// A numeric array of class cls holding values (converted to its type); a row by default.
inline qvArrayPtr numeric(qvClassID cls, const std::vector<double>& values, Dims dims = {}) {
  qvArrayPtr a = zeros(cls, dims.empty() ? Dims{1, values.size()} : dims);
  qvVisitNumeric(cls, [&](auto t) {
    auto* out = static_cast<decltype(t)*>(qvGetData(a.get()));
    for (const double v : values) *out++ = static_cast<decltype(t)>(v);
  });
  return a;
}

inline qvArrayPtr charRow(const std::string& t) { return matrix::create(t.data(), t.size()); }
inline qvArrayPtr charRow(const std::u16string& t) { return matrix::create(t.data(), t.size()); }
inline qvArrayPtr opaque(qvClassID cls) { return qvCreateOpaque(Dims{1, 1}, cls); }
// A column cell of the elements.
template <class... A>
qvArrayPtr cell(A&&... elements) {
  qvArrayPtr c = matrix::detail::do_create_cell(Dims{sizeof...(A), 1});
  std::size_t i = 0;
  (qvSetCell(c.get(), i++, std::forward<A>(elements)), ...);
  return c;
}

// One of each kind of array that no numeric argument accepts.
inline std::vector<qvArrayPtr> nonNumeric() {
  std::vector<qvArrayPtr> v;
  v.push_back(charRow("5"));
  v.push_back(scalar(true));
  v.push_back(cell(scalar(5.0)));
  v.push_back(createStringArray(u"5"));
  v.push_back(opaque(qvSTRUCT_CLASS));
  return v;
}

inline Dims dimsOf(const qvArray* a) {
  return {qvGetDimensions(a), qvGetDimensions(a) + qvGetNumberOfDimensions(a)};
}
inline Dims dimsOf(const qvArrayPtr& a) { return dimsOf(a.get()); }
template <class T = double>
std::vector<T> valuesOf(const qvArray* a) {
  const auto* p = static_cast<const T*>(qvGetData(a));
  return {p, p + qvGetNumberOfElements(a)};
}
template <class T = double>
std::vector<T> valuesOf(const qvArrayPtr& a) {
  return valuesOf<T>(a.get());
}
inline double number(const qvArrayPtr& a) { return valuesOf(a).at(0); }
inline std::u16string text(const qvArrayPtr& a) { return matrix::get_ustring(a.get()); }

using Outputs = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

// An argument of call(): a host array, or a number, flag or text made into one that lives
// until the call's statement ends.
class Arg {
 public:
  Arg(const qvArray* a) : p_(a) {}
  Arg(const qvArrayPtr& a) : p_(a.get()) {}
  Arg(qvArrayPtr&& a) : owned_(std::move(a)), p_(owned_.get()) {}
  Arg(double v) : Arg(scalar(v)) {}
  Arg(int v) : Arg(scalar<double>(v)) {}
  Arg(std::same_as<bool> auto v) : Arg(scalar<bool>(v)) {}  // no pointer becomes a flag
  Arg(const char* t) : Arg(charRow(t)) {}
  Arg(const std::string& t) : Arg(charRow(t)) {}
  Arg(const std::u16string& t) : Arg(charRow(t)) {}
  const qvArray* get() const { return p_; }

 private:
  qvArrayPtr owned_;
  const qvArray* p_;
};

// Calls netcdflib with the operation name followed by the arguments, asking for nlhs outputs.
inline Outputs call(const std::string& op, std::initializer_list<Arg> arguments = {},
                    int nlhs = 0) {
  const qvArrayPtr name = charRow(op);
  std::vector<const qvArray*> inputs{name.get()};
  for (const Arg& a : arguments) inputs.push_back(a.get());
  Outputs outputs;
  netcdflib(nlhs, outputs.data(), static_cast<int>(inputs.size()), inputs.data());
  return outputs;
}
inline qvArrayPtr call1(const std::string& op, std::initializer_list<Arg> arguments = {}) {
  return std::move(call(op, arguments)[0]);
}

using Args = std::vector<resource_core::MsgArg>;
struct CaughtError {
  std::string id;  // component:identifier
  Args args;
};

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

// The message-ID error f raised, or nothing when it returned. Other exceptions pass.
template <class F>
std::optional<CaughtError> catchMsgId(F&& f) {
  try {
    std::forward<F>(f)();
  } catch (const foundation::core::except::IMsgIDException& e) {
    return CaughtError{e.get_error_id(), e.GetID().arguments()};
  }
  return std::nullopt;
}
// The status name of a libraryFailure, else the identifier raised, else "no error".
template <class F>
std::string statusOf(F&& f) {
  const auto caught = catchMsgId(std::forward<F>(f));
  if (!caught) return "no error";
  if (caught->id != "QUARNA:imagesci:netcdf:libraryFailure") return caught->id;
  return std::get<std::string>(caught->args.at(1));
}

#define EXPECT_MSGID(statement, fullId, expectedArgs)                 \
  do {                                                                \
    const auto caught_ = ::test::catchMsgId([&] { statement; });      \
    ASSERT_TRUE(caught_.has_value()) << "no error from: " #statement; \
    EXPECT_EQ(caught_->id, fullId) << "from: " #statement;            \
    EXPECT_EQ(caught_->args, expectedArgs) << "from: " #statement;    \
  } while (false)

// A fresh directory under NETCDFLIB_TEST_TMP (else the system's), removed with its contents.
class ScratchDir {
 public:
  ScratchDir() {
    const char* base = std::getenv("NETCDFLIB_TEST_TMP");
    const std::filesystem::path root = base ? base : std::filesystem::temp_directory_path();
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
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace test
