// How a fault becomes an exception.
// SPDX-License-Identifier: MIT
#include "python/raise.h"

#include <pybind11/stl.h>

namespace py = pybind11;

namespace kestrel::python {
namespace {

py::object ErrorNamed(const char* name) {
  return py::module_::import("kestrel.errors").attr(name);
}

[[noreturn]] void RaiseMade(const char* name, const py::object& error) {
  PyErr_SetObject(ErrorNamed(name).ptr(), error.ptr());
  throw py::error_already_set();
}

}  // namespace

void SetError(const char* name, const std::string& text) {
  PyErr_SetObject(ErrorNamed(name).ptr(), ErrorNamed(name)(text).ptr());
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
  RaiseMade("CannotTell",
            ErrorNamed("CannotTell")(AsLine(refusal), refusal.title, refusal.reason, refusal.cure,
                                     refusal.cureOption, refusal.has, refusal.needs, refusal.unit));
}

void RaiseWith(const char* name, const std::string& text, const py::object& record) {
  RaiseMade(name, ErrorNamed(name)(text, record));
}

}  // namespace kestrel::python
