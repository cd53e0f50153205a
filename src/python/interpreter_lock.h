// The lock of the interpreter: given up for a wait, and taken by a thread that has none.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>
#include <unistd.h>

namespace kestrel::python {

// Once the interpreter ends, whoever asks for its lock has his thread ended by an unwinding that
// must not pass through a destructor. The thread stays here instead, until the process is over.
template <typename Take>
auto TakenOrNever(Take take) noexcept {
  try {
    return take();
  } catch (...) {
    for (;;) pause();
  }
}

// Gives the lock up as long as it stands.
class Unlocked {
 public:
  Unlocked() : state_(PyEval_SaveThread()) {}
  ~Unlocked() {
    TakenOrNever([this] { PyEval_RestoreThread(state_); });
  }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;

 private:
  PyThreadState* state_;
};

// Has the lock as long as it stands.
class Locked {
 public:
  Locked() : state_(TakenOrNever([] { return PyGILState_Ensure(); })) {}
  ~Locked() { PyGILState_Release(state_); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;

 private:
  PyGILState_STATE state_;
};

}  // namespace kestrel::python
