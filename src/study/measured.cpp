// How records become spectra, curves and peaks for the analyser.
// SPDX-License-Identifier: MIT
#include "study/measured.h"

#include <algorithm>
#include <utility>

#include "analysis/trace_set.h"

namespace kestrel::study {

MeasuredSpectrum Measure(analysis::Spectrum spectrum, const StudyChoice& choice) {
  auto curve = analysis::InQuantity(spectrum, choice.quantity);
  auto peaks = analysis::FindPeaks(spectrum, choice.peaks);
  return {std::move(spectrum), std::move(curve), std::move(peaks)};
}

Measured Measure(RecordPointer record, const StudyChoice& choice) {
  Measured measured{std::move(record), {}};
  for (const Axis axis : kAxes) {
    auto spectrum = analysis::SpectrumOf(
        *measured.record, axis,
        {.meaning = choice.meaning, .timeWindow = choice.timeWindow, .ownRange = true});
    if (spectrum) {
      measured.axes.emplace_back(Measure(*spectrum, choice));
    } else {
      measured.axes.emplace_back(spectrum.Why());
    }
  }
  return measured;
}

std::vector<analysis::Peak> ToldPeaks(const MeasuredSpectrum& measured) {
  if (!measured.curve) return {};
  const analysis::QuantityCurve& curve = *measured.curve;
  const double from = measured.spectrum.FrequencyOf(static_cast<double>(curve.firstValid) - 0.5);
  std::vector<analysis::Peak> told;
  std::copy_if(measured.peaks.begin(), measured.peaks.end(), std::back_inserter(told),
               [from](const analysis::Peak& peak) { return peak.line.hz >= from; });
  const auto value = [&](const analysis::Peak& peak) {
    return analysis::ValueIn(measured.spectrum, curve.choice, peak.line.peakG, peak.line.hz);
  };
  std::ranges::stable_sort(told, std::greater{}, value);
  return told;
}

void MeasureAgain(Measured& measured, const StudyChoice& before, const StudyChoice& choice) {
  const bool isTime = measured.record->kind == RecordKind::Time;
  const bool isOther =
      isTime ? before.timeWindow != choice.timeWindow : before.meaning != choice.meaning;
  if (isOther) {
    measured = Measure(std::move(measured.record), choice);
    return;
  }
  const bool isOtherQuantity = before.quantity != choice.quantity;
  const bool areOtherPeaks = before.peaks != choice.peaks;
  for (MeasuredAxis& axis : measured.axes) {
    if (!axis || (!isOtherQuantity && !areOtherPeaks)) continue;
    MeasuredSpectrum again = *axis;
    if (isOtherQuantity) again.curve = analysis::InQuantity(again.spectrum, choice.quantity);
    if (areOtherPeaks) again.peaks = analysis::FindPeaks(again.spectrum, choice.peaks);
    axis = std::move(again);
  }
}

std::optional<std::string> WhyNotTogether(const Measured& one, const Measured& other) {
  for (const Axis axis : kAxes) {
    if (!one.Of(axis) || !other.Of(axis)) return "no spectrum";
    if (auto why = analysis::WhyNotWith(one.Of(axis)->spectrum, other.Of(axis)->spectrum)) {
      return why;
    }
  }
  return std::nullopt;
}

bool IsSameCapture(const Record& one, const Record& other) {
  if (one.kind != other.kind || one.time != other.time || one.settings != other.settings) {
    return false;
  }
  return std::ranges::all_of(kAxes,
                             [&](Axis axis) { return one.Of(axis).raw == other.Of(axis).raw; });
}

}  // namespace kestrel::study
