// A station as Python holds it: interrupts, progress, and its end, whoever asks for it.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "platform/system.h"
#include "python/held.h"
#include "station/station.h"

namespace kestrel::python {

// One sensor over the system's devices. During a step it asks the interpreter for signals, at least
// every 20 ms of a wait. All but Stop is called with the lock of the interpreter held.
class Sensor {
 public:
  // What a step works on, without the lock.
  struct Standing {
    Standing(const Connection& connection, Watch watch);
    System system;
    Station station;
  };
  // A step from its beginning to its end, what it raises included.
  class Step {
   public:
    explicit Step(Sensor& sensor) : use_(sensor.held_) { sensor.Begin(); }
    template <typename Work>
    auto Do(Work work) {
      return use_.Do([&work](Standing& standing) { return work(standing.station); });
    }

   private:
    Held<Standing>::Use use_;
  };

  // Raises BusyError where another station stands in this process: the table of registers and the
  // record at hand are there once.
  explicit Sensor(const Connection& connection);
  Sensor(const Sensor&) = delete;
  Sensor& operator=(const Sensor&) = delete;

  // Called with what is done, how much of it, and of how much; None: nobody looks.
  void SetProgress(pybind11::object progress) { progress_ = std::move(progress); }

  // Ends the step at work as Stop does; from any thread.
  void Stop() { isStopAsked_ = true; }
  // Ends the step at work, lets none begin, and closes; false where that takes longer.
  [[nodiscard]] bool End(double seconds);
  void Close() { held_.Close(); }
  [[nodiscard]] bool IsOpen() const { return held_.IsOpen(); }
  [[nodiscard]] bool IsBusy() const { return held_.IsBusy(); }

  // An exception that came up in a signal handler or a callback during the last step.
  [[nodiscard]] bool HoldsInterrupt() const;
  void ForgetException() { exception_.reset(); }
  // Raises it, where there is one.
  void RaiseException();

 private:
  void Begin();
  void Tell(const Progress& now);
  [[nodiscard]] bool IsInterrupted();

  pybind11::object progress_ = pybind11::none();
  std::optional<pybind11::error_already_set> exception_;
  std::atomic<bool> isStopAsked_ = false;
  Held<Standing> held_;
};

}  // namespace kestrel::python
