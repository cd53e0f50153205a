// A station in Python: one sensor, whose steps end with a signal, a stop or an error of a callback.
// SPDX-License-Identifier: MIT
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>

#include "acquisition/start_state.h"
#include "device/register_fields.h"
#include "numeric/conversions.h"
#include "python/band_values.h"
#include "python/bindings.h"
#include "python/raise.h"
#include "python/sensor.h"
#include "python/views.h"
#include "regmap/register_table.h"
#include "simulator/signal/scenario.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

using SensorClass = py::class_<Sensor, std::shared_ptr<Sensor>>;

py::dict SettingsOf(const RecordSetup& setup) {
  py::dict all;
  all["mode"] = setup.mode;
  all["range"] = setup.range;
  all["option"] = setup.option;
  all["window"] = setup.window;
  all["averages"] = setup.averages;
  return all;
}

RecordSetup ChangeOf(const py::dict& settings) {
  RecordSetup change;
  const auto take = [&](const char* name, std::optional<std::int16_t>& code) {
    if (settings.contains(name)) code = settings[name].cast<std::int16_t>();
  };
  take("mode", change.mode);
  take("range", change.range);
  take("option", change.option);
  take("window", change.window);
  take("averages", change.averages);
  return change;
}

py::tuple RegisterOf(const RegisterValue& value) {
  return py::make_tuple(value.name, value.address, value.value & 0xFFFF, value.value,
                        static_cast<double>(value.scaled));
}

// The names of all registers that are not reserved, with what can be done with each.
py::list RegisterNames() {
  py::list all;
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegReserved[row]) continue;
    all.append(py::make_tuple(RegName[row], RegReadable[row], RegWritable[row]));
  }
  return all;
}

// bits, value, title, meaning.
py::list FieldsOf(const std::string& name, std::int32_t word) {
  py::list all;
  for (std::int16_t row = 0; row <= RegCount; ++row) {
    if (RegName[row] != name) continue;
    for (const cBitFieldProp& field : DescribeRegister(row, word)) {
      all.append(py::make_tuple(field.BFRange(), field.BFValue(), field.BFTitle(),
                                field.SettingDecription()));
    }
  }
  return all;
}

// A record that carries no points tells the state in the words of a record.
std::shared_ptr<Record> RecordOfState(const StationState& state) {
  auto record = std::make_shared<Record>();
  record->status = state.status;
  record->alarms = state.alarms;
  record->conditions = state.conditions;
  return record;
}

// What came of a capture that an end was asked for: given back where it is new and nobody pressed
// Ctrl-C, carried by the exception otherwise.
std::shared_ptr<Record> RecordOr(Sensor& sensor, const Result<Captured>& captured) {
  const bool isSignal = sensor.HoldsInterrupt();
  if (!captured) {
    sensor.RaiseException();
    Raise(captured.Why());
  }
  auto record = std::make_shared<Record>(captured->record);
  if (!captured->interrupted) return record;
  if (isSignal) {
    sensor.ForgetException();
    RaiseWith("Interrupted",
              "The capture was stopped. What the sensor held then is the exception's `record`.",
              py::cast(record));
  }
  sensor.RaiseException();
  if (record->IsNew()) return record;
  RaiseWith("Stopped",
            "The capture was stopped before data were ready: the exception's `record` holds the "
            "data of the record before.",
            py::cast(record));
}

// A step of the station, whose failure is an exception.
template <typename Work>
auto Done(Sensor& sensor, Work work) {
  Sensor::Step step(sensor);
  const auto result = step.Do(std::move(work));
  sensor.RaiseException();
  return Got(result);
}

void AddRecords(SensorClass& type) {
  type.def("connect",
           [](Sensor& sensor) { Done(sensor, [](Station& station) { return station.Connect(); }); })
      .def("configure",
           [](Sensor& sensor, const py::dict& settings) {
             const RecordSetup change = ChangeOf(settings);
             return SettingsOf(Done(
                 sensor, [&](Station& station) { return station.Records().Configure(change); }));
           })
      .def("capture",
           [](Sensor& sensor) {
             Sensor::Step step(sensor);
             const auto captured =
                 step.Do([](Station& station) { return station.Records().Capture(); });
             return RecordOr(sensor, captured);
           })
      .def("stored",
           [](Sensor& sensor, int number, bool isTime) {
             const auto kind = isTime ? RecordKind::Time : RecordKind::Spectrum;
             return std::make_shared<Record>(Done(sensor, [&](Station& station) {
               return station.Records().ReadStored(number, kind);
             }));
           })
      .def("g_per_code",
           [](Sensor& sensor) {
             Sensor::Step step(sensor);
             return step.Do([](Station& station) { return station.Records().GPerCode(); });
           })
      .def("pause", [](Sensor& sensor, double seconds) {
        Sensor::Step step(sensor);
        const bool isWhole = step.Do([&](Station& station) {
          return station.Pause(std::chrono::nanoseconds(std::llround(seconds * 1e9)));
        });
        sensor.RaiseException();
        return isWhole;
      });
}

