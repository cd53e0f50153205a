// The module that the Python package stands on.
// SPDX-License-Identifier: MIT
#include <pybind11/pybind11.h>

#include <exception>
#include <utility>

#include "database/database.h"
#include "numeric/runtime_error.h"
#include "python/bindings.h"
#include "python/raise.h"

namespace kestrel::python {
namespace {

// Whatever no one foresaw is still of the family, and a value of another type a TypeError.
void Translate(std::exception_ptr thrown) {
  try {
    if (thrown) std::rethrow_exception(std::move(thrown));
  } catch (const pybind11::cast_error& error) {
    PyErr_SetString(PyExc_TypeError, error.what());
  } catch (const database::DatabaseError& error) {
    SetError("ArchiveError", error.what());
  } catch (const RuntimeError& error) {
    SetError("Error", error.what());
  }
}

}  // namespace
}  // namespace kestrel::python

PYBIND11_MODULE(_kestrel, module) {
  namespace python = kestrel::python;
  module.doc() = "What the package kestrel stands on; use that.";
  pybind11::register_local_exception_translator(&python::Translate);
  module.attr("version") = KESTREL_VERSION;
  python::BindRecord(module);
  python::BindAnalysis(module);
  python::BindSetup(module);
  python::BindSensor(module);
  python::BindArchive(module);
  python::BindTrend(module);
  python::BindExchange(module);
}
