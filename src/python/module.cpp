// The module that the Python package stands on.
// SPDX-License-Identifier: MIT
#include <pybind11/pybind11.h>

#include "python/bindings.h"

PYBIND11_MODULE(_kestrel, module) {
  namespace python = kestrel::python;
  module.doc() = "What the package kestrel stands on; use that.";
  module.attr("version") = KESTREL_VERSION;
  python::BindRecord(module);
  python::BindAnalysis(module);
  python::BindSetup(module);
  python::BindSensor(module);
  python::BindArchive(module);
  python::BindTrend(module);
  python::BindExchange(module);
}
