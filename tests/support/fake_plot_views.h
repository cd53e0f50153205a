// The plot box and its labels without a window.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "plot/spectrum_plot.h"
#include "support/fake_alarm_view.h"
#include "support/journal.h"

namespace kestrel {

struct DrawnLine {
  double x1, y1, x2, y2, colour;
  bool operator==(const DrawnLine&) const = default;
};

// The plot box. Clearing it removes the lines drawn so far.
class FakePlotView : public PlotView {
 public:
  explicit FakePlotView(Journal& journal) : journal_(journal) {}

  void SetUnit(const std::string& text) override { unit = text; }
  void ShowFrequency(bool shown) override {
    frequencyShown = shown;
    journal_.Note(shown ? "frequency shown" : "frequency hidden");
  }
  void SetXmax(const std::string& text) override { xMax = text; }
  void SetYmax(const std::string& text) override { yMax = text; }
  void SetYmid(const std::string& text) override {
    yMid = text;
    yMids.push_back(text);
  }
  void SetYmin(const std::string& text) override {
    yMin = text;
    yMins.push_back(text);
  }
  [[nodiscard]] std::string Ymax() override { return yMax; }

  [[nodiscard]] std::string ScaleCaption() override { return scaleCaption; }
  void SetScaleCaption(const std::string& text) override { scaleCaption = text; }
  [[nodiscard]] bool TraceTicked(Axis axis) override { return ticked[Index(axis)]; }
  void TickTrace(Axis axis) override {
    ticked[Index(axis)] = true;
    journal_.Note("tick " + AxisName(axis));
  }

  void SetScale(double left, double top, double right, double bottom) override {
    corners = {left, top, right, bottom};
    journal_.Note("scale");
  }
  void ClearPlot() override {
    lines.clear();
    numbers.clear();
    journal_.Note("clear plot");
  }
  void ClearABLabels() override { journal_.Note("clear labels"); }
  void ClearCursor() override { ++cursorClears; }
  void DrawLine(std::size_t trace, double x1, double y1, double x2, double y2,
                double colour) override {
    if (lines.empty()) journal_.Note("draw");
    numbers.push_back(trace);
    lines.push_back({x1, y1, x2, y2, colour});
    if (onLine) onLine();
  }

  std::string unit, xMax, yMax, yMid, yMin;
  std::string scaleCaption = "1";
  std::array<bool, 3> ticked{true, true, true};
  bool frequencyShown = false;
  std::array<double, 4> corners{};  // left, top, right, bottom
  std::vector<DrawnLine> lines;
  std::vector<std::size_t> numbers;       // of the trace that each line is a piece of
  std::vector<std::string> yMins, yMids;  // every label set, in order
  int cursorClears = 0;
  std::function<void()> onLine;

 private:
  Journal& journal_;
};

}  // namespace kestrel
