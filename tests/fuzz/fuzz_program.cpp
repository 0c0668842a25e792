#include "fuzz_program.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>

#include "gateway/operation.hpp"

namespace fuzz {

namespace {

// Extents worth meeting besides the small ones: limits of 32-bit and 64-bit counts
// (only opaque arrays keep those), row limits of the library, and plain small values.
constexpr std::array<std::uint64_t, 16> kSpecialExtents = {9,
                                                           16,
                                                           64,
                                                           256,
                                                           1025,
                                                           4096,
                                                           65536,
                                                           std::uint64_t{1} << 31,
                                                           (std::uint64_t{1} << 32) + 1,
                                                           std::uint64_t{1} << 40,
                                                           std::uint64_t{1} << 53,
                                                           std::uint64_t{1} << 62,
                                                           0,
                                                           1,
                                                           2,
                                                           3};

// Reads a program through FuzzedDataProvider, or writes one in the layout it reads: the
// structure bytes from the end of the input, element data from the front. One function
// walks a program in both directions, so the two cannot drift apart.
class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : in_(bytes.data(), bytes.size()) {}
  bool more() { return in_.remaining_bytes() != 0; }
  void byte(std::uint8_t& v) { v = in_.ConsumeIntegral<std::uint8_t>(); }
  void bytes(std::vector<std::uint8_t>& v, std::size_t n) {
    v = in_.ConsumeBytes<std::uint8_t>(n);
    v.resize(n, 0);  // past the end, zeros
  }

 private:
  FuzzedDataProvider in_;
};

class Writer {
 public:
  void byte(std::uint8_t& v) { back_.push_back(v); }
  void bytes(std::vector<std::uint8_t>& v, std::size_t n) {
    v.resize(n, 0);
    front_.insert(front_.end(), v.begin(), v.end());
  }
  std::vector<std::uint8_t> result() const {
    std::vector<std::uint8_t> out = front_;
    out.insert(out.end(), back_.rbegin(), back_.rend());
    return out;
  }

 private:
  std::vector<std::uint8_t> front_, back_;
};

template <class IO>
void walkShape(IO& io, std::vector<std::uint8_t>& shape) {
  std::uint8_t header = shape.empty() ? 0 : shape[0];
  io.byte(header);
  shape.resize(3 + header % 4);  // the header, then two to five extent codes
  shape[0] = header;
  for (std::size_t i = 1; i < shape.size(); ++i) io.byte(shape[i]);
}

std::uint64_t nestedCount(const std::vector<std::uint8_t>& shape) {
  return elementCountOf(extentsOf(shape, kMaxNestedElements));
}

template <class IO>
void walkArg(IO& io, ArgSpec& arg, int depth) {
  auto kind = static_cast<std::uint8_t>(arg.kind);
  io.byte(kind);
  arg.kind = static_cast<ArgKind>(kind % static_cast<std::uint8_t>(ArgKind::kCount));
  switch (arg.kind) {
    case ArgKind::PoolId:
      io.byte(arg.a);
      io.byte(arg.b);
      arg.data.resize(1);  // class of the scalar
      io.byte(arg.data[0]);
      break;
    case ArgKind::SmallInt:
    case ArgKind::Special:
    case ArgKind::Empty:
      io.byte(arg.a);
      io.byte(arg.b);
      break;
    case ArgKind::Word:
    case ArgKind::Output:
      io.byte(arg.a);
      break;
    case ArgKind::Numeric:
      io.byte(arg.a);
      walkShape(io, arg.shape);
      io.byte(arg.b);
      io.bytes(arg.data, dataBytesOf(arg));
      break;
    case ArgKind::Char:
    case ArgKind::Logical:
      walkShape(io, arg.shape);
      io.bytes(arg.data, dataBytesOf(arg));
      break;
    case ArgKind::Opaque:
      io.byte(arg.a);
      walkShape(io, arg.shape);
      break;
    case ArgKind::Cell:
      walkShape(io, arg.shape);
      arg.children.resize(depth < kMaxDepth ? nestedCount(arg.shape) : 0);
      for (ArgSpec& child : arg.children) walkArg(io, child, depth + 1);
      break;
    case ArgKind::String:
      walkShape(io, arg.shape);
      arg.children.resize(nestedCount(arg.shape));
      for (ArgSpec& element : arg.children) {
        io.byte(element.a);  // 0xFF: missing; otherwise the length modulo 8
        if (element.a != 0xFF) io.bytes(element.data, element.a % 8);
      }
      break;
    case ArgKind::kCount:
      break;
  }
}

template <class IO>
void walkCall(IO& io, Call& call, std::span<const int> rowInputs) {
  io.byte(call.op);
  io.byte(call.argc);
  call.args.resize(inputCountOf(call, call.op < rowInputs.size() ? rowInputs[call.op] : -1));
  for (ArgSpec& arg : call.args) walkArg(io, arg, 0);
}

}  // namespace

