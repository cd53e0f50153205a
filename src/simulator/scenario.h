// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kestrel {

inline constexpr std::size_t kAxisCount = 3;  // X, Y, Z

// One sine: amplitudeG * sin(2 pi frequencyHz t + phaseRad), t since the sensor's power-up.
struct Tone {
  double frequencyHz = 0.0;
  double amplitudeG = 0.0;  // peak
  double phaseRad = 0.0;
};

// What one axis feels.
struct AxisVibration {
  std::vector<Tone> tones;
  double offsetG = 0.0;        // static offset of the axis
  double noiseDensityG = 0.0;  // g per root hertz
};

// Faults that the sensor's own tests find while they are set.
struct SensorFaults {
  bool selfTest = false;
  bool flashMemory = false;
  bool flashUpdate = false;
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
};

// A belt-driven gear spindle: slow motor shaft, fast spindle with gear mesh and a worn bearing,
// different on each axis. The largest peak of each axis is about 0.6 g.
[[nodiscard]] Scenario RunningMachine();

// One tone on all axes; no noise, no offset.
[[nodiscard]] Scenario SingleTone(double frequencyHz, double amplitudeG);

}  // namespace kestrel
