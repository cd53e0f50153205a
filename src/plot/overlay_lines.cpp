// Placing and colouring the lines of a band.
// SPDX-License-Identifier: MIT
#include "plot/overlay_lines.h"

#include "app/program_state.h"

namespace kestrel {
namespace {

// The edges keep clear of the traces' red, green and blue.
double NormalColour(int group) {
  switch (group) {
    case kAlarm1Level:
      return Rgb(255, 230, 0);
    case kAlarm2Level:
      return Rgb(230, 0, 0);
    default:
      return Rgb(130, 60, 150);
  }
}

double HighlightColour() {
  return Rgb(0, 255, 255);
}

}  // namespace

void OverlayLines::Init() {
  for (int group = 0; group < kLineGroups; ++group) {
    for (int band = 0; band < kLinesPerGroup; ++band) {
      Put(group, band, {.colour = NormalColour(group)});
    }
  }
}

void OverlayLines::Place(int band, double low, double high, double alarm1, double alarm2,
                         double top) {
  const auto put = [&](int group, double x1, double y1, double x2, double y2) {
    OverlayLine line = (*this)(group, band);
    line.x1 = x1;
    line.y1 = y1;
    line.x2 = x2;
    line.y2 = y2;
    line.visible = true;
    Put(group, band, line);
  };
  put(kLowEdge, low, 0, low, top);
  put(kHighEdge, high, 0, high, top);
  put(kAlarm1Level, low, alarm1, high, alarm1);
  put(kAlarm2Level, low, alarm2, high, alarm2);
  SetVisible(kSpareGroup, band, true);
}

void OverlayLines::MoveEdges(int band, double low, double high) {
  for (int group = kLowEdge; group < kLineGroups; ++group) {
    OverlayLine line = (*this)(group, band);
    line.x1 = group == kHighEdge ? high : low;
    line.x2 = group == kLowEdge ? low : high;
    Put(group, band, line);
  }
}

void OverlayLines::MoveLevel(int group, int band, double y) {
  OverlayLine line = (*this)(group, band);
  line.y1 = y;
  line.y2 = y;
  Put(group, band, line);
}

void OverlayLines::Highlight(int group, int band, bool on) {
  OverlayLine line = (*this)(group, band);
  line.colour = on ? HighlightColour() : NormalColour(group);
  line.highlighted = on;
  Put(group, band, line);
}

void OverlayLines::SetVisible(int group, int band, bool visible) {
  OverlayLine line = (*this)(group, band);
  line.visible = visible;
  Put(group, band, line);
}

void OverlayLines::Put(int group, int band, const OverlayLine& line) {
  const int index = LineIndex(group, band);
  OverlayLine& kept = lines_[static_cast<std::size_t>(index)];
  if (kept == line) return;
  kept = line;
  if (group != kSpareGroup && band > 0) view_.ShowLine(index, line);
}

}  // namespace kestrel
