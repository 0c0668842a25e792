// Test-only: has the host create an array while the bridge lends it storage, fills it as
// the library would, and maps it back to Octave.
#include <octave/oct.h>

#include <string>
#include <type_traits>
#include <vector>

#include "errors.hpp"
#include "from_host.hpp"
#include "octave_blocks.hpp"
#include "octave_types.hpp"
#include "qvhost/strings.hpp"

namespace {

qvClassID classNamed(const std::string& name) {
  for (int c = qvCELL_CLASS; c <= qvSTRING_CLASS; ++c) {
    const auto cls = static_cast<qvClassID>(c);
    if (name == octbridge::hostClassName(cls)) return cls;
  }
  throw octbridge::BridgeError("qv_alloc:class", "unknown class " + name);
}

// Element k (0-based) holds k + 1 (logical: k odd); char holds units 0x41 + k.
void fill(qvArray* a, qvClassID cls) {
  const std::size_t n = qvGetNumberOfElements(a);
  if (cls == qvCHAR_CLASS) {
    auto* units = static_cast<char16_t*>(qvGetData(a));
    for (std::size_t k = 0; k < n; ++k) units[k] = static_cast<char16_t>(0x41 + k);
    return;
  }
  octbridge::withArrayType(cls, [&](auto kind) {
    using E = typename decltype(kind)::Element;
    auto* data = static_cast<E*>(qvGetData(a));
    for (std::size_t k = 0; k < n; ++k) {
      if constexpr (std::is_same_v<E, bool>) {
        data[k] = k % 2 == 1;
      } else {
        data[k] = E(static_cast<double>(k + 1));
      }
    }
  });
}

// String k (0-based) is "s<k+1>", every third one missing.
void fillStrings(qvArray* a) {
  for (std::size_t k = 0; k < qvGetNumberOfElements(a); ++k) {
    if (k % 3 == 2) {
      setStringMissing(a, k);
    } else {
      const std::string s = std::string("s").append(std::to_string(k + 1));
      setStringElement(a, k, std::u16string(s.begin(), s.end()));
    }
  }
}

qvArrayPtr create(qvClassID cls, const std::vector<std::uint64_t>& dims, bool zeroFilled) {
  if (cls == qvCELL_CLASS) return matrix::detail::do_create_cell(dims);
  if (cls == qvSTRING_CLASS) {
    auto a = createStringArray(dims.size(), dims.data());
    fillStrings(a.get());
    return a;
  }
  if (zeroFilled) return matrix::detail::do_create_numeric(dims, cls, qvREAL);
  auto a = matrix::detail::do_create_uninitnumeric(dims, cls, qvREAL);
  fill(a.get(), cls);
  return a;
}

}  // namespace

DEFUN_DLD(qv_alloc, args, ,
          "[VALUE, LENT] = qv_alloc (CLASS, DIMS, ZEROFILLED)\n"
          "Creates a host array of CLASS and DIMS as the library does, with the bridge's\n"
          "storage installed: zero-filled, or with element k holding k (logical: k even;\n"
          "char: 'A' onwards; string: 's<k>', every third missing; cell: all empty).\n"
          "LENT tells whether its data block is an Octave array.") {
  octbridge::PendingError failure;
  octave_value value;
  bool lent = false;
  try {
    if (args.length() != 3) throw octbridge::BridgeError("qv_alloc:usage", "three inputs");
    const qvClassID cls = classNamed(args(0).string_value());
    const RowVector d = args(1).row_vector_value();
    std::vector<std::uint64_t> dims;
    for (octave_idx_type k = 0; k < d.numel(); ++k)
      dims.push_back(static_cast<std::uint64_t>(d(k)));
    qvArrayPtr a;
    {
      octbridge::OctaveStorage storage;
      const qvScopedStorageProvider scope(storage);
      a = create(cls, dims, args(2).bool_value());
    }
    lent = octbridge::octaveBlockOf(a.get()) != nullptr;
    value = octbridge::fromHost(a.get());
  } catch (...) {
    failure.capture(std::current_exception());
  }
  if (failure) failure.raise();
  return ovl(value, lent);
}
