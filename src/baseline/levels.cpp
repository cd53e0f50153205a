// Levels by going through the words of a band.
// SPDX-License-Identifier: MIT
#include "baseline/levels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "analysis/windows.h"

namespace kestrel::baseline {
namespace {

constexpr std::size_t kManyLevels = 5000;
constexpr double kUntold = 0.5;  // steps that 0 counts as
constexpr double kMostClasses = 1000;
constexpr double kWishedClasses = 20;
constexpr double kRounding = 1e-9;  // of a class's edge

// Numbers of the sixteen records of a tile.
template <typename Number>
using Tile = std::array<Number, Spectra::kTile>;

// A band of an axis.
struct Stretch {
  Axis axis = Axis::X;
  std::size_t first = 0;
  std::size_t last = 0;
};

Tile<double> LargestOf(const Spectra& spectra, std::size_t tile, const Stretch& band) {
  Tile<Spectra::Word> largest{};
  for (std::size_t bin = band.first; bin <= band.last; ++bin) {
    const auto words = spectra.Of(tile, band.axis, bin);
    for (std::size_t i = 0; i < words.size(); ++i) largest[i] = std::max(largest[i], words[i]);
  }
  Tile<double> levels{};
  std::ranges::copy(largest, levels.begin());
  return levels;
}

// In steps of RMS; squares of words are added as whole numbers.
Tile<double> RmsOf(const Spectra& spectra, std::size_t tile, const Stretch& band,
                   double noiseBandwidth) {
  Tile<std::uint64_t> squares{};
  for (std::size_t bin = band.first; bin <= band.last; ++bin) {
    const auto words = spectra.Of(tile, band.axis, bin);
    for (std::size_t i = 0; i < words.size(); ++i) {
      const std::uint64_t word = words[i];
      squares[i] += word * word;
    }
  }
  Tile<double> levels{};
  std::ranges::transform(squares, levels.begin(), [noiseBandwidth](std::uint64_t square) {
    return std::sqrt(static_cast<double>(square) / 2 / noiseBandwidth);
  });
  return levels;
}

// Whole words of many records are counted, which takes a tenth of the time.
std::vector<double> Sorted(const std::vector<double>& levels, LevelKind kind) {
  std::vector<double> sorted;
  if (kind == LevelKind::BandRms || levels.size() < kManyLevels) {
    sorted = levels;
    std::ranges::sort(sorted);
    return sorted;
  }
  std::vector<std::size_t> counts(std::numeric_limits<Spectra::Word>::max() + std::size_t{1});
  for (const double level : levels) ++counts[static_cast<std::size_t>(level)];
  sorted.reserve(levels.size());
  for (std::size_t word = 0; word < counts.size(); ++word) {
    sorted.insert(sorted.end(), counts[word], static_cast<double>(word));
  }
  return sorted;
}

template <typename Measure>
void TakeLevels(CellLevels& levels, const Spectra& spectra, std::size_t good, LevelKind kind,
                const Measure& measure) {
  levels.good.reserve(good);
  levels.bad.reserve(spectra.Count() - good);
  std::size_t record = 0;
  for (std::size_t tile = 0; tile < spectra.Tiles(); ++tile) {
    for (const double level : measure(tile)) {
      if (record == spectra.Count()) break;
      (record++ < good ? levels.good : levels.bad).push_back(level);
    }
  }
  levels.sortedGood = Sorted(levels.good, kind);
  levels.sortedBad = Sorted(levels.bad, kind);
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
  Stretch stretch{
      .axis = axis,
      .first = static_cast<std::size_t>(band.lowBin),
      .last = std::min(static_cast<std::size_t>(band.highBin), analysis::kSpectrumBins - 1)};
  if (kind == LevelKind::BandPeak) {
    TakeLevels(levels, spectra, good, kind,
               [&](std::size_t tile) { return LargestOf(spectra, tile, stretch); });
    return levels;
  }
  const analysis::Window known = analysis::WindowOfCode(window);
  if (!known.Known()) {
    return refused("The window is unknown, and with it what the RMS of a band is.");
  }
  stretch.first = std::max(stretch.first, analysis::FirstVibrationBin(known));
  if (stretch.first > stretch.last) return refused("The band holds offset alone, no vibration.");
  TakeLevels(levels, spectra, good, kind,
             [&](std::size_t tile) { return RmsOf(spectra, tile, stretch, known.noiseBandwidth); });
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
  for (std::size_t i = 0; i < steps.size(); ++i) {  // sorted levels are often equal
    const bool same = i > 0 && steps[i] == steps[i - 1];
    decibels.push_back(same ? decibels.back() : DbOf(steps[i], stepG));
  }
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
