// Captures and stored records as values, and what becomes of them when the sensor is lost.
// SPDX-License-Identifier: MIT
#include "station/recorder.h"

#include "record/capture_data.h"
#include "station_bench.h"

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;

class RecorderTest : public StationBench {};

TEST_F(RecorderTest, ConfigureWritesWhatIsAskedForAndTellsHowTheSensorRecords) {
  Recorder& records = Connected().Records();
  const auto before = records.Configure({});
  ASSERT_TRUE(before);
  EXPECT_EQ(*before->mode, 0);
  EXPECT_EQ(*before->averages, 8);
  RecordSetup change;
  change.range = 1;
  change.averages = 3;
  const auto after = records.Configure(change);
  ASSERT_TRUE(after);
  EXPECT_EQ(*after->range, 1);
  EXPECT_EQ(*after->averages, 3);
  EXPECT_EQ(*after->window, *before->window);
}

TEST_F(RecorderTest, ACaptureIsARecordWithEverythingThatBelongsToIt) {
  Recorder& records = Connected().Records();
  RecordSetup change;
  change.range = 2;
  change.averages = 2;
  ASSERT_TRUE(records.Configure(change));
  const auto before = clock.UtcNow();
  const auto captured = records.Capture();
  ASSERT_TRUE(captured);
  const Record& record = captured->record;
  EXPECT_FALSE(captured->interrupted);
  EXPECT_TRUE(record.IsNew());
  EXPECT_EQ(record.kind, RecordKind::Spectrum);
  EXPECT_EQ(record.settings.range, 2);
  EXPECT_EQ(record.settings.averages, 2);
  EXPECT_EQ(record.settings.recCtrl >> 4 & 3, 2);
  EXPECT_EQ(record.scaledRange, 2);
  EXPECT_NEAR(record.conditions.supplyV, 3.3, 0.01);
  EXPECT_TRUE(record.status.known);
  EXPECT_TRUE(record.status.IsSet(7));
  EXPECT_TRUE(record.alarms.statusKnown);
  EXPECT_GT(record.time, before + milliseconds{90});
  EXPECT_EQ(record.sensor.interface, "Ezusb-0");
  for (const Axis axis : kAxes)
    EXPECT_NEAR(std::ranges::max(record.Values(axis).subspan(1)), 0.6, 0.1);
}

TEST_F(RecorderTest, ATimeRecordHasItsOwnWidthAndSign) {
  Recorder& records = Connected().Records();
  RecordSetup change;
  change.mode = 2;
  ASSERT_TRUE(records.Configure(change));
  const auto captured = records.Capture();
  ASSERT_TRUE(captured);
  EXPECT_EQ(captured->record.kind, RecordKind::Time);
  EXPECT_EQ(captured->record.Points(), 512U);
  EXPECT_LT(std::ranges::min(captured->record.Values(Axis::X)), -0.3);
}

TEST_F(RecorderTest, ProgressIsToldInSecondsAndThenInPoints) {
  ASSERT_TRUE(Connected().Records().Capture());
  ASSERT_FALSE(told.empty());
  EXPECT_EQ(told.front().activity, "Capturing");
  EXPECT_EQ(told.front().total, 0);
  EXPECT_EQ(told.back().activity, "Reading");
  EXPECT_EQ(told.back().total, 3 * 256);
}

TEST_F(RecorderTest, AnInterruptStopsTheSensorAndTheRecordSaysThatItIsNotNew) {
  Recorder& records = Connected().Records();
  RecordSetup change;
  change.averages = 255;
  ASSERT_TRUE(records.Configure(change));
  const auto start = clock.Monotonic();
  InterruptAfter(milliseconds{500});
  const auto captured = records.Capture();
  ASSERT_TRUE(captured);
  EXPECT_TRUE(captured->interrupted);
  EXPECT_TRUE(captured->record.origin.stopped);
  EXPECT_FALSE(captured->record.IsNew());
  EXPECT_LT(clock.Monotonic() - start, milliseconds{1000});
  EXPECT_TRUE(captured->record.status.IsSet(4)) << "the sensor was told to stop";
  change.averages = 1;
  ASSERT_TRUE(records.Configure(change));
  const auto next = records.Capture();
  ASSERT_TRUE(next);
  EXPECT_FALSE(next->interrupted);
  EXPECT_TRUE(next->record.IsNew());
}

