// Test-only: a leak check while Octave runs. Octave itself is not built to free everything
// at exit, so the sanitizer build checks for unreachable memory here instead.
#include <octave/oct.h>

// Resolved only where the sanitizer runtime is loaded (preloaded ahead of Octave).
extern "C" int __lsan_do_recoverable_leak_check() __attribute__((weak));

// LEAKED = qv_leak_check (): whether there is unreachable memory; false where there is no
// sanitizer runtime to tell.
DEFUN_DLD(qv_leak_check, , , "test only") {
  return ovl(__lsan_do_recoverable_leak_check != nullptr && __lsan_do_recoverable_leak_check() != 0);
}
