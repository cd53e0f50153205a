// The sensor's recorder: single captures, the series of timer mode, and the record in the buffers.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "simulator/registers/register_file.h"
#include "simulator/sensor/alarms.h"
#include "simulator/sensor/catch_up.h"
#include "simulator/sensor/flash_memory.h"
#include "simulator/sensor/surroundings.h"
#include "simulator/sensor/work.h"
#include "simulator/signal/capture_engine.h"

namespace kestrel::sensor {

// A capture is the sensor's work until its time has passed; in timer mode a series of them goes on
// by itself, with pauses in which the sensor does no work. Settings count from a capture's start
// on.
class Recorder {
 public:
  Recorder(RegisterFile& registers, FlashMemory& flash, Alarms& alarms, Surroundings& surroundings,
           Work& work)
      : registers_(registers),
        flash_(flash),
        alarms_(alarms),
        surroundings_(surroundings),
        work_(work),
        engine_(0) {}

  // A new sensor, with noise of its own.
  void Deliver() { engine_ = CaptureEngine(surroundings_.scenario.noiseSeed); }

  // The buffers are empty and nothing is recorded, as at power-up.
  void Restart();

  // The start/stop command while the sensor is idle. In timer mode it begins a series, or begins it
  // anew in the pause between two of its captures.
  void Start();

  // The start/stop command during a capture: ends it, and the series. A capture that the timer
  // began while no record waits to be read is another matter: someone cleared the status in the
  // pause, the timer came first, and whoever clears and starts waits for a fresh record. The series
  // begins anew.
  void StopOrRestart();

  // The byte that stops a recording from outside; STATUS tells that one was stopped.
  void Escape();

  // Ends capture and series.
  void End();

  // The series, when there is one: begun, and not ended.
  [[nodiscard]] bool IsRepeating() const { return nextStart_.has_value(); }
  [[nodiscard]] std::chrono::nanoseconds NextStart() const {
    return nextStart_.value_or(std::chrono::nanoseconds{0});
  }
  [[nodiscard]] bool BegunByTimer() const { return begunByTimer_; }  // the last capture
  // The next capture waits for the end of other work.
  void Postpone(std::chrono::nanoseconds until);
  // Begins the next capture of the series. Of those that would be complete by `now` only the newest
  // can be seen from outside; those before it are counted, and computed as far as they leave a
  // trace. `passed` counts them since the frame before.
  void ContinueSeries(std::chrono::nanoseconds now, std::uint64_t& passed);

  // The capture's time has passed.
  void Finish();

  // Shows a stored record in the buffers.
  void Retrieve() { record_ = flash_.RetrieveRecord(); }

  // The word of X_BUF, Y_BUF or Z_BUF that BUF_PNTR points at; none when it points outside.
  [[nodiscard]] std::uint16_t* BufferWord(std::uint8_t address);

  // Correction registers from the mean of what is measured now; back to none.
  void Autonull();
  void ClearNulls();

 private:
  [[nodiscard]] CaptureSettings Settings() const;
  [[nodiscard]] Traces TracesOf(const CaptureSettings& settings) const;
  void BeginCapture(std::chrono::nanoseconds start);
  void Describe();
  [[nodiscard]] bool IsToBeStored() const;

  RegisterFile& registers_;
  FlashMemory& flash_;
  Alarms& alarms_;
  Surroundings& surroundings_;
  Work& work_;
  CaptureEngine engine_;
  CapturedRecord record_;  // what X_BUF, Y_BUF and Z_BUF show
  std::optional<std::chrono::nanoseconds> nextStart_;
  bool begunByTimer_ = false;

  // Of the capture under way, or the last one.
  CaptureSettings settings_;
  CaptureEngine::PerAxis correctionG_{};
};

}  // namespace kestrel::sensor
