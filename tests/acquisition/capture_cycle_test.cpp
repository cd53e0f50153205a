// A capture from Start to its record, frame by frame.
// SPDX-License-Identifier: MIT

#include "acquisition/capture_cycle_bench.h"

namespace kestrel {
namespace {

TEST_F(Capture, FramesOfAWholeCapture) {
  ReadyAtPoll(3);
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(),
            WaitFrames(3) + ReadoutFrames(255) + AlarmStatusFrames() + AlarmStatusFrames());
  EXPECT_TRUE(messages.Texts().empty());
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Capture, WithoutAutoPlotTheBuffersAreNotRead) {
  ReadyAtPoll(1);
  readoutView.autoPlot = false;
  readoutView.dataLog = true;
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(), WaitFrames(1));
  EXPECT_EQ(journal.Count("draw"), 0);
  EXPECT_TRUE(files.contents.empty());
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Capture, TheRecordIsDrawnTwice) {
  ReadyAtPoll(1);
  cycle.cmdStart_Click();
  EXPECT_EQ(journal.Count("draw"), 2);
}

TEST_F(Capture, ShowsItsStatesInOrder) {
  ReadyAtPoll(2);
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_EQ(journal.Only({"caption", "capturing", "status flags"}),
            (Words{"status flags", "capturing shown", "caption Stop", "status flags",
                   "capturing hidden", "caption Start", "caption Start", "capturing hidden"}));
}

TEST_F(Capture, TheSpiFailureOfACaptureIsNotShown) {
  sensor.Set(address::kStatus, 0x0088);
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_EQ(StatusFlagText[3], "OK");
  EXPECT_EQ(StatusFlagText[7], "SET");
}

TEST_F(Capture, TheSensorIsNotPolledBeforeItCanBeDone) {
  struct Row {
    const char* averages;
    int rateCode;
    std::chrono::milliseconds wait;
  };
  const Row rows[] = {{"8", 0, 360ms}, {"1", 3, 75ms}, {"255", 15, 11625ms}, {"0", 2, 20ms}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.averages);
    captureView.fftAvgs = row.averages;
    sensor.Set(address::kRecCtrl, row.rateCode << 8);
    gRecCtrl->ReadRecCtrl();
    readoutView.autoPlot = false;
    TakeFrames();
    ReadyAtPoll(1);
    cycle.cmdStart_Click();
    const auto command = sensor.Times(kCaptureFrame).at(0);
    const auto firstPoll = sensor.Times(kStatusRead).at(1);
    EXPECT_EQ(firstPoll - command, kAccessGap + row.wait + 50ms);
  }
}

TEST_F(Capture, PollsEvery50Ms) {
  ReadyAtPoll(40);
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  const Times reads = sensor.Times(kStatusRead);
  ASSERT_EQ(reads.size(), 1U + 40U + 1U);
  for (std::size_t i = 2; i <= 40; ++i) EXPECT_EQ(reads[i] - reads[i - 1], 50ms + kAccessGap);
}

TEST_F(Capture, NoAveragesAtTheFastestRateDoNotWaitAtAll) {
  ReadyAtPoll(1);
  captureView.fftAvgs = "0";
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_EQ(loop.Intervals(), Intervals{50ms});
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Capture, TheAveragesAreTheNumberTheTextStartsWith) {
  ReadyAtPoll(1);
  captureView.fftAvgs = " 2 spectra";
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_EQ(loop.Intervals(), (Intervals{90ms, 50ms}));
}

TEST_F(Capture, EscapeReachesTheWindowDuringTheWait) {
  ReadyAtPoll(1);
  bool during = false;
  loop.At(clock.Monotonic() + 200ms, [&] { during = captureView.keyPreview; });
  cycle.cmdStart_Click();
  EXPECT_TRUE(during);
  EXPECT_FALSE(captureView.keyPreview);
}

TEST_F(Capture, TheElapsedTimeIsShownAtEachPoll) {
  clock.SetSecondsSinceMidnight(40000);
  ReadyAtPoll(3);
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  ASSERT_EQ(captureView.elapsed.size(), 3U);
  EXPECT_NEAR(captureView.elapsed[0], 0.360, 0.005);
  EXPECT_NEAR(captureView.elapsed[2], 0.460, 0.005);
}

