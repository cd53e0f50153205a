// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "app/clock.h"
#include "simulator/alarm_bands.h"
#include "simulator/capture_engine.h"
#include "simulator/flash_records.h"
#include "simulator/register_file.h"
#include "simulator/scenario.h"

namespace kestrel {

// A tri-axial vibration sensor behind its SPI port. It lives on `clock`'s monotonic time, powered
// up when constructed; whatever came due in the meantime is done at the start of the next frame.
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

  // Changes what is measured from the next capture's end on, and what the sensor's tests find.
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
  void ContinueSeries(std::chrono::nanoseconds now);
  void BeginCapture(std::chrono::nanoseconds start);
  void FinishCapture();
  [[nodiscard]] bool IsToBeStored(const CaptureSettings& settings) const;
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

  void MeasureSupplyAndTemperature();
  [[nodiscard]] double SecondsSincePowerUp(std::chrono::nanoseconds moment) const;

  Clock& clock_;
  Scenario scenario_;
  std::chrono::nanoseconds powerUp_;
  RegisterFile registers_;
  RegisterFile::Words flash_;
  FlashRecords records_;
  AlarmBands bands_;
  CaptureEngine engine_;
  CapturedRecord record_;  // what X_BUF, Y_BUF and Z_BUF show
  std::uint16_t answer_ = 0;
  bool asleep_ = false;

  Activity activity_ = Activity::None;
  std::chrono::nanoseconds begun_{0};
  std::chrono::nanoseconds due_{0};
  unsigned commandBit_ = 0;
  std::optional<std::chrono::nanoseconds> nextStart_;  // while a series goes on
  bool begunByTimer_ = false;                          // the last capture, not a command
  CaptureSettings capture_;
  CaptureEngine::PerAxis captureCorrectionG_{};
};

}  // namespace kestrel
