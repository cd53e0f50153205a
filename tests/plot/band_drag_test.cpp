// A band or a threshold dragged on the plot.
// SPDX-License-Identifier: MIT
#include "plot/band_drag.h"

#include "drag_bench.h"

namespace kestrel {
namespace {

using Edges = FakeOverlayOwner::Edges;
using Level = FakeOverlayOwner::Level;
using Drag = DragBench;

TEST_F(Drag, AnEdgeTakesItsBandAlong) {
  Press(50.2, 0.5);
  EXPECT_EQ(Mode(), DragMode::DraggingEdge);
  Pull(60.25, 0.5);
  ExpectEdgesAt(2, 60.25, 80.25);
  EXPECT_EQ(bandView.labels.at({false, 2}).x, 60.25);
  EXPECT_EQ(bandView.labels.at({true, 2}).x, 80.25);
  EXPECT_EQ(Highlighted(), std::pair(1, 2));
  EXPECT_TRUE(owner.edges.empty()) << "before the release";
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 60, 80})});
  EXPECT_EQ(Mode(), DragMode::Idle);
  EXPECT_FALSE(Highlighted());
  EXPECT_EQ(bandView.grip, Grip::None);
  EXPECT_EQ(TakeFrames(), Frames{}) << "the sensor is asked nothing";
}

TEST_F(Drag, TheHighEdgeTakesItsBandAlongToo) {
  Press(70, 0.5);
  Pull(75.75, 0.5);
  ExpectEdgesAt(2, 55.75, 75.75);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 56, 76})});
}

TEST_F(Drag, OtherBandsStayWhereTheyAre) {
  Press(50, 0.5);
  Pull(200, 0.5);
  for (const int band : {1, 3, 4, 5, 6}) ExpectEdgesAt(band, 40 * band - 30, 40 * band - 10);
}

TEST_F(Drag, AnEdgeFollowsThePointerToTheEndsOfTheRecordAndItsPartnerStaysInside) {
  Press(50, 0.5);
  Pull(240, 0.5);
  ExpectEdgesAt(2, 240, 255);
  Pull(255, 0.5);
  ExpectEdgesAt(2, 255, 255);
  Pull(2000, 0.5);
  ExpectEdgesAt(2, 255, 255);
  Pull(200, 0.5);
  ExpectEdgesAt(2, 200, 220);
  Pull(-1, 0.5);
  ExpectEdgesAt(2, 0, 20);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 0, 20})});
  owner.edges.clear();
  Press(70, 0.5);
  Pull(300, 0.5);
  ExpectEdgesAt(2, 235, 255);
  Pull(3, 0.5);
  ExpectEdgesAt(2, 0, 3);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 0, 3})});
}

TEST_F(Drag, AnEdgeLeftAtTheEndIsBin255) {
  Press(50, 0.5);
  Pull(254.6, 0.5);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 255, 255})});
}

TEST_F(Drag, WholeBinsKeepTheWidthWhereverTheLineIsDropped) {
  for (const double x : {60.5, 61.5, 60.49999, 60.50001, 99.75}) {
    owner.edges.clear();
    Press(50, 0.5);
    Pull(x, 0.5);
    Release();
    ASSERT_EQ(owner.edges.size(), 1U);
    EXPECT_EQ(owner.edges[0].fHigh - owner.edges[0].fLow, 20) << x;
    EXPECT_NEAR(owner.edges[0].fLow, x, 0.5);
  }
}

TEST_F(Drag, WithShiftOnlyThePickedEdgeMovesAndNotPastItsPartner) {
  Press(50, 0.5);
  Pull(55, 0.5, true);
  ExpectEdgesAt(2, 55, 70);
  EXPECT_EQ(bandView.grip, Grip::Edge);
  Pull(90, 0.5, true);
  ExpectEdgesAt(2, 70, 70);
  Pull(-5, 0.5, true);
  ExpectEdgesAt(2, 0, 70);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 0, 70})});
  owner.edges.clear();
  Press(70, 0.5);
  Pull(20, 0.5, true);
  ExpectEdgesAt(2, 50, 50);
  Pull(400, 0.5, true);
  ExpectEdgesAt(2, 50, 255);
  Pull(88.4, 0.5, true);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 50, 88})});
}

