// Alarm flags: latched, withdrawn, cleared, delayed.
// SPDX-License-Identifier: MIT
#include "simulator/alarm_fixture.h"

namespace kestrel {
namespace {

using namespace command;

constexpr std::uint16_t kXFault = 3 << 4 | 1;  // ALM_X_STAT

using AlarmState = AlarmTest;

TEST_F(AlarmState, WithoutLatchingFlagsFollowTheLatestRecord) {
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kFaultG);
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  CaptureTone(kWarningG);
  EXPECT_EQ(Status(), kReady | kXWarns);
  CaptureTone(kCalmG);
  EXPECT_EQ(Status(), kReady);
}

TEST_F(AlarmState, LatchedFlagsStayUntilTheStatusIsCleared) {
  Write(reg::kAlmCtrl, kXyz | kLatch);
  CaptureTone(kFaultG);
  CaptureTone(kCalmG);
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  EXPECT_EQ(Stat(0), 0) << "of the record there is nothing to report";
  Give(kClearStatus);
  EXPECT_EQ(Status(), 0);
  CaptureTone(kCalmG);
  EXPECT_EQ(Status(), kReady);
}

TEST_F(AlarmState, OtherFlagsAreNotTouchedByTheLatestRecord) {
  Write(reg::kAlmCtrl, kXyz);
  Write(reg::kStatus, 1 << 3 | 1 << 15);
  CaptureTone(kCalmG);
  EXPECT_EQ(Status(), kReady | 1 << 3 | 1 << 15);
}

TEST_F(AlarmState, ClearedFlagsComeBackWithTheNextRecordThatRaisesThem) {
  for (const std::uint16_t latch : {std::uint16_t{0}, kLatch}) {
    Write(reg::kAlmCtrl, kXyz | latch);
    CaptureTone(kFaultG);
    Give(kClearStatus);
    EXPECT_EQ(Status(), 0);
    EXPECT_EQ(Stat(0), kXFault) << "the record in the buffers is what it was";
    Capture();
    EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  }
}

TEST_F(AlarmState, ClearedFlagsDoNotComeBackWithATimeRecord) {
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kFaultG);
  Give(kClearStatus);
  SetMode(2);
  Capture();
  EXPECT_EQ(Status(), kReady);
}

// A program that clears the status before each capture must see a delayed alarm all the same.
TEST_F(AlarmState, DelayGoesOnWhenTheStatusIsCleared) {
  Write(reg::kAlmCtrl, kXyz | 2 * kDelayOf1);
  Shake(kFaultG);
  for (const int flags : {0, 0, kXWarns | kXFails}) {
    Give(kClearStatus);
    Capture();
    EXPECT_EQ(Status(), kReady | flags);
  }
}

TEST_F(AlarmState, OneCalmRecordStartsTheDelayAnew) {
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  for (const double level : {kWarningG, kCalmG, kWarningG}) CaptureTone(level);
  EXPECT_EQ(Status(), kReady);
  EXPECT_EQ(Stat(0), 0);
  CaptureTone(kWarningG);
  EXPECT_EQ(Status(), kReady | kXWarns);
  EXPECT_EQ(Stat(0), 1 << 4 | 1);
}

TEST_F(AlarmState, TimeRecordsAndStoppedCapturesDoNotInterruptTheRow) {
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  CaptureTone(kWarningG);
  SetMode(2);
  Capture();
  SetMode(0);
  StartStop();
  StopRequest();
  Give(kClearStatus);
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns);
}

TEST_F(AlarmState, NewBandsStartTheDelayAnew) {
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  CaptureTone(kWarningG);
  Write(reg::kAlmPntr, 2);
  Command(kSaveBand);
  Capture();
  EXPECT_EQ(Status(), kReady);
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns);
  Command(kClearBands);
  EXPECT_EQ(Status(), kReady | kXWarns) << "the record raised it while the bands were there";
  Capture();
  EXPECT_EQ(Status(), kReady);
}

TEST_F(AlarmState, SoftwareResetForgetsAlarmsAndDelay) {
  Write(reg::kAlmCtrl, kXyz | kLatch | kDelayOf1);
  Command(kFlashUpdate);
  CaptureTone(kFaultG);
  Capture();
  ASSERT_EQ(Stat(0), kXFault);
  Command(kSoftwareReset);
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Stat(0), 0);
  ASSERT_EQ(Read(reg::kAlmCtrl), kXyz | kLatch | kDelayOf1);
  SetMode(0);
  Capture();
  EXPECT_EQ(Status(), kReady) << "the first in the row";
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
}

