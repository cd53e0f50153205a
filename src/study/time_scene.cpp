// The scene of a time record.
// SPDX-License-Identifier: MIT
#include "record/frequency.h"
#include "study/scene.h"

namespace kestrel::study {
namespace {

PlotTrace TraceOf(const Record& record, Axis axis, bool isFocus) {
  PlotTrace trace{.name = std::string(1, Letter(axis)), .ink = InkOf(axis), .isFocus = isFocus};
  trace.y = analysis::ValuesInG(record, axis, true);
  const double rate = SampleFrequency(record.settings.option);
  for (std::size_t i = 0; i < trace.y.size(); ++i) trace.x.push_back(static_cast<double>(i) / rate);
  return trace;
}

}  // namespace

PlotScene TimeScene(const Study& study) {
  const StudyChoice& choice = study.Choice();
  const Record& record = *study.Shown()->record;
  PlotScene scene;
  TitleScene(scene, study);
  if (record.kind != RecordKind::Time) {
    scene.hint = "A spectrum has lost its time. Capture in the mode Manual Time to see samples.";
    return scene;
  }
  const std::vector<Axis> shown = AxesOfPane({.shown = choice.shown}, 0);
  const double length =
      static_cast<double>(record.Points()) / SampleFrequency(record.settings.option);
  scene.across = {.title = "Time, ms", .unit = "ms", .factor = 1000, .whole = {0, length}};
  if (shown.empty()) scene.hint = "No axis is shown. Press X, Y or Z.";
  const int panes = choice.stacked ? static_cast<int>(shown.size()) : (shown.empty() ? 0 : 1);
  for (int pane = 0; pane < panes; ++pane) {
    PlotPane drawn{.title = "Acceleration, g", .unit = "g"};
    for (const Axis axis : AxesOfPane(choice, pane)) {
      drawn.traces.push_back(TraceOf(record, axis, axis == choice.focus));
    }
    scene.panes.push_back(std::move(drawn));
  }
  return scene;
}

}  // namespace kestrel::study
