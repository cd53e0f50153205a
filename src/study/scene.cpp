// What the scenes of all views have in common.
// SPDX-License-Identifier: MIT
#include "study/scene.h"

#include <cmath>

#include "numeric/number_texts.h"
#include "record/frequency.h"
#include "record/record_line.h"

namespace kestrel::study {

PlotInk InkOf(Axis axis) {
  return std::array{PlotInk::X, PlotInk::Y, PlotInk::Z}[Index(axis)];
}

std::vector<Axis> AxesOfPane(const StudyChoice& choice, int pane) {
  std::vector<Axis> shown;
  for (const Axis axis : kAxes) {
    if (choice.Shows(axis)) shown.push_back(axis);
  }
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

PlotReadOut ReadOutAt(const Study& study, double x, int pane) {
  PlotReadOut readOut;
  const StudyChoice& choice = study.Choice();
  if (study.Shown() == nullptr) return readOut;
  if (choice.view == View::Time) {
    const Record& record = *study.Shown()->record;
    if (record.kind != RecordKind::Time) return readOut;
    const auto sample = static_cast<std::size_t>(
        std::max(0.0, std::round(x * SampleFrequency(record.settings.option))));
    readOut.title = analysis::SecondsText(x);
    for (const Axis axis : AxesOfPane(choice, pane)) {
      const auto values = analysis::ValuesInG(record, axis, true);
      if (sample >= values.size()) continue;
      readOut.rows.push_back({.ink = InkOf(axis),
                              .name = std::string(1, Letter(axis)),
                              .value = analysis::SignificantText(values[sample]) + " g"});
    }
    return readOut;
  }
  for (const Axis axis : AxesOfPane(choice, pane)) {
    const MeasuredSpectrum* measured = study.SpectrumOf(axis);
    if (measured == nullptr || !measured->curve) continue;
    const analysis::QuantityCurve& curve = *measured->curve;
    const auto bin =
        static_cast<std::size_t>(std::max(0.0, std::round(measured->spectrum.BinOf(x))));
    if (bin >= curve.values.size()) continue;
    const analysis::Horizontal across = HorizontalOf(choice, measured->spectrum.binWidthHz);
    readOut.title =
        analysis::NumberText(
            analysis::FromHertz(across, measured->spectrum.FrequencyOf(static_cast<double>(bin))),
            1) +
        " " + analysis::UnitOf(across);
    const bool holds = bin >= curve.firstValid;
    readOut.rows.push_back({.ink = InkOf(axis),
                            .name = std::string(1, Letter(axis)),
                            .value = holds ? analysis::SignificantText(curve.values[bin]) + " " +
                                                 analysis::ShortUnitOf(curve.choice)
                                           : "offset, no vibration"});
  }
  return readOut;
}

}  // namespace kestrel::study
