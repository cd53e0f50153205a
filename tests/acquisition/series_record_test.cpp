// Records that the sensor takes by itself in timer mode.
// SPDX-License-Identifier: MIT

#include "acquisition/capture_cycle.h"
#include "device/rec_ctrl.h"
#include "support/capture_bench.h"

namespace kestrel {
namespace {

class SeriesRecord : public CaptureBench {
 protected:
  SeriesRecord() { captureView.recMode = 1; }

  // The sensor takes another record while its Z axis is read, so many times.
  void TakeAnotherDuringReadOut(int times) {
    sensor.OnRead(address::kZBuf, [this, times, taken = 0]() mutable {
      const int point = sensor.Word(address::kBufPntr);
      if (point == 100 && taken < times) sensor.Set(address::kRecCnt, 8 + taken++);
      return taken * 10000 + point;
    });
  }
};

TEST_F(SeriesRecord, IsReadWithItsStatusAndWithoutACommand) {
  sensor.Set(address::kStatus, 0x0081);
  EXPECT_TRUE(cycle.TakeSeriesRecord());
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecInfo) + StatusFrames() + ReadoutFrames(255) +
                              ReadFrames(address::kRecCnt) + AlarmStatusFrames());
  const Record& record = core.record.Get();
  EXPECT_EQ(record.conditions.recordCount, 7);
  EXPECT_EQ(record.status.word, 0x0081);
  EXPECT_EQ(RawZ(255), 3255);
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(SeriesRecord, IsASpectrumWhateverWasCapturedBefore) {
  readout.Expect(RecordKind::Time);
  sensor.OnRead(address::kXBuf, [] { return 0xFFFF; });
  EXPECT_TRUE(cycle.TakeSeriesRecord());
  EXPECT_EQ(core.record.Get().kind, RecordKind::Spectrum);
  EXPECT_EQ(RawX(255), 65535);
}

TEST_F(SeriesRecord, IsReadWithoutAutoPlotToo) {
  readoutView.autoPlot = false;
  EXPECT_TRUE(cycle.TakeSeriesRecord());
  EXPECT_TRUE(core.record.Get().Taken());
}

TEST_F(SeriesRecord, IsNeverMadeOfTwo) {
  TakeAnotherDuringReadOut(1);
  EXPECT_TRUE(cycle.TakeSeriesRecord());
  EXPECT_EQ(RawZ(5), 10005) << "all of the second";
  EXPECT_EQ(RawZ(255), 10255);
  EXPECT_EQ(core.record.Get().conditions.recordCount, 8);
}

TEST_F(SeriesRecord, ThatChangesAtEachReadOutLeavesTheEarlierOne) {
  KeepARecord();
  const Record before = core.record.Get();
  TakeAnotherDuringReadOut(99);
  EXPECT_FALSE(cycle.TakeSeriesRecord());
  EXPECT_EQ(core.record.Get(), before);
  EXPECT_TRUE(WindowIsIdle());
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(SeriesRecord, ItsPeaksAreScaledByItsOwnRange) {
  sensor.Set(address::kRecCtrl, 0x0010);
  gRecCtrl->ReadRecCtrl();
  sensor.Set(address::kRecInfo, 0x0C00);
  sensor.Set(address::kAlmXPeak, 1000);
  EXPECT_TRUE(cycle.TakeSeriesRecord());
  EXPECT_EQ(alarmView.peak[0], " 1.192");
}

TEST_F(SeriesRecord, OfALostSensorLeavesTheEarlierOne) {
  KeepARecord();
  const Record before = core.record.Get();
  for (const int request : {1, 4, 30, 400}) {
    SCOPED_TRACE(request);
    sensor.UnplugAtRequest(request);
    EXPECT_FALSE(cycle.TakeSeriesRecord());
    EXPECT_EQ(core.record.Get(), before);
    EXPECT_TRUE(WindowIsIdle());
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

TEST_F(SeriesRecord, IsNotReadWhileACaptureIsWaitedFor) {
  bool read = true;
  loop.At(clock.Monotonic() + std::chrono::milliseconds{100},
          [&] { read = cycle.TakeSeriesRecord(); });
  PressAfter(std::chrono::milliseconds{200});
  cycle.cmdStart_Click();
  EXPECT_FALSE(read);
  EXPECT_TRUE(loop.ScriptDone());
}

}  // namespace
}  // namespace kestrel
