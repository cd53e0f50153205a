// The scene of a time record.
// SPDX-License-Identifier: MIT
#include "display/scene.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

SceneTrace TraceOf(const TimeCurve& curve, Axis axis, bool isFocus) {
  SceneTrace trace{.name = std::string(1, Letter(axis)), .ink = InkOf(axis), .isFocus = isFocus};
  trace.y = curve.values;
  for (std::size_t i = 0; i < trace.y.size(); ++i) {
    trace.x.push_back(static_cast<double>(i) * curve.stepS);
  }
  return trace;
}

std::string TitleOf(const StudyChoice& choice, const TimeCurve& curve) {
  if (choice.timeQuantity == TimeQuantity::Acceleration) return "Acceleration, g";
  return "Velocity from " + analysis::HertzText(analysis::RoundedUp(curve.fromHz)) + ", mm/s";
}

}  // namespace

std::string UnitOfTime(const StudyChoice& choice) {
  return choice.timeQuantity == TimeQuantity::Velocity ? "mm/s" : "g";
}

PlotScene TimeScene(const Study& study) {
  const StudyChoice& choice = study.Choice();
  PlotScene scene;
  TitleScene(scene, study);
  if (study.Refused()) return scene;
  const std::vector<Axis> shown = ShownAxes(choice);
  if (shown.empty()) scene.hint = "No axis is shown. Press X, Y or Z.";
  const int panes = choice.stacked ? static_cast<int>(shown.size()) : (shown.empty() ? 0 : 1);
  for (int pane = 0; pane < panes; ++pane) {
    PlotPane drawn{.unit = UnitOfTime(choice)};
    for (const Axis axis : AxesOfPane(choice, pane)) {
      const auto curve = study.TimeCurveOf(axis);
      if (!curve) continue;
      drawn.title = TitleOf(choice, *curve);
      const double length = curve->stepS * static_cast<double>(curve->values.size());
      scene.across = {.title = "Time, ms", .unit = "ms", .factor = 1000, .whole = {0, length}};
      drawn.traces.push_back(TraceOf(*curve, axis, axis == choice.focus));
    }
    scene.panes.push_back(std::move(drawn));
  }
  return scene;
}

}  // namespace kestrel::study
