// How a drag on the plot ends.
// SPDX-License-Identifier: MIT
// How a drag ends.

#include "plot/band_drag.h"

#include "drag_bench.h"

namespace kestrel {
namespace {

using Edges = FakeOverlayOwner::Edges;
using DragEnd = DragBench;

TEST_F(DragEnd, AClickWithAnUnsteadyHandChangesNothing) {
  Press(50.4, 0.5);
  Pull(50.6, 0.5);
  Release();
  ExpectAsBefore();
  Press(60, kAlarm1);
  Pull(60, kAlarm1 + 0.004);
  Release();
  ExpectAsBefore();
}

TEST_F(DragEnd, BroughtBackToWhereItWasNothingIsCarried) {
  Press(50, 0.5);
  Pull(90, 0.5);
  Pull(50.2, 0.5);
  Release();
  ExpectAsBefore();
}

TEST_F(DragEnd, AfterTheReleaseTheLinesAreWhereTheTableHasThem) {
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

TEST_F(DragEnd, EndingItBringsLinesAndLabelsBack) {
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

TEST_F(DragEnd, ADragWhoseReleaseWentElsewhereEndsWithTheNextMove) {
  Press(50, 0.5);
  Pull(65, 0.5);
  Hover(100, 0.5);
  ExpectAsBefore();
  EXPECT_EQ(bandView.labels.at({false, 2}).x, 50);
}

TEST_F(DragEnd, LeavingThePlotDoesNotEndIt) {
  Press(50, 0.5);
  Pull(65, 0.5);
  overlay.PointerLeft();
  ExpectEdgesAt(2, 65, 85);
  EXPECT_EQ(Mode(), DragMode::DraggingEdge);
}

TEST_F(DragEnd, EveryRedrawEndsIt) {
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

TEST_F(DragEnd, ClearedLinesOrALostOwnerEndIt) {
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

TEST_F(DragEnd, AnOverlaySwitchedOffMeanwhileTakesNothing) {
  Press(50, 0.5);
  Pull(65, 0.5);
  owner.axis = std::nullopt;
  Release();
  EXPECT_TRUE(owner.edges.empty());
  EXPECT_FALSE(Line(1, 2).visible);
}

// The owner may redraw the plot as soon as it has taken the band.
TEST_F(DragEnd, AnOwnerThatRedrawsAtOnceIsServed) {
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

// What is dragged is the band of the table, even if it was drawn before the last edit.
TEST_F(DragEnd, APressFirstBringsTheLinesUpToDate) {
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

TEST_F(DragEnd, WhileItIsOffAPressDoesNothing) {
  owner.axis = std::nullopt;
  Press(50, 0.5);
  EXPECT_FALSE(overlay.Drag().Dragging());
}

}  // namespace
}  // namespace kestrel
