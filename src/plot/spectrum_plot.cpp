// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "plot/spectrum_plot.h"

#include <array>

#include "app/program_state.h"
#include "device/rec_ctrl.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"
#include "record/capture_data.h"

namespace kestrel {

namespace {

constexpr std::array<double, 10> kScales{100, 50, 25, 10, 2, 1, 0.5, 0.25, 0.1, 0.02};

struct Trace {
  Axis axis;
  const RecordArray* data;
  double colour;
};

std::array<Trace, 3> Traces() {
  return {{{Axis::X, &DataX, TraceColour(Axis::X)},
           {Axis::Y, &DataY, TraceColour(Axis::Y)},
           {Axis::Z, &DataZ, TraceColour(Axis::Z)}}};
}

// Any caption outside the ring, like the last one of it, leads to the first.
std::string NextScale(const std::string& caption) {
  for (std::size_t i = 0; i + 1 < kScales.size(); ++i) {
    if (caption == GeneralNumber(kScales[i])) return GeneralNumber(kScales[i + 1]);
  }
  return GeneralNumber(kScales.front());
}

}  // namespace

double TraceColour(Axis axis) {
  switch (axis) {
    case Axis::X:
      return Rgb(205, 50, 50);
    case Axis::Y:
      return Rgb(50, 205, 50);
    default:
      return Rgb(50, 50, 205);
  }
}

void SpectrumPlot::PlotRecord() {
  const bool isTime = Buff.width == kTimeWidth;
  view_.SetUnit(isTime ? "sample" : "bin");
  view_.ShowFrequency(!isTime);
  view_.SetXmax(std::to_string(Buff.width));
  PlotScale = LeadingNumber(view_.ScaleCaption());
  const double bottom = LabelAxes();
  view_.SetScale(0, PlotScale, Buff.width, bottom);
  loop_.YieldToPaint();
  view_.ClearPlot();
  view_.ClearABLabels();
  DrawTraces();
  alarms_.DisplaySpectralALarmsStatus();
}

// Returns the value at the bottom of the plot.
double SpectrumPlot::LabelAxes() {
  switch (Buff.width) {
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
      messages_.Show("Error... Sub Plot Record; Invalid Buff.width = " +
                     std::to_string(Buff.width));
      return 0;
  }
}

void SpectrumPlot::DrawTraces() {
  const std::array<Trace, 3> traces = Traces();
  std::array<double, 3> previous{};
  for (int i = 0; i <= Buff.width; ++i) {
    for (const Trace& trace : traces) {
      const double value = (*trace.data)(i);
      double& last = previous[Index(trace.axis)];
      if (i > 0 && view_.TraceTicked(trace.axis)) {
        view_.DrawLine(i - 1, last, i, value, trace.colour);
      }
      last = value;
    }
  }
}

void SpectrumPlot::cmdPlotScale_Click() {
  view_.SetScaleCaption(NextScale(view_.ScaleCaption()));
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
