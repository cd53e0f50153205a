// What the scenes of all views have in common.
// SPDX-License-Identifier: MIT
#include "study/scene.h"

#include <cmath>

#include "analysis/trace_set.h"
#include "numeric/number_texts.h"
#include "record/record_line.h"

namespace kestrel::study {

PlotInk InkOf(Axis axis) {
  return std::array{PlotInk::X, PlotInk::Y, PlotInk::Z}[Index(axis)];
}

std::vector<Axis> ShownAxes(const StudyChoice& choice) {
  std::vector<Axis> shown;
  for (const Axis axis : kAxes) {
    if (choice.Shows(axis)) shown.push_back(axis);
  }
  return shown;
}

std::vector<Axis> AxesOfPane(const StudyChoice& choice, int pane) {
  std::vector<Axis> shown = ShownAxes(choice);
  if (!choice.stacked) return shown;
  if (pane < 0 || static_cast<std::size_t>(pane) >= shown.size()) return {};
  return {shown[static_cast<std::size_t>(pane)]};
}

int PaneOf(const StudyChoice& choice, Axis axis) {
  if (!choice.stacked) return 0;
  int pane = 0;
  for (const Axis earlier : kAxes) {
    if (earlier == axis) break;
    if (choice.Shows(earlier)) ++pane;
  }
  return pane;
}

analysis::Horizontal HorizontalOf(const StudyChoice& choice, double binWidthHz) {
  analysis::Horizontal axis{
      .unit = choice.unit, .binWidthHz = binWidthHz, .rpm = choice.machine.rpm};
  if (analysis::WhyNot(axis)) axis.unit = analysis::HorizontalUnit::Hertz;
  return axis;
}

void TitleScene(PlotScene& scene, const Study& study) {
  const Record& record = *study.Shown()->record;
  const std::string whole = RecordLine(record, study.TimeText(record.time));
  const std::size_t comma = whole.find(", ");
  scene.head = whole.substr(0, comma);
  if (comma != std::string::npos) scene.line = whole.substr(comma + 2);
  scene.source = record.sensor.interface;
}

PlotScene SceneOf(const Study& study) {
  if (study.Shown() == nullptr) {
    return {.hint = "No record yet. Capture one (F5)."};
  }
  return study.Choice().view == View::Time ? TimeScene(study) : SpectrumScene(study);
}

namespace {

PlotReadOut TimeReadOut(const Study& study, double x, int pane) {
  PlotReadOut readOut{.title = analysis::SecondsText(x)};
  for (const Axis axis : AxesOfPane(study.Choice(), pane)) {
    const auto curve = study.TimeCurveOf(axis);
    if (!curve) continue;
    const auto sample = static_cast<std::size_t>(std::max(0.0, std::round(x / curve->stepS)));
    if (sample >= curve->values.size()) continue;
    readOut.rows.push_back({.ink = InkOf(axis),
                            .name = std::string(1, Letter(axis)),
                            .value = analysis::SignificantText(curve->values[sample]) + " " +
                                     UnitOfTime(study.Choice())});
  }
  return readOut;
}

std::string ValueText(const analysis::QuantityCurve& curve, std::size_t bin) {
  if (bin < curve.firstValid) return "offset, no vibration";
  const bool isLevel = curve.choice.quantity == analysis::Quantity::Level;
  return (isLevel ? analysis::NumberText(curve.values[bin], 1)
                  : analysis::SignificantText(curve.values[bin])) +
         " " + analysis::ShortUnitOf(curve.choice);
}

// Trace and reference in the same bin, where they may be compared.
void AddReference(PlotReadOut& readOut, const Study& study, const MeasuredSpectrum& measured,
                  std::size_t bin) {
  const Axis axis = measured.spectrum.axis;
  const Measured* reference = study.Reference();
  if (reference == nullptr || !study.Choice().Has(Extra::Reference) || !reference->Of(axis)) return;
  const MeasuredSpectrum& other = *reference->Of(axis);
  const auto difference = analysis::DifferenceDb(measured.spectrum, other.spectrum);
  if (!difference || !other.curve || bin < difference->firstValid) return;
  readOut.rows.push_back(
      {.ink = PlotInk::Other, .name = "ref", .value = ValueText(*other.curve, bin)});
  readOut.rows.push_back({.ink = {},
                          .name = "re ref",
                          .value = analysis::SignedDecibelText(difference->db[bin]) + " dB"});
}

}  // namespace

PlotReadOut ReadOutAt(const Study& study, double x, int pane) {
  PlotReadOut readOut;
  const StudyChoice& choice = study.Choice();
  if (study.Shown() == nullptr) return readOut;
  if (choice.view == View::Time) return TimeReadOut(study, x, pane);
  for (const Axis axis : AxesOfPane(choice, pane)) {
    const MeasuredSpectrum* measured = study.SpectrumOf(axis);
    if (measured == nullptr || !measured->curve) continue;
    const double place = std::max(0.0, std::round(measured->spectrum.BinOf(x)));
    const auto bin = static_cast<std::size_t>(place);
    if (bin >= measured->curve->values.size()) continue;
    const analysis::Horizontal across = HorizontalOf(choice, measured->spectrum.binWidthHz);
    const double hz = measured->spectrum.FrequencyOf(place);
    readOut.title =
        analysis::NumberText(analysis::FromHertz(across, hz), 1) + " " + analysis::UnitOf(across);
    readOut.rows.push_back({.ink = InkOf(axis),
                            .name = std::string(1, Letter(axis)),
                            .value = ValueText(*measured->curve, bin)});
    AddReference(readOut, study, *measured, bin);
  }
  return readOut;
}

}  // namespace kestrel::study
