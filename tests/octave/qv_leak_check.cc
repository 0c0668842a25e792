// Test-only: a leak check while Octave runs. Octave itself is not built to free everything
// at exit, so the sanitizer build checks for unreachable memory here instead.
#include <octave/oct.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

DEFUN_DLD(qv_leak_check, , ,
          "[LEAKED, CHECKED] = qv_leak_check ()\n"
          "Reports unreachable memory in a sanitizer build; CHECKED is false elsewhere.") {
#if defined(__SANITIZE_ADDRESS__)
  return ovl(__lsan_do_recoverable_leak_check() != 0, true);
#else
  return ovl(false, false);
#endif
}