TEST_F(RecorderTest, AStoredRecordIsScaledByItsOwnRangeWhateverIsSetNow) {
  Station& station = Connected();
  ASSERT_TRUE(station.WriteRegister("REC_CTRL", 0x1038));  // 70 g, every record kept
  const auto captured = station.Records().Capture();
  ASSERT_TRUE(captured);
  RecordSetup change;
  change.range = 0;
  ASSERT_TRUE(station.Records().Configure(change));
  const auto stored = station.Records().ReadStored(0, RecordKind::Spectrum);
  ASSERT_TRUE(stored);
  EXPECT_EQ(stored->origin.stored, 0);
  EXPECT_EQ(stored->scaledRange, 3);
  EXPECT_EQ(stored->axes, captured->record.axes);
  EXPECT_EQ(RangeSetting, 0) << "the mandated name is of the range that is set";
}

TEST_F(RecorderTest, AReservedRecordModeIsRefusedBeforeAnythingIsSent) {
  Station& station = Connected();
  ASSERT_TRUE(station.WriteRegister("REC_CTRL", 0x1033));
  ASSERT_TRUE(station.Records().Configure({}));
  const auto captured = station.Records().Capture();
  ASSERT_FALSE(captured);
  EXPECT_EQ(captured.Why().kind, FailureKind::Refused);
  EXPECT_THAT(captured.Why().text, HasSubstr("record mode is 3"));
}

TEST_F(RecorderTest, ADataFileThatCannotBeWrittenIsAFailureWithPathAndReason) {
  Recorder& records = Connected().Records();
  ASSERT_TRUE(records.Capture());
  const auto written = records.WriteDataFile();
  ASSERT_TRUE(written);
  EXPECT_EQ(*written, "/program/Datalog_1.csv");
  files.failure = "no space left";
  const auto failed = records.WriteDataFile();
  ASSERT_FALSE(failed);
  EXPECT_EQ(failed.Why().kind, FailureKind::Refused);
  EXPECT_THAT(failed.Why().text, HasSubstr("Datalog_2.csv: no space left"));
}

// Lost at the k-th request, for a spread of k until the capture gets through.
TEST_F(RecorderTest, ASensorLostOnTheWayLeavesTheEarlierRecordWhole) {
  Recorder& records = Connected().Records();
  RecordSetup change;
  change.averages = 1;
  ASSERT_TRUE(records.Configure(change));
  ASSERT_TRUE(records.Capture());
  const std::array earlier{DataX, DataY, DataZ};
  const float supply = CaptSupply;
  bool through = false;
  for (int k = 1; !through; k += 1 + k / 4) {
    usb.FailFrom(k);
    const auto captured = records.Capture();
    through = static_cast<bool>(captured);
    if (through) break;
    ASSERT_EQ(captured.Why().kind, FailureKind::NoSensor) << k;
    ASSERT_THAT(captured.Why().text, Not(testing::IsEmpty())) << k;
    ASSERT_EQ((std::array{DataX, DataY, DataZ}), earlier) << k;
    ASSERT_EQ(CaptSupply, supply) << k;
    usb.FailFrom(1 << 30);
    ASSERT_TRUE(TheStation().Connect()) << k;
    ASSERT_LT(k, 100000);
  }
}

// At each request before the waiting: what the sensor has kept from before would pass for this
// one's.
TEST_F(RecorderTest, ACaptureThatCannotBeStartedIsNotWaitedFor) {
  Recorder& records = Connected().Records();
  ASSERT_TRUE(records.Configure({}));
  int toStart = 0;
  usb.FailFrom(1 << 30);  // counts
  usb.OnBlock([&](auto) {
    if (told.empty()) toStart = usb.Requests();
  });
  ASSERT_TRUE(records.Capture());
  usb.OnBlock({});
  ASSERT_GT(toStart, 4);
  for (int request = 1; request <= toStart; ++request) {
    SCOPED_TRACE(request);
    told.clear();
    usb.FaultAt(request, UsbFault::Absent);
    ASSERT_FALSE(records.Capture());
    ASSERT_THAT(told, testing::IsEmpty());
    usb.Mend();
    ASSERT_TRUE(TheStation().Connect());
  }
}

}  // namespace
}  // namespace kestrel
