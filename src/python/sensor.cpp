// What happens between a station's steps and the interpreter.
// SPDX-License-Identifier: MIT
#include "python/sensor.h"

#include <utility>

#include "app/program_state.h"
#include "device/rec_ctrl.h"

namespace py = pybind11;

namespace kestrel::python {
namespace {

// The models of the registers are there while a station stands.
void RefuseSecond() {
  if (gRecCtrl == nullptr) return;
  Raise("BusyError",
        "Another sensor is open in this program, and there can be one at a time. Close that one "
        "first, or use another process for the second sensor.");
}

StationSite SiteOf(System& system, Watch watch) {
  iniSystem2(System::Version());
  return {.clock = system.SystemClock(),
          .files = system.SystemFiles(),
          .locale = system.SystemLocale(),
          .hardware = system.Devices(),
          .usePortDevice = [&system](const auto& device) { system.UsePortDevice(device); },
          .watch = std::move(watch)};
}

}  // namespace

Sensor::Standing::Standing(const Connection& connection, Watch watch)
    : system({.portAddress = [] { return PortAddress; }}),
      station(SiteOf(system, std::move(watch)), connection) {}

Sensor::Sensor(const Connection& connection)
    : held_("sensor", [&] {
        RefuseSecond();
        return std::make_unique<Standing>(
            connection, Watch{.progress = [this](const Progress& now) { Tell(now); },
                              .interrupted = [this] { return IsInterrupted(); }});
      }()) {}

void Sensor::Begin() {
  exception_.reset();
  isStopAsked_ = false;
}

bool Sensor::End(double seconds) {
  isStopAsked_ = true;
  return held_.End(seconds);
}

bool Sensor::HoldsInterrupt() const {
  return exception_ && exception_->matches(PyExc_KeyboardInterrupt);
}

void Sensor::RaiseException() {
  if (!exception_) return;
  const py::error_already_set exception = *std::exchange(exception_, std::nullopt);
  throw exception;
}

// An exception of the callback ends the step: it must not pass through the station.
void Sensor::Tell(const Progress& now) {
  const Locked locked;
  if (progress_.is_none()) return;
  try {
    DoneOrNever([&] { progress_(now.activity, now.done, now.total); });
  } catch (const py::error_already_set& exception) {
    exception_ = exception;
    isStopAsked_ = true;
  }
}

bool Sensor::IsInterrupted() {
  if (isStopAsked_.exchange(false)) return true;
  const Locked locked;
  if (PyErr_CheckSignals() == 0) return false;
  exception_ = py::error_already_set();
  return true;
}

}  // namespace kestrel::python
