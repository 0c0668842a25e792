#include "fuzz_program.hpp"

#include <algorithm>
#include <array>

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

class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
  bool atEnd() const noexcept { return pos_ >= bytes_.size(); }
  std::uint8_t byte() noexcept { return pos_ < bytes_.size() ? bytes_[pos_++] : 0; }
  std::vector<std::uint8_t> bytes(std::size_t n) {
    std::vector<std::uint8_t> out(n, 0);
    for (auto& b : out) b = byte();
    return out;
  }

 private:
  std::span<const std::uint8_t> bytes_;
  std::size_t pos_ = 0;
};

std::vector<std::uint8_t> readShape(Reader& in) {
  std::vector<std::uint8_t> shape{in.byte()};
  const std::size_t ndims = 2 + shape[0] % 4;
  for (std::size_t i = 0; i < ndims; ++i) shape.push_back(in.byte());
  return shape;
}

ArgSpec readArg(Reader& in, int depth);

std::uint64_t nestedCount(const std::vector<std::uint8_t>& shape) {
  return elementCountOf(extentsOf(shape, kMaxNestedElements));
}

ArgSpec readArg(Reader& in, int depth) {
  ArgSpec arg;
  arg.kind = static_cast<ArgKind>(in.byte() % static_cast<std::uint8_t>(ArgKind::kCount));
  switch (arg.kind) {
    case ArgKind::PoolId:
      arg.a = in.byte();
      arg.b = in.byte();
      arg.data = in.bytes(1);  // class of the scalar
      break;
    case ArgKind::SmallInt:
    case ArgKind::Special:
    case ArgKind::Empty:
      arg.a = in.byte();
      arg.b = in.byte();
      break;
    case ArgKind::Word:
    case ArgKind::Output:
      arg.a = in.byte();
      break;
    case ArgKind::Numeric:
      arg.a = in.byte();
      arg.shape = readShape(in);
      arg.b = in.byte();
      arg.data = in.bytes(dataBytesOf(arg));
      break;
    case ArgKind::Char:
    case ArgKind::Logical:
      arg.shape = readShape(in);
      arg.data = in.bytes(dataBytesOf(arg));
      break;
    case ArgKind::Opaque:
      arg.a = in.byte();
      arg.shape = readShape(in);
      break;
    case ArgKind::Cell: {
      arg.shape = readShape(in);
      const std::uint64_t n = depth < kMaxDepth ? nestedCount(arg.shape) : 0;
      for (std::uint64_t i = 0; i < n; ++i) arg.children.push_back(readArg(in, depth + 1));
      break;
    }
    case ArgKind::String: {
      arg.shape = readShape(in);
      const std::uint64_t n = nestedCount(arg.shape);
      for (std::uint64_t i = 0; i < n; ++i) {
        ArgSpec element;
        element.a = in.byte();  // 0xFF: missing; otherwise the length modulo 8
        if (element.a != 0xFF) element.data = in.bytes(element.a % 8);
        arg.children.push_back(std::move(element));
      }
      break;
    }
    case ArgKind::kCount:
      break;
  }
  return arg;
}

void writeArg(std::vector<std::uint8_t>& out, const ArgSpec& arg, int depth) {
  out.push_back(static_cast<std::uint8_t>(arg.kind));
  auto put = [&](const std::vector<std::uint8_t>& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
  };
  switch (arg.kind) {
    case ArgKind::PoolId:
      out.push_back(arg.a);
      out.push_back(arg.b);
      out.push_back(arg.data.empty() ? 0 : arg.data[0]);
      break;
    case ArgKind::SmallInt:
    case ArgKind::Special:
    case ArgKind::Empty:
      out.push_back(arg.a);
      out.push_back(arg.b);
      break;
    case ArgKind::Word:
    case ArgKind::Output:
      out.push_back(arg.a);
      break;
    case ArgKind::Numeric: {
      out.push_back(arg.a);
      put(arg.shape);
      out.push_back(arg.b);
      std::vector<std::uint8_t> data = arg.data;
      data.resize(dataBytesOf(arg), 0);
      put(data);
      break;
    }
    case ArgKind::Char:
    case ArgKind::Logical: {
      put(arg.shape);
      std::vector<std::uint8_t> data = arg.data;
      data.resize(dataBytesOf(arg), 0);
      put(data);
      break;
    }
    case ArgKind::Opaque:
      out.push_back(arg.a);
      put(arg.shape);
      break;
    case ArgKind::Cell: {
      put(arg.shape);
      const std::uint64_t n = depth < kMaxDepth ? nestedCount(arg.shape) : 0;
      for (std::uint64_t i = 0; i < n; ++i) {
        writeArg(out, i < arg.children.size() ? arg.children[i] : ArgSpec{}, depth + 1);
      }
      break;
    }
    case ArgKind::String: {
      put(arg.shape);
      const std::uint64_t n = nestedCount(arg.shape);
      for (std::uint64_t i = 0; i < n; ++i) {
        const ArgSpec element = i < arg.children.size() ? arg.children[i] : ArgSpec{};
        out.push_back(element.a);
        if (element.a != 0xFF) {
          std::vector<std::uint8_t> units = element.data;
          units.resize(element.a % 8, 0);
          put(units);
        }
      }
      break;
    }
    case ArgKind::kCount:
      break;
  }
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
  while (!in.atEnd() && program.size() < kMaxCalls) {
    Call call;
    call.op = in.byte();
    call.argc = in.byte();
    const int own = call.op < rowInputs.size() ? rowInputs[call.op] : -1;
    const std::size_t n = inputCountOf(call, own);
    for (std::size_t i = 0; i < n; ++i) call.args.push_back(readArg(in, 0));
    program.push_back(std::move(call));
  }
  return program;
}

std::vector<std::uint8_t> encode(const Program& program) {
  std::vector<std::uint8_t> out;
  for (const Call& call : program) {
    out.push_back(call.op);
    out.push_back(call.argc);
    for (const ArgSpec& arg : call.args) writeArg(out, arg, 0);
  }
  return out;
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

}  // namespace fuzz
