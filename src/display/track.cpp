// Curves as cursors read them.
// SPDX-License-Identifier: MIT
#include "display/track.h"

#include <algorithm>
#include <cmath>

#include "analysis/trace_set.h"
#include "display/scene.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

constexpr double kRounding = 1e-9;

Track TimeTrack(const Study& study, Axis axis) {
  const auto curve = study.TimeCurveOf(axis);
  if (!curve) return {};
  return {.values = curve->values,
          .step = curve->stepS,
          .isTime = true,
          .unit = UnitOfTime(study.Choice()),
          .shortUnit = UnitOfTime(study.Choice())};
}

bool IsBelow(const analysis::Spectrum& spectrum, std::size_t bin) {
  return spectrum.peakG[bin] < spectrum.stepG * (1 - kRounding);
}

// The point whose value is read at x; none outside the axis.
std::optional<std::size_t> PointAt(const Track& track, double x) {
  if (track.step <= 0 || track.values.empty()) return std::nullopt;
  const double place = std::round(x / track.step);
  if (!(place >= 0) || place > static_cast<double>(track.values.size()) - 1) return std::nullopt;
  return static_cast<std::size_t>(place);
}

bool IsBelowFloor(const Track& track, std::size_t point, double value) {
  if (point >= track.floor.size()) return false;
  const double floor = track.floor[point];
  return value < floor - kRounding * std::fabs(floor);
}

std::string BelowText(const Track& track, double floor) {
  if (track.decibel) return "below " + NumberIn(track, std::ceil(floor * 10) / 10);
  return "below " + analysis::SignificantText(analysis::RoundedUp(floor, 2), 2);
}

struct Reading {
  std::string text;
  bool hasUnit = false;
};

Reading ReadText(const Track& track, double x) {
  const auto point = PointAt(track, x);
  if (!point) return {analysis::kNoNumber, false};
  if (*point < track.firstVibration) return {"offset, no vibration", false};
  if (*point < track.firstValid) return {"too low to integrate", false};
  const double within = std::clamp(x, track.First(), track.Last());
  const double value = analysis::ReadAt(track.View(), within).value_or(kNoValue);
  if (!std::isfinite(value)) return {analysis::kNoNumber, false};
  if (IsBelowFloor(track, *point, value)) return {BelowText(track, track.floor[*point]), true};
  return {NumberIn(track, value), true};
}

// Decimals with which tenths of this step are told apart.
int DecimalsOf(double step) {
  if (!(step > 0) || !std::isfinite(step)) return 1;
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step / 10) - kRounding)), 1, 9);
}

}  // namespace

analysis::TraceView Track::View() const {
  return {.values = &values,
          .step = step,
          .firstValid = firstValid,
          .decibel = decibel,
          .power = power};
}

std::optional<double> Track::ToldAt(double x) const {
  const auto value = Empty() ? std::nullopt : analysis::ReadAt(View(), x);
  const auto point = PointAt(*this, x);
  if (!value || !point || !std::isfinite(*value)) return std::nullopt;
  if (IsBelowFloor(*this, *point, *value)) return std::nullopt;
  return value;
}

Track DifferenceOf(const Study& study, Axis axis) {
  const Measured* reference = study.Reference();
  const MeasuredSpectrum* measured = study.SpectrumOf(axis);
  if (measured == nullptr || reference == nullptr || !reference->Of(axis)) return {};
  const analysis::Spectrum& spectrum = measured->spectrum;
  const analysis::Spectrum& other = reference->Of(axis)->spectrum;
  const auto difference = analysis::DifferenceDb(spectrum, other);
  if (!difference) return {};
  Track track{.values = difference->db,
              .step = spectrum.binWidthHz,
              .firstVibration = difference->firstValid,
              .firstValid = difference->firstValid,
              .decibel = true,
              .unit = "dB re reference",
              .shortUnit = "dB"};
  for (std::size_t bin = 0; bin < track.values.size(); ++bin) {
    if (IsBelow(spectrum, bin) || IsBelow(other, bin)) track.values[bin] = kNoValue;
  }
  return track;
}

Track TrackOf(const Study& study, const Measured& measured, Axis axis) {
  const MeasuredAxis& told = measured.Of(axis);
  if (!told || !told->curve) return {};
  const analysis::QuantityChoice& choice = study.Choice().quantity;
  return {.values = told->curve->values,
          .floor = told->curve->floor,
          .step = told->spectrum.binWidthHz,
          .firstVibration = told->spectrum.FirstVibration(),
          .firstValid = told->curve->firstValid,
          .decibel = choice.quantity == analysis::Quantity::Level,
          .power = choice.quantity == analysis::Quantity::Density,
          .unit = analysis::UnitOf(choice),
          .shortUnit = analysis::ShortUnitOf(choice)};
}

Track TrackOf(const Study& study, Axis axis) {
  if (study.Shown() == nullptr) return {};
  if (study.Choice().view == View::Time) return TimeTrack(study, axis);
  if (study.Choice().difference) return DifferenceOf(study, axis);
  return TrackOf(study, *study.Shown(), axis);
}

std::string NumberIn(const Track& track, double value) {
  return track.decibel ? analysis::NumberText(value, 1) : analysis::SignificantText(value);
}

std::string TextAt(const Track& track, double x) {
  const Reading reading = ReadText(track, x);
  return reading.hasUnit ? reading.text + " " + track.shortUnit : reading.text;
}

std::string CellAt(const Track& track, double x) {
  return ReadText(track, x).text;
}

std::string AmplitudeText(const analysis::QuantityChoice& choice, double value) {
  return choice.quantity == analysis::Quantity::Level ? analysis::NumberText(value, 1)
                                                      : analysis::SignificantText(value);
}

std::string TimePlaceText(double seconds, double stepS) {
  return analysis::NumberText(seconds * 1000, DecimalsOf(stepS * 10000)) + " ms";
}

std::string FrequencyPlaceText(const analysis::Horizontal& across, double hz) {
  const int decimals = DecimalsOf(analysis::FromHertz(across, across.binWidthHz));
  return analysis::NumberText(analysis::FromHertz(across, hz), decimals) + " " +
         analysis::UnitOf(across);
}

std::string PlaceText(const Study& study, double x) {
  const Axis focus = study.Choice().focus;
  if (study.Choice().view == View::Time) {
    const auto curve = study.TimeCurveOf(focus);
    return curve ? TimePlaceText(x, curve->stepS) : analysis::SecondsText(x);
  }
  const MeasuredSpectrum* measured = study.SpectrumOf(focus);
  const double width = measured != nullptr ? measured->spectrum.binWidthHz : 0;
  return FrequencyPlaceText(HorizontalOf(study.Choice(), width), x);
}

}  // namespace kestrel::study
