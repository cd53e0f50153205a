// The peak table: peaks between bins, with their error bound.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "analysis/interpolation.h"
#include "analysis/quantity.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

struct PeakSettings {
  double floorG = 0;         // g peak; smaller peaks are left out
  double prominenceDb = 12;  // above the local noise
  std::size_t atMost = 50;
  bool operator==(const PeakSettings&) const = default;
};

struct Peak {
  std::size_t bin = 0;
  Line line;
  double noiseG = 0;  // median of the surrounding bins, g peak
  Axis axis = Axis::X;
};

// Larger than both neighbours (a flat top of equal bins counts once), outside the lobe around 0 Hz,
// at least `floorG`, `prominenceDb` above the local noise and two steps of the magnitude word.
// Largest first.
[[nodiscard]] std::vector<Peak> FindPeaks(const Spectrum& spectrum,
                                          const PeakSettings& settings = {});

// The same of those that lie between two frequencies.
[[nodiscard]] std::vector<Peak> FindPeaksBetween(const Spectrum& spectrum, double fromHz,
                                                 double toHz, const PeakSettings& settings = {});

// The peak nearest to `hz`, where one lies within `withinHz`.
[[nodiscard]] std::optional<Peak> NearestPeak(const std::vector<Peak>& peaks, double hz,
                                              double withinHz);

// A line's amplitude in a quantity. The bound holds what both the line's amplitude and its
// frequency may be wrong by; none where the line has none.
struct LineValue {
  double value = 0;
  std::optional<double> bound{};
};
[[nodiscard]] LineValue ValueOf(const Spectrum& spectrum, const QuantityChoice& choice,
                                const Line& line);

struct QuantityPeak {
  Peak peak;
  LineValue value;
};

// The peaks in bins that hold the quantity, largest value first. Refused where the quantity is.
[[nodiscard]] Told<std::vector<QuantityPeak>> PeaksIn(const Spectrum& spectrum,
                                                      const QuantityChoice& choice,
                                                      const PeakSettings& settings = {});

}  // namespace kestrel::analysis
