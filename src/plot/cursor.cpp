// How the cursor moves and reads out.
// SPDX-License-Identifier: MIT
#include "plot/cursor.h"

#include <algorithm>
#include <cmath>

#include "numeric/number_format.h"
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
  const int there = std::clamp(index, 0, static_cast<int>(record_.Get().Width()));
  const double y = HighestAt(there);
  ReadOut(there, y);
  view_.MoveCrossHair(there, y);
}

std::string SampleTime(int sample, int option) {
  return FixedNumber(1000 * sample / SampleFrequency(option), 3) + " ms";
}

void PlotCursor::ReadOut(double x, double y) {
  const double bin = std::nearbyint(x);
  index_ = std::clamp(static_cast<int>(bin), 0, static_cast<int>(kRecordPoints) - 1);
  view_.SetCursorX(FixedNumber(bin, 0));
  view_.SetCursorFrequency(FrequencyAt(bin));
  const Record& record = record_.Get();
  const bool isSample = record.kind == RecordKind::Time && bin >= 0 && bin <= record.Width();
  view_.SetCursorTime(isSample ? SampleTime(index_, record.settings.option) : "");
  view_.SetCursorY(FixedNumber(y, 3));
}

// Filled for time records too, where its label is hidden. Beyond the record there is none.
std::string PlotCursor::FrequencyAt(double bin) const {
  const Record& record = record_.Get();
  if (bin < 0 || bin > record.Width()) return "";
  return GroupedWholeNumber(bin * BinWidth(record.settings.option)) + " Hz";
}

double PlotCursor::HighestAt(int index) {
  bool found = false;
  double highest = 0;
  for (const Axis axis : kAxes) {
    const double value = record_.Get().Of(axis).data(index);
    if (!view_.TraceTicked(axis) || (found && value <= highest)) continue;
    highest = value;
    found = true;
  }
  return highest;
}

}  // namespace kestrel
