// How traces are drawn, and the steps of the vertical scale.
// SPDX-License-Identifier: MIT
#include "plot/spectrum_plot.h"

#include <array>

#include "app/program_state.h"
#include "device/rec_ctrl.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"

namespace kestrel {

namespace {

constexpr std::array<double, 10> kScales{100, 50, 25, 10, 2, 1, 0.5, 0.25, 0.1, 0.02};

// Any caption outside the ring, like the last one of it, leads to the first.
std::string NextScale(const std::string& caption) {
  for (std::size_t i = 0; i + 1 < kScales.size(); ++i) {
    if (caption == GeneralNumber(kScales[i])) return GeneralNumber(kScales[i + 1]);
  }
  return GeneralNumber(kScales.front());
}

}  // namespace

std::vector<std::string> PlotScales() {
  std::vector<std::string> scales;
  for (const double scale : kScales) scales.push_back(GeneralNumber(scale));
  return scales;
}

void SpectrumPlot::PlotRecord() {
  Draw(TracesOf(record_.Get()));
  alarms_.DisplaySpectralALarmsStatus();
}

void SpectrumPlot::Draw(std::span<const PlotTrace> traces) {
  const auto last = static_cast<std::int16_t>(traces.front().values.size() - 1);
  const HorizontalAxis& horizontal = traces.front().horizontal;
  const double end = horizontal.first + horizontal.step * last;
  view_.SetUnit(horizontal.unit);
  view_.ShowFrequency(last != kTimeWidth);
  view_.SetXmax(GeneralNumber(end));
  TakePlotScale(LeadingNumber(view_.ScaleCaption()));
  const double bottom = LabelAxes(last);
  view_.SetScale(horizontal.first, PlotScale, end, bottom);
  loop_.YieldToPaint();
  view_.ClearPlot();
  view_.ClearABLabels();
  DrawTraces(traces);
}

// Returns the value at the bottom of the plot.
double SpectrumPlot::LabelAxes(std::int16_t last) {
  switch (last) {
    case kFftWidth:
      view_.SetYmax(GeneralNumber(PlotScale));
      view_.SetYmin("0");
      view_.SetYmid(GeneralNumber(PlotScale / 2));
      return 0;
    case kTimeWidth:
      view_.SetYmax(GeneralNumber(PlotScale));
      view_.SetYmin(GeneralNumber(-PlotScale));
      view_.SetYmid("0");
      return -PlotScale;
    default:
      messages_.Show("Error... Sub Plot Record; Invalid Buff.width = " + std::to_string(last));
      return 0;
  }
}

// Point by point, all traces together; whether a trace is shown is asked at every point.
void SpectrumPlot::DrawTraces(std::span<const PlotTrace> traces) {
  for (std::size_t i = 1; i < traces.front().values.size(); ++i) {
    for (std::size_t number = 0; number < traces.size(); ++number) {
      const PlotTrace& trace = traces[number];
      if (!view_.TraceTicked(trace.axis)) continue;
      const auto at = [&](std::size_t point) {
        return trace.horizontal.first + trace.horizontal.step * static_cast<double>(point);
      };
      view_.DrawLine(number, at(i - 1), trace.values[i - 1], at(i), trace.values[i], trace.colour);
    }
  }
}

void SpectrumPlot::cmdPlotScale_Click() {
  TakeScale(NextScale(view_.ScaleCaption()));
}

void SpectrumPlot::TakeScale(const std::string& caption) {
  view_.SetScaleCaption(caption);
  view_.SetYmax(view_.ScaleCaption());
  switch (gRecCtrl->RecModeCode()) {
    case 0:
    case 1:
      view_.SetYmin("0");
      view_.SetYmid(GeneralNumber(LeadingNumber(view_.Ymax()) / 2));
      break;
    case 2:
      view_.SetYmin(GeneralNumber(-LeadingNumber(view_.ScaleCaption())));
      view_.SetYmid("0");
      break;
    default:
      messages_.Show("inValid RecordMode. sub = cmdPlotScale");
  }
  PlotRecord();
}

void SpectrumPlot::SetPlotTrace() {
  bool any = false;
  for (const Axis axis : kAxes) any = any || view_.TraceTicked(axis);
  if (!any) view_.TickTrace(Axis::X);
  PlotRecord();
}

}  // namespace kestrel
