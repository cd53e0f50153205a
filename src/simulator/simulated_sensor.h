// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <utility>

#include "app/clock.h"
#include "simulator/capture_engine.h"
#include "simulator/register_file.h"
#include "simulator/scenario.h"

namespace kestrel {

// A tri-axial vibration sensor behind its SPI port. It lives on `clock`'s monotonic time, powered
// up when constructed; whatever came due in the meantime is done at the start of the next frame.
class SimulatedSensor {
 public:
  SimulatedSensor(Clock& clock, Scenario scenario);
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
  void SetScenario(Scenario scenario) { scenario_ = std::move(scenario); }
  void SetFaults(const SensorFaults& faults) { scenario_.faults = faults; }
  void SetSupply(double volts) { scenario_.supplyV = volts; }
  [[nodiscard]] const Scenario& CurrentScenario() const { return scenario_; }

  // What the sensor is doing at this moment.
  [[nodiscard]] bool IsCapturing();
  [[nodiscard]] bool IsBusy();  // with a command other than a capture
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
  void Begin(Activity activity, std::chrono::nanoseconds duration);
  void BeginCapture();
  void FinishCapture();
  void RequestStop();

  // Commands, in simulated_sensor_commands.cpp.
  [[nodiscard]] static const Command& CommandOf(unsigned bit);
  void BeginCommand(std::uint16_t word);
  void FinishCommand();
  void Autonull();
  void PowerDown();
  void SelfTest();
  void FactoryReset();
  void ClearStatus();
  void FlashTest();
  void FlashUpdate();
  void SoftwareReset();
  void ResetBufferPointer();

  void MeasureSupplyAndTemperature();
  [[nodiscard]] double SecondsSincePowerUp(std::chrono::nanoseconds moment) const;

  Clock& clock_;
  Scenario scenario_;
  std::chrono::nanoseconds powerUp_;
  RegisterFile registers_;
  RegisterFile::Words flash_;
  CaptureEngine engine_;
  CapturedRecord record_;  // what X_BUF, Y_BUF and Z_BUF show
  std::uint16_t answer_ = 0;
  bool asleep_ = false;

  Activity activity_ = Activity::None;
  std::chrono::nanoseconds begun_{0};
  std::chrono::nanoseconds due_{0};
  unsigned commandBit_ = 0;
  CaptureSettings capture_;
  CaptureEngine::PerAxis captureCorrectionG_{};
};

}  // namespace kestrel
