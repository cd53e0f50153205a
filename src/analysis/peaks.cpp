// Finding the bins that stand out of a spectrum.
// SPDX-License-Identifier: MIT
#include "analysis/peaks.h"

#include <algorithm>
#include <cmath>

namespace kestrel::analysis {
namespace {

// First of equal bins that are larger than those beside them; bin 0 holds offset and is never
// asked.
bool IsTop(const Spectrum& spectrum, std::size_t bin) {
  const std::vector<double>& values = spectrum.peakG;
  if (values[bin - 1] >= values[bin]) return false;
  std::size_t next = bin + 1;
  while (next < values.size() && values[next] == values[bin]) ++next;
  return next < values.size() && values[next] < values[bin];
}

bool StandsOut(const Spectrum& spectrum, const PeakSettings& settings, std::size_t bin,
               double noise) {
  const double value = spectrum.peakG[bin];
  const double prominence = std::pow(10, std::max(settings.prominenceDb, 0.0) / 20);
  return value >= settings.floorG && value >= noise * prominence && value >= 2 * spectrum.stepG;
}

// At the bins from `first` to before `end`, as they come.
std::vector<Peak> PeaksAt(const Spectrum& spectrum, const PeakSettings& settings, std::size_t first,
                          std::size_t end) {
  std::vector<Peak> peaks;
  for (std::size_t bin = first; bin < end; ++bin) {
    if (!IsTop(spectrum, bin)) continue;
    const double noise = LocalNoise(spectrum, bin);
    if (!StandsOut(spectrum, settings, bin, noise)) continue;
    peaks.push_back({bin, LineAt(spectrum, bin), noise, spectrum.axis});
  }
  return peaks;
}

std::vector<Peak> LargestOf(std::vector<Peak> peaks, std::size_t atMost) {
  std::ranges::stable_sort(peaks, std::greater{}, [](const Peak& peak) { return peak.line.peakG; });
  if (peaks.size() > atMost) peaks.resize(atMost);
  return peaks;
}

}  // namespace

std::vector<Peak> FindPeaks(const Spectrum& spectrum, const PeakSettings& settings) {
  const std::size_t end = std::max<std::size_t>(spectrum.Bins(), 1) - 1;
  return LargestOf(PeaksAt(spectrum, settings, spectrum.FirstVibration(), end), settings.atMost);
}

// A line lies within a bin of the bin that it is largest in.
std::vector<Peak> FindPeaksBetween(const Spectrum& spectrum, double fromHz, double toHz,
                                   const PeakSettings& settings) {
  if (spectrum.Bins() == 0 || !(fromHz <= toHz) || !(toHz >= 0)) return {};
  const auto last = static_cast<double>(spectrum.Bins() - 1);
  const double low = std::clamp(std::floor(spectrum.BinOf(fromHz)) - 1, 0.0, last);
  const double high = std::clamp(std::ceil(spectrum.BinOf(toHz)) + 2, 0.0, last);
  const auto first = std::max(spectrum.FirstVibration(), static_cast<std::size_t>(low));
  std::vector<Peak> peaks = PeaksAt(spectrum, settings, first, static_cast<std::size_t>(high));
  std::erase_if(
      peaks, [=](const Peak& peak) { return !(peak.line.hz >= fromHz && peak.line.hz <= toHz); });
  return LargestOf(std::move(peaks), settings.atMost);
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

}  // namespace kestrel::analysis
