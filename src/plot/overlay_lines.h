// The lines that the alarm bands consist of on the plot.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "alarms/band_table.h"

namespace kestrel {

// The lines of a band. Group 0 is shown and cleared with the others, but never drawn.
inline constexpr int kLineGroups = 5;
inline constexpr int kSpareGroup = 0;
inline constexpr int kLowEdge = 1;  // vertical, as kHighEdge
inline constexpr int kHighEdge = 2;
inline constexpr int kAlarm1Level = 3;  // horizontal, as kAlarm2Level
inline constexpr int kAlarm2Level = 4;

[[nodiscard]] inline constexpr bool IsEdge(int group) {
  return group == kLowEdge || group == kHighEdge;
}

inline constexpr int kLinesPerGroup = kAlarmBands + 1;  // band 0 is never drawn
inline constexpr int kOverlayLines = kLineGroups * kLinesPerGroup;

[[nodiscard]] inline constexpr int LineIndex(int group, int band) {
  return group * kLinesPerGroup + band;
}

// From (x1, y1) to (x2, y2) in bins and g.
struct OverlayLine {
  double x1 = 0;
  double y1 = 0;
  double x2 = 0;
  double y2 = 0;
  double colour = 0;  // 0xBBGGRR
  bool visible = false;
  bool highlighted = false;  // drawn over the others
  bool operator==(const OverlayLine&) const = default;
};

// What a drag that begins under the pointer would move.
enum class Grip { None, Band, Edge, Level };

// The overlay as it is shown over the plot. Over a plot that is not as wide as an FFT record no
// line is drawn, whatever its visibility.
class BandOverlayView {
 public:
  virtual ~BandOverlayView() = default;
  [[nodiscard]] virtual double ScaleWidth() = 0;   // of the plot, in bins or samples
  [[nodiscard]] virtual double ScaleHeight() = 0;  // g
  virtual void ShowLine(int index, const OverlayLine& line) = 0;
  // Gives the label its text and its left edge to x.
  virtual void PlaceEdgeLabel(bool high, int band, const std::string& text, double x) = 0;
  virtual void ClearABLabels() = 0;
  virtual void ShowGrip(Grip grip) = 0;
};

// The overlay's lines, bands 0 to 6 of every group. What changes is shown at once.
class OverlayLines {
 public:
  explicit OverlayLines(BandOverlayView& view) : view_(view) {}

  [[nodiscard]] const OverlayLine& operator()(int group, int band) const {
    return lines_[static_cast<std::size_t>(LineIndex(group, band))];
  }

  // Normal colours, nothing visible or highlighted.
  void Init();

  // The band's vertical lines from y = 0 to `top`, its levels between them.
  void Place(int band, double low, double high, double alarm1, double alarm2, double top);
  // Both edges, with the ends of the levels.
  void MoveEdges(int band, double low, double high);
  void MoveLevel(int group, int band, double y);
  void Highlight(int group, int band, bool on);
  void SetVisible(int group, int band, bool visible);

 private:
  void Put(int group, int band, const OverlayLine& line);

  BandOverlayView& view_;
  std::array<OverlayLine, kOverlayLines> lines_{};
};

}  // namespace kestrel
