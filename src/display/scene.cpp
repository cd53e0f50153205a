// What the scenes of all views have in common.
// SPDX-License-Identifier: MIT
#include "display/scene.h"

#include <algorithm>

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
  const auto last = static_cast<int>(ShownAxes(choice).size()) - 1;
  return std::clamp(pane, 0, std::max(last, 0));
}

analysis::Horizontal HorizontalOf(const StudyChoice& choice, double binWidthHz) {
  analysis::Horizontal axis{
      .unit = choice.unit, .binWidthHz = binWidthHz, .rpm = choice.machine.rpm};
  if (analysis::WhyNot(axis)) axis.unit = analysis::HorizontalUnit::Hertz;
  return axis;
}

std::string NameOf(Extra extra, int captures) {
  const std::string of = " of " + std::to_string(captures);
  switch (extra) {
    case Extra::LinearAverage:
      return "Average" + of;
    case Extra::ExponentialAverage:
      return "Exponential average" + of;
    case Extra::MaximumHold:
      return "Maximum" + of;
    case Extra::MinimumHold:
      return "Minimum" + of;
    case Extra::Frozen:
      return "Frozen";
    case Extra::Reference:
      return "Reference";
  }
  return "";
}

void NoteNotDrawn(PlotScene& scene, const std::string& name, const analysis::Refusal& why) {
  const std::string text = name + " is not drawn. " + why.reason + " " + why.cure + ".";
  if (scene.note.find(text) != std::string::npos) return;
  scene.note += (scene.note.empty() ? "" : " ") + text;
}

std::string CrowdName(std::size_t drawn, std::size_t all, const std::string& other) {
  const std::string name = std::to_string(drawn) + " records, least to largest, median";
  if (drawn == all) return name;
  return name + "; " + std::to_string(all - drawn) + " of other " + other + " left out";
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

}  // namespace kestrel::study
