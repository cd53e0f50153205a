// RMS by sums of squares; moments of time records.
// SPDX-License-Identifier: MIT
#include "analysis/levels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>

#include "analysis/interpolation.h"
#include "analysis/quantity.h"
#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

constexpr double kNothing = 1e-12;  // g RMS: what rounding leaves of a constant

Refusal NoLevel(std::string reason, std::string cure) {
  return {.title = "No level can be determined from this trace",
          .reason = std::move(reason),
          .cure = std::move(cure)};
}

std::optional<Refusal> WhyNoPower(const Spectrum& spectrum) {
  if (!spectrum.window.Known()) {
    return NoLevel("Its window is unknown, and with it the bandwidth of a bin.",
                   "Capture with Hanning");
  }
  if (spectrum.source == SpectrumSource::MaximumHold ||
      spectrum.source == SpectrumSource::MinimumHold) {
    return NoLevel("A hold keeps one capture's value in each bin, which is not power.",
                   "Take an average instead");
  }
  return std::nullopt;
}

// Lower edge of the first bin that holds vibration.
double BottomHz(const Spectrum& spectrum) {
  return spectrum.FrequencyOf(static_cast<double>(spectrum.FirstVibration()) - 0.5);
}

// Share of a bin between two frequencies, 0 to 1.
double Share(const Spectrum& spectrum, std::size_t bin, double fromHz, double toHz) {
  const auto centre = static_cast<double>(bin);
  const double low = std::max(spectrum.BinOf(fromHz), centre - 0.5);
  const double high = std::min(spectrum.BinOf(toHz), centre + 0.5);
  return std::max(high - low, 0.0);
}

void TakePeak(BandLevel& level, const Spectrum& spectrum) {
  for (std::size_t bin = spectrum.FirstVibration(); bin < spectrum.Bins(); ++bin) {
    const double hz = spectrum.FrequencyOf(static_cast<double>(bin));
    if (hz < level.fromHz || hz > level.toHz || spectrum.peakG[bin] <= level.peakG) continue;
    level.peakG = spectrum.peakG[bin];
    level.peakHz = hz;
  }
}

