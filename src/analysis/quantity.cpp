// Magnitudes into RMS, decibels, density, velocity and displacement.
// SPDX-License-Identifier: MIT
#include "analysis/quantity.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "numeric/number_texts.h"
#include "record/frequency.h"

namespace kestrel::analysis {
namespace {

constexpr double kLevelOfNothing = -400;  // dB

bool IsIntegrated(Quantity quantity) {
  return quantity == Quantity::Velocity || quantity == Quantity::Displacement;
}

bool IsHold(const Spectrum& spectrum) {
  return spectrum.source == SpectrumSource::MaximumHold ||
         spectrum.source == SpectrumSource::MinimumHold;
}

// From peak to what is shown.
double AmplitudeFactor(Amplitude amplitude) {
  switch (amplitude) {
    case Amplitude::Rms:
      return 1 / std::numbers::sqrt2;
    case Amplitude::PeakToPeak:
      return 2;
    default:
      return 1;
  }
}

std::string AmplitudeName(Amplitude amplitude) {
  switch (amplitude) {
    case Amplitude::Rms:
      return "RMS";
    case Amplitude::PeakToPeak:
      return "peak to peak";
    default:
      return "peak";
  }
}

std::string QuantityName(Quantity quantity) {
  switch (quantity) {
    case Quantity::Level:
      return "Level";
    case Quantity::Density:
      return "Acceleration density";
    case Quantity::Velocity:
      return "Velocity";
    case Quantity::Displacement:
      return "Displacement";
    default:
      return "Acceleration";
  }
}

double DensityOf(const Spectrum& spectrum, double peakG) {
  const double width = spectrum.window.noiseBandwidth * spectrum.binWidthHz;
  return width > 0 ? peakG * peakG / 2 / width : 0;
}

std::optional<Refusal> WhyNoDensity(const Spectrum& spectrum) {
  const std::string title = "Density cannot be determined from this trace";
  if (IsHold(spectrum)) {
    return Refusal{.title = title,
                   .reason = "A hold keeps one capture's value in each bin, which is not power.",
                   .cure = "Take an average instead"};
  }
  if (!spectrum.window.Known()) {
    return Refusal{.title = title,
                   .reason = "Its window is unknown, and with it the bandwidth of a bin.",
                   .cure = "Capture with Hanning"};
  }
  return std::nullopt;
}

Refusal NothingToIntegrate(const Spectrum& spectrum, const QuantityChoice& choice) {
  const double lowest = std::max(choice.lowestHz, 0.0);
  Refusal refusal{.title = QuantityName(choice.quantity) + " from " + HertzText(lowest) +
                           " cannot be determined from this record",
                  .reason = "It ends at " + HertzText(RoundedDown(spectrum.TopHz())) + ".",
                  .has = spectrum.TopHz(),
                  .needs = lowest,
                  .unit = "Hz",
                  .options = OffersOf(spectrum.window, true, spectrum.option)};
  MarkWhatWouldDo(refusal, lowest, lowest);
  if (!refusal.cureOption) refusal.cure = "Choose a lower frequency to start from";
  return refusal;
}

Refusal NoBand(const QuantityChoice& choice) {
  return {.title = QuantityName(choice.quantity) + " of this band cannot be determined",
          .reason = "Its edges must be two frequencies in rising order.",
          .cure = "Give a lower and a higher frequency in Hz"};
}

}  // namespace

std::string ShortUnitOf(const QuantityChoice& choice) {
  switch (choice.quantity) {
    case Quantity::Level:
      return "dB";
    case Quantity::Density:
      return "g\u00B2/Hz";
    case Quantity::Velocity:
      return "mm/s";
    case Quantity::Displacement:
      return "\u00B5m";
    default:
      return "g";
  }
}

std::string UnitOf(const QuantityChoice& choice) {
  if (choice.quantity == Quantity::Density) return ShortUnitOf(choice);
  if (choice.quantity == Quantity::Level) {
    return choice.reference == LevelReference::OneG ? "dB re 1 g RMS"
                                                    : "dB re 1 \u00B5m/s\u00B2 RMS";
  }
  return ShortUnitOf(choice) + " " + AmplitudeName(choice.amplitude);
}

std::string TitleOf(const QuantityChoice& choice) {
  return QuantityName(choice.quantity) + ", " + UnitOf(choice);
}

double LevelOf(double rmsG, LevelReference reference) {
  const double referenceG = reference == LevelReference::OneG ? 1.0 : 1e-6 / kStandardGravity;
  if (!(rmsG > 0)) return kLevelOfNothing;
  return std::max(20 * std::log10(rmsG / referenceG), kLevelOfNothing);
}

double ValueIn(const Spectrum& spectrum, const QuantityChoice& choice, double peakG, double hz) {
  // Bin 0 is the mean: it has no RMS of its own.
  const double factor = hz > 0 ? AmplitudeFactor(choice.amplitude) : 1.0;
  switch (choice.quantity) {
    case Quantity::Level: {
      const double atLeast = std::max(peakG, spectrum.stepG / 2);
      return LevelOf(hz > 0 ? atLeast / std::numbers::sqrt2 : atLeast, choice.reference);
    }
    case Quantity::Density:
      return DensityOf(spectrum, peakG);
    case Quantity::Velocity:
      return hz > 0 ? kVelocityOfG * peakG * factor / hz : 0;
    case Quantity::Displacement:
      return hz > 0 ? kDisplacementOfG / 2 * peakG * factor / (hz * hz) : 0;
    default:
      return peakG * factor;
  }
}

std::size_t FirstValidBin(const Spectrum& spectrum, const QuantityChoice& choice) {
  const std::size_t vibration = FirstVibrationBin(spectrum.window);
  if (!IsIntegrated(choice.quantity)) return vibration;
  const std::size_t first = FirstIntegrableBin(spectrum.window);
  if (!std::isfinite(choice.lowestHz) || choice.lowestHz <= 0) return first;
  const double bin = std::ceil(spectrum.BinOf(choice.lowestHz) - 1e-9);
  return std::max(first, static_cast<std::size_t>(std::min(bin, 1e6)));
}

Told<QuantityCurve> InQuantity(const Spectrum& spectrum, const QuantityChoice& choice) {
  if (choice.quantity == Quantity::Density) {
    if (auto refusal = WhyNoDensity(spectrum)) return *refusal;
  }
  QuantityCurve curve{.choice = choice,
                      .values = {},
                      .floor = {},
                      .firstValid = FirstValidBin(spectrum, choice),
                      .title = TitleOf(choice),
                      .unit = UnitOf(choice)};
  if (IsIntegrated(choice.quantity) && curve.firstValid >= spectrum.Bins()) {
    return NothingToIntegrate(spectrum, choice);
  }
  curve.firstValid = std::min(curve.firstValid, spectrum.Bins());
  for (std::size_t bin = 0; bin < spectrum.Bins(); ++bin) {
    const double hz = spectrum.FrequencyOf(static_cast<double>(bin));
    curve.values.push_back(ValueIn(spectrum, choice, spectrum.peakG[bin], hz));
    curve.floor.push_back(ValueIn(spectrum, choice, spectrum.stepG, hz));
  }
  return curve;
}

std::vector<OptionOffer> OffersOf(const Window& window, bool integrated, int option) {
  std::vector<OptionOffer> offers;
  const std::size_t first = integrated ? FirstIntegrableBin(window) : FirstVibrationBin(window);
  for (int each = 0; each < kOptions; ++each) {
    const double width = BinWidth(each);
    offers.push_back({.option = each,
                      .binWidthHz = width,
                      .lengthS = 1 / width,
                      .fromHz = static_cast<double>(first) * width,
                      .toHz = static_cast<double>(kSpectrumBins - 1) * width,
                      .current = each == option});
  }
  return offers;
}

std::optional<Refusal> WhyNotBetween(const Spectrum& spectrum, const QuantityChoice& choice,
                                     double fromHz, double toHz) {
  if (!std::isfinite(fromHz) || !std::isfinite(toHz) || fromHz < 0 || toHz < fromHz) {
    return NoBand(choice);
  }
  const double first =
      spectrum.FrequencyOf(static_cast<double>(FirstValidBin(spectrum, {choice.quantity})));
  const double last = spectrum.FrequencyOf(static_cast<double>(spectrum.Bins()) - 1);
  if (spectrum.Bins() > 0 && first <= fromHz && last >= toHz) return std::nullopt;
  const bool tooLow = fromHz < first;
  Refusal refusal{
      .title = QuantityName(choice.quantity) + " from " + HertzText(fromHz) + " to " +
               HertzText(toHz) + " cannot be determined from this record",
      .reason = "It begins at " + HertzText(RoundedUp(first)) + " and ends at " +
                HertzText(RoundedDown(last)) + ".",
      .has = tooLow ? first : last,
      .needs = tooLow ? fromHz : toHz,
      .unit = "Hz",
      .options = OffersOf(spectrum.window, IsIntegrated(choice.quantity), spectrum.option)};
  MarkWhatWouldDo(refusal, fromHz, toHz);
  if (!refusal.cureOption) refusal.cure = "Take one spectrum over all sample-rate options";
  return refusal;
}

}  // namespace kestrel::analysis
