// The simulated sensor: SPI words in, SPI words out, over the parts that make it up.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "seams/clock.h"
#include "simulator/registers/register_file.h"
#include "simulator/sensor/alarms.h"
#include "simulator/sensor/commands.h"
#include "simulator/sensor/digital_pins.h"
#include "simulator/sensor/flash_memory.h"
#include "simulator/sensor/recorder.h"
#include "simulator/sensor/surroundings.h"
#include "simulator/sensor/work.h"
#include "simulator/signal/scenario.h"

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
  [[nodiscard]] const Scenario& CurrentScenario() const { return surroundings_.scenario; }

  // What the sensor is doing at this moment.
  [[nodiscard]] bool IsCapturing();
  [[nodiscard]] bool IsInSeries();  // capturing in timer mode, or in the pause between two captures
  [[nodiscard]] bool IsBusy();      // with a command other than a capture
  [[nodiscard]] bool IsAsleep() const { return work_.IsAsleep(); }

 private:
  [[nodiscard]] std::uint16_t Read(std::uint8_t address);
  void Write(std::uint8_t address, std::uint8_t data);
  void WriteBuffer(std::uint8_t address, std::uint8_t data);
  void TakeCommand(std::uint16_t word);
  void BeginFrame();
  void FinishWhatIsDue();
  [[nodiscard]] DigitalPins::Sensor PinState() const;

  sensor::Surroundings surroundings_;
  RegisterFile registers_;
  sensor::Work work_;
  sensor::FlashMemory flash_;
  sensor::Alarms alarms_;
  sensor::Recorder recorder_;
  sensor::Commands commands_;
  DigitalPins pins_;
  std::uint16_t answer_ = 0;
  bool powered_ = true;
};

}  // namespace kestrel
