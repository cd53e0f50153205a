// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "plot/band_drag.h"

#include "overlay_bench.h"

namespace kestrel {
namespace {

constexpr double kHighlight = 256 * 255 + 65536 * 255;
constexpr double kRange5gMax = 0.0000763 * 65535;
constexpr double kAlarm1 = 1311 * 0.0000763;  // 0.1 g
constexpr double kAlarm2 = 3932 * 0.0000763;  // 0.3 g

using Edges = FakeOverlayOwner::Edges;
using Level = FakeOverlayOwner::Level;

class Drag : public OverlayBench {
 protected:
  Drag() {
    SetSixBands();
    overlay.PlotBands();
    shown_ = bandView.lines;
    journal.Clear();
    TakeFrames();
  }

  PlotPlace Hover(double x, double y, bool shift = false) {
    return overlay.pic1_MouseMove({.x = x, .y = y, .held = false, .shift = shift});
  }
  void Press(double x, double y) {
    Hover(x, y);
    overlay.pic1_MouseDown({.x = x, .y = y, .held = true, .shift = false});
  }
  PlotPlace Pull(double x, double y, bool shift = false) {
    return overlay.pic1_MouseMove({.x = x, .y = y, .held = true, .shift = shift});
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

TEST_F(Drag, AnEdgeIsHitWithinHalfABinAtAnyHeight) {
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

TEST_F(Drag, ALevelIsHitBetweenItsEndsAndHalfABinBeyond) {
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

TEST_F(Drag, AHighlightedLevelStaysWithinTheWidenedEnds) {
  Hover(60, kAlarm1);
  Hover(70.5, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(3, 2));
  Hover(70.51, kAlarm1);
  EXPECT_EQ(Mode(), DragMode::Idle);
}

TEST_F(Drag, EdgesComeBeforeLevelsAndLowEdgesBeforeHighOnes) {
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

TEST_F(Drag, LeavingALineGivesItItsColourBack) {
  Hover(50, 0.5);
  Hover(80, 0.5);
  ExpectAsBefore();
  Hover(60, kAlarm2);
  overlay.PointerLeft();
  ExpectAsBefore();
}

TEST_F(Drag, FromOneLineStraightToAnother) {
  Hover(50, 0.5);
  Hover(60, kAlarm1);
  EXPECT_EQ(Highlighted(), std::pair(3, 2));
  Hover(130, 0.5);
  EXPECT_EQ(Highlighted(), std::pair(1, 4));
  EXPECT_EQ(Mode(), DragMode::OverEdge);
}

TEST_F(Drag, AHiddenLineIsNotHit) {
  overlay.ClearLines();
  Hover(50, 0.5);
  EXPECT_EQ(Mode(), DragMode::Idle);
  overlay.PlotBands();
  Buff.width = kTimeWidth;
  plot.PlotRecord();
  overlay.RecordRedrawn();
  Hover(50, 0.5);
  Hover(60, kAlarm1);
  EXPECT_EQ(Mode(), DragMode::Idle);
  EXPECT_FALSE(Highlighted());
}

TEST_F(Drag, AButtonHeldDownElsewhereHighlightsNothing) {
  Press(80, 0.9);
  Pull(50, 0.5);
  ExpectAsBefore();
  Release();
  ExpectAsBefore();
}

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

TEST_F(Drag, ABandKeepsItsWidthAtBothEndsOfTheRecord) {
  Press(50, 0.5);
  Pull(254, 0.5);
  ExpectEdgesAt(2, 235, 255);
  Pull(2000, 0.5);
  ExpectEdgesAt(2, 235, 255);
  Pull(-1, 0.5);
  ExpectEdgesAt(2, 0, 20);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 0, 20})});
  owner.edges.clear();
  Press(70, 0.5);
  Pull(300, 0.5);
  ExpectEdgesAt(2, 235, 255);
  Pull(3, 0.5);
  ExpectEdgesAt(2, 0, 20);
  Pull(300, 0.5);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 235, 255})});
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

