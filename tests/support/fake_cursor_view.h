// The plot's cross-hair and read-outs, remembered.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <utility>

#include "plot/cursor.h"

namespace kestrel {

class FakeCursorView : public CursorView {
 public:
  void SetCursorX(const std::string& text) override { x = text; }
  void SetCursorFrequency(const std::string& text) override { frequency = text; }
  void SetCursorY(const std::string& text) override { y = text; }
  void SetCursorTime(const std::string& text) override { time = text; }
  void ClearCursor() override { x = frequency = time = y = ""; }
  void MoveCrossHair(double toX, double toY) override { crossHair = {toX, toY}; }
  [[nodiscard]] bool TraceTicked(Axis axis) override { return ticked[Index(axis)]; }

  std::string x, frequency, time, y;
  std::pair<double, double> crossHair;
  std::array<bool, 3> ticked{true, true, true};
};

}  // namespace kestrel
