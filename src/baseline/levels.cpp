// Levels by going through the words of a band.
// SPDX-License-Identifier: MIT
#include "baseline/levels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/windows.h"

namespace kestrel::baseline {
namespace {

constexpr double kUntold = 0.5;  // steps that 0 counts as
constexpr double kMostClasses = 1000;
constexpr double kWishedClasses = 20;
constexpr double kRounding = 1e-9;  // of a class's edge

using Words = std::span<const Spectra::Word>;

double LargestOf(Words words) {
  Spectra::Word largest = 0;
  for (const Spectra::Word word : words) largest = std::max(largest, word);
  return largest;
}

// In steps of RMS; squares of words are added as whole numbers.
double RmsOf(Words words, double noiseBandwidth) {
  std::uint64_t squares = 0;
  for (const std::uint64_t word : words) squares += word * word;
  return std::sqrt(static_cast<double>(squares) / 2 / noiseBandwidth);
}

template <typename Measure>
void TakeLevels(CellLevels& levels, const Spectra& spectra, std::size_t good, Axis axis,
                std::size_t first, std::size_t count, const Measure& measure) {
  levels.good.reserve(good);
  levels.bad.reserve(spectra.Count() - good);
  for (std::size_t record = 0; record < spectra.Count(); ++record) {
    (record < good ? levels.good : levels.bad)
        .push_back(measure(spectra.Of(record, axis).subspan(first, count)));
  }
  levels.sortedGood = levels.good;
  levels.sortedBad = levels.bad;
  std::ranges::sort(levels.sortedGood);
  std::ranges::sort(levels.sortedBad);
}

}  // namespace

CellLevels LevelsOf(const Spectra& spectra, std::size_t good, const Band& band, Axis axis,
                    LevelKind kind, int window) {
  CellLevels levels;
  const auto refused = [&](const char* why) {
    levels.refusal = why;
    return levels;
  };
  if (band == Band{}) return refused("The band is not in use.");
  if (!band.IsUsed()) return refused("The band covers no bin.");
  auto first = static_cast<std::size_t>(band.lowBin);
  const std::size_t last =
      std::min(static_cast<std::size_t>(band.highBin), analysis::kSpectrumBins - 1);
  if (kind == LevelKind::BandPeak) {
    TakeLevels(levels, spectra, good, axis, first, last - first + 1, LargestOf);
    return levels;
  }
  const analysis::Window known = analysis::WindowOfCode(window);
  if (!known.Known()) {
    return refused("The window is unknown, and with it what the RMS of a band is.");
  }
  first = std::max(first, analysis::FirstVibrationBin(known));
  if (first > last) return refused("The band holds offset alone, no vibration.");
  TakeLevels(levels, spectra, good, axis, first, last - first + 1,
             [&](Words words) { return RmsOf(words, known.noiseBandwidth); });
  return levels;
}

double DbOf(double steps, double stepG) {
  return 20 * std::log10(std::max(steps, kUntold) * stepG);
}

double StepsOf(double db, double stepG) {
  return std::pow(10, db / 20) / stepG;
}

std::optional<Distribution> DistributionOf(std::span<const double> steps, double stepG) {
  std::vector<double> decibels;
  decibels.reserve(steps.size());
  for (const double each : steps) decibels.push_back(DbOf(each, stepG));
  const auto usual = analysis::UsualOf(decibels);
  if (!usual) return std::nullopt;
  const auto [smallest, largest] = std::ranges::minmax(decibels);
  return Distribution{.records = usual->captures,
                      .meanDb = usual->meanDb,
                      .sigmaDb = usual->sigmaDb,
                      .smallestDb = smallest,
                      .largestDb = largest,
                      .silent = static_cast<std::size_t>(std::ranges::count(steps, 0.0))};
}

Histogram HistogramOf(std::span<const double> sorted, double stepG, double fromDb, double toDb,
                      double widthDb) {
  Histogram histogram{.fromDb = fromDb, .widthDb = widthDb};
  const double classes = std::ceil((toDb - fromDb) / widthDb - kRounding);
  if (!(widthDb > 0 && classes >= 1 && classes <= kMostClasses)) return histogram;
  histogram.counts.resize(static_cast<std::size_t>(classes));
  for (const double steps : sorted) {
    const double db = DbOf(steps, stepG);
    if (!(db >= fromDb && db <= toDb)) continue;
    const double place = std::min(std::floor((db - fromDb) / widthDb), classes - 1);
    ++histogram.counts[static_cast<std::size_t>(place)];
  }
  return histogram;
}

double ClassWidth(double fromDb, double toDb) {
  const double wished = (toDb - fromDb) / kWishedClasses;
  for (double decade = 0.01; decade < 100; decade *= 10) {
    for (const double step : {1.0, 2.0, 5.0}) {
      const double width = step * decade;
      if (width >= 0.05 - kRounding && width >= wished) return width;
    }
  }
  return 100;
}

}  // namespace kestrel::baseline