TEST_F(Capture, MidnightDoesNotDisturbTheCapture) {
  clock.SetSecondsSinceMidnight(86399.9);
  ReadyAtPoll(3);
  readoutView.autoPlot = false;
  cycle.cmdStart_Click();
  EXPECT_EQ(captureView.elapsed, (std::vector<double>{0, 0, 0}));
  EXPECT_EQ(TakeFrames(), WaitFrames(3));
}

TEST_F(Capture, ModesSetWidthTypeAndSign) {
  struct Row {
    int mode;
    std::int16_t width;
    const char* type;
    bool isSigned;
  };
  readoutView.autoPlot = false;
  const std::array rows{Row{2, 511, "TimeDomain", true}, Row{0, 255, "FFT", false},
                        Row{2, 511, "TimeDomain", true}, Row{1, 255, "FFT", false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.mode);
    sensor.Set(address::kStatus, 0x0080);
    captureView.recMode = row.mode;
    cycle.cmdStart_Click();
    EXPECT_EQ(Buff.width, row.width);
    EXPECT_EQ(CaptureType, row.type);
    EXPECT_EQ(RegSigned[row::X_BUF], row.isSigned);
    EXPECT_EQ(RegSigned[row::Y_BUF], row.isSigned);
    EXPECT_EQ(RegSigned[row::Z_BUF], row.isSigned);
  }
}

// The press itself reads the status and the peaks of the record before.

TEST_F(Capture, PeaksOfTheRecordBeforeKeepTheirValueUntilTheNewOnesAreRead) {
  const auto setRange = [this](int code) {
    sensor.Set(address::kRecCtrl, code << 4);
    gRecCtrl->ReadRecCtrl();
  };
  setRange(3);
  sensor.Set(address::kAlmXPeak, 1000);
  ReadyAtPoll(1);
  cycle.cmdStart_Click();
  ASSERT_EQ(alarmView.peak[0], " 1.192");
  setRange(1);
  std::string whileWaiting;
  loop.AtYield(loop.Yields() + 1, [&] { whileWaiting = alarmView.peak[0]; });
  ReadyAtPoll(1);
  cycle.cmdStart_Click();
  EXPECT_EQ(whileWaiting, " 1.192");
  EXPECT_EQ(alarmView.peak[0], " 0.076") << "the new record has the same code at the new range";
}

TEST_F(Capture, WithoutAReadOutTheRecordAtHandStaysWhatItIs) {
  KeepARecord(RecordKind::Spectrum);
  const Record earlier = core.record.Get();
  ReadyAtPoll(1);
  readoutView.autoPlot = false;
  captureView.recMode = 2;
  cycle.cmdStart_Click();
  EXPECT_EQ(core.record.Get(), earlier);
  plot.PlotRecord();
  EXPECT_EQ(plotView.unit, "bin") << "what is drawn is what was read";
  EXPECT_EQ(plotView.lines.size(), 3U * 255U);
  readoutView.autoPlot = true;
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(plotView.unit, "sample");
}

TEST_F(Capture, ATimeRecordIsReadToItsEndAndPlottedAsOne) {
  ReadyAtPoll(1);
  captureView.recMode = 2;
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(),
            WaitFrames(1) + ReadoutFrames(511) + AlarmStatusFrames() + AlarmStatusFrames());
  EXPECT_EQ(RawZ(511), 3511);
  EXPECT_EQ(plotView.unit, "sample");
}

// What the model holds may be wrong: it was last filled while the sensor was being lost.

TEST_F(Capture, EachLoggedCaptureHasItsFile) {
  readoutView.dataLog = true;
  for (int i = 0; i < 3; ++i) {
    ReadyAtPoll(1);
    cycle.cmdStart_Click();
  }
  EXPECT_EQ(files.contents.size(), 3U);
  EXPECT_EQ(DataLogIndex, 4);
}

TEST_F(Capture, ReadingTheBuffersNeedsNoCapture) {
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(TakeFrames(), ReadoutFrames(255) + AlarmStatusFrames());
  EXPECT_EQ(journal.Count("draw"), 1);
}

}  // namespace
}  // namespace kestrel
