// Helpers shared by the unit tests: host arrays, gateway calls, message-ID errors, and a
// scratch directory.
#pragma once

#include <gtest/gtest.h>
#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <concepts>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "gateway/netcdflib.hpp"
#include "qvhost/qvhost.hpp"

namespace test {

using Dims = std::vector<std::uint64_t>;

// The host class of an element type: numeric, else logical for bool, else char.
template <class T, std::size_t I = 0>
constexpr qvClassID classOf() {
  if constexpr (I == std::tuple_size_v<qvNumericTypes>)
    return std::is_same_v<T, bool> ? qvLOGICAL_CLASS : qvCHAR_CLASS;
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
inline qvArrayPtr charRow(const std::string& t) { return matrix::create(t.data(), t.size()); }
// A column cell of the elements.
template <class... A>
qvArrayPtr cell(A&&... elements) {
  qvArrayPtr c = matrix::detail::do_create_cell(Dims{sizeof...(A), 1});
  std::size_t i = 0;
  (qvSetCell(c.get(), i++, std::forward<A>(elements)), ...);
  return c;
}

using Outputs = std::array<qvArrayPtr, kNetcdflibMaxOutputs>;

// An argument of call(): a host array, or a number, flag or text made into one that lives
// until the call's statement ends.
struct Arg {
  Arg(const qvArrayPtr& a) : p(a.get()) {}
  Arg(qvArrayPtr&& a) : owned(std::move(a)), p(owned.get()) {}
  Arg(double v) : Arg(scalar(v)) {}
  Arg(int v) : Arg(scalar<double>(v)) {}
  Arg(std::same_as<bool> auto v) : Arg(scalar<bool>(v)) {}  // no pointer becomes a flag
  Arg(const std::string& t) : Arg(charRow(t)) {}
  Arg(const char* t) : Arg(charRow(t)) {}
  const qvArray* get() const { return p; }
  qvArrayPtr owned;
  const qvArray* p;
};

template <class T = double>
std::vector<T> valuesOf(const Arg& a) {
  const auto* p = static_cast<const T*>(qvGetData(a.p));
  return {p, p + qvGetNumberOfElements(a.p)};
}
// The first element; read in place, since a vector made for one element trips GCC 12's
// -Wfree-nonheap-object in optimised builds.
inline double number(const Arg& a) {
  if (qvGetNumberOfElements(a.get()) == 0) throw std::out_of_range("no element");
  return *static_cast<const double*>(qvGetData(a.get()));
}

// Calls netcdflib with the operation name followed by the arguments, asking for no outputs.
inline Outputs call(const std::string& op, std::initializer_list<Arg> arguments = {}) {
  const qvArrayPtr name = charRow(op);
  std::vector<const qvArray*> inputs{name.get()};
  for (const Arg& a : arguments) inputs.push_back(a.get());
  Outputs outputs;
  netcdflib(0, outputs.data(), int(inputs.size()), inputs.data());
  return outputs;
}
inline qvArrayPtr call1(const std::string& op, std::initializer_list<Arg> arguments = {}) {
  return std::move(call(op, arguments)[0]);
}

// Message arguments as errors carry them: texts as UTF-8 strings, whole numbers as long.
using Args = std::vector<resource_core::MsgArg>;
template <class... T>
Args args(const T&... v) {
  return {resource_core::MsgArg(std::conditional_t<std::integral<T>, long, std::string>(v))...};
}

struct CaughtError {
  std::string id;  // component:identifier, the component left out for QUARNA:imagesci:netcdf
  Args args;
};
// The message-ID error f raised, or nothing when it returned. Other exceptions pass.
template <class F>
std::optional<CaughtError> catchMsgId(F&& f) {
  try {
    f();
  } catch (const foundation::core::except::IMsgIDException& e) {
    std::string id = e.get_error_id();
    if (id.starts_with("QUARNA:imagesci:netcdf:")) id.erase(0, 23);
    return CaughtError{id, e.GetID().arguments()};
  }
  return std::nullopt;
}
// The status name of a libraryFailure, else the identifier raised, else "no error".
template <class F>
std::string statusOf(F&& f) {
  const auto caught = catchMsgId(f);
  if (!caught) return "no error";
  return caught->id != "libraryFailure" ? caught->id : std::get<std::string>(caught->args.at(1));
}

// Expects statement to raise the message-ID error expectedId (as CaughtError has it) with the
// message arguments that follow.
#define EXPECT_MSGID(statement, expectedId, ...)                                \
  do {                                                                          \
    const auto caught_ = ::test::catchMsgId([&] { statement; });                \
    ASSERT_TRUE(caught_.has_value()) << "no error from: " #statement;           \
    EXPECT_EQ(caught_->id, expectedId) << "from: " #statement;                  \
    EXPECT_EQ(caught_->args, ::test::args(__VA_ARGS__)) << "from: " #statement; \
  } while (false)

// A fresh directory under NETCDFLIB_TEST_TMP (else /tmp), removed with its contents.
struct ScratchDir {
  std::filesystem::path path = [] {
    const char* base = std::getenv("NETCDFLIB_TEST_TMP");
    std::filesystem::create_directories(base ? base : "/tmp");
    std::string pattern = std::string(base ? base : "/tmp") + "/netcdflib-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    return pattern;
  }();
  ~ScratchDir() {
    std::error_code e;
    std::filesystem::remove_all(path, e);
  }
  std::string file(const std::string& name) const { return (path / name).string(); }
};

}  // namespace test
