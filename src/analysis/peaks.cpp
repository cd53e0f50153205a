// Finding the bins that stand out of a spectrum.
// SPDX-License-Identifier: MIT
#include "analysis/peaks.h"

#include <algorithm>
#include <cmath>

namespace kestrel::analysis {
namespace {

// First of equal bins that are larger than those beside them.
bool IsTop(const Spectrum& spectrum, std::size_t bin) {
  const std::vector<double>& values = spectrum.peakG;
  if (bin > 0 && values[bin - 1] >= values[bin]) return false;
  std::size_t next = bin + 1;
  while (next < values.size() && values[next] == values[bin]) ++next;
  return next < values.size() && values[next] < values[bin];
}

bool StandsOut(const Spectrum& spectrum, const PeakSettings& settings, std::size_t bin,
               double noise) {
  const double value = spectrum.peakG[bin];
  const double prominence = std::pow(10, std::max(settings.prominenceDb, 0.0) / 20);
  return value >= settings.floorG && value >= noise * prominence && value >= 2 * spectrum.stepG &&
         value > 0;
}

}  // namespace

std::vector<Peak> FindPeaks(const Spectrum& spectrum, const PeakSettings& settings) {
  std::vector<Peak> peaks;
  for (std::size_t bin = spectrum.FirstVibration(); bin + 1 < spectrum.Bins(); ++bin) {
    if (!IsTop(spectrum, bin)) continue;
    const double noise = LocalNoise(spectrum, bin);
    if (!StandsOut(spectrum, settings, bin, noise)) continue;
    peaks.push_back({bin, LineAt(spectrum, bin), noise, spectrum.axis});
  }
  std::ranges::stable_sort(peaks, std::greater{}, [](const Peak& peak) { return peak.line.peakG; });
  if (peaks.size() > settings.atMost) peaks.resize(settings.atMost);
  return peaks;
}

std::optional<Peak> NearestPeak(const std::vector<Peak>& peaks, double hz, double withinHz) {
  std::optional<Peak> nearest;
  double least = withinHz;
  for (const Peak& peak : peaks) {
    const double away = std::fabs(peak.line.hz - hz);
    if (!(away <= least)) continue;
    least = away;
    nearest = peak;
  }
  return nearest;
}

}  // namespace kestrel::analysis
