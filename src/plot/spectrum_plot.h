// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "alarms/alarm_status.h"
#include "app/plot_scale.h"
#include "record/axis.h"
#include "seams/event_loop.h"
#include "seams/messages.h"

namespace kestrel {

// Colour value of an axis's trace.
[[nodiscard]] double TraceColour(Axis axis);

// The plot box, its axis labels and the controls that choose what is drawn.
class PlotView {
 public:
  virtual ~PlotView() = default;

  virtual void SetUnit(const std::string& text) = 0;  // of the horizontal axis
  virtual void ShowFrequency(bool shown) = 0;         // the cursor's frequency read-out
  virtual void SetXmax(const std::string& text) = 0;
  virtual void SetYmax(const std::string& text) = 0;
  virtual void SetYmid(const std::string& text) = 0;
  virtual void SetYmin(const std::string& text) = 0;
  [[nodiscard]] virtual std::string Ymax() = 0;

  [[nodiscard]] virtual std::string ScaleCaption() = 0;
  virtual void SetScaleCaption(const std::string& text) = 0;
  [[nodiscard]] virtual bool TraceTicked(Axis axis) = 0;
  virtual void TickTrace(Axis axis) = 0;

  // Coordinates of the box's top left and bottom right corner.
  virtual void SetScale(double left, double top, double right, double bottom) = 0;
  virtual void ClearPlot() = 0;
  virtual void ClearABLabels() = 0;
  virtual void DrawLine(double x1, double y1, double x2, double y2, double colour) = 0;
};

// Draws the last record and steps its vertical scale.
class SpectrumPlot {
 public:
  SpectrumPlot(PlotView& view, AlarmStatus& alarms, EventLoop& loop, Messages& messages)
      : view_(view), alarms_(alarms), loop_(loop), messages_(messages) {}

  // Redraws everything from DataX, DataY and DataZ, then the alarm state.
  void PlotRecord();

  // Steps the full scale through its ring, relabels and redraws.
  void cmdPlotScale_Click();

  // After a change of the trace boxes: at least one trace stays on.
  void SetPlotTrace();

 private:
  double LabelAxes();
  void DrawTraces();

  PlotView& view_;
  AlarmStatus& alarms_;
  EventLoop& loop_;
  Messages& messages_;
};

}  // namespace kestrel
