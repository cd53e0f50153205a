// One spectrum over several sample-rate options, in Python.
// SPDX-License-Identifier: MIT
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>

#include "analysis/joined.h"
#include "python/bindings.h"
#include "python/raise.h"
#include "python/views.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

using analysis::Joined;
using analysis::JoinedPoint;

Joined Made(const std::vector<std::shared_ptr<Record>>& records, int axis, double limitDb) {
  std::vector<analysis::Spectrum> captures;
  for (const auto& record : records) {
    const auto spectrum = analysis::SpectrumOf(*record, AxisOf(axis), {.ownRange = true});
    captures.push_back(Got(spectrum));
  }
  const auto joined = analysis::Join(std::move(captures), limitDb);
  return Got(joined);
}

template <typename Value>
py::array_t<Value> Column(const Joined& joined, Value JoinedPoint::*member) {
  std::vector<Value> column;
  for (const JoinedPoint& point : joined.points) column.push_back(point.*member);
  return Taken(std::move(column));
}

py::list SegmentsOf(const Joined& joined) {
  py::list all;
  for (const auto& s : joined.segments) {
    all.append(py::make_tuple(s.option, s.binWidthHz, s.holdsFromHz, s.holdsToHz, s.usedFromHz,
                              s.usedToHz));
  }
  return all;
}

py::list OverlapsOf(const Joined& joined) {
  py::list all;
  for (const auto& o : joined.overlaps) {
    all.append(py::make_tuple(o.fineOption, o.coarseOption, o.fromHz, o.toHz, o.fineRmsG,
                              o.coarseRmsG, o.differenceDb, o.unsteady));
  }
  return all;
}

// frequency, its bound, g peak, option; the largest first.
py::list LinesIn(const Joined& joined) {
  py::list all;
  for (const auto& each : analysis::LinesOf(joined)) {
    const auto& line = each.peak.line;
    all.append(py::make_tuple(line.hz, line.hzBound, line.peakG, each.option));
  }
  return all;
}

}  // namespace

void BindJoined(py::module_& module) {
  py::class_<Joined>(module, "Joined")
      .def(py::init(&Made))
      .def("frequency", [](const Joined& j) { return Column(j, &JoinedPoint::hz); })
      .def("density", [](const Joined& j) { return Column(j, &JoinedPoint::density); })
      .def("magnitude", [](const Joined& j) { return Column(j, &JoinedPoint::peakG); })
      .def("options", [](const Joined& j) { return Column(j, &JoinedPoint::option); })
      .def("segments", &SegmentsOf)
      .def("overlaps", &OverlapsOf)
      .def("lines", &LinesIn)
      .def("is_steady", &Joined::Steady)
      .def("rms", [](const Joined& joined, double fromHz, double toHz) {
        return std::sqrt(analysis::PowerBetween(joined, fromHz, toHz));
      });
}

}  // namespace kestrel::python
