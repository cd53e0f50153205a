// The peak table of what is shown.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "analysis/known_frequencies.h"
#include "display/known_table.h"
#include "display/scene.h"
#include "display/tables.h"
#include "display/track.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

std::string WithSign(const std::string& bound) {
  return bound.empty() || bound.starts_with("±") ? bound : "±" + bound;
}

PeakRow RowOf(const Study& study, const MeasuredSpectrum& measured, const analysis::Peak& peak,
              const std::vector<analysis::Marker>& markers) {
  const StudyChoice& choice = study.Choice();
  const analysis::Horizontal across = HorizontalOf(choice, measured.spectrum.binWidthHz);
  const auto frequency = analysis::WithBound(analysis::FromHertz(across, peak.line.hz),
                                             analysis::FromHertz(across, peak.line.hzBound));
  const analysis::LineValue amplitude =
      analysis::ValueOf(measured.spectrum, choice.quantity, peak.line);
  PeakRow row{.axis = peak.axis,
              .hz = peak.line.hz,
              .amplitude = amplitude.value,
              .frequency = frequency.value,
              .frequencyBound = WithSign(frequency.bound),
              .value = AmplitudeText(choice.quantity, amplitude.value),
              .unresolved = peak.line.unresolved};
  if (amplitude.bound) {
    const auto text = analysis::WithBound(amplitude.value, *amplitude.bound);
    row.value = text.value;
    row.valueBound = WithSign(text.bound);
  }
  if (choice.machine.rpm && analysis::IsSpeed(*choice.machine.rpm)) {
    const double ordersOfHz = 60 / *choice.machine.rpm;
    row.order =
        analysis::WithBound(ordersOfHz * peak.line.hz, ordersOfHz * peak.line.hzBound).value;
  }
  if (const auto marker = analysis::NearestMarker(markers, peak.line)) row.nearest = marker->name;
  return row;
}

// Of the axes shown; nothing where one of them has peaks to tell.
std::optional<std::string> WhyNoPeaks(const Study& study) {
  std::optional<std::string> why = "No axis is shown";
  for (const Axis axis : ShownAxes(study.Choice())) {
    const MeasuredAxis& told = study.Shown()->Of(axis);
    if (told && told->curve) return std::nullopt;
    why = told ? told->curve.Why().title : told.Why().title;
  }
  return why;
}

}  // namespace

PeakTable PeaksOf(const Study& study) {
  const StudyChoice& choice = study.Choice();
  PeakTable table;
  if (study.Shown() == nullptr) return {.summary = "No record yet"};
  if (const auto why = WhyNoPeaks(study)) return {.summary = *why};
  const auto known = KnownOf(choice);
  for (const Axis axis : ShownAxes(choice)) {
    const MeasuredSpectrum* measured = study.SpectrumOf(axis);
    if (measured == nullptr || !measured->curve) continue;
    const auto markers = analysis::MarkersOf(known, measured->spectrum);
    const analysis::Horizontal across = HorizontalOf(choice, measured->spectrum.binWidthHz);
    table.frequencyHead = analysis::UnitOf(across);
    for (const analysis::Peak& peak : ToldPeaks(*measured)) {
      table.rows.push_back(RowOf(study, *measured, peak, markers));
    }
  }
  std::stable_sort(table.rows.begin(), table.rows.end(),
                   [](const PeakRow& a, const PeakRow& b) { return a.amplitude > b.amplitude; });
  table.valueHead = analysis::UnitOf(choice.quantity);
  table.summary = std::to_string(table.rows.size());
  if (choice.peaks.floorG > 0) {
    table.summary += " above " + analysis::SignificantText(choice.peaks.floorG) + " g";
  }
  return table;
}

analysis::TextTable PeakTable::AsText() const {
  analysis::TextTable text{
      .heads = {"Axis", frequencyHead, "±", valueHead, "±", "Order", "Nearest"}};
  for (const PeakRow& row : rows) {
    text.rows.push_back({std::string(1, Letter(row.axis)), row.frequency, row.frequencyBound,
                         row.value, row.valueBound, row.order,
                         row.unresolved ? "unresolved" : row.nearest});
  }
  return text;
}

}  // namespace kestrel::study
