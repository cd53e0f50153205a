// The lock of the interpreter: given up for a wait, and taken by a thread that has none.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>
#include <unistd.h>

#include <cxxabi.h>

namespace kestrel::python {

// Work that asks for the interpreter's lock, or runs Python, which asks for it now and then. Once
// the interpreter ends, whoever asks has his thread ended by an unwinding that must not pass
// through destructors and the station. The thread stays here instead, until the process is over.
// What is caught then is no object, which a sanitizer takes for a fault.
template <typename Work>
[[gnu::no_sanitize("undefined")]] auto DoneOrNever(Work work) {
  try {
    return work();
  } catch (const abi::__forced_unwind&) {
    for (;;) pause();
  }
}

// Gives the lock up as long as it stands.
class Unlocked {
 public:
  Unlocked() : state_(PyEval_SaveThread()) {}
  ~Unlocked() {
    DoneOrNever([this] { PyEval_RestoreThread(state_); });
  }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;

 private:
  PyThreadState* state_;
};

// Has the lock as long as it stands.
class Locked {
 public:
  Locked() : state_(DoneOrNever([] { return PyGILState_Ensure(); })) {}
  ~Locked() { PyGILState_Release(state_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  PyGILState_STATE state_;
};

}  // namespace kestrel::python
