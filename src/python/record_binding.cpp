// A record in Python: views of its points, plain values of the rest, and all of it as bytes.
// SPDX-License-Identifier: MIT
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cstring>

#include "cli/record_report.h"
#include "device/alarm_flags.h"
#include "python/bindings.h"
#include "python/raise.h"
#include "python/views.h"
#include "record/frequency.h"
#include "record/record.h"
#include "record/record_line.h"
#include "record/record_notices.h"
#include "record/status_flags.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

using RecordClass = py::class_<Record, std::shared_ptr<Record>>;

py::bytes BytesOf(const RecordArray& points) {
  const auto all = points.First(kRecordPoints);
  return {reinterpret_cast<const char*>(all.data()), all.size_bytes()};
}

[[noreturn]] void RefuseState() {
  Raise("Error", "What was pickled is not a record, or it was damaged.");
}

RecordArray ArrayOf(const py::bytes& bytes) {
  const std::string text = bytes;
  std::vector<double> values(kRecordPoints);
  if (text.size() != kRecordPoints * sizeof(double)) RefuseState();
  std::memcpy(values.data(), text.data(), text.size());
  RecordArray points;
  for (int i = 0; i < static_cast<int>(kRecordPoints); ++i) {
    points(i) = values[static_cast<std::size_t>(i)];
  }
  return points;
}

py::tuple AlarmsState(const AlarmState& alarms) {
  py::list axes;
  for (const AxisAlarms& axis : alarms.axes) {
    axes.append(py::make_tuple(axis.status, axis.peak, axis.peakBin));
  }
  return py::make_tuple(axes, alarms.gPerPeakLsb, alarms.statusKnown, alarms.peaksKnown);
}

AlarmState AlarmsFrom(const py::tuple& state) {
  AlarmState alarms;
  for (std::size_t i = 0; i < alarms.axes.size(); ++i) {
    const auto axis = state[0].cast<py::list>()[i].cast<py::tuple>();
    alarms.axes[i] = {axis[0].cast<std::int32_t>(), axis[1].cast<std::int32_t>(),
                      axis[2].cast<std::int32_t>()};
  }
  alarms.gPerPeakLsb = state[1].cast<double>();
  alarms.statusKnown = state[2].cast<bool>();
  alarms.peaksKnown = state[3].cast<bool>();
  return alarms;
}

constexpr int kStateVersion = 1;

py::tuple StateOf(const Record& record) {
  py::list axes;
  for (const AxisRecord& axis : record.axes) {
    axes.append(py::make_tuple(BytesOf(axis.raw), BytesOf(axis.data)));
  }
  const RecordSettings& s = record.settings;
  return py::make_tuple(
      kStateVersion, record.kind == RecordKind::Time, axes, record.lsbWeight, record.scaledRange,
      py::make_tuple(s.recInfo, s.recCtrl, s.option, s.window, s.range, s.averages),
      py::make_tuple(record.conditions.supplyV, record.conditions.temperatureC,
                     record.conditions.recordCount),
      py::make_tuple(record.status.word, record.status.known), AlarmsState(record.alarms),
      py::make_tuple(record.origin.stopped, record.origin.countBefore, record.origin.stored),
      NanosecondsOf(record.time),
      py::make_tuple(record.sensor.product, record.sensor.interface, record.sensor.adapter,
                     record.sensor.simulated));
}

// Codes that index tables.
bool CanBe(const RecordSettings& s) {
  const auto isWithin = [](int code, int last) { return code >= 0 && code <= last; };
  return isWithin(s.option, 3) && isWithin(s.window, 3) && isWithin(s.range, 3) &&
         isWithin(s.averages, 511);
}

void TakeSettings(Record& record, const py::tuple& state) {
  const auto s = state[5].cast<py::tuple>();
  record.settings = {.recInfo = s[0].cast<std::int32_t>(),
                     .recCtrl = s[1].cast<std::int32_t>(),
                     .option = s[2].cast<std::int16_t>(),
                     .window = s[3].cast<std::int16_t>(),
                     .range = s[4].cast<std::int16_t>(),
                     .averages = s[5].cast<std::int16_t>()};
  if (!CanBe(record.settings)) RefuseState();
  const auto conditions = state[6].cast<py::tuple>();
  record.conditions = {conditions[0].cast<float>(), conditions[1].cast<float>(),
                       conditions[2].cast<std::int32_t>()};
  const auto status = state[7].cast<py::tuple>();
  record.status = {status[0].cast<std::int32_t>(), status[1].cast<bool>()};
}

std::shared_ptr<Record> RecordFrom(const py::tuple& state) {
  if (state[0].cast<int>() != kStateVersion) {
    Raise("Error",
          "This record was pickled by another version of the package. Save records as files, or "
          "keep them in an archive, where another version is to read them.");
  }
  auto record = std::make_shared<Record>();
  record->kind = state[1].cast<bool>() ? RecordKind::Time : RecordKind::Spectrum;
  for (std::size_t i = 0; i < record->axes.size(); ++i) {
    const auto axis = state[2].cast<py::list>()[i].cast<py::tuple>();
    record->axes[i] = {ArrayOf(axis[0].cast<py::bytes>()), ArrayOf(axis[1].cast<py::bytes>())};
  }
  record->lsbWeight = state[3].cast<double>();
  record->scaledRange = state[4].cast<std::int16_t>();
  TakeSettings(*record, state);
  record->alarms = AlarmsFrom(state[8].cast<py::tuple>());
  const auto origin = state[9].cast<py::tuple>();
  record->origin = {origin[0].cast<bool>(), origin[1].cast<std::optional<std::int32_t>>(),
                    origin[2].cast<std::optional<int>>()};
  record->time = MomentOf(state[10].cast<std::int64_t>());
  const auto sensor = state[11].cast<py::tuple>();
  record->sensor = {sensor[0].cast<std::int32_t>(), sensor[1].cast<std::string>(),
                    sensor[2].cast<std::string>(), sensor[3].cast<bool>()};
  return record;
}

