// The levels of one band and axis in every record, and how they are distributed.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/baseline.h"
#include "baseline/bands.h"
#include "baseline/spectra.h"

namespace kestrel::baseline {

// The largest magnitude of a band, which is what the sensor compares; or its RMS, which only this
// program can judge.
enum class LevelKind { BandPeak, BandRms };

// Levels in steps of the magnitude word, so that comparing them is exact: whole words of peaks.
struct CellLevels {
  std::vector<double> good{};  // in the order of the sets
  std::vector<double> bad{};
  std::vector<double> sortedGood{};  // rising
  std::vector<double> sortedBad{};
  std::string refusal{};  // why there are none
  bool operator==(const CellLevels&) const = default;
};

// The first `good` records of the spectra are the good ones.
[[nodiscard]] CellLevels LevelsOf(const Spectra& spectra, std::size_t good, const Band& band,
                                  Axis axis, LevelKind kind, int window);

// Steps in dB re 1 g (peak of peaks, RMS of RMS) and back. 0 steps count as half a step: below the
// smallest word nothing can be told.
[[nodiscard]] double DbOf(double steps, double stepG);
[[nodiscard]] double StepsOf(double db, double stepG);

// Of one set.
struct Distribution {
  std::size_t records = 0;
  double meanDb = 0;
  double sigmaDb = 0;
  double smallestDb = 0;
  double largestDb = 0;
  std::size_t silent = 0;  // records whose level is 0 steps
  bool operator==(const Distribution&) const = default;
};
// None without records.
[[nodiscard]] std::optional<Distribution> DistributionOf(std::span<const double> steps,
                                                         double stepG);

// Equally wide classes of decibels: class i holds levels from fromDb + i · widthDb on, its upper
// end left out but for the last one's. Levels outside are in none.
struct Histogram {
  double fromDb = 0;
  double widthDb = 1;
  std::vector<std::size_t> counts{};
  bool operator==(const Histogram&) const = default;
};
// `sorted` levels in steps. No classes where widthDb is not above 0 or the ends are in the wrong
// order; at most 1,000.
[[nodiscard]] Histogram HistogramOf(std::span<const double> sorted, double stepG, double fromDb,
                                    double toDb, double widthDb);
// 0.05, 0.1, 0.2, 0.5, 1, ... dB: wide enough for some 20 classes.
[[nodiscard]] double ClassWidth(double fromDb, double toDb);

}  // namespace kestrel::baseline