TEST_F(AlarmState, FactoryResetLeavesNoAlarmsNoBandsAndNothingSwitchedOn) {
  Write(reg::kAlmCtrl, kXyz | kLatch);
  Command(kFlashUpdate);
  CaptureTone(kFaultG);
  Command(kFactoryReset);
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Stat(0), 0);
  EXPECT_EQ(Read(reg::kAlmCtrl), 0);
  SetMode(0);
  Write(reg::kAlmCtrl, kXyz);
  Capture();
  EXPECT_EQ(Status(), kReady);
}

TEST_F(AlarmState, SwitchingAnAxisOffTakesItsFlagsBackAtOnce) {
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kFaultG);
  Write(reg::kAlmCtrl, kXyz & ~kX);
  EXPECT_EQ(Status(), kReady);
  EXPECT_EQ(Stat(0), kXFault) << "the record in the buffers was judged so";
  Write(reg::kAlmCtrl, kXyz);
  EXPECT_EQ(Status(), kReady) << "on again from the next record on";
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  Write(reg::kAlmCtrl, 0);
  Capture();
  EXPECT_EQ(Stat(0), 0);
}

TEST_F(AlarmState, LatchedFlagsOfAnAxisThatIsOffStay) {
  Write(reg::kAlmCtrl, kXyz | kLatch);
  CaptureTone(kFaultG);
  Write(reg::kAlmCtrl, kLatch);
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
}

TEST_F(AlarmState, SwitchingLatchingOffReleasesWhatIsOnlyHeld) {
  Write(reg::kAlmCtrl, kXyz | kLatch);
  CaptureTone(kFaultG);
  CaptureTone(kWarningG);
  ASSERT_EQ(Status(), kReady | kXWarns | kXFails);
  Write(reg::kAlmCtrl, kXyz);
  EXPECT_EQ(Status(), kReady | kXWarns);
}

TEST_F(AlarmState, SwitchingLatchingOnHoldsWhatIsRaised) {
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kFaultG);
  Write(reg::kAlmCtrl, kXyz | kLatch);
  CaptureTone(kCalmG);
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
}

TEST_F(AlarmState, WritingTheSameControlWordAgainChangesNothing) {
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  CaptureTone(kFaultG);
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  EXPECT_EQ(Status(), kReady | kXWarns | kXFails);
}

TEST_F(AlarmState, AnotherDelayCountsFromTheNextRecordOnAndKeepsTheRow) {
  Write(reg::kAlmCtrl, kXyz | 15 * kDelayOf1);
  CaptureTone(kWarningG);
  Capture();
  Write(reg::kAlmCtrl, kXyz | 2 * kDelayOf1);
  EXPECT_EQ(Status(), kReady);
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns);
}

TEST_F(AlarmState, RetrievingARecordBringsItsAlarmRegistersAndNoFlags) {
  SetMode(0, 2);
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kFaultG);
  const auto peak = Read(reg::kXPeak);
  const auto bin = Read(reg::kXFreq);
  CaptureTone(kCalmG);
  ASSERT_NE(Read(reg::kXPeak), peak);

  Write(reg::kRecPntr, 0);
  Command(kRetrieveRecord);
  EXPECT_EQ(Stat(0), kXFault);
  EXPECT_EQ(Read(reg::kXPeak), peak);
  EXPECT_EQ(Read(reg::kXFreq), bin);
  EXPECT_EQ(Status(), kReady) << "the machine is calm";

  Write(reg::kRecPntr, 1);
  Command(kRetrieveRecord);
  EXPECT_EQ(Stat(0), 0);
  EXPECT_NE(Read(reg::kXPeak), 0);
  Write(reg::kRecPntr, 2);
  Command(kRetrieveRecord);
  EXPECT_EQ(Read(reg::kXPeak), 0) << "an empty slot has no peak";
}

TEST_F(AlarmState, RetrievingARecordDoesNotInterruptTheRow) {
  SetMode(0, 2);
  Write(reg::kAlmCtrl, kXyz | kDelayOf1);
  CaptureTone(kCalmG);
  CaptureTone(kWarningG);
  Command(kRetrieveRecord);
  Capture();
  EXPECT_EQ(Status(), kReady | kXWarns);
}

}  // namespace
}  // namespace kestrel
