// Unload. Octave unloads the function by closing its shared object: on "clear netcdflib",
// "clear all", "clear functions" and, while the interpreter shuts down, at exit. Closing
// runs this file's static destructor before the library's own (the library is a
// dependency of this object), so the files still open are closed while the library is
// intact and Octave can still show the warning.
#include <cstdio>
#include <utility>

#include "errors.hpp"
#include "gateway/netcdflib.hpp"
#include "qvhost/msgid.hpp"

namespace {

class UnloadHook {
 public:
  UnloadHook() : previous_(qvSetWarningHandler(&octbridge::showWarning)) {}
  ~UnloadHook() {
    try {
      QNTerminate();
    } catch (...) {
      std::fputs("netcdflib: closing the open files failed during unload\n", stderr);
    }
    // An error a warning turned into has no call left to fail.
    octbridge::takeDeferredWarningError();
    // The host outlives this object when another module still uses it; it must not call
    // back into code that is about to be unmapped.
    qvSetWarningHandler(std::move(previous_));
  }
  UnloadHook(const UnloadHook&) = delete;
  UnloadHook& operator=(const UnloadHook&) = delete;

 private:
  qvWarningHandler previous_;
};

const UnloadHook unloadHook;

}  // namespace
