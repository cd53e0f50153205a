// Levels: RMS and peak overall and in bands, and the shape of time records.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/quantity.h"
#include "analysis/refusal.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

// How far below its RMS noise reads where the sensor averages the magnitudes of `transforms`
// transforms, in dB: 0 of one, towards −1.05 of many. Lines read as they are.
[[nodiscard]] double NoiseOfAveragedMagnitudesDb(int transforms);

// The same as a sentence about levels; empty where the sensor averages nothing.
[[nodiscard]] std::string AveragesNotice(int transforms);

// RMS and largest bin of a band, in g.
struct BandLevel {
  double fromHz = 0;  // the part of the band that the spectrum holds
  double toHz = 0;
  bool whole = true;  // that part is the whole band
  double rmsG = 0;    // sqrt(Σ (A²/2) / noise bandwidth), bins at the edges by their share
  double peakG = 0;   // largest magnitude of a bin whose centre is in the band, g peak
  double peakHz = 0;
};

// Σ (A²/2) / noise bandwidth · weight(f) over fromHz to toHz in g², bins at the edges by their
// share; bins that hold offset are left out. 0 where the window is unknown.
[[nodiscard]] double PowerBetween(const Spectrum& spectrum, double fromHz, double toHz,
                                  const std::function<double(double)>& weight = {});

// Refused where the band is none, the spectrum holds nothing of it, the window is unknown or the
// trace is a hold.
[[nodiscard]] Told<BandLevel> LevelBetween(const Spectrum& spectrum, double fromHz, double toHz);

// Over all bins that hold vibration.
[[nodiscard]] Told<BandLevel> OverallLevel(const Spectrum& spectrum);

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
  // Share of the power, 0 to 1, of a line at the lower end of what holds the quantity: there lines
  // are cut off, or reach in from below. 0 where none stands out of the noise.
  double edgeShare = 0;
};

// Refused as LevelBetween is, and where the band holds nothing of the quantity.
[[nodiscard]] Told<QuantityLevel> LevelIn(const Spectrum& spectrum, const QuantityChoice& choice,
                                          double fromHz, double toHz);

// Over all bins that hold the quantity.
[[nodiscard]] Told<QuantityLevel> OverallIn(const Spectrum& spectrum, const QuantityChoice& choice);

// Shape of a time record, its mean removed.
struct TimeLevels {
  double meanG = 0;
  double rmsG = 0;
  double peakG = 0;                  // largest distance from the mean
  std::optional<double> crest{};     // peak / RMS; none where nothing moves
  std::optional<double> kurtosis{};  // fourth moment / RMS⁴, 3 for Gaussian noise; likewise
};

// Where 95 % of records of 512 Gaussian samples lie.
struct StatisticalBand {
  double low = 0;
  double high = 0;
  [[nodiscard]] bool Holds(double value) const { return value >= low && value <= high; }
};
inline constexpr StatisticalBand kCrestOfNoise{2.7, 4.0};
inline constexpr StatisticalBand kKurtosisOfNoise{2.6, 3.5};

// None without samples, or where one is not finite.
[[nodiscard]] std::optional<TimeLevels> LevelsOf(std::span<const double> samplesG);

// The median of each value over several records; none of none.
[[nodiscard]] std::optional<TimeLevels> MedianOf(std::span<const TimeLevels> records);

// RMS of a time record against that of its spectrum: equal but for what the window weighs
// differently.
struct SelfTest {
  double timeRmsG = 0;
  double spectrumRmsG = 0;
  double differenceDb = 0;  // spectrum over time; 0 where both are 0
};
// None where there are not 512 finite samples or the window is unknown.
[[nodiscard]] std::optional<SelfTest> TestSelf(std::span<const double> samplesG,
                                               const Window& window);

}  // namespace kestrel::analysis
