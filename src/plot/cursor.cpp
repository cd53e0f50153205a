// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "plot/cursor.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "numeric/number_format.h"
#include "record/capture_data.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

constexpr int kPage = 10;  // bins

int Offset(CursorStep step) {
  switch (step) {
    case CursorStep::BinBack:
      return -1;
    case CursorStep::BinForward:
      return 1;
    case CursorStep::PageBack:
      return -kPage;
    case CursorStep::PageForward:
      return kPage;
    case CursorStep::First:
      return -static_cast<int>(kRecordPoints);
    default:
      return static_cast<int>(kRecordPoints);
  }
}

}  // namespace

void PlotCursor::pic1_MouseMove(double x, double y) {
  ReadOut(x, y);
  view_.MoveCrossHair(x, y);
}

void PlotCursor::Step(CursorStep step) {
  GoTo(index_ + Offset(step));
}

void PlotCursor::GoTo(int index) {
  const int there = std::clamp(index, 0, static_cast<int>(Buff.width));
  const double y = HighestAt(there);
  ReadOut(there, y);
  view_.MoveCrossHair(there, y);
}

// The frequency is filled for time records too, where its label is hidden.
void PlotCursor::ReadOut(double x, double y) {
  const double bin = std::nearbyint(x);
  index_ = std::clamp(static_cast<int>(bin), 0, static_cast<int>(kRecordPoints) - 1);
  view_.SetCursorX(FixedNumber(bin, 0));
  const double hertz = bin * BinWidth(Buff.sampleRateOption);
  view_.SetCursorFrequency(GroupedWholeNumber(hertz) + " Hz");
  view_.SetCursorY(FixedNumber(y, 3));
}

double PlotCursor::HighestAt(int index) {
  const std::array<double, 3> values{DataX(index), DataY(index), DataZ(index)};
  bool found = false;
  double highest = 0;
  for (const Axis axis : kAxes) {
    const double value = values[Index(axis)];
    if (!view_.TraceTicked(axis) || (found && value <= highest)) continue;
    highest = value;
    found = true;
  }
  return highest;
}

}  // namespace kestrel
