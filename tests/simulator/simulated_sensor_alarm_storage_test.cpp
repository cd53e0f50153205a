// Which records the alarm trigger stores.
// SPDX-License-Identifier: MIT
#include "simulator/alarm_fixture.h"

namespace kestrel {
namespace {

using namespace command;

constexpr unsigned kOfAlarms = 1;

class AlarmStorage : public AlarmTest {
 protected:
  // A record a second.
  void StartSeries(unsigned storage = kOfAlarms) {
    SetMode(1, storage);
    Write(reg::kRecPrd, 1);
    StartStop();
    clock.Advance(500ms);
  }
  std::uint16_t Stored() { return Read(reg::kRecFlshCnt); }
  unsigned StampOf(std::uint16_t slot) {
    Write(reg::kRecPntr, slot);
    Command(kRetrieveRecord);
    return Read(reg::kTimeHigh) * 65536U + Read(reg::kTimeLow);
  }
};

TEST_F(AlarmStorage, StoresExactlyTheRecordsThatRaisedAnAlarm) {
  Write(reg::kAlmCtrl, kXyz);
  SetMode(0, kOfAlarms);
  const double levels[] = {kCalmG, kWarningG, kCalmG, kFaultG, kFaultG, kCalmG};
  const std::uint16_t stored[] = {0, 1, 1, 2, 3, 3};
  for (unsigned i = 0; i < 6; ++i) {
    CaptureTone(levels[i]);
    EXPECT_EQ(Stored(), stored[i]) << i;
  }
  EXPECT_EQ(Read(reg::kRecCnt), 6);
  Write(reg::kRecPntr, 0);
  Command(kRetrieveRecord);
  EXPECT_NEAR(Spectrum(0)[24] * kMagnitudeLsbG[0], kWarningG, 0.001);
  EXPECT_EQ(Stat(0), 1 << 4 | 1);
}

TEST_F(AlarmStorage, FlagThatIsMerelyLatchedStoresNothing) {
  Write(reg::kAlmCtrl, kXyz | kLatch);
  SetMode(0, kOfAlarms);
  CaptureTone(kFaultG);
  CaptureTone(kCalmG);
  EXPECT_EQ(Stored(), 1);
}

TEST_F(AlarmStorage, AlarmHeldBackStoresNothing) {
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  SetMode(0, kOfAlarms);
  CaptureTone(kFaultG);
  EXPECT_EQ(Stored(), 0);
  Capture();
  EXPECT_EQ(Stored(), 1);
}

TEST_F(AlarmStorage, TimeRecordIsNotStoredForTheAlarmOfASpectrumBeforeIt) {
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kFaultG);
  SetMode(2, kOfAlarms);
  Capture();
  EXPECT_EQ(Stored(), 0);
}

TEST_F(AlarmStorage, SystemAlarmStoresTheRecordItWasMeasuredWith) {
  Write(reg::kAlmSMag, 2600);  // 3.17 V
  Write(reg::kAlmCtrl, kSystemOn);
  for (const unsigned mode : {0U, 2U}) {
    SetMode(mode, kOfAlarms);
    sensor.SetSupply(3.3);
    Capture();
    const auto before = Stored();
    sensor.SetSupply(3.16);
    Capture();
    EXPECT_EQ(Stored(), before + 1) << mode;
  }
}

TEST_F(AlarmStorage, SeriesThatNobodyLooksAtLosesNoAlarm) {
  Write(reg::kAlmCtrl, kXyz);
  StartSeries();  // records at 0 s, 1 s, 2 s, ...
  for (const double level : {kWarningG, kCalmG, kFaultG}) {
    clock.Advance(20min);  // 1200 records, with no frame in between
    Shake(level);
    clock.Advance(2s);
    Shake(kCalmG);
  }
  clock.Advance(20min);
  EXPECT_EQ(Read(reg::kRecCnt), 1 + 4 * 1200 + 6);
  EXPECT_EQ(Stored(), 4);
  StopRequest();
  EXPECT_EQ(StampOf(0), 1201U);
  EXPECT_EQ(StampOf(1), 1202U);
  EXPECT_EQ(StampOf(2), 2 * 1202U + 1201U);
  EXPECT_EQ(StampOf(3), 2 * 1202U + 1202U);
}

// Two tones that beat: the sum exceeds the warning for a few seconds around 1000 s only.
TEST_F(AlarmStorage, SeriesThatNobodyLooksAtLosesNoLatchedAlarm) {
  Scenario scenario = SingleTone(0.0, 0.0);
  const double hz = BinHz(24, 0);
  scenario.axes[0].tones = {{hz, 0.0501}, {hz + 0.0005, 0.0501, 3.14159265}};
  sensor.SetScenario(scenario);
  Write(reg::kAlmCtrl, kXyz | kLatch);
  StartSeries(0);
  clock.Advance(1200s);
  EXPECT_EQ(Status(), kReady | kXWarns);
  EXPECT_EQ(Stat(0), 0) << "the newest record is calm";
}

TEST_F(AlarmStorage, DelayIsCountedInASeriesThatNobodyLooksAt) {
  for (const unsigned storage : {0U, kOfAlarms}) {
    for (const std::uint16_t latch : {std::uint16_t{0}, kLatch}) {
      Write(reg::kAlmCtrl, kXyz | latch | 15 * kDelayOf1);
      Shake(kCalmG);
      StartSeries(storage);
      Shake(kWarningG);
      clock.Advance(15s);
      EXPECT_EQ(Status(), kReady) << "fifteen in a row";
      Shake(kCalmG);
      clock.Advance(1s);
      Shake(kWarningG);
      clock.Advance(24h);
      EXPECT_EQ(Status(), kReady | kXWarns) << storage << ", " << latch;
      StopRequest();
      Give(kClearStatus);
    }
  }
}

// A vibration that grows through the thresholds in the long pause.
TEST_F(AlarmStorage, AlarmThatComesInAMonthWithoutAFrameIsFoundInTime) {
  constexpr unsigned kRecords = 30 * 86400;
  Scenario scenario = SingleTone(0.0, 0.0);
  // Reaches the warning after 100000 s, the fault after 200000 s.
  scenario.axes[0].tones = {{BinHz(24, 0), 0.0, 0.0, 1e-6, 1.0}};
  sensor.SetScenario(scenario);
  Write(reg::kAlmCtrl, kXyz);
  StartSeries();
  const unsigned begun = static_cast<unsigned>(clock.Monotonic() / 1s);
  clock.Advance(30 * 24h);
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  EXPECT_EQ(Read(reg::kRecCnt), (kRecords + 1) % 65536);
  EXPECT_EQ(Stored(), 16);
  StopRequest();
  const unsigned first = StampOf(0) - begun;
  EXPECT_GE(first, 99990U) << "the code is rounded";
  EXPECT_LE(first, 100050U) << "one of 2048 of the time";
}

TEST_F(AlarmStorage, MonthWithoutAFrameHasItsFirstAlarmsInFlash) {
  Write(reg::kAlmCtrl, kXyz | kLatch);
  Shake(kFaultG);
  StartSeries();
  const unsigned begun = static_cast<unsigned>(clock.Monotonic() / 1s);
  clock.Advance(30 * 24h);
  EXPECT_EQ(Stored(), 16);
  StopRequest();
  for (std::uint16_t slot = 0; slot < 16; ++slot) EXPECT_EQ(StampOf(slot), begun + slot);
}

}  // namespace
}  // namespace kestrel
