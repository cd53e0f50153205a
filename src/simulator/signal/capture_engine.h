// The sensor's analogue input and its arithmetic: settings in, record out.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "simulator/signal/capture_settings.h"
#include "simulator/signal/scenario.h"
#include "simulator/signal/vibration_source.h"

namespace kestrel {

// A finished record: 256 magnitudes or 512 two's complement samples for each axis.
struct CapturedRecord {
  CaptureSettings settings;
  std::array<std::vector<std::uint16_t>, kAxisCount> words;
};

// Largest magnitude of a spectrum apart from bin 0.
struct SpectrumPeak {
  std::uint16_t code = 0;
  std::uint16_t bin = 0;
};

[[nodiscard]] SpectrumPeak FindPeak(const std::vector<std::uint16_t>& magnitudes);

// The sensor's analogue input and its arithmetic.
class CaptureEngine {
 public:
  using PerAxis = std::array<double, kAxisCount>;

  explicit CaptureEngine(std::uint64_t noiseSeed) : source_(noiseSeed) {}

  // Takes a record that began at `start`; correctionG is added to each sample.
  [[nodiscard]] CapturedRecord Take(const Scenario& scenario, const CaptureSettings& settings,
                                    const Moment& start, const PerAxis& correctionG);

  // Mean of each axis, uncorrected, over about 0.16 s from `start` on.
  [[nodiscard]] PerAxis MeasureMean(const Scenario& scenario, unsigned range, const Moment& start);

 private:
  VibrationSource source_;
};

}  // namespace kestrel
