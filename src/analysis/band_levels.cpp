// Magnitude words against thresholds.
// SPDX-License-Identifier: MIT
#include "analysis/band_levels.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

// g peak of one word in a bin: the mean is not scaled from RMS.
double StepIn(const Spectrum& spectrum, std::size_t bin) {
  const bool rmsMean = bin == 0 && spectrum.meaning == MagnitudeMeaning::Rms;
  return rmsMean ? spectrum.stepG / std::numbers::sqrt2 : spectrum.stepG;
}

double WordOf(const Spectrum& spectrum, std::size_t bin) {
  const double step = StepIn(spectrum, bin);
  return step > 0 ? std::round(spectrum.peakG[bin] / step) : 0;
}

bool IsUsed(const Spectrum& spectrum, const SensorBand& band) {
  return (band.warning > 0 || band.fault > 0) && HoldsBins(band, spectrum.Bins());
}

std::optional<double> HeadroomDb(double threshold, double largestWord) {
  if (threshold <= 0) return std::nullopt;
  return 20 * std::log10(threshold / std::max(largestWord, 0.5));
}

SensorBandLevel LevelOfBand(const Spectrum& spectrum, const SensorBand& band, int number) {
  SensorBandLevel level{.number = number};
  if (!IsUsed(spectrum, band)) return level;
  const auto first = static_cast<std::size_t>(band.lowBin);
  const std::size_t last = std::min(static_cast<std::size_t>(band.highBin), spectrum.Bins() - 1);
  std::size_t largest = first;
  for (std::size_t bin = first; bin <= last; ++bin) {
    if (WordOf(spectrum, bin) > WordOf(spectrum, largest)) largest = bin;
  }
  const double word = WordOf(spectrum, largest);
  level.fromHz = spectrum.FrequencyOf(static_cast<double>(first));
  level.toHz = spectrum.FrequencyOf(static_cast<double>(last));
  level.largestG = spectrum.peakG[largest];
  level.largestHz = spectrum.FrequencyOf(static_cast<double>(largest));
  level.warningG = band.warning * spectrum.stepG;
  level.faultG = band.fault * spectrum.stepG;
  level.toWarningDb = HeadroomDb(band.warning, word);
  level.toFaultDb = HeadroomDb(band.fault, word);
  level.holdsOffset = first < spectrum.FirstVibration();
  level.state = Exceeds(word, band.fault)     ? BandState::Fault
                : Exceeds(word, band.warning) ? BandState::Warning
                                              : BandState::Free;
  return level;
}

// Decibels that are not rounded to none: what is beyond says so.
std::string Beyond(const char* name, int number, double headroomDb) {
  return name + std::string(" ") + std::to_string(number) + ", " +
         SignedDecibelText(std::max(-headroomDb, 0.1)) + " dB";
}

}  // namespace

bool HoldsBins(const SensorBand& band, std::size_t bins) {
  return band.lowBin >= 0 && band.lowBin <= band.highBin &&
         static_cast<std::size_t>(band.lowBin) < bins;
}

std::vector<SensorBandLevel> LevelsOf(const Spectrum& spectrum, std::span<const SensorBand> bands) {
  std::vector<SensorBandLevel> levels;
  for (const SensorBand& band : bands) {
    levels.push_back(LevelOfBand(spectrum, band, static_cast<int>(levels.size()) + 1));
  }
  return levels;
}

std::string TextOf(const SensorBandLevel& band) {
  switch (band.state) {
    case BandState::Fault:
      return Beyond("Fault", band.number, *band.toFaultDb);
    case BandState::Warning:
      return Beyond("Warning", band.number, *band.toWarningDb);
    case BandState::Free:
      return NumberText(std::max(band.toWarningDb ? *band.toWarningDb : *band.toFaultDb, 0.0), 1) +
             " dB free";
    default:
      return "";
  }
}

}  // namespace kestrel::analysis