bool AllFinite(std::span<const double> values) {
  return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

double Mean(std::span<const double> values) {
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

std::vector<double> WithoutMean(std::span<const double> samples) {
  std::vector<double> rest(samples.begin(), samples.end());
  const double mean = Mean(samples);
  for (double& sample : rest) sample -= mean;
  return rest;
}

std::optional<double> Median(std::vector<double> values) {
  if (values.empty()) return std::nullopt;
  std::ranges::sort(values);
  const std::size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// The values that are there, of one member of each record.
template <typename Member>
std::vector<double> Each(std::span<const TimeLevels> records, Member member) {
  std::vector<double> values;
  for (const TimeLevels& record : records) {
    const std::optional<double> value = record.*member;
    if (value) values.push_back(*value);
  }
  return values;
}

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

// rms² of a band in a quantity; of a level that of the acceleration.
double PowerAs(const Spectrum& spectrum, const QuantityChoice& choice, double fromHz, double toHz) {
  if (!IsIntegrated(choice)) return PowerBetween(spectrum, fromHz, toHz);
  const QuantityChoice peak{.quantity = choice.quantity};
  return PowerBetween(spectrum, fromHz, toHz, [&](double hz) {
    const double perG = ValueIn(spectrum, peak, 1, hz);
    return perG * perG;
  });
}

double RmsBetween(const Spectrum& spectrum, const QuantityChoice& choice, const BandLevel& band) {
  if (choice.quantity == Quantity::Level) return LevelOf(band.rmsG, choice.reference);
  return std::sqrt(PowerAs(spectrum, choice, band.fromHz, band.toHz));
}

// A line whose top is a lobe or more above the first valid bin lies whole in the valid ones.
double EdgeShare(const Spectrum& spectrum, const QuantityCurve& curve, const QuantityLevel& level) {
  const std::vector<double>& values = spectrum.peakG;
  const std::size_t lobe = spectrum.window.lobe;
  std::size_t top = curve.firstValid;
  while (top + 1 < values.size() && values[top + 1] > values[top]) ++top;
  const double noise = LocalNoise(spectrum, curve.firstValid);
  if (top >= curve.firstValid + lobe || values[top] < 2 * noise) return 0;
  std::size_t last = top;
  while (last + 1 < values.size() && last < top + lobe && values[last + 1] < values[last]) ++last;
  const double end = spectrum.FrequencyOf(static_cast<double>(last) + 0.5);
  const double all = PowerAs(spectrum, curve.choice, level.fromHz, level.toHz);
  const double edge = PowerAs(spectrum, curve.choice, level.fromHz, std::min(end, level.toHz));
  return all > 0 ? edge / all : 0;
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

// Magnitudes of noise are Rayleigh distributed: the square of their mean is π/4 of their mean
// square.
double NoiseOfAveragedMagnitudesDb(int transforms) {
  const double share = std::numbers::pi / 4;
  return 10 * std::log10(share + (1 - share) / std::max(transforms, 1));
}

std::string AveragesNotice(int transforms) {
  if (transforms < 2) return {};
  return "The sensor averages magnitudes, not power. Noise reads " +
         NumberText(-NoiseOfAveragedMagnitudesDb(transforms), 1) + " dB low, lines as they are.";
}

double PowerBetween(const Spectrum& spectrum, double fromHz, double toHz,
                    const std::function<double(double)>& weight) {
  if (!spectrum.window.Known()) return 0;
  double sum = 0;
  for (std::size_t bin = spectrum.FirstVibration(); bin < spectrum.Bins(); ++bin) {
    const double share = Share(spectrum, bin, fromHz, toHz);
    if (!(share > 0)) continue;
    const double hz = spectrum.FrequencyOf(static_cast<double>(bin));
    const double magnitude = spectrum.peakG[bin];
    sum += share * magnitude * magnitude / 2 * (weight ? weight(hz) : 1.0);
  }
  return sum / spectrum.window.noiseBandwidth;
}

Told<BandLevel> LevelBetween(const Spectrum& spectrum, double fromHz, double toHz) {
  if (auto refusal = WhyNoPower(spectrum)) return *refusal;
  BandLevel level{.fromHz = std::max(fromHz, BottomHz(spectrum)),
                  .toHz = std::min(toHz, spectrum.TopHz())};
  if (!std::isfinite(fromHz) || !std::isfinite(toHz) || !(level.toHz > level.fromHz)) {
    if (auto refusal = WhyNotBetween(spectrum, {}, fromHz, toHz)) return *refusal;
    return NoLevel("The band has no width.", "Give a lower and a higher frequency in Hz");
  }
  level.whole = fromHz >= BottomHz(spectrum) && toHz <= spectrum.TopHz();
  level.rmsG = std::sqrt(PowerBetween(spectrum, level.fromHz, level.toHz));
  TakePeak(level, spectrum);
  return level;
}

Told<BandLevel> OverallLevel(const Spectrum& spectrum) {
  return LevelBetween(spectrum, BottomHz(spectrum), spectrum.TopHz());
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
                      .rms = RmsBetween(spectrum, choice, *band)};
  level.rmsUnit = UnitOf(RmsOf(choice));
  level.largestUnit = UnitOf(choice);
  TakeLargest(level, spectrum, *curve);
  level.edgeShare = EdgeShare(spectrum, *curve, level);
  return level;
}

Told<QuantityLevel> OverallIn(const Spectrum& spectrum, const QuantityChoice& choice) {
  const auto curve = InQuantity(spectrum, choice);
  if (!curve) return curve.Why();
  return LevelIn(spectrum, choice, BottomOf(spectrum, *curve), spectrum.TopHz());
}

std::optional<TimeLevels> LevelsOf(std::span<const double> samplesG) {
  if (samplesG.empty() || !AllFinite(samplesG)) return std::nullopt;
  TimeLevels levels{.meanG = Mean(samplesG)};
  double square = 0;
  double fourth = 0;
  for (const double sample : WithoutMean(samplesG)) {
    square += sample * sample;
    fourth += sample * sample * sample * sample;
    levels.peakG = std::max(levels.peakG, std::fabs(sample));
  }
  const auto count = static_cast<double>(samplesG.size());
  const double power = square / count;
  levels.rmsG = std::sqrt(power);
  if (levels.rmsG <= kNothing * std::max(std::fabs(levels.meanG), 1.0)) return levels;
  levels.crest = levels.peakG / levels.rmsG;
  levels.kurtosis = fourth / count / (power * power);
  return levels;
}

std::optional<TimeLevels> MedianOf(std::span<const TimeLevels> records) {
  if (records.empty()) return std::nullopt;
  return TimeLevels{.meanG = *Median(Each(records, &TimeLevels::meanG)),
                    .rmsG = *Median(Each(records, &TimeLevels::rmsG)),
                    .peakG = *Median(Each(records, &TimeLevels::peakG)),
                    .crest = Median(Each(records, &TimeLevels::crest)),
                    .kurtosis = Median(Each(records, &TimeLevels::kurtosis))};
}

std::optional<SelfTest> TestSelf(std::span<const double> samplesG, const Window& window) {
  const std::optional<TimeLevels> levels = LevelsOf(samplesG);
  if (!levels) return std::nullopt;
  const std::vector<double> magnitudes = Transform(WithoutMean(samplesG), window);
  if (magnitudes.empty()) return std::nullopt;
  double power = 0;
  for (const double magnitude : magnitudes) power += magnitude * magnitude / 2;
  // The first and the last have no mirror image: their square is their power.
  power += (std::pow(magnitudes.front(), 2) + std::pow(magnitudes.back(), 2)) / 2;
  SelfTest test{.timeRmsG = levels->rmsG, .spectrumRmsG = std::sqrt(power / window.noiseBandwidth)};
  if (test.timeRmsG > 0 && test.spectrumRmsG > 0) {
    test.differenceDb = 20 * std::log10(test.spectrumRmsG / test.timeRmsG);
  }
  return test;
}

}  // namespace kestrel::analysis