void AddRegisters(SensorClass& type) {
  type.def("read_register",
           [](Sensor& sensor, const std::string& name) {
             return RegisterOf(
                 Done(sensor, [&](Station& station) { return station.ReadRegister(name); }));
           })
      .def("read_registers",
           [](Sensor& sensor) {
             py::list all;
             for (const auto& value :
                  Done(sensor, [](Station& station) { return station.ReadRegisters(); })) {
               all.append(RegisterOf(value));
             }
             return all;
           })
      .def("write_register",
           [](Sensor& sensor, const std::string& name, std::int32_t value) {
             Done(sensor, [&](Station& station) { return station.WriteRegister(name, value); });
           })
      .def("state",
           [](Sensor& sensor, bool clear) {
             return RecordOfState(Done(sensor, [&](Station& station) {
               return clear ? station.ClearState() : station.ReadState();
             }));
           })
      .def("register_names",
           [](Sensor& sensor) {
             const Sensor::Step step(sensor);
             return RegisterNames();
           })
      .def("fields",
           [](Sensor& sensor, const std::string& name, std::int32_t word) {
             const Sensor::Step step(sensor);
             return FieldsOf(name, word);
           })
      .def("send", [](Sensor& sensor, int bit) {
        Done(sensor, [&](Station& station) { return station.SendFunction(bit); });
      });
}

void AddTransfers(SensorClass& type) {
  type.def("read_bands",
           [](Sensor& sensor) {
             return ValuesOf(Done(sensor, [](Station& station) { return station.Bands().Read(); }));
           })
      .def("write_bands",
           [](Sensor& sensor, const BandValues& values) {
             const BandTable table = TableOf(values);
             return Done(sensor, [&](Station& station) { return station.Bands().Write(table); });
           })
      .def("clear_bands",
           [](Sensor& sensor) {
             return Done(sensor, [](Station& station) { return station.Bands().Clear(); });
           })
      .def("read_setup",
           [](Sensor& sensor, const std::string& name) {
             return Done(sensor, [&](Station& station) {
               return station.Setups().Read(name, KESTREL_VERSION);
             });
           })
      .def("restore_setup",
           [](Sensor& sensor, const setup::Setup& saved, bool keepNulls, bool saveInFlash) {
             Sensor::Step step(sensor);
             const auto report = step.Do([&](Station& station) {
               return station.Setups().Restore(
                   saved, {.keepNulls = keepNulls, .saveInFlash = saveInFlash});
             });
             sensor.RaiseException();
             return py::make_tuple(report.IsWhole(), report.Text(), report.equal, report.written,
                                   report.unsure, report.open);
           });
}

py::list AdaptersOf(Sensor& sensor) {
  Sensor::Step step(sensor);
  const auto boards = step.Do([](Station& station) { return station.Adapters(); });
  py::list all;
  for (const AdapterRecord& board : boards) {
    all.append(py::make_tuple(board.deviceName, board.boardType, board.string1, board.string2,
                              static_cast<double>(board.firmwareVersion), board.usbVersion));
  }
  return all;
}

std::shared_ptr<Sensor> Opened(bool simulate, const std::string& scenario,
                               std::optional<int> adapter, std::optional<int> parallelAddress,
                               const std::string& portDevice) {
  Connection connection{.simulate = simulate,
                        .scenario = scenario,
                        .adapter = adapter,
                        .parallelAddress = {},
                        .portDevice = portDevice};
  if (parallelAddress) connection.parallelAddress = NarrowToInteger(*parallelAddress);
  return std::make_shared<Sensor>(connection);
}

}  // namespace

void BindSensor(py::module_& module) {
  SensorClass type(module, "Sensor");
  type.def(py::init(&Opened));
  module.def("after_fork", &ResetProgramNames);
  AddRecords(type);
  AddRegisters(type);
  AddTransfers(type);
  type.def("adapters", &AdaptersOf)
      .def("notes",
           [](Sensor& sensor) {
             Sensor::Step step(sensor);
             return step.Do([](Station& station) { return station.TakeNotes(); });
           })
      .def("set_progress", &Sensor::SetProgress)
      .def("stop", &Sensor::Stop)
      .def("end", &Sensor::End)
      .def("close", &Sensor::Close)
      .def_property_readonly("is_open", &Sensor::IsOpen)
      .def_property_readonly("is_busy", &Sensor::IsBusy);
  module.def("scenario_names", &ScenarioNames);
}

}  // namespace kestrel::python
