// The sensor's six alarm bands against their thresholds: headroom and state.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/spectrum.h"

namespace kestrel::analysis {

// A band of one axis as the sensor holds it: bins 0..255, thresholds as magnitude words, 0 for
// none.
struct SensorBand {
  int lowBin = 0;
  int highBin = 0;
  int warning = 0;  // alarm 1
  int fault = 0;    // alarm 2
  bool operator==(const SensorBand&) const = default;
};

// Whether it covers bins of a spectrum of so many.
[[nodiscard]] bool HoldsBins(const SensorBand& band, std::size_t bins);
// Whether the sensor raises an alarm: a word has to be larger than a threshold, 0 being none.
[[nodiscard]] inline bool Exceeds(double word, double threshold) {
  return threshold > 0 && word > threshold;
}

enum class BandState { Unused, Free, Warning, Fault };

struct SensorBandLevel {
  int number = 0;  // 1..6
  BandState state = BandState::Unused;
  double fromHz = 0;    // of its first bin
  double toHz = 0;      // of its last
  double largestG = 0;  // g peak
  double largestHz = 0;
  double warningG = 0;  // g peak, 0 for none
  double faultG = 0;
  // Threshold over largest bin in dB: positive is free, negative beyond. None without a threshold.
  // A bin that reads 0 counts as half a step.
  std::optional<double> toWarningDb{};
  std::optional<double> toFaultDb{};
  bool holdsOffset =
      false;  // it reaches into the bins that hold no vibration; the sensor looks there too
};

// Judged as the sensor does: a magnitude word must exceed the threshold. Bands without a threshold,
// or whose bins are in the wrong order or off the axis, are unused.
[[nodiscard]] std::vector<SensorBandLevel> LevelsOf(const Spectrum& spectrum,
                                                    std::span<const SensorBand> bands);

// "3.6 dB free", "Warning 3, +0.6 dB", "Fault 3, +1.2 dB"; empty for an unused band.
[[nodiscard]] std::string TextOf(const SensorBandLevel& band);

}  // namespace kestrel::analysis
