// Alarm bands of files and set-ups as values of Python.
// SPDX-License-Identifier: MIT
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include "alarms/alarm_file.h"
#include "platform/system.h"
#include "python/band_values.h"
#include "python/bindings.h"
#include "python/raise.h"
#include "python/views.h"
#include "setup/difference.h"
#include "setup/setup_file.h"
#include "station/sensor_bands.h"

namespace py = pybind11;

namespace kestrel::python {

BandValues ValuesOf(const BandTable& table) {
  BandValues rows;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      BandRow row{option, band};
      for (std::size_t i = 0; i < kBandFields.size(); ++i) {
        row.at(i + 2) = table(kBandFields.at(i), band, option);
      }
      rows.push_back(row);
    }
  }
  return rows;
}

BandTable TableOf(const BandValues& rows) {
  BandTable table;
  for (const BandRow& row : rows) {
    for (std::size_t i = 0; i < kBandFields.size(); ++i) {
      table(kBandFields.at(i), row[1], row[0]) = row.at(i + 2);
    }
  }
  return table;
}

namespace {

BandValues BandsOfFile(const std::string& path) {
  System system({.portAddress = [] { return std::int16_t{0}; }});
  const auto table = ReadBandFile(system.SystemFiles(), path);
  if (!table) Raise("FileError", table.Why().text);
  return ValuesOf(*table);
}

py::dict RegistersOf(const setup::Setup& saved) {
  py::dict words;
  for (std::size_t i = 0; i < setup::kRegisters; ++i) {
    words[setup::kRegisterNames.at(i)] = saved.registers.at(i);
  }
  return words;
}

BandValues BandsOf(const setup::Setup& saved) {
  BandValues rows;
  for (int option = 0; option < kSampleRateOptions; ++option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      BandRow row{option, band};
      const auto& words = saved.Band(option, band);
      for (std::size_t i = 0; i < words.size(); ++i) row.at(i + 2) = words.at(i);
      rows.push_back(row);
    }
  }
  return rows;
}

py::list DifferencesOf(const setup::Setup& saved, const setup::Setup& now) {
  py::list all;
  for (const auto& each : setup::DifferenceOf(saved, now)) {
    all.append(py::make_tuple(each.place, each.saved, each.now));
  }
  return all;
}

}  // namespace

void BindSetup(py::module_& module) {
  module.def("bands_of_file", &BandsOfFile);
  module.def("band_file_text", [](const BandValues& rows) { return AlarmFileText(TableOf(rows)); });
  module.def("is_band_file_name", &IsAlarmFileName);
  py::class_<setup::Setup>(module, "Setup")
      .def_readonly("name", &setup::Setup::name)
      .def_readonly("program", &setup::Setup::program)
      .def_readonly("product", &setup::Setup::product)
      .def_property_readonly("nanoseconds",
                             [](const setup::Setup& s) { return NanosecondsOf(s.when); })
      .def("registers", &RegistersOf)
      .def("bands", &BandsOf)
      .def("differences", &DifferencesOf)
      .def("text", [](const setup::Setup& s) { return py::bytes(setup::SetupFileText(s)); })
      .def("__eq__", [](const setup::Setup& a, const setup::Setup& b) { return a == b; });
  module.def("setup_of_text", [](const std::string& file, const py::bytes& content) {
    return Got(setup::ReadSetupFile(file, std::string(content)));
  });
}

}  // namespace kestrel::python