TEST_F(Drag, TheGripTellsWhatShiftDoes) {
  Hover(50, 0.5, true);
  EXPECT_EQ(bandView.grip, Grip::Edge);
  Hover(50.1, 0.5);
  EXPECT_EQ(bandView.grip, Grip::Band);
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

TEST_F(Drag, ThePlaceToReadOutIsThatOfTheDraggedLine) {
  const PlotPlace free = Hover(80.25, 0.5);
  EXPECT_EQ(free.x, 80.25);
  EXPECT_EQ(free.y, 0.5);
  Press(50, 0.5);
  PlotPlace place = Pull(300, 0.75);
  EXPECT_EQ(place.x, 235);
  EXPECT_EQ(place.y, 0.75);
  place = Pull(90, 0.75, true);
  EXPECT_EQ(place.x, 70);
  overlay.EndDrag();
  Press(60, kAlarm1);
  place = Pull(61, -3);
  EXPECT_EQ(place.x, 61);
  EXPECT_EQ(place.y, 0);
}

TEST_F(Drag, AClickWithAnUnsteadyHandChangesNothing) {
  Press(50.4, 0.5);
  Pull(50.6, 0.5);
  Release();
  ExpectAsBefore();
  Press(60, kAlarm1);
  Pull(60, kAlarm1 + 0.004);
  Release();
  ExpectAsBefore();
}

TEST_F(Drag, BroughtBackToWhereItWasNothingIsCarried) {
  Press(50, 0.5);
  Pull(90, 0.5);
  Pull(50.2, 0.5);
  Release();
  ExpectAsBefore();
}

TEST_F(Drag, AfterTheReleaseTheLinesAreWhereTheTableHasThem) {
  Press(50, 0.5);
  Pull(60.4, 0.5);
  Release();
  ExpectEdgesAt(2, 50, 70);  // an owner that kept nothing
  owner.keeps = true;
  Press(50, 0.5);
  Pull(60.4, 0.5);
  Release();
  ExpectEdgesAt(2, 60, 80);
  EXPECT_EQ(bandView.labels.at({false, 2}).x, 60);
}

TEST_F(Drag, EndingItBringsLinesAndLabelsBack) {
  for (const bool shift : {false, true}) {
    Press(50, 0.5);
    Pull(65, 0.5, shift);
    overlay.EndDrag();
    ExpectAsBefore();
    EXPECT_EQ(bandView.labels.at({false, 2}).x, 50);
    EXPECT_EQ(bandView.labels.at({true, 2}).x, 70);
  }
  Press(60, kAlarm2);
  Pull(60, 0.9);
  overlay.EndDrag();
  ExpectAsBefore();
  Pull(50, 0.5);
  Release();
  ExpectAsBefore();
}

TEST_F(Drag, ADragWhoseReleaseWentElsewhereEndsWithTheNextMove) {
  Press(50, 0.5);
  Pull(65, 0.5);
  Hover(100, 0.5);
  ExpectAsBefore();
  EXPECT_EQ(bandView.labels.at({false, 2}).x, 50);
}

TEST_F(Drag, LeavingThePlotDoesNotEndIt) {
  Press(50, 0.5);
  Pull(65, 0.5);
  overlay.PointerLeft();
  ExpectEdgesAt(2, 65, 85);
  EXPECT_EQ(Mode(), DragMode::DraggingEdge);
}

TEST_F(Drag, EveryRedrawEndsIt) {
  const std::function<void()> redraws[] = {[this] { overlay.PlotBands(); },
                                           [this] { overlay.RecordRedrawn(); }};
  for (const auto& redraw : redraws) {
    Press(50, 0.5);
    Pull(65, 0.5);
    redraw();
    ExpectAsBefore();
    Pull(80, 0.5);
    Release();
    ExpectAsBefore();
  }
}

TEST_F(Drag, ClearedLinesOrALostOwnerEndIt) {
  Press(60, kAlarm1);
  Pull(60, 0.9);
  overlay.ClearLines();
  EXPECT_EQ(Mode(), DragMode::Idle);
  EXPECT_DOUBLE_EQ(Line(3, 2).y1, kAlarm1);
  Release();
  overlay.PlotBands();
  Press(60, kAlarm1);
  Pull(60, 0.9);
  overlay.SetOwner(nullptr);
  EXPECT_EQ(Mode(), DragMode::Idle);
  Release();
  EXPECT_TRUE(owner.levels.empty());
}

TEST_F(Drag, AnOverlaySwitchedOffMeanwhileTakesNothing) {
  Press(50, 0.5);
  Pull(65, 0.5);
  owner.axis = std::nullopt;
  Release();
  EXPECT_TRUE(owner.edges.empty());
  EXPECT_FALSE(Line(1, 2).visible);
}

// The owner may redraw the plot as soon as it has taken the band.
TEST_F(Drag, AnOwnerThatRedrawsAtOnceIsServed) {
  class Redrawing : public FakeOverlayOwner {
   public:
    explicit Redrawing(BandOverlay& overlay) : overlay_(overlay) { keeps = true; }
    void TakeDraggedEdges(int band, int fLow, int fHigh) override {
      FakeOverlayOwner::TakeDraggedEdges(band, fLow, fHigh);
      overlay_.PlotBands();
    }

   private:
    BandOverlay& overlay_;
  } redrawing(overlay);
  overlay.SetOwner(&redrawing);
  overlay.PlotBands();
  Press(50, 0.5);
  Pull(60, 0.5);
  Release();
  EXPECT_EQ(redrawing.edges, std::vector{(Edges{2, 60, 80})});
  ExpectEdgesAt(2, 60, 80);
  EXPECT_EQ(Mode(), DragMode::Idle);
  overlay.SetOwner(nullptr);
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
  const PlotPlace place = Pull(30, 0.5, true);
  ExpectEdgesAt(2, 0, 30);
  EXPECT_EQ(place.x, 30);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 0, 30})});
  SetBand(2, {80, 80, 0, 0});
  overlay.PlotBands();
  Press(80, 0.5);
  EXPECT_EQ(Pull(75, 0.5, true).x, 75);
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
  ExpectEdgesAt(2, 20, 0);
  Pull(10, 0.5, true);
  ExpectEdgesAt(2, 50, 50);
}

TEST_F(Drag, ABandBeyondTheRecordComesBackIntoIt) {
  SetBand(2, {200, 300, 0, 0});
  overlay.PlotBands();
  Press(200, 0.5);
  Pull(201, 0.5);
  ExpectEdgesAt(2, 155, 255);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 155, 255})});
}

// What is dragged is the band of the table, even if it was drawn before the last edit.
TEST_F(Drag, APressFirstBringsTheLinesUpToDate) {
  SetBand(2, {100, 140, 1311, 3932});
  Press(50, 0.5);
  EXPECT_EQ(Mode(), DragMode::Idle);
  ExpectEdgesAt(2, 100, 140);
  Release();
  Press(100, 0.5);
  Pull(105, 0.5);
  Release();
  EXPECT_EQ(owner.edges, std::vector{(Edges{2, 105, 145})});
}

TEST_F(Drag, WhileItIsOffAPressDoesNothing) {
  owner.axis = std::nullopt;
  Press(50, 0.5);
  EXPECT_FALSE(overlay.Drag().Dragging());
}

}  // namespace
}  // namespace kestrel
