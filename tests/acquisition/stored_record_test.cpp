// Records out of the sensor's flash memory.
// SPDX-License-Identifier: MIT
// Records out of the sensor's flash memory.

#include "acquisition/capture_cycle.h"
#include "device/rec_ctrl.h"
#include "support/capture_bench.h"
#include "support/given.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr int kRetrieveFrame = 0xBF20;
constexpr auto kAccessGap = 100us;  // after each register access
constexpr int kRequestsPerAccess = 3;

class StoredRecord : public CaptureBench {
 protected:
  static Frames RetrieveFrames(int record) {
    return WriteFrames(address::kRecPntr, record) + Frames{kRetrieveFrame};
  }
};

TEST_F(StoredRecord, IsPointedAtRetrievedAndReadOut) {
  for (const int record : {0, 5, 15}) {
    SCOPED_TRACE(record);
    cycle.cmdGetRecord_Click(record);
    EXPECT_EQ(TakeFrames(), RetrieveFrames(record) + ReadoutFrames(255) + AlarmStatusFrames());
    EXPECT_EQ(RawZ(255), 3255);
  }
  EXPECT_TRUE(messages.Texts().empty());
  EXPECT_TRUE(WindowIsIdle());
}

TEST_F(StoredRecord, TheSensorHasTimeToBringItIntoTheBuffers) {
  cycle.cmdGetRecord_Click(3);
  const auto command = sensor.Times(kRetrieveFrame).at(0);
  EXPECT_EQ(sensor.Times(address::kRecCnt * 256).at(0) - command, kAccessGap + 51ms);
}

TEST_F(StoredRecord, HasTheWidthAndSignOfTheLastCapture) {
  readout.Expect(RecordKind::Time);
  sensor.OnRead(address::kXBuf, [] { return 0xFFFF; });
  cycle.cmdGetRecord_Click(1);
  EXPECT_EQ(TakeFrames(), RetrieveFrames(1) + ReadoutFrames(511) + AlarmStatusFrames());
  EXPECT_EQ(RawX(511), -1);
  EXPECT_EQ(plotView.unit, "sample");
}

TEST_F(StoredRecord, KnowsItsNumberAndACaptureHasNone) {
  cycle.cmdGetRecord_Click(9);
  EXPECT_EQ(core.record.Get().origin.stored, 9);
  cycle.cmdReadBuffer_Click();
  EXPECT_EQ(core.record.Get().origin.stored, std::nullopt);
}

TEST_F(StoredRecord, ItsPeaksAreScaledByItsOwnRange) {
  sensor.Set(address::kRecCtrl, 0x0010);
  gRecCtrl->ReadRecCtrl();
  sensor.Set(address::kRecInfo, 0x0C00);
  cycle.cmdGetRecord_Click(1);
  sensor.Set(address::kAlmXPeak, 1000);
  status.ReadStatus("CmdReadStatus");
  EXPECT_EQ(alarmView.peak[0], " 1.192");
}

TEST_F(StoredRecord, IsLoggedLikeAnyRecordThatIsRead) {
  readoutView.dataLog = true;
  cycle.cmdGetRecord_Click(1);
  EXPECT_EQ(files.contents.count("/program/Datalog_1.csv"), 1U);
}

TEST_F(StoredRecord, WithoutAnInterfaceTheUserIsAskedForOne) {
  core.registers.Use(kNoInterface);
  cycle.cmdGetRecord_Click(1);
  EXPECT_EQ(messages.Texts(), Words{"Please select an interface before taking data"});
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(StoredRecord, ALostAdapterIsSearchedAndTheControlRegisterReadAgain) {
  sensor.Set(address::kRecCtrl, 0x0010);
  Given(UsbPresent) = false;
  cycle.cmdGetRecord_Click(2);
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecCtrl) + RetrieveFrames(2) + ReadoutFrames(255) +
                              AlarmStatusFrames());
  EXPECT_EQ(gRecCtrl->RangeFS(), 1);
  EXPECT_TRUE(messages.Texts().empty());
}

// Otherwise what the buffers happen to hold would show as the stored record.
TEST_F(StoredRecord, ASensorLostBeforeItIsRetrievedGivesOneMessageAndReadsNothing) {
  KeepARecord();
  const Kept earlier = TheRecord();
  for (int request = 1; request <= 2 * kRequestsPerAccess; ++request) {
    SCOPED_TRACE(request);
    messages.Clear();
    sensor.UnplugAtRequest(request);
    cycle.cmdGetRecord_Click(4);
    EXPECT_EQ(messages.Texts(),
              Words{request % kRequestsPerAccess == 0 ? "Error Reading SPI" : "Error Writing SPI"});
    EXPECT_EQ(InterfaceType, kUsbAdapter) << "the next press searches it";
    EXPECT_EQ(sensor.Count(address::kRecCnt * 256), 0);
    EXPECT_EQ(TheRecord(), earlier);
    EXPECT_TRUE(WindowIsIdle());
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

TEST_F(StoredRecord, ASensorLostDuringItsReadOutLeavesTheEarlierRecord) {
  KeepARecord();
  const Kept earlier = TheRecord();
  sensor.UnplugAtRequest(500);
  cycle.cmdGetRecord_Click(4);
  EXPECT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(TheRecord(), earlier);
  EXPECT_EQ(plotView.lines.size(), 3U * 255U);
  EXPECT_TRUE(WindowIsIdle());
}

}  // namespace
}  // namespace kestrel