py::dict StatusOf(const StatusFlags& status) {
  py::dict flags;
  for (std::size_t bit = 0; bit < kStatusFlags; ++bit) {
    if (status.known) flags[kStatusFlagTable[bit].name] = status.IsSet(static_cast<int>(bit));
  }
  return flags;
}

// status word, largest peak in g, its bin, of each axis.
py::list AlarmsOf(const AlarmState& alarms) {
  py::list all;
  for (const Axis axis : kAxes) {
    const AxisAlarms& each = alarms.Of(axis);
    py::list warned;
    py::list faults;
    for (int band = 1; band <= kAlarmBands; ++band) {
      if ((each.status >> WarningBit(band) & 1) != 0) warned.append(band);
      if ((each.status >> FaultBit(band) & 1) != 0) faults.append(band);
    }
    all.append(py::make_tuple(each.status, warned, faults, alarms.PeakG(axis), each.peakBin));
  }
  return all;
}

// Hz or s of each point.
py::array_t<double> PlacesOf(const Record& record) {
  const bool isTime = record.kind == RecordKind::Time;
  const int option = record.settings.option;
  std::vector<double> places(record.Points());
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto at = static_cast<double>(i);
    places[i] = isTime ? at / SampleFrequency(option) : at * BinWidth(option);
  }
  return Taken(std::move(places));
}

py::list NoticesOf(const Record& record) {
  py::list all;
  for (const RecordNotice& notice : RecordNotices(record, {})) {
    all.append(notice.what + ". " + notice.means);
  }
  return all;
}

void AddValues(RecordClass& type) {
  type.def_property_readonly("is_time", [](const Record& r) { return r.kind == RecordKind::Time; })
      .def_property_readonly("option", [](const Record& r) { return r.settings.option; })
      .def_property_readonly("window", [](const Record& r) { return r.settings.window; })
      .def_property_readonly("range", [](const Record& r) { return r.settings.range; })
      .def_property_readonly("averages", [](const Record& r) { return r.settings.averages; })
      .def_property_readonly("rec_info", [](const Record& r) { return r.settings.recInfo; })
      .def_property_readonly("rec_ctrl", [](const Record& r) { return r.settings.recCtrl; })
      .def_property_readonly("scaled_range", [](const Record& r) { return r.scaledRange; })
      .def_property_readonly("lsb", [](const Record& r) { return r.lsbWeight; })
      .def_property_readonly("supply", [](const Record& r) { return r.conditions.supplyV; })
      .def_property_readonly("temperature",
                             [](const Record& r) { return r.conditions.temperatureC; })
      .def_property_readonly("count", [](const Record& r) { return r.conditions.recordCount; })
      .def_property_readonly("status", [](const Record& r) { return StatusOf(r.status); })
      .def_property_readonly("alarms", [](const Record& r) { return AlarmsOf(r.alarms); })
      .def_property_readonly("stopped", [](const Record& r) { return r.origin.stopped; })
      .def_property_readonly("is_new", &Record::IsNew)
      .def_property_readonly("stored", [](const Record& r) { return r.origin.stored; })
      .def_property_readonly("nanoseconds", [](const Record& r) { return NanosecondsOf(r.time); })
      .def_property_readonly("sensor", [](const Record& r) {
        return py::make_tuple(r.sensor.product, r.sensor.interface, r.sensor.adapter,
                              r.sensor.simulated);
      });
}

}  // namespace

void BindRecord(py::module_& module) {
  RecordClass type(module, "Record");
  AddValues(type);
  type.def("values",
           [](const py::object& self, int axis) {
             return View(self.cast<const Record&>().Values(AxisOf(axis)), self);
           })
      .def("words",
           [](const py::object& self, int axis) {
             const auto& record = self.cast<const Record&>();
             return View(record.Of(AxisOf(axis)).raw.First(record.Points()), self);
           })
      .def("address",
           [](const Record& record, int axis) {
             return reinterpret_cast<std::uintptr_t>(record.Values(AxisOf(axis)).data());
           })
      .def("places", &PlacesOf)
      .def("line", [](const Record& r, const std::string& time) { return RecordLine(r, time); })
      .def("details",
           [](const Record& r, const std::string& time) { return RecordDetails(r, time); })
      .def("notices", &NoticesOf)
      .def("json",
           [](const Record& record) {
             return RecordJson({.record = record, .stopped = record.origin.stopped}).dump();
           })
      .def("__eq__", [](const Record& one, const Record& other) { return one == other; })
      .def("state", &StateOf);
  module.def("record_of_state", &RecordFrom);
  module.def("sample_frequency", &SampleFrequency);
  module.def("bin_width", &BinWidth);
}

}  // namespace kestrel::python
