// Reading the buffers: order, width, scale, progress.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_readout.h"

#include "device/rec_ctrl.h"
#include "device/rec_info.h"
#include "support/capture_bench.h"
#include "support/given.h"

namespace kestrel {
namespace {

class Readout : public CaptureBench {
 protected:
  void AsTimeRecord() { readout.Expect(RecordKind::Time); }
  void SetRange(int code) {
    sensor.Set(address::kRecCtrl, code << 4);
    gRecCtrl->ReadRecCtrl();
    TakeFrames();
  }
};

TEST_F(Readout, ReadsAnFftRecordAxisByAxis) {
  readoutView.autoPlot = false;
  EXPECT_TRUE(readout.ReadCaptureBuffer());
  EXPECT_EQ(TakeFrames(), ReadoutFrames(255));
}

TEST_F(Readout, ReadsATimeRecordAxisByAxis) {
  AsTimeRecord();
  readoutView.autoPlot = false;
  EXPECT_TRUE(readout.ReadCaptureBuffer());
  EXPECT_EQ(TakeFrames(), ReadoutFrames(511));
}

TEST_F(Readout, KeepsRawAndScaledPoints) {
  SetRange(1);
  readout.ReadCaptureBuffer();
  for (int i = 0; i <= 255; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(RawX(i), 1000 + i);
    EXPECT_EQ(RawY(i), 2000 + i);
    EXPECT_EQ(RawZ(i), 3000 + i);
    EXPECT_DOUBLE_EQ(DataX(i), (1000 + i) * 0.0000763);
    EXPECT_DOUBLE_EQ(DataY(i), (2000 + i) * 0.0000763);
    EXPECT_DOUBLE_EQ(DataZ(i), (3000 + i) * 0.0000763);
  }
}

TEST_F(Readout, WeightOfEveryRangeAndType) {
  readoutView.autoPlot = false;
  const std::array fft{0.0000153, 0.0000763, 0.0003052, 0.0011921};
  const std::array time{0.0000306, 0.0001526, 0.0006104, 0.0023842};
  for (int code = 0; code < 4; ++code) {
    SCOPED_TRACE(code);
    SetRange(code);
    readout.Expect(RecordKind::Spectrum);
    readout.ReadCaptureBuffer();
    EXPECT_DOUBLE_EQ(LsbWeight, fft[static_cast<std::size_t>(code)]);
    EXPECT_EQ(RangeSetting, code);
    readout.Expect(RecordKind::Time);
    readout.ReadCaptureBuffer();
    EXPECT_DOUBLE_EQ(LsbWeight, time[static_cast<std::size_t>(code)]);
  }
}

TEST_F(Readout, TheSmallestRangeHasAWeightOfItsOwn) {
  SetRange(0);
  readout.ReadCaptureBuffer();
  EXPECT_DOUBLE_EQ(LsbWeight, 0.0000153);
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.000015259);
}

TEST_F(Readout, AnFftWordIsUnsigned) {
  SetRange(0);
  sensor.OnRead(address::kXBuf, [] { return 1000; });
  sensor.OnRead(address::kYBuf, [] { return 0xFC18; });
  readout.ReadCaptureBuffer();
  EXPECT_DOUBLE_EQ(DataX(0), 0.0153);
  EXPECT_EQ(RawY(255), 64536);
}

TEST_F(Readout, ATimeWordIsTwosComplement) {
  AsTimeRecord();
  SetRange(3);
  sensor.OnRead(address::kYBuf, [] { return -1000; });
  readout.ReadCaptureBuffer();
  EXPECT_DOUBLE_EQ(DataY(511), -2.3842);
  EXPECT_EQ(RawY(0), -1000);
}

TEST_F(Readout, AnFftRecordLeavesTheUpperHalfOfTheArrays) {
  KeepARecord();
  readout.ReadCaptureBuffer();
  for (int i = 256; i < 512; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(DataX(i), i);
    EXPECT_EQ(DataY(i), -i);
    EXPECT_EQ(DataZ(i), 0.5 * i);
    EXPECT_EQ(RawX(i), 1.0 * i);
    EXPECT_EQ(RawY(i), 2.0 * i);
    EXPECT_EQ(RawZ(i), 3.0 * i);
  }
  EXPECT_EQ(RawX(255), 1255);
}

TEST_F(Readout, ABadRangeCodeIsNamedAndTheWeightKept) {
  SetRange(2);
  readout.ReadCaptureBuffer();
  for (const std::int16_t code : {std::int16_t{4}, std::int16_t{-1}}) {
    SCOPED_TRACE(code);
    messages.Clear();
    gRecCtrl->RangeFS(code);
    EXPECT_TRUE(readout.ReadCaptureBuffer());
    EXPECT_EQ(messages.Texts(), Words{"error decoding RangeFS sub ReadCaptureBuffer"});
    EXPECT_DOUBLE_EQ(LsbWeight, 0.0003052);
    EXPECT_DOUBLE_EQ(DataX(0), 1000 * 0.0003052);
  }
}

TEST_F(Readout, SupplyTemperatureAndCount) {
  sensor.Set(address::kRecInfo, 0x4008);
  readout.ReadCaptureBuffer();
  EXPECT_EQ(readoutView.recCount, "7");
  EXPECT_FLOAT_EQ(CaptSupply, 2703 * 0.0012207031F);
  EXPECT_EQ(readoutView.supply, "3.2996");
  EXPECT_EQ(CaptTemp, 1278.0F * -0.47F + 625.0F);
  EXPECT_EQ(readoutView.temp, "24.34");
  EXPECT_EQ(gRecInfo->FFTAverages().BFValue(), 8);
}

TEST_F(Readout, TheSampleRateOptionIsThatOfTheRecordKept) {
  for (const int option : {3, 0, 1, 2}) {
    sensor.Set(address::kRecInfo, option << 14);
    readout.ReadCaptureBuffer();
    EXPECT_EQ(Buff.sampleRateOption, option);
  }
  sensor.Set(address::kRecInfo, 3 << 14);
  sensor.UnplugAtRequest(100);
  EXPECT_FALSE(readout.ReadCaptureBuffer());
  EXPECT_EQ(Buff.sampleRateOption, 2);
}

TEST_F(Readout, ShowsWhatItDoesInOrder) {
  readoutView.dataLog = true;
  readout.ReadCaptureBuffer();
  EXPECT_EQ(
      journal.Entries(),
      (Words{"hourglass", "frequency shown", "clear plot", "default pointer", "frequency hidden",
             "frequency shown", "scale", "clear plot", "clear labels", "draw", "alarm X", "alarm Y",
             "alarm Z", "log colour", "log count 1", "log colour"}));
  EXPECT_EQ(files.contents.count("/program/Datalog_1.csv"), 1U);
}

TEST_F(Readout, NeitherPlotsNorLogsUnlessAsked) {
  readoutView.autoPlot = false;
  readout.ReadCaptureBuffer();
  EXPECT_EQ(journal.Count("draw"), 0);
  EXPECT_FALSE(plotView.frequencyShown);
  EXPECT_TRUE(files.contents.empty());
  EXPECT_EQ(DataLogIndex, 1);
}

TEST_F(Readout, LetsNoHandlerOfTheUserRun) {
  readoutView.dataLog = true;
  loop.At(std::chrono::nanoseconds{0}, [] { ADD_FAILURE() << "a handler ran"; });
  readout.ReadCaptureBuffer();
  EXPECT_EQ(loop.Yields(), 0);
  EXPECT_GE(loop.Paints(), 3);
}

TEST_F(Readout, ProgressRunsOverAllThreeAxes) {
  readout.ReadCaptureBuffer();
  EXPECT_EQ(readoutView.progressTotal, 3 * 256);
  ASSERT_GE(readoutView.progress.size(), 6U);
  EXPECT_EQ(readoutView.progress.front(), 0);
  EXPECT_LT(readoutView.progress.back(), 3 * 256);
  EXPECT_TRUE(std::is_sorted(readoutView.progress.begin(), readoutView.progress.end()));
  EXPECT_FALSE(readoutView.progressShown);
}

// Each access to the sensor is three requests: open, send, receive. The earlier record is one of
// another kind, so that every value of it would show a trace of the new one.
TEST_F(Readout, ASensorLostAtAnyTransferKeepsTheEarlierRecordWithItsConditions) {
  constexpr int kAccesses = 4 + 3 * 256 * 2;
  KeepARecord(RecordKind::Time);
  SetRange(3);
  readoutView.dataLog = true;
  const Kept earlier = TheRecord();
  for (int access = 1; access <= kAccesses; ++access) {
    SCOPED_TRACE(access);
    const int request = 3 * (access - 1) + 1 + access % 3;
    messages.Clear();
    journal.Clear();
    readout.Expect(RecordKind::Spectrum);
    sensor.UnplugAtRequest(request);
    ASSERT_FALSE(readout.ReadCaptureBuffer());
    ASSERT_EQ(TheRecord(), earlier);
    ASSERT_TRUE(RegSigned[row::Y_BUF]);
    ASSERT_EQ(messages.Texts(),
              Words{request % 3 == 0 ? "Error Reading SPI" : "Error Writing SPI"});
    ASSERT_FALSE(readoutView.hourglass || readoutView.progressShown || readout.Busy());
    ASSERT_EQ(readoutView.supply, "3.25");
    ASSERT_EQ(readoutView.temp, "30.5");
    ASSERT_EQ(journal.Count("draw"), 0);
    ASSERT_TRUE(files.contents.empty());
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
    sensor.ClearFrames();
  }
  readout.Expect(RecordKind::Spectrum);
  EXPECT_TRUE(readout.ReadCaptureBuffer());
  EXPECT_EQ(RawZ(255), 3255);
}

TEST_F(Readout, AShortAnswerAnywhereCountsAsALostSensor) {
  KeepARecord();
  const Kept earlier = TheRecord();
  for (int k = 1; k <= 4 + 3 * 256 * 2; k += k < 20 ? 1 : 37) {
    SCOPED_TRACE(k);
    messages.Clear();
    sensor.AnswerShort(k);
    EXPECT_FALSE(readout.ReadCaptureBuffer());
    EXPECT_EQ(TheRecord(), earlier);
    EXPECT_EQ(messages.Texts(), Words{"Error Reading SPI"});
    core.usb.SelectUsbAdapter();
  }
}

TEST_F(Readout, TheRecordTellsAllThatIsKnownOfIt) {
  SetRange(2);
  sensor.Set(address::kRecInfo, 0x9C08);
  sensor.Set(address::kStatus, 0x0180);
  sensor.Set(address::kAlmYStat, 0x1003);
  sensor.Set(address::kAlmZPeak, 1000);
  sensor.Set(address::kAlmZFreq, 42);
  Given(ProductNumber) = 31407;
  status.ReadStatus("cmdStart");
  const auto before = clock.UtcNow();
  readout.ReadCaptureBuffer();
  const Record& record = core.record.Get();
  EXPECT_EQ(record.kind, RecordKind::Spectrum);
  EXPECT_EQ(record.settings, SettingsFromWords(0x9C08, 0x0020));
  EXPECT_EQ(record.scaledRange, 2);
  EXPECT_DOUBLE_EQ(record.lsbWeight, 0.0003052);
  EXPECT_EQ(record.conditions.recordCount, 7);
  EXPECT_EQ(record.status, (StatusFlags{.word = 0x0180, .known = true}));
  EXPECT_EQ(record.alarms.Of(Axis::Y).status, 0x1003);
  EXPECT_TRUE(record.alarms.statusKnown);
  EXPECT_DOUBLE_EQ(record.alarms.PeakG(Axis::Z), 0.3052);
  EXPECT_EQ(record.alarms.Of(Axis::Z).peakBin, 42);
  EXPECT_EQ(record.time, before);
  EXPECT_EQ(record.sensor.product, 31407);
  EXPECT_EQ(record.sensor.interface, "Ezusb-0");
}

TEST_F(Readout, WithoutAutoPlotTheRecordClaimsNoAlarmState) {
  readoutView.autoPlot = false;
  readout.ReadCaptureBuffer();
  EXPECT_FALSE(core.record.Get().alarms.statusKnown);
}

TEST_F(Readout, WhatWasReadOffThePlotGoesWithThePlot) {
  readout.ReadCaptureBuffer();
  EXPECT_GE(plotView.cursorClears, 1);
}

TEST_F(Readout, ALogThatCannotBeWrittenLeavesTheWindowUsable) {
  readoutView.dataLog = true;
  files.failure = "No space left on device";
  EXPECT_THROW(readout.ReadCaptureBuffer(), RuntimeError);
  EXPECT_FALSE(readout.Busy());
  EXPECT_FALSE(readoutView.hourglass);
  EXPECT_EQ(RawX(0), 1000);
}

}  // namespace
}  // namespace kestrel
