// Presses and keys that come while a capture is waited for.
// SPDX-License-Identifier: MIT
// Presses and keys that come while a capture is waited for.

#include "acquisition/capture_cycle.h"
#include "record/record_notices.h"
#include "support/capture_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Intervals = std::vector<std::chrono::milliseconds>;

constexpr int kStatusRead = address::kStatus * 256;

class Stopping : public CaptureBench {
 protected:
  Stopping() {
    readoutView.autoPlot = false;
    begin = clock.Monotonic();
  }

  [[nodiscard]] static Frames StartFrames() {
    return Frames{kClearStatusFrame} + StatusFrames() + Frames{kCaptureFrame};
  }
  [[nodiscard]] static Frames StopFrames() {
    return ReadFrames(address::kStatus) + Frames{kStopFrame};
  }
  void KeyAfter(std::chrono::milliseconds time, int key) {
    loop.At(begin + time, [this, key] { cycle.Form_KeyUp(key); });
  }
  void CloseAfter(std::chrono::milliseconds time) {
    loop.At(begin + time, [this] {
      cycle.Close();
      journal.Clear();
      sensor.ClearFrames();
    });
  }

  std::chrono::nanoseconds begin{};
};

// The stop's own wait starts the one timer anew and ends the capture's wait with it; the capture
// then polls once and leaves.
TEST_F(Stopping, DuringTheInitialWait) {
  PressAfter(100ms);
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(),
            StartFrames() + StopFrames() + ReadFrames(address::kStatus) + StatusFrames());
  EXPECT_EQ(loop.Intervals(), (Intervals{360ms, 50ms, 50ms}));
  EXPECT_EQ(journal.Only({"caption", "capturing"}),
            (Words{"capturing shown", "caption Stop", "caption Start", "capturing hidden",
                   "capturing hidden", "caption Start", "caption Start", "capturing hidden"}));
  EXPECT_TRUE(WindowIsIdle());
  EXPECT_TRUE(loop.ScriptDone());
}

TEST_F(Stopping, TheCaptionChangesAtOnce) {
  PressAfter(100ms);
  loop.At(begin + 101ms, [this] { EXPECT_EQ(captureView.caption, "Start"); });
  cycle.cmdStart_Click();
  EXPECT_TRUE(loop.ScriptDone());
}

TEST_F(Stopping, BeforeTheInitialWaitDoesNotShortenIt) {
  loop.AtYield(1, [this] { cycle.cmdStart_Click(); });
  cycle.cmdStart_Click();
  EXPECT_EQ(loop.Intervals(), (Intervals{50ms, 360ms, 50ms}));
  EXPECT_EQ(TakeFrames(),
            StartFrames() + StopFrames() + ReadFrames(address::kStatus) + StatusFrames());
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, DuringThePolling) {
  PressAfter(520ms);
  cycle.cmdStart_Click();
  // Polls at about 411, 461 and 511 ms, one more that the stop has delayed.
  EXPECT_EQ(sensor.Count(kStatusRead), 2 * (1 + 3 + 1 + 1 + 1));
  EXPECT_EQ(sensor.Count(kStopFrame), 1);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, ACaptureThatNeverCompletesIsPolledUntilStop) {
  PressAfter(60s);
  cycle.cmdStart_Click();
  const auto polls = sensor.Count(kStatusRead) / 2 - 4;
  EXPECT_EQ(polls, 1 + (60000 - 411) * 10 / 501);
  EXPECT_EQ(sensor.Count(kStopFrame), 1);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, EscapeStopsTheCapture) {
  KeyAfter(100ms, 27);
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(),
            StartFrames() + StopFrames() + ReadFrames(address::kStatus) + StatusFrames());
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, OtherKeysDoNot) {
  sensor.SetAtRead(address::kStatus, 3, 0x0080);
  for (const int key : {13, 28, 0}) KeyAfter(100ms, key);
  cycle.cmdStart_Click();
  EXPECT_TRUE(loop.ScriptDone());
  EXPECT_EQ(sensor.Count(kStopFrame), 0);
}

TEST_F(Stopping, EscapeWhenIdleDoesNothing) {
  cycle.Form_KeyUp(27);
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(journal.Entries(), Words{});
  EXPECT_EQ(loop.Yields(), 0);
}

TEST_F(Stopping, AStoppedCaptureIsStillReadOut) {
  readoutView.autoPlot = true;
  captureView.recMode = 2;
  PressAfter(100ms);
  cycle.cmdStart_Click();
  EXPECT_EQ(Buff.width, 511);
  EXPECT_EQ(RawZ(511), 3511);
  EXPECT_EQ(journal.Count("draw"), 2);
}

class StoppedRecord : public Stopping {
 protected:
  StoppedRecord() { readoutView.autoPlot = true; }
  void Complete() {
    sensor.Set(address::kStatus, 0x0080);
    cycle.cmdStart_Click();
    sensor.Set(address::kStatus, 0);
  }
  void StopOne() {
    PressAfter(100ms);
    cycle.cmdStart_Click();
  }
  [[nodiscard]] std::vector<RecordNotice> Notices() const {
    return RecordNotices(core.record.Get(), {});
  }
};

TEST_F(StoppedRecord, ACompleteCaptureIsNew) {
  Complete();
  EXPECT_FALSE(core.record.Get().origin.stopped);
  EXPECT_TRUE(core.record.Get().IsNew());
}

