// The sensor lost at any moment of a capture.
// SPDX-License-Identifier: MIT
// The sensor is lost at any moment of a capture.

#include "acquisition/capture_cycle.h"
#include "support/capture_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr int kPolls = 2;
constexpr int kRequestsPerAccess = 3;  // open, send, receive
// Clear status, peaks and status, start, polls, peaks and status; conditions, 3 x 256 points each
// written and read; twice the alarm state.
constexpr int kAccessesBeforeReadout = 1 + 7 + 1 + kPolls + 7;
constexpr int kAccessesUntilRecord = kAccessesBeforeReadout + 4 + 3 * 256 * 2;
constexpr int kAccesses = kAccessesUntilRecord + 2 * 3;

class Fault : public CaptureBench {
 protected:
  Fault() { KeepARecord(RecordKind::Time); }

  void ReadyAfterPolls() {
    sensor.Set(address::kStatus, 0);
    sensor.SetAtRead(address::kStatus, 1 + kPolls, 0x0080);
  }

  void CaptureAgain(bool withReadout) {
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
    messages.Clear();
    sensor.ClearFrames();
    ReadyAfterPolls();
    readoutView.autoPlot = withReadout;
    cycle.cmdStart_Click();
    EXPECT_TRUE(messages.Texts().empty());
    EXPECT_EQ(sensor.Count(kCaptureFrame), 1);
    EXPECT_TRUE(WindowIsIdle());
    readoutView.autoPlot = true;
  }

  // Loses the sensor at a request of the capture and expects everything that must hold then.
  void LoseSensorAt(int request) {
    SCOPED_TRACE(request);
    const Kept earlier = TheRecord();
    messages.Clear();
    ReadyAfterPolls();
    sensor.UnplugAtRequest(request);
    cycle.cmdStart_Click();
    EXPECT_EQ(messages.Texts(),
              Words{request % kRequestsPerAccess == 0 ? "Error Reading SPI" : "Error Writing SPI"});
    EXPECT_TRUE(WindowIsIdle());
    EXPECT_FALSE(UsbPresent);
    if (request <= kRequestsPerAccess * kAccessesUntilRecord) {
      EXPECT_EQ(TheRecord(), earlier);
    } else {
      EXPECT_EQ(RawZ(255), 3255);
      EXPECT_EQ(Buff.width, 255);
    }
  }
};

TEST_F(Fault, ACaptureHasAsManyRequestsAsThisTestCounts) {
  ReadyAfterPolls();
  const int before = sensor.Requests();
  cycle.cmdStart_Click();
  EXPECT_EQ(sensor.Requests() - before, kRequestsPerAccess * kAccesses);
}

TEST_F(Fault, AtEveryRequestBeforeThePoints) {
  const int last = kRequestsPerAccess * (kAccessesBeforeReadout + 4);
  for (int request = 1; request <= last; ++request) {
    LoseSensorAt(request);
    CaptureAgain(false);
    KeepARecord(RecordKind::Time);
  }
}

// One test an axis, since each point of it takes a capture of its own.
class FaultInAxis : public Fault, public testing::WithParamInterface<Axis> {};

TEST_P(FaultInAxis, AtEveryRequestOfItsPoints) {
  constexpr int kRequests = kRequestsPerAccess * 256 * 2;
  const int first = kRequestsPerAccess * (kAccessesBeforeReadout + 4) +
                    static_cast<int>(Index(GetParam())) * kRequests + 1;
  loop.SetMostYields(1000000);
  for (int request = first; request < first + kRequests; ++request) {
    LoseSensorAt(request);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
    sensor.ClearFrames();
    if (HasFailure()) return;
  }
  CaptureAgain(true);
  EXPECT_EQ(RawZ(255), 3255);
}

INSTANTIATE_TEST_SUITE_P(AllAxes, FaultInAxis, testing::ValuesIn(kAxes),
                         [](const auto& axis) { return AxisName(axis.param); });

TEST_F(Fault, AtEveryRequestAfterThePoints) {
  const int first = kRequestsPerAccess * kAccessesUntilRecord + 1;
  for (int request = first; request <= kRequestsPerAccess * kAccesses; ++request) {
    KeepARecord();
    LoseSensorAt(request);
    CaptureAgain(true);
  }
}

TEST_F(Fault, AtEveryRequestOfAStop) {
  readoutView.autoPlot = false;
  // Status, start; then the stop's poll and stop frame.
  const int before = kRequestsPerAccess * (1 + 7 + 1);
  for (int request = before + 1; request <= before + kRequestsPerAccess * 2; ++request) {
    SCOPED_TRACE(request);
    messages.Clear();
    sensor.UnplugAtRequest(request);
    PressAfter(100ms);
    cycle.cmdStart_Click();
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_TRUE(WindowIsIdle());
    EXPECT_TRUE(loop.ScriptDone());
    CaptureAgain(false);
    readoutView.autoPlot = false;
  }
}

TEST_F(Fault, TheEarlierRecordIsDrawnAgainAsWhatItIs) {
  ReadyAfterPolls();
  sensor.UnplugAtRequest(kRequestsPerAccess * (kAccessesUntilRecord - 1));
  cycle.cmdStart_Click();
  EXPECT_EQ(plotView.unit, "sample");
  ASSERT_EQ(plotView.lines.size(), 3U * 511U);
  EXPECT_EQ(plotView.lines.back().y2, DataZ(511));
}

// Otherwise the next reading of the buffers would take the words of one kind of record as those of
// the other.
TEST_F(Fault, TheSignOfTheBuffersFollowsTheRecordThatIsKept) {
  captureView.recMode = 2;
  ReadyAfterPolls();
  cycle.cmdStart_Click();
  ASSERT_EQ(CaptureType, "TimeDomain");
  captureView.recMode = 0;
  ReadyAfterPolls();
  sensor.UnplugAtRequest(kRequestsPerAccess * kAccessesUntilRecord);
  cycle.cmdStart_Click();
  EXPECT_EQ(CaptureType, "TimeDomain");
  for (const std::int16_t buffer : {row::X_BUF, row::Y_BUF, row::Z_BUF}) {
    EXPECT_TRUE(RegSigned[buffer]);
  }
}

TEST_F(Fault, WhileReadingTheBuffersWithoutACapture) {
  const Kept earlier = TheRecord();
  sensor.UnplugAtRequest(100);
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(TheRecord(), earlier);
  EXPECT_EQ(plotView.lines.size(), 3U * 511U);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(Fault, TheNextPressFindsTheSensorByItself) {
  ReadyAfterPolls();
  sensor.UnplugAtRequest(40);
  cycle.cmdStart_Click();
  EXPECT_FALSE(UsbPresent);
  sensor.PlugInAgain();
  messages.Clear();
  ReadyAfterPolls();
  cycle.cmdStart_Click();
  EXPECT_TRUE(messages.Texts().empty());
  EXPECT_EQ(RawX(0), 1000);
}

}  // namespace
}  // namespace kestrel
