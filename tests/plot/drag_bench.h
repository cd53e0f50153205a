// Six bands over the plot and a pointer that tries them.
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <utility>

#include "overlay_bench.h"
#include "plot/band_drag.h"

namespace kestrel {

inline constexpr double kHighlight = 256 * 255 + 65536 * 255;
inline constexpr double kRange5gMax = 0.0000763 * 65535;
inline constexpr double kAlarm1 = 1311 * 0.0000763;  // 0.1 g
inline constexpr double kAlarm2 = 3932 * 0.0000763;  // 0.3 g

// Six bands over the plot and a pointer that tries them.
class DragBench : public OverlayBench {
 protected:
  DragBench() {
    SetSixBands();
    overlay.PlotBands();
    shown_ = bandView.lines;
    journal.Clear();
    TakeFrames();
  }

  void Hover(double x, double y, bool shift = false) {
    overlay.pic1_MouseMove({.x = x, .y = y, .held = false, .shift = shift});
  }
  void Press(double x, double y) {
    Hover(x, y);
    overlay.pic1_MouseDown({.x = x, .y = y, .held = true, .shift = false});
  }
  void Pull(double x, double y, bool shift = false) {
    overlay.pic1_MouseMove({.x = x, .y = y, .held = true, .shift = shift});
  }
  void Release() { overlay.pic1_MouseUp(); }

  [[nodiscard]] DragMode Mode() const { return overlay.Drag().Mode(); }

  // Group and band of the highlighted line, none if there is none.
  [[nodiscard]] std::optional<std::pair<int, int>> Highlighted() const {
    std::optional<std::pair<int, int>> found;
    for (const auto& [index, line] : bandView.lines) {
      EXPECT_EQ(line.highlighted, line.colour == kHighlight);
      if (!line.highlighted) continue;
      EXPECT_FALSE(found.has_value()) << "more than one";
      found = {index / 7, index % 7};
    }
    return found;
  }
  void ExpectAsBefore() const {
    EXPECT_EQ(Mode(), DragMode::Idle);
    EXPECT_EQ(bandView.lines, shown_);
    EXPECT_EQ(bandView.grip, Grip::None);
    EXPECT_TRUE(owner.edges.empty());
    EXPECT_TRUE(owner.levels.empty());
  }
  void ExpectEdgesAt(int band, double low, double high) const {
    EXPECT_DOUBLE_EQ(Line(1, band).x1, low);
    EXPECT_DOUBLE_EQ(Line(1, band).x2, low);
    EXPECT_DOUBLE_EQ(Line(2, band).x1, high);
    EXPECT_DOUBLE_EQ(Line(2, band).x2, high);
    for (const int level : {3, 4}) {
      EXPECT_DOUBLE_EQ(Line(level, band).x1, low);
      EXPECT_DOUBLE_EQ(Line(level, band).x2, high);
    }
  }

 private:
  std::map<int, OverlayLine> shown_;
};

}  // namespace kestrel
