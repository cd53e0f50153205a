// Peaks and levels in a quantity, as tables and scripts are told them.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/levels.h"
#include "analysis/peaks.h"
#include "analysis/quantity.h"

namespace kestrel::analysis {

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

// A band's RMS and largest bin in a quantity. The RMS of a density is that of the acceleration
// whose power it spreads out.
struct QuantityLevel {
  double fromHz = 0;  // the part of the band that holds the quantity: edges of bins, or the band's
  double toHz = 0;
  bool whole = true;  // that part is the whole band
  double rms = 0;
  std::string rmsUnit{};  // "mm/s RMS"
  double largest = 0;     // value of the largest bin whose centre is in the band
  double largestHz = 0;   // 0 where all are 0
  std::string largestUnit{};
};

// Refused as LevelBetween is, and where the band holds nothing of the quantity.
[[nodiscard]] Told<QuantityLevel> LevelIn(const Spectrum& spectrum, const QuantityChoice& choice,
                                          double fromHz, double toHz);

// Over all bins that hold the quantity.
[[nodiscard]] Told<QuantityLevel> OverallIn(const Spectrum& spectrum, const QuantityChoice& choice);

}  // namespace kestrel::analysis
