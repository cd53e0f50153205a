// The scene of a wide spectrum: traces that break where the option changes, options, labels.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "display/scene.h"
#include "display/wide_view.h"
#include "numeric/number_texts.h"
#include "record/record_line.h"

namespace kestrel::study {
namespace {

using analysis::Joined;
using analysis::JoinedPoint;
using analysis::WideSpectrum;

constexpr std::size_t kLabels = 10;
constexpr PlotRange kWhole{1, kMostHz};

// The first axis that could be joined; all share their frequencies.
const Joined* FirstOf(const WideSpectrum& wide) {
  const auto told = std::ranges::find_if(wide.axes, [](const auto& axis) { return bool(axis); });
  return told == wide.axes.end() ? nullptr : &**told;
}

const analysis::Told<Joined>* JoinedOf(const WideSpectrum& wide, Axis axis) {
  return Index(axis) < wide.axes.size() ? &wide.axes[Index(axis)] : nullptr;
}

AxisKind UpKind(const WideLook& look) {
  return look.up == Scale::Logarithmic ? AxisKind::Logarithmic : AxisKind::Linear;
}

// A line must not bridge what two captures tell.
SceneTrace TraceOf(const Joined& joined, const WideLook& look) {
  const analysis::WideCurve curve = CurveOf(joined, look.quantity);
  SceneTrace trace;
  for (std::size_t i = 0; i < joined.points.size(); ++i) {
    if (i > 0 && joined.points[i].option != joined.points[i - 1].option) {
      trace.x.push_back(joined.points[i].hz);
      trace.y.push_back(kNoValue);
    }
    trace.x.push_back(joined.points[i].hz);
    const bool isLog = look.up == Scale::Logarithmic;
    trace.y.push_back(isLog ? std::max(curve.values[i], curve.steps[i] / 2) : curve.values[i]);
  }
  return trace;
}

void AddTraces(PlotScene& scene, PlotPane& pane, const WideSpectrum& wide, const WideLook& look,
               const StudyChoice& choice) {
  for (const Axis axis : ShownAxes(choice)) {
    const auto* told = JoinedOf(wide, axis);
    if (told == nullptr) continue;
    const std::string name(1, Letter(axis));
    if (!*told) {
      NoteNotDrawn(scene, name, told->Why());
      continue;
    }
    SceneTrace trace = TraceOf(**told, look);
    trace.name = name;
    trace.ink = InkOf(axis);
    trace.isFocus = axis == choice.focus;
    pane.traces.push_back(std::move(trace));
  }
}

void AddOptions(PlotPane& pane, const Joined& joined) {
  for (const analysis::Segment& segment : joined.segments) {
    if (!(segment.usedToHz > segment.usedFromHz)) continue;
    pane.bands.push_back({.from = segment.usedFromHz,
                          .to = segment.usedToHz,
                          .name = "option " + std::to_string(segment.option)});
  }
}

// The largest lines of all axes, each labelled once.
void AddLabels(PlotPane& pane, const WideSpectrum& wide, const WideLook& look,
               const StudyChoice& choice) {
  std::vector<WideLine> lines = WideLinesOf(wide, choice).rows;
  std::ranges::stable_sort(lines, std::greater{}, &WideLine::peakG);
  for (const WideLine& line : lines) {
    if (pane.peaks.size() == kLabels) return;
    const bool isNamed = std::ranges::any_of(pane.peaks, [&](const PlotPeak& peak) {
      return std::abs(peak.x - line.hz) <= line.hz * 0.01;
    });
    if (isNamed) continue;
    pane.peaks.push_back({.x = line.hz,
                          .y = WideValueAt(wide, look, line.axis, line.hz),
                          .title = line.frequency + " Hz",
                          .detail = line.nearest.empty() ? std::string(1, Letter(line.axis)) + " " +
                                                               line.acceleration + " g"
                                                         : line.nearest});
  }
}

std::string OptionsText(const WideSpectrum& wide) {
  std::string text;
  for (const Record& record : wide.records) {
    text += (text.empty() ? "" : ", ") + std::to_string(record.settings.option);
  }
  return (wide.records.size() == 1 ? "option " : "options ") + text;
}

void Title(PlotScene& scene, const WideSpectrum& wide, const Joined& joined,
           const MomentText& moment) {
  const auto [first, last] = std::ranges::minmax_element(wide.records, {}, &Record::time);
  // "Spectrum, 0 to 70 g, Hanning, 8 averages, option 0, Δf 195.7 Hz": what all captures share
  // stands before the option.
  const std::string whole = RecordLine(*last, "");
  const std::size_t kind = whole.find(", ");
  const std::size_t option = whole.find(", option ");
  scene.head = "Wide spectrum";
  scene.line = analysis::HertzText(joined.points.front().hz) + " to " +
               analysis::HertzText(joined.points.back().hz) + ", ";
  if (kind != std::string::npos && option != std::string::npos && kind < option) {
    scene.line += whole.substr(kind + 2, option - kind - 2) + ", ";
  }
  scene.line += OptionsText(wide) + ", " + moment(first->time);
  if (first != last) scene.line += " to " + moment(last->time);
  scene.source = last->sensor.interface;
}

std::size_t NearestPoint(const std::vector<JoinedPoint>& points, double hz) {
  const auto after = std::ranges::lower_bound(points, hz, {}, &JoinedPoint::hz);
  if (after == points.end()) return points.size() - 1;
  const auto at = static_cast<std::size_t>(after - points.begin());
  return at > 0 && hz - points[at - 1].hz < points[at].hz - hz ? at - 1 : at;
}

std::string ValueText(const analysis::WideCurve& curve, std::size_t point) {
  const double step = curve.steps[point];
  if (!(curve.values[point] > step / 2)) {
    return "below " + analysis::SignificantText(step, 2);
  }
  return analysis::SignificantText(curve.values[point], 3);
}

}  // namespace

PlotScene WideScene(const WideSpectrum& wide, const WideLook& look, const StudyChoice& choice,
                    const MomentText& moment) {
  const Joined* joined = FirstOf(wide);
  if (joined == nullptr || joined->points.empty()) {
    PlotScene none{.hint =
                       "No wide spectrum yet. Capture one (F5): it takes one capture at each "
                       "sample-rate option."};
    if (!wide.axes.empty() && !wide.records.empty() && !wide.axes.front()) {
      const analysis::Refusal& why = wide.axes.front().Why();
      none.hint = why.title + ". " + why.reason + " " + why.cure + ".";
    }
    return none;
  }
  PlotScene scene{.across = {.title = "Frequency, Hz",
                             .unit = "Hz",
                             .kind = AxisKind::Logarithmic,
                             .whole = kWhole,
                             .validFrom = joined->points.front().hz}};
  PlotPane pane{
      .title = TitleOf(look.quantity), .unit = ShortUnitOf(look.quantity), .up = UpKind(look)};
  Title(scene, wide, *joined, moment);
  AddTraces(scene, pane, wide, look, choice);
  if (pane.traces.empty() && scene.note.empty()) scene.hint = "No axis is shown. Choose X, Y or Z.";
  if (look.hasOptions) AddOptions(pane, *joined);
  if (look.hasLabels) AddLabels(pane, wide, look, choice);
  scene.panes.push_back(std::move(pane));
  return scene;
}

std::vector<double> WideFrequencies(const WideSpectrum& wide) {
  std::vector<double> hz;
  if (const Joined* joined = FirstOf(wide)) {
    for (const JoinedPoint& point : joined->points) hz.push_back(point.hz);
  }
  return hz;
}

double WideValueAt(const WideSpectrum& wide, const WideLook& look, Axis axis, double hz) {
  const auto* told = JoinedOf(wide, axis);
  if (told == nullptr || !*told || (*told)->points.empty()) return kNoValue;
  return CurveOf(**told, look.quantity).values[NearestPoint((*told)->points, hz)];
}

PlotReadOut WideReadOutAt(const WideSpectrum& wide, const WideLook& look, const StudyChoice& choice,
                          double x) {
  PlotReadOut out;
  for (const Axis axis : ShownAxes(choice)) {
    const auto* told = JoinedOf(wide, axis);
    if (told == nullptr || !*told || (*told)->points.empty()) continue;
    const Joined& joined = **told;
    const std::size_t point = NearestPoint(joined.points, x);
    out.title = analysis::SignificantText(joined.points[point].hz, 4) + " Hz, option " +
                std::to_string(joined.points[point].option);
    out.rows.push_back(
        {InkOf(axis), std::string(1, Letter(axis)),
         ValueText(CurveOf(joined, look.quantity), point) + " " + ShortUnitOf(look.quantity)});
  }
  return out;
}

}  // namespace kestrel::study
