// Test-only: has the host create a numeric array while the bridge lends it storage, as the
// library does for its outputs, and maps it back to Octave.
#include <octave/oct.h>

#include <vector>

#include "errors.hpp"
#include "from_host.hpp"
#include "octave_blocks.hpp"
#include "octave_types.hpp"

DEFUN_DLD(qv_alloc, args, ,
          "[VALUE, LENT] = qv_alloc (CLASS, DIMS, ZEROFILLED)\n"
          "Creates a host array of CLASS and DIMS as the library does, zero-filled or left\n"
          "as the allocator gives it; LENT tells whether its data block is an Octave array.") {
  octbridge::PendingError failure;
  octave_value value;
  bool lent = false;
  try {
    auto cls = qvUNKNOWN_CLASS;
    for (int c = qvCELL_CLASS; c <= qvSTRING_CLASS; ++c) {
      if (args(0).string_value() == octbridge::hostClassName(qvClassID(c))) cls = qvClassID(c);
    }
    const RowVector d = args(1).row_vector_value();
    const std::vector<std::uint64_t> dims(d.data(), d.data() + d.numel());
    qvArrayPtr a;
    {
      octbridge::OctaveStorage storage;
      const qvScopedStorageProvider scope(storage);
      a = args(2).bool_value() ? matrix::detail::do_create_numeric(dims, cls, qvREAL)
                               : matrix::detail::do_create_uninitnumeric(dims, cls, qvREAL);
    }
    lent = octbridge::octaveBlockOf(a.get()) != nullptr;
    value = octbridge::fromHost(a.get());
  } catch (...) {
    failure.capture(std::current_exception());
  }
  if (failure) failure.raise();
  return ovl(value, lent);
}
