// Which line is under the pointer.
// SPDX-License-Identifier: MIT
// Which line is under the pointer.

#include "plot/band_drag.h"

#include "drag_bench.h"

namespace kestrel {
namespace {

using Hovering = DragBench;

TEST_F(Hovering, AnEdgeIsHitWithinHalfABinAtAnyHeight) {
  struct Row {
    double x;
    bool hit;
  };
  for (const Row& row :
       {Row{49.49, false}, Row{49.5, true}, Row{50, true}, Row{50.5, true}, Row{50.51, false}}) {
    for (const double y : {0.02, 0.5, 0.98}) {
      Hover(row.x, y);
      EXPECT_EQ(Mode(), row.hit ? DragMode::OverEdge : DragMode::Idle) << row.x;
      EXPECT_EQ(Highlighted().has_value(), row.hit);
    }
  }
  Hover(50, 0.5);
  EXPECT_EQ(Highlighted(), std::pair(1, 2));
  EXPECT_EQ(overlay.Drag().Group(), 1);
  EXPECT_EQ(overlay.Drag().Band(), 2);
  EXPECT_EQ(bandView.grip, Grip::Band);
}

TEST_F(Hovering, ALevelIsHitBetweenItsEndsAndHalfABinBeyond) {
  constexpr double kTolerance = 1.0 / 200;
  // Where an edge is near, it is hit first; a level reaches beyond its edge only by the tolerance.
  struct Row {
    double x, y;
    bool hit;
  };
  const Row rows[] = {{60, kAlarm1, true},
                      {60, kAlarm1 + 0.99 * kTolerance, true},
                      {60, kAlarm1 - 0.99 * kTolerance, true},
                      {60, kAlarm1 + 1.01 * kTolerance, false},
                      {60, kAlarm1 - 1.01 * kTolerance, false},
                      {49.4, kAlarm1, false},
                      {70.6, kAlarm1, false}};
  for (const Row& row : rows) {
    Hover(row.x, row.y);
    EXPECT_EQ(Mode(), row.hit ? DragMode::OverLevel : DragMode::Idle) << row.x << " " << row.y;
  }
  Hover(60, kAlarm2);
  EXPECT_EQ(Highlighted(), std::pair(4, 2));
  EXPECT_EQ(bandView.grip, Grip::Level);
}

TEST_F(Hovering, AHighlightedLevelStaysWithinTheWidenedEnds) {
  Hover(60, kAlarm1);
  Hover(70.5, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(3, 2));
  Hover(70.51, kAlarm1);
  EXPECT_EQ(Mode(), DragMode::Idle);
}

TEST_F(Hovering, EdgesComeBeforeLevelsAndLowEdgesBeforeHighOnes) {
  Hover(70, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(2, 2)) << "edge before level";
  SetBand(1, {30, 50, 1311, 3932});
  overlay.PlotBands();
  Hover(50, 0.5);
  EXPECT_EQ(Highlighted(), std::pair(1, 2)) << "low edge before the high edge of band 1";
  SetBand(4, {50, 70, 1311, 1311});
  overlay.PlotBands();
  Hover(50, 0.5);
  EXPECT_EQ(Highlighted(), std::pair(1, 2)) << "band 2 before band 4";
  Hover(60, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(3, 2)) << "alarm 1 of band 2 before both of band 4";
}

TEST_F(Hovering, LeavingALineGivesItItsColourBack) {
  Hover(50, 0.5);
  Hover(80, 0.5);
  ExpectAsBefore();
  Hover(60, kAlarm2);
  overlay.PointerLeft();
  ExpectAsBefore();
}

TEST_F(Hovering, FromOneLineStraightToAnother) {
  Hover(50, 0.5);
  Hover(60, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(3, 2));
  Hover(130, 0.5);
  EXPECT_EQ(Highlighted(), std::pair(1, 4));
  EXPECT_EQ(Mode(), DragMode::OverEdge);
}

TEST_F(Hovering, AHiddenLineIsNotHit) {
  overlay.ClearLines();
  Hover(50, 0.5);
  EXPECT_EQ(Mode(), DragMode::Idle);
  overlay.PlotBands();
  SetKind(RecordKind::Time);
  plot.PlotRecord();
  overlay.RecordRedrawn();
  Hover(50, 0.5);
  Hover(60, kAlarm1);
  EXPECT_EQ(Mode(), DragMode::Idle);
  EXPECT_FALSE(Highlighted());
}

TEST_F(Hovering, AButtonHeldDownElsewhereHighlightsNothing) {
  Press(80, 0.9);
  Pull(50, 0.5);
  ExpectAsBefore();
  Release();
  ExpectAsBefore();
}

TEST_F(Hovering, TheGripTellsWhatShiftDoes) {
  Hover(50, 0.5, true);
  EXPECT_EQ(bandView.grip, Grip::Edge);
  Hover(50.1, 0.5);
  EXPECT_EQ(bandView.grip, Grip::Band);
}

}  // namespace
}  // namespace kestrel
