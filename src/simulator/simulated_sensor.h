// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "seams/clock.h"
#include "simulator/alarm_bands.h"
#include "simulator/alarm_monitor.h"
#include "simulator/capture_engine.h"
#include "simulator/catch_up.h"
#include "simulator/digital_pins.h"
#include "simulator/flash_records.h"
#include "simulator/register_file.h"
#include "simulator/scenario.h"

namespace kestrel {

// A tri-axial vibration sensor behind its SPI port. It lives on `clock`'s monotonic time, powered
// up when constructed; whatever came due in the meantime is done at the start of the next frame.
//
// The alarm registers ALM_x_STAT, _PEAK and _FREQ tell about the record in the buffers; a record
// comes back from flash with its own. The alarm flags of STATUS and the pins tell about the
// machine: they follow the latest spectrum and the latest supply and temperature, or, latched, what
// was raised since the status was cleared. Supply and temperature are measured, and the system
// alarm is judged, at each capture's end and at a restart, so that registers and flags belong
// together.
class SimulatedSensor {
 public:
  SimulatedSensor(Clock& clock, Scenario scenario);
  ~SimulatedSensor() = default;
  SimulatedSensor(const SimulatedSensor&) = delete;
  SimulatedSensor& operator=(const SimulatedSensor&) = delete;

  // One frame of 16 clocks: takes a word, returns the word shifted out meanwhile, which is the
  // answer to a read in the frame before (0 after any other frame).
  std::uint16_t Exchange(std::uint16_t frame);

  // The word that the next frame shifts out.
  [[nodiscard]] std::uint16_t PendingAnswer() const { return answer_; }

  // A frame of a wrong number of clocks.
  void FrameError();

  // The power that the sensor hangs on. Without it, frames are answered with 0 and lost; with it
  // again, the sensor starts as at power-up, from what its flash holds.
  void CutPower();
  void RestorePower();

  // A new sensor, delivered to another machine: flash holds the factory values and the scenario's
  // preset. A factory reset leaves only the factory values.
  void Deliver(Scenario scenario);

  // Level of DIO1 or DIO2 (line 1 or 2), and a level driven on it from outside: low at the start,
  // without effect on an output. An edge to the active level of a capture trigger starts a capture
  // as the command does; a sensor that is capturing, busy or asleep does not care.
  [[nodiscard]] bool PinLevel(int line);
  void DrivePin(int line, bool high);

  // Changes what is measured from the next capture's end on, and what the sensor's tests find. The
  // scenario's preset does not matter.
  void SetScenario(Scenario scenario);
  void SetFaults(const SensorFaults& faults);
  void SetSupply(double volts);
  [[nodiscard]] const Scenario& CurrentScenario() const { return scenario_; }

  // What the sensor is doing at this moment.
  [[nodiscard]] bool IsCapturing();
  [[nodiscard]] bool IsInSeries();  // capturing in timer mode, or in the pause between two captures
  [[nodiscard]] bool IsBusy();      // with a command other than a capture
  [[nodiscard]] bool IsAsleep() const { return asleep_; }

 private:
  enum class Activity { None, Command, Capture };
  struct Command;  // one bit of COMMAND

  [[nodiscard]] std::uint16_t Read(std::uint8_t address);
  void Write(std::uint8_t address, std::uint8_t data);
  void WriteBuffer(std::uint8_t address, std::uint8_t data);
  [[nodiscard]] std::uint16_t* BufferWord(std::uint8_t address);

  // Activities: at most one at a time, finished when its time has passed.
  void BeginFrame();
  void FinishWhatIsDue();
  void Begin(Activity activity, std::chrono::nanoseconds start, std::chrono::nanoseconds duration);

  // Captures, in simulated_sensor_captures.cpp.
  [[nodiscard]] CaptureSettings LatchSettings() const;
  [[nodiscard]] bool IsRepeating() const { return nextStart_.has_value(); }
  void StartRecording();
  void StopOrRestart();
  void ClearStatusInSeries();
  void RequestStop();
  void EndRecording();
  void ContinueSeries(std::chrono::nanoseconds now, std::uint64_t& passed);
  [[nodiscard]] Traces TracesOf(const CaptureSettings& settings) const;
  void BeginCapture(std::chrono::nanoseconds start);
  void FinishCapture();
  [[nodiscard]] bool IsToBeStored() const;
  void StoreRecord();
  void RetrieveRecord();
  void ClearRecords();
  void Autonull();
  void ClearNulls();

  // Commands, in simulated_sensor_commands.cpp.
  [[nodiscard]] static const Command& CommandOf(unsigned bit);
  void BeginCommand(std::uint16_t word);
  void FinishCommand();
  void PowerDown();
  void SelfTest();
  void FactoryReset();
  void ClearStatus();
  void FlashTest();
  void FlashUpdate();
  void SoftwareReset();
  void ResetBufferPointer();
  void SaveAlarmBand();
  void RetrieveAlarmBand();
  void ClearAlarmBands();
  [[nodiscard]] bool WriteFlash();

  // Power and restart, in simulated_sensor_power.cpp.
  void Restart();
  [[nodiscard]] double SecondsSincePowerUp(std::chrono::nanoseconds moment) const;

  // Alarms and lines, in simulated_sensor_alarms.cpp.
  [[nodiscard]] AlarmControl Control() const;
  void JudgeSpectrum();
  void MeasureSupplyAndTemperature();
  void ShowAlarms();
  void WithdrawAlarms();
  [[nodiscard]] DigitalPins::Sensor PinState() const;

  Clock& clock_;
  Scenario scenario_;
  std::chrono::nanoseconds powerUp_;
  RegisterFile registers_;
  RegisterFile::Words flash_;
  FlashRecords records_;
  AlarmBands bands_;
  AlarmMonitor alarms_;
  DigitalPins pins_;
  CaptureEngine engine_;
  CapturedRecord record_;  // what X_BUF, Y_BUF and Z_BUF show
  std::uint16_t answer_ = 0;
  bool powered_ = true;
  bool asleep_ = false;

  Activity activity_ = Activity::None;
  std::chrono::nanoseconds begun_{0};
  std::chrono::nanoseconds due_{0};
  unsigned commandBit_ = 0;
  std::optional<std::chrono::nanoseconds> nextStart_;  // while a series goes on
  bool begunByTimer_ = false;                          // the last capture, not a command
  std::uint64_t capturesOfScenario_ = 0;               // complete
  CaptureSettings capture_;
  CaptureEngine::PerAxis captureCorrectionG_{};
};

}  // namespace kestrel
