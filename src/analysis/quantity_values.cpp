// Bounds, order and sums of squares in a quantity.
// SPDX-License-Identifier: MIT
#include "analysis/quantity_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kestrel::analysis {
namespace {

// Whether a sum of squares in g is to be weighted by frequency.
bool IsIntegrated(const QuantityChoice& choice) {
  return choice.quantity == Quantity::Velocity || choice.quantity == Quantity::Displacement;
}

// What the RMS of a band is told in.
QuantityChoice RmsOf(const QuantityChoice& choice) {
  QuantityChoice rms = choice;
  rms.amplitude = Amplitude::Rms;
  if (choice.quantity == Quantity::Density) rms.quantity = Quantity::Acceleration;
  return rms;
}

double RmsBetween(const Spectrum& spectrum, const QuantityChoice& choice, const BandLevel& band) {
  if (choice.quantity == Quantity::Level) return LevelOf(band.rmsG, choice.reference);
  if (!IsIntegrated(choice)) return band.rmsG;
  const QuantityChoice peak{.quantity = choice.quantity};
  return std::sqrt(PowerBetween(spectrum, band.fromHz, band.toHz, [&](double hz) {
    const double perG = ValueIn(spectrum, peak, 1, hz);
    return perG * perG;
  }));
}

void TakeLargest(QuantityLevel& level, const Spectrum& spectrum, const QuantityCurve& curve) {
  level.largest = -std::numeric_limits<double>::infinity();
  for (std::size_t bin = curve.firstValid; bin < spectrum.Bins(); ++bin) {
    const double hz = spectrum.FrequencyOf(static_cast<double>(bin));
    if (hz < level.fromHz || hz > level.toHz || curve.values[bin] <= level.largest) continue;
    level.largest = curve.values[bin];
    level.largestHz = spectrum.peakG[bin] > 0 ? hz : 0;
  }
  if (!std::isfinite(level.largest)) level.largest = 0;
}

// Lower edge of the first bin that holds the quantity.
double BottomOf(const Spectrum& spectrum, const QuantityCurve& curve) {
  return spectrum.FrequencyOf(static_cast<double>(curve.firstValid) - 0.5);
}

}  // namespace

LineValue ValueOf(const Spectrum& spectrum, const QuantityChoice& choice, const Line& line) {
  LineValue told{.value = ValueIn(spectrum, choice, line.peakG, line.hz)};
  if (!line.peakBoundG) return told;
  const double lowest = std::max(line.hz - line.hzBound, spectrum.binWidthHz / 2);
  const double most = ValueIn(spectrum, choice, line.peakG + *line.peakBoundG, lowest);
  const double least = ValueIn(spectrum, choice, std::max(line.peakG - *line.peakBoundG, 0.0),
                               line.hz + line.hzBound);
  told.bound = std::max(most - told.value, told.value - least);
  return told;
}

Told<std::vector<QuantityPeak>> PeaksIn(const Spectrum& spectrum, const QuantityChoice& choice,
                                        const PeakSettings& settings) {
  const auto curve = InQuantity(spectrum, choice);
  if (!curve) return curve.Why();
  PeakSettings all = settings;
  all.atMost = spectrum.Bins();
  std::vector<QuantityPeak> peaks;
  for (const Peak& peak : FindPeaks(spectrum, all)) {
    if (peak.bin < curve->firstValid) continue;
    peaks.push_back({peak, ValueOf(spectrum, choice, peak.line)});
  }
  std::ranges::stable_sort(peaks, std::greater{},
                           [](const QuantityPeak& peak) { return peak.value.value; });
  if (peaks.size() > settings.atMost) {
    peaks.erase(peaks.begin() + static_cast<std::ptrdiff_t>(settings.atMost), peaks.end());
  }
  return peaks;
}

Told<QuantityLevel> LevelIn(const Spectrum& spectrum, const QuantityChoice& choice, double fromHz,
                            double toHz) {
  const auto curve = InQuantity(spectrum, choice);
  if (!curve) return curve.Why();
  const double bottom = BottomOf(spectrum, *curve);
  if (toHz <= bottom) {
    if (auto refusal = WhyNotBetween(spectrum, choice, fromHz, toHz)) return *refusal;
  }
  const auto band = LevelBetween(spectrum, std::max(fromHz, bottom), toHz);
  if (!band) return band.Why();
  QuantityLevel level{.fromHz = band->fromHz,
                      .toHz = band->toHz,
                      .whole = band->whole && fromHz >= bottom,
                      .rms = RmsBetween(spectrum, choice, *band),
                      .rmsUnit = UnitOf(RmsOf(choice)),
                      .largestUnit = UnitOf(choice)};
  TakeLargest(level, spectrum, *curve);
  return level;
}

Told<QuantityLevel> OverallIn(const Spectrum& spectrum, const QuantityChoice& choice) {
  const auto curve = InQuantity(spectrum, choice);
  if (!curve) return curve.Why();
  return LevelIn(spectrum, choice, BottomOf(spectrum, *curve), spectrum.TopHz());
}

}  // namespace kestrel::analysis
