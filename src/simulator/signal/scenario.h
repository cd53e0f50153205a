// What surrounds a sensor: vibration, supply, temperature, faults, preset.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/registers/alarm_bands.h"

namespace kestrel {

inline constexpr std::size_t kAxisCount = 3;  // X, Y, Z

// When a record is taken.
struct Moment {
  double seconds = 0.0;        // since the sensor's power-up
  std::uint64_t captures = 0;  // complete since the scenario began
};

// One sine: AmplitudeAt * sin(2 pi frequencyHz t + phaseRad), t in seconds since power-up. It grows
// from capture to capture, but not within one.
struct Tone {
  double frequencyHz = 0.0;
  double amplitudeG = 0.0;  // peak, at the first capture
  double phaseRad = 0.0;
  double growthG = 0.0;  // by each capture; 0 or more
  double mostG = 0.0;    // where growth ends

  [[nodiscard]] double AmplitudeAt(std::uint64_t captures) const;
};

// Noise as a structure passes it on: densityG below its resonance, densityG * q on it, and falling
// by 12 dB an octave above.
struct ShapedNoise {
  double densityG = 0.0;  // g per root hertz
  double resonanceHz = 0.0;
  double q = 1.0;

  [[nodiscard]] double PowerAt(double hz) const;  // g^2/Hz
};

// What one axis feels.
struct AxisVibration {
  std::vector<Tone> tones;
  double offsetG = 0.0;        // static offset of the axis
  double noiseDensityG = 0.0;  // g per root hertz, the same at all frequencies
  std::vector<ShapedNoise> shapes{};
  // All of it but the offset grows by this from capture to capture, up to so much.
  double growthDb = 0.0;
  double mostDb = 0.0;

  [[nodiscard]] double GainAt(std::uint64_t captures) const;
  // Of all noise, at the first capture, g^2/Hz.
  [[nodiscard]] double NoisePowerAt(double hz) const;
};

// Faults that the sensor's own tests find while they are set.
struct SensorFaults {
  bool selfTest = false;
  bool flashMemory = false;
  bool flashUpdate = false;
};

// What was saved in the sensor's flash when it was delivered to a machine, beside its factory
// values.
struct Preset {
  struct Setting {
    std::uint8_t address = 0;  // of a register that flash keeps
    std::uint16_t word = 0;
  };
  struct SavedBand {
    std::uint16_t pointer = 0;  // as ALM_PNTR names it
    AlarmBands::Band band{};
  };

  std::vector<Setting> settings;
  std::vector<SavedBand> bands;
};

// All that surrounds the sensor. Temperature rises from temperatureC by warmingC, exponentially.
struct Scenario {
  std::array<AxisVibration, kAxisCount> axes;
  double supplyV = 3.3;
  double temperatureC = 25.0;
  double warmingC = 3.0;
  double warmingSeconds = 600.0;
  std::uint64_t noiseSeed = 1;
  SensorFaults faults;
  Preset preset;
};

// A belt-driven gear spindle: slow motor shaft, fast spindle with gear mesh and a worn bearing,
// different on each axis. The largest peak of each axis is about 0.6 g.
[[nodiscard]] Scenario RunningMachine();

// The running machine while the outer race of its bearing breaks: the bearing tone and its
// harmonics on Z grow capture by capture. The sensor comes with six bands for option 0 and the
// alarms of all axes on; with the factory's record settings the fourth capture raises a warning and
// the seventh a fault, both in band 3 of Z and nowhere else. The thresholds are codes of the 70 g
// range: in another range the same codes are so much less that the machine alarms from the first
// capture on.
[[nodiscard]] Scenario BearingFault();

// The running machine in a housing that gets hot: within a minute or so the temperature passes the
// limit of 40 degrees that the sensor comes with, and the next capture raises the system alarm.
[[nodiscard]] Scenario Overheating();

// A hand-held calibrator: 10 m/s2 rms at 159.2 Hz on all axes, with the sensor's offsets and noise.
[[nodiscard]] Scenario Calibrator();

// Lines and shaped noise over all that the sensor can tell, different on each axis: known at every
// frequency from 2 Hz to 40 kHz, and the same at all times.
[[nodiscard]] Scenario BroadbandMachine();

// The same machine while its load rises: everything grows by 5 dB from capture to capture, eight
// times.
[[nodiscard]] Scenario UnsteadyMachine();

// Nothing moves: the sensor's offsets and noise.
[[nodiscard]] Scenario AtRest();

// The scenarios that a user may choose, by name; the first is the usual one.
[[nodiscard]] std::vector<std::string> ScenarioNames();
[[nodiscard]] std::optional<Scenario> ScenarioNamed(std::string_view name);

// One tone on all axes; no noise, no offset.
[[nodiscard]] Scenario SingleTone(double frequencyHz, double amplitudeG);

}  // namespace kestrel