TEST_F(Drag, ShiftMayComeAndGoDuringADrag) {
  Press(50, 0.5);
  Pull(60, 0.5);
  ExpectEdgesAt(2, 60, 80);
  Pull(60, 0.5, true);
  ExpectEdgesAt(2, 60, 70);
  Pull(40, 0.5);
  ExpectEdgesAt(2, 40, 60);
}

TEST_F(Drag, ALevelFollowsThePointerUpToTheRangesFullScale) {
  struct Row {
    double level;
    int alarm;
  };
  for (const Row& row : {Row{kAlarm1, 1}, Row{kAlarm2, 2}}) {
    const int group = row.alarm + 2;
    owner.levels.clear();
    Press(60, row.level);
    EXPECT_EQ(Mode(), DragMode::DraggingLevel);
    Pull(200, 0.7);
    EXPECT_EQ(Ends(group, 2), (std::array{50.0, 0.7, 70.0, 0.7}));
    Pull(60, 7);
    EXPECT_DOUBLE_EQ(Line(group, 2).y1, kRange5gMax);
    Pull(60, -0.1);
    EXPECT_EQ(Line(group, 2).y1, 0);
    Pull(60, 0.55);
    ExpectEdgesAt(2, 50, 70);
    Release();
    EXPECT_EQ(owner.levels, std::vector{(Level{2, row.alarm, 0.55})});
    EXPECT_TRUE(owner.edges.empty());
    EXPECT_FALSE(Highlighted());
  }
}

TEST_F(Drag, OfBandsOnTopOfEachOtherTheFirstIsDragged) {
  for (int band = 1; band <= 6; ++band) SetBand(band, {0, 0, 0, 0});
  overlay.PlotBands();
  Press(0, 0.5);
  EXPECT_EQ(Highlighted(), std::pair(1, 1));
  Pull(100, 0.5);
  ExpectEdgesAt(1, 100, 100);
  for (int band = 2; band <= 6; ++band) ExpectEdgesAt(band, 0, 0);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{1, 100, 100})});
}

TEST_F(Drag, ABandWithoutWidthIsWidenedToEitherSide) {
  SetBand(2, {0, 0, 0, 0});
  overlay.PlotBands();
  Press(0, 0.5);
  Pull(30, 0.5, true);
  ExpectEdgesAt(2, 0, 30);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 0, 30})});
  SetBand(2, {80, 80, 0, 0});
  overlay.PlotBands();
  Press(80, 0.5);
  Pull(75, 0.5, true);
  ExpectEdgesAt(2, 75, 80);
}

TEST_F(Drag, AnInvertedBandMovesAsItIs) {
  SetBand(2, {70, 50, 1311, 3932});
  overlay.PlotBands();
  Hover(60, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(3, 2));
  Press(70, 0.5);
  Pull(75, 0.5);
  ExpectEdgesAt(2, 75, 55);
  Pull(300, 0.5);
  ExpectEdgesAt(2, 255, 235);
  Pull(-300, 0.5);
  ExpectEdgesAt(2, 0, 0);
  Pull(8, 0.5);
  ExpectEdgesAt(2, 8, 0);
  Pull(10, 0.5, true);
  ExpectEdgesAt(2, 50, 50);
}

TEST_F(Drag, ABandBeyondTheRecordComesBackIntoIt) {
  SetBand(2, {200, 300, 0, 0});
  overlay.PlotBands();
  Press(200, 0.5);
  Pull(201, 0.5);
  ExpectEdgesAt(2, 201, 255);
  Pull(140, 0.5);
  ExpectEdgesAt(2, 140, 240);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 140, 240})});
}

}  // namespace
}  // namespace kestrel
