// The scene of a time record.
// SPDX-License-Identifier: MIT
#include "display/scene.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

std::vector<double> Seconds(const TimeCurve& curve) {
  std::vector<double> seconds(curve.values.size());
  for (std::size_t i = 0; i < seconds.size(); ++i) {
    seconds[i] = static_cast<double>(i) * curve.stepS;
  }
  return seconds;
}

SceneTrace TraceOf(const TimeCurve& curve, Axis axis, bool isFocus) {
  return {.name = std::string(1, Letter(axis)),
          .ink = InkOf(axis),
          .isFocus = isFocus,
          .x = Seconds(curve),
          .y = curve.values};
}

void AddKept(PlotScene& scene, PlotPane& pane, const Study& study, const Measured& kept, Axis axis,
             const std::string& name, TraceStyle style) {
  const auto curve = study.TimeCurveOf(*kept.record, axis);
  if (!curve) return NoteNotDrawn(scene, name, curve.Why());
  pane.traces.push_back({.name = name + " " + Letter(axis),
                         .ink = style == TraceStyle::Reference ? PlotInk::Other : InkOf(axis),
                         .style = style,
                         .x = Seconds(*curve),
                         .y = curve->values});
}

// A crowd needs the same times.
void AddCrowd(PlotPane& pane, const Study& study, const TimeCurve& live, Axis axis) {
  PlotCrowd crowd{.ink = InkOf(axis), .x = Seconds(live)};
  for (const Measured& other : study.Others()) {
    const auto curve = study.TimeCurveOf(*other.record, axis);
    if (!curve || curve->stepS != live.stepS || curve->values.size() != live.values.size()) {
      continue;
    }
    crowd.y.push_back(curve->values);
  }
  if (crowd.y.empty()) return;
  crowd.name = CrowdName(crowd.y.size(), study.Others().size(), "rates");
  pane.crowd = std::move(crowd);
}

void AddOthers(PlotScene& scene, PlotPane& pane, const Study& study, const TimeCurve& live,
               Axis axis) {
  if (study.Others().size() > kTracesOfOthers) return AddCrowd(pane, study, live, axis);
  for (const Measured& other : study.Others()) {
    AddKept(scene, pane, study, other, axis, study.TimeText(other.record->time),
            TraceStyle::Reference);
  }
}

// Beside the live trace, as in a spectrum.
void AddBeside(PlotScene& scene, PlotPane& pane, const Study& study, const TimeCurve& live,
               Axis axis) {
  const StudyChoice& choice = study.Choice();
  if (choice.Has(Extra::Frozen) && study.Frozen() != nullptr) {
    AddKept(scene, pane, study, *study.Frozen(), axis, NameOf(Extra::Frozen, 0), TraceStyle::Held);
  }
  if (choice.Has(Extra::Reference) && study.Reference() != nullptr) {
    AddKept(scene, pane, study, *study.Reference(), axis, NameOf(Extra::Reference, 0),
            TraceStyle::Reference);
  }
  if (axis == choice.focus || choice.stacked) AddOthers(scene, pane, study, live, axis);
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
      AddBeside(scene, drawn, study, *curve, axis);
    }
    scene.panes.push_back(std::move(drawn));
  }
  return scene;
}

}  // namespace kestrel::study