std::vector<std::uint64_t> extentsOf(const std::vector<std::uint8_t>& shape,
                                     std::uint64_t maxElements) {
  std::vector<std::uint64_t> extents;
  for (std::size_t i = 1; i < shape.size(); ++i) {
    const std::uint8_t code = shape[i];
    extents.push_back(code < 0xF0 ? code % 9 : kSpecialExtents[code - 0xF0]);
  }
  if (extents.size() < 2) extents.resize(2, 1);
  // The host refuses shapes whose extents multiply past 64 bits even when one of them is
  // zero, so zeros do not count here. Halving the largest extent until the array fits
  // keeps its zeros and its rank.
  auto tooLarge = [&] {
    std::uint64_t n = 1;
    for (const std::uint64_t e : extents) {
      if (e != 0 && __builtin_mul_overflow(n, e, &n)) return true;
    }
    return n > maxElements;
  };
  while (tooLarge()) {
    auto largest = std::max_element(extents.begin(), extents.end());
    *largest /= 2;
  }
  return extents;
}

std::uint64_t elementCountOf(const std::vector<std::uint64_t>& extents) {
  std::uint64_t n = 1;
  for (const std::uint64_t e : extents) {
    if (e == 0) return 0;
  }
  for (const std::uint64_t e : extents) {
    // Saturates: only the comparison with a limit matters.
    if (__builtin_mul_overflow(n, e, &n)) return UINT64_MAX;
  }
  return n;
}

std::size_t numericWidth(std::uint8_t classCode) {
  static constexpr std::array<std::size_t, 10> kWidths = {8, 4, 1, 1, 2, 2, 4, 4, 8, 8};
  return kWidths[classCode % 10];
}

std::size_t dataBytesOf(const ArgSpec& arg) {
  const std::size_t n =
      arg.shape.empty() ? 0 : elementCountOf(extentsOf(arg.shape, kMaxDataElements));
  switch (arg.kind) {
    case ArgKind::Numeric:
      switch (arg.b % 4) {
        case 0:
          return 0;  // zeros
        case 2:
          return n * numericWidth(arg.a);  // raw element bytes
        default:
          return n;  // one byte per element: small values or special values
      }
    case ArgKind::Char:
      return n;
    case ArgKind::Logical:
      return (n + 7) / 8;
    default:
      return 0;
  }
}

Program decode(std::span<const std::uint8_t> bytes, std::span<const int> rowInputs) {
  Reader in(bytes);
  Program program;
  while (in.more() && program.size() < kMaxCalls) walkCall(in, program.emplace_back(), rowInputs);
  return program;
}

std::vector<std::uint8_t> encode(Program program, std::span<const int> rowInputs) {
  Writer out;
  for (Call& call : program) walkCall(out, call, rowInputs);
  return out.result();
}

std::size_t inputCountOf(const Call& call, int rowInputs) {
  if (call.argc >= 0xF0 || rowInputs < 0) return (call.argc & 0x0F) % (kMaxInputs + 1);
  return static_cast<std::size_t>(rowInputs);
}

int outputCountOf(const Call& call, int rowOutputs) {
  // A row's own input count comes with no more outputs than it makes, so that the call
  // reaches its handler; a count of its own may ask for any number.
  if (call.argc >= 0xF0) return call.argc % 9;
  return call.argc % (rowOutputs + 1);
}

std::vector<int> rowInputCounts() {
  std::vector<int> counts(256, -1);
  const auto table = operationTable();
  for (std::size_t i = 0; i < table.size(); ++i) counts[i] = table[i].nInputs;
  return counts;
}

}  // namespace fuzz
