// Test-only: has the host create a numeric array while the bridge lends it storage, as the
// library does for its outputs, and maps it back to Octave.
#include <octave/oct.h>

#include <type_traits>
#include <vector>

#include "errors.hpp"
#include "from_host.hpp"
#include "octave_blocks.hpp"
#include "octave_types.hpp"

namespace {
// Element k (0-based) holds k + 1 (logical: k odd), written through the host's pointer.
void fill(qvArray* a, qvClassID cls) {
  octbridge::withArrayType(cls, [&](auto kind) {
    using E = typename decltype(kind)::Element;
    auto* data = static_cast<E*>(qvGetData(a));
    for (std::size_t k = 0; k < qvGetNumberOfElements(a); ++k) {
      data[k] = E(static_cast<double>(std::is_same_v<E, bool> ? k % 2 : k + 1));
    }
  });
}
}  // namespace

// [VALUE, LENT] = qv_alloc (CLASS, DIMS, ZEROFILLED): a host array of CLASS and DIMS created
// as the library does, zero-filled or with element k holding k (logical: k even); LENT
// tells whether its data block is an Octave array.
DEFUN_DLD(qv_alloc, args, , "test only") {
  octbridge::PendingError failure;
  octave_value value;
  bool lent = false;
  try {
    auto cls = qvUNKNOWN_CLASS;
    for (int c = qvCELL_CLASS; c <= qvSTRING_CLASS; ++c)
      if (args(0).string_value() == octbridge::hostClassName(qvClassID(c))) cls = qvClassID(c);
    const RowVector d = args(1).row_vector_value();
    const std::vector<std::uint64_t> dims(d.data(), d.data() + d.numel());
    qvArrayPtr a;
    {
      octbridge::OctaveStorage storage;
      const qvScopedStorageProvider scope(storage);
      if (args(2).bool_value()) {
        a = matrix::detail::do_create_numeric(dims, cls, qvREAL);
      } else {
        a = matrix::detail::do_create_uninitnumeric(dims, cls, qvREAL);
        fill(a.get(), cls);
      }
    }
    lent = octbridge::octaveBlockOf(a.get()) != nullptr;
    value = octbridge::fromHost(a.get());
  } catch (...) {
    failure.capture(std::current_exception());
  }
  if (failure) failure.raise();
  return ovl(value, lent);
}
