// How a fault becomes an exception.
// SPDX-License-Identifier: MIT
#include "python/raise.h"

#include <pybind11/stl.h>

#include "python/interpreter_lock.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

py::object ErrorNamed(const char* name) {
  return py::module_::import("kestrel.errors").attr(name);
}

// Sets an exception of this name, made of these values.
template <typename... Values>
void Set(const char* name, const Values&... values) {
  DoneOrNever([&] {
    const py::object kind = ErrorNamed(name);
    PyErr_SetObject(kind.ptr(), kind(values...).ptr());
  });
}

}  // namespace

void SetError(const char* name, const std::string& text) {
  Set(name, text);
}

void Raise(const char* name, const std::string& text) {
  SetError(name, text);
  throw py::error_already_set();
}

void Raise(const Failure& failure) {
  switch (failure.kind) {
    case FailureKind::NoSensor:
      Raise("SensorLost", failure.text);
    case FailureKind::Interrupted:
      Raise("Stopped", failure.text);
    case FailureKind::Refused:
      break;
  }
  Raise("SensorRefused", failure.text);
}

void Raise(const analysis::Refusal& refusal) {
  Set("CannotTell", AsLine(refusal), refusal.title, refusal.reason, refusal.cure,
      refusal.cureOption, refusal.has, refusal.needs, refusal.unit);
  throw py::error_already_set();
}

void RaiseWith(const char* name, const std::string& text, const py::object& record) {
  Set(name, text, record);
  throw py::error_already_set();
}

}  // namespace kestrel::python