TEST_F(StoppedRecord, WhoseCountDidNotMoveIsTheRecordBefore) {
  Complete();
  StopOne();
  EXPECT_FALSE(core.record.Get().IsNew());
  ASSERT_FALSE(Notices().empty());
  EXPECT_EQ(Notices()[0].kind, NoticeKind::NotNew);
  EXPECT_EQ(Notices()[0].means, "These are the data of the record before.");
}

TEST_F(StoppedRecord, ThatTheSensorCountedMeanwhileIsNew) {
  Complete();
  sensor.Set(address::kRecCnt, 8);
  StopOne();
  EXPECT_TRUE(core.record.Get().origin.stopped);
  EXPECT_TRUE(core.record.Get().IsNew());
}

TEST_F(StoppedRecord, WithoutAKnownCountIsNotTakenForNew) {
  StopOne();
  EXPECT_FALSE(core.record.Get().IsNew());
  Complete();
  readoutView.autoPlot = false;
  sensor.Set(address::kRecCnt, 8);
  Complete();
  readoutView.autoPlot = true;
  StopOne();
  EXPECT_FALSE(core.record.Get().IsNew()) << "the count moved before the capture that was stopped";
}

TEST_F(StoppedRecord, ThatWasReadyAfterAllIsNotCalledStopped) {
  Complete();
  // Start, stop and poll find no data; the status after them does.
  sensor.SetAtRead(address::kStatus, 4, 0x0080);
  StopOne();
  EXPECT_FALSE(core.record.Get().origin.stopped);
}

TEST_F(Stopping, AsksAgainWhileDataAreReadyButNotForEver) {
  sensor.Set(address::kStatus, 0x0080);
  PressAfter(100ms);
  cycle.cmdStart_Click();
  EXPECT_EQ(sensor.Count(kStopFrame), 20);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, AsksUntilDataAreNoLongerReady) {
  sensor.Set(address::kStatus, 0x0080);
  sensor.SetAtRead(address::kStatus, 1 + 5, 0x0000);
  PressAfter(100ms);
  cycle.cmdStart_Click();
  EXPECT_EQ(sensor.Count(kStopFrame), 5);
}

TEST_F(Stopping, PressingAgainWhileTheCaptureUnwindsStartsNothing) {
  readoutView.autoPlot = true;
  for (const auto time : {100ms, 120ms, 140ms, 190ms}) PressAfter(time);
  KeyAfter(145ms, 27);
  cycle.cmdStart_Click();
  EXPECT_TRUE(loop.ScriptDone());
  EXPECT_EQ(sensor.Count(kCaptureFrame), 1);
  EXPECT_EQ(sensor.Count(kStopFrame), 1);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, APressThatQueuedUpDuringTheReadOutIsDropped) {
  readoutView.autoPlot = true;
  sensor.SetAtRead(address::kStatus, 2, 0x0080);
  PressAfter(500ms);  // the read-out takes about 150 ms from 411 ms on
  cycle.cmdStart_Click();
  EXPECT_TRUE(loop.ScriptDone());
  EXPECT_EQ(sensor.Count(kCaptureFrame), 1);
  EXPECT_EQ(sensor.Count(kStopFrame), 0);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Stopping, ANewCaptureCanFollow) {
  PressAfter(100ms);
  cycle.cmdStart_Click();
  TakeFrames();
  sensor.Set(address::kStatus, 0x0080);
  cycle.cmdStart_Click();
  EXPECT_EQ(TakeFrames(), StartFrames() + ReadFrames(address::kStatus) + StatusFrames());
}

// At each of the capture's yields: nothing is shown or sent after the window has closed.
TEST_F(Stopping, ClosingTheWindowAtAnyYieldEndsTheCapture) {
  readoutView.autoPlot = true;
  sensor.SetAtRead(address::kStatus, 1 + 3, 0x0080);
  cycle.cmdStart_Click();
  const int yields = loop.Yields();
  ASSERT_EQ(yields, 1 + 1 + 3 * 2 + 1);  // start, initial wait, three polls, end
  for (int n = 1; n <= yields; ++n) {
    SCOPED_TRACE(n);
    WindowDelay ownDelay(loop);
    CaptureCycle own(core, ownDelay, status, alarms, readout, plot, overlay, captureView);
    captureView.caption = "Start";
    sensor.Set(address::kStatus, 0);
    sensor.SetAtRead(address::kStatus, 1 + 3, 0x0080);
    loop.AtYield(loop.Yields() + n, [&] {
      own.Close();
      journal.Clear();
      sensor.ClearFrames();
    });
    own.cmdStart_Click();
    EXPECT_TRUE(loop.ScriptDone());
    EXPECT_EQ(journal.Entries(), Words{});
    EXPECT_EQ(TakeFrames(), Frames{});
    EXPECT_FALSE(own.Running());
    EXPECT_FALSE(loop.TimerRuns());
  }
}

TEST_F(Stopping, ClosingDuringAStopEndsBoth) {
  PressAfter(100ms);
  CloseAfter(120ms);
  cycle.cmdStart_Click();
  EXPECT_TRUE(loop.ScriptDone());
  EXPECT_EQ(journal.Entries(), Words{});
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_FALSE(cycle.Running());
  EXPECT_FALSE(loop.TimerRuns());
}

TEST_F(Stopping, AClosedWindowIsNotTouchedByAnOutstandingMessage) {
  sensor.UnplugAtRequest(1);
  messages.WhileShown([this] {
    cycle.Close();
    journal.Clear();
  });
  cycle.cmdStart_Click();
  EXPECT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(journal.Only({"caption", "capturing", "status flags"}), Words{});
  EXPECT_FALSE(cycle.Running());
}

}  // namespace
}  // namespace kestrel
