// The plot of the main window: drawing, and the alarm state that follows it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "alarms/alarm_status.h"
#include "app/plot_scale.h"
#include "plot/trace.h"
#include "record/axis.h"
#include "record/current_record.h"
#include "seams/event_loop.h"
#include "seams/messages.h"

namespace kestrel {

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
  virtual void ClearCursor() = 0;  // what was read out is no longer there
  // A piece of trace number `trace`, counted from 0, in its colour.
  virtual void DrawLine(std::size_t trace, double x1, double y1, double x2, double y2,
                        double colour) = 0;
};

// The full scales in g, largest first, as they are shown.
[[nodiscard]] std::vector<std::string> PlotScales();

// Draws the record at hand and steps its vertical scale.
class SpectrumPlot {
 public:
  SpectrumPlot(const CurrentRecord& record, PlotView& view, AlarmStatus& alarms, EventLoop& loop,
               Messages& messages)
      : record_(record), view_(view), alarms_(alarms), loop_(loop), messages_(messages) {}

  // Draws the record at hand, then reads the alarm state from the sensor and shows it.
  void PlotRecord();

  // Draws traces of one length, at least one, with labels and scale; asks the sensor nothing.
  void Draw(std::span<const PlotTrace> traces);

  // Steps the full scale through its ring, relabels and redraws.
  void cmdPlotScale_Click();

  // Takes a full scale of the ring, in the form of PlotScales, as a step to it would.
  void TakeScale(const std::string& caption);

  // After a change of the trace boxes: at least one trace stays on.
  void SetPlotTrace();

 private:
  double LabelAxes(std::int16_t last);
  void DrawTraces(std::span<const PlotTrace> traces);

  const CurrentRecord& record_;
  PlotView& view_;
  AlarmStatus& alarms_;
  EventLoop& loop_;
  Messages& messages_;
};

}  // namespace kestrel
