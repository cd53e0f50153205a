// The alarm bands after a record was read.
// SPDX-License-Identifier: MIT
// The alarm bands after a record was read.

#include "acquisition/capture_cycle.h"
#include "device/rec_ctrl.h"
#include "support/capture_bench.h"
#include "support/given.h"

namespace kestrel {
namespace {

class CaptureOverlay : public CaptureBench {
 protected:
  CaptureOverlay() {
    sensor.Set(address::kStatus, 0x0080);
    for (int band = 1; band <= 6; ++band) {
      Given(AlarmBandTable)(kFLowField, band, 0) = 10 * band;
      Given(AlarmBandTable)(kFHighField, band, 0) = 10 * band + 5;
    }
    overlay.initPlotLines();
    overlay.SetOwner(&owner);
    overlay.PlotBands();
    Forget();
  }
  ~CaptureOverlay() override { overlay.SetOwner(nullptr); }

  void Forget() {
    bandView.labels.clear();
    journal.Clear();
    TakeFrames();
  }

  FakeOverlayOwner owner;
};

TEST_F(CaptureOverlay, TheLabelsAreRefreshedAfterTheLastDrawing) {
  cycle.cmdStart_Click();
  EXPECT_EQ(bandView.labels.size(), 12U);
  const Words steps = journal.Only({"draw", "label 1L", "label 6H"});
  EXPECT_EQ(steps, (Words{"draw", "draw", "label 1L", "label 6H"}));
}

TEST_F(CaptureOverlay, NothingIsRefreshedWhileTheOverlayIsOff) {
  owner.axis = std::nullopt;
  cycle.cmdStart_Click();
  EXPECT_TRUE(bandView.labels.empty());
  EXPECT_FALSE(overlay.Lines()(1, 1).visible);
}

TEST_F(CaptureOverlay, NorWithoutAutoPlot) {
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_TRUE(bandView.labels.empty());
}

TEST_F(CaptureOverlay, TheSensorIsAskedNoMoreThanWithoutBands) {
  cycle.cmdStart_Click();
  const Frames with = TakeFrames();
  owner.axis = std::nullopt;
  cycle.cmdStart_Click();
  EXPECT_EQ(with, TakeFrames());
}

TEST_F(CaptureOverlay, ATimeRecordHidesTheLabelsAndTheNextSpectrumBringsThemBack) {
  captureView.recMode = 2;
  cycle.cmdStart_Click();
  EXPECT_TRUE(bandView.labels.empty());
  captureView.recMode = 0;
  cycle.cmdStart_Click();
  EXPECT_EQ(bandView.labels.size(), 12U);
}

TEST_F(CaptureOverlay, ReadBufferAndGetRecordDrawTheBandsOnTopToo) {
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(journal.Only({"draw", "label 1L"}), (Words{"draw", "label 1L"}));
  Forget();
  cycle.cmdGetRecord_Click(3);
  EXPECT_EQ(journal.Only({"draw", "label 1L"}), (Words{"draw", "label 1L"}));
}

TEST_F(CaptureOverlay, ARecordThatCouldNotBeReadLeavesTheBandsOnTheEarlierOne) {
  sensor.UnplugAtRequest(100);
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(bandView.labels.size(), 12U);
}

TEST_F(CaptureOverlay, ADragEndsWhenTheRecordIsDrawn) {
  loop.AtYield(1, [this] {
    overlay.pic1_MouseDown({.x = 20, .y = 0.5, .held = true, .shift = false});
    overlay.pic1_MouseMove({.x = 120, .y = 0.5, .held = true, .shift = false});
    EXPECT_TRUE(overlay.Drag().Dragging());
  });
  cycle.cmdStart_Click();
  EXPECT_TRUE(loop.ScriptDone());
  EXPECT_EQ(overlay.Drag().Mode(), DragMode::Idle);
  EXPECT_EQ(overlay.Lines()(1, 2).x1, 20);
  overlay.pic1_MouseUp();
  EXPECT_TRUE(owner.edges.empty());
}

TEST_F(CaptureOverlay, AClosedWindowsLabelsAreNotTouched) {
  sensor.UnplugAtRequest(100);
  messages.WhileShown([this] {
    cycle.Close();
    Forget();
  });
  cycle.cmdReadBuffer_Click();
  EXPECT_TRUE(bandView.labels.empty());
}

}  // namespace
}  // namespace kestrel
