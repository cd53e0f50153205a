// DIO1 and DIO2 as outputs, inputs, alarm lines, triggers and busy signs.
// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "simulator/alarm_fixture.h"

namespace kestrel {
namespace {

using namespace command;

// Codes of the function fields of DIO_CTRL.
constexpr unsigned kGpio = 0;
constexpr unsigned kAlarm = 1;
constexpr unsigned kTrigger = 2;
constexpr unsigned kBusy = 3;

class Pins : public AlarmTest {
 protected:
  // Both lines alike.
  void SetFunction(unsigned function, bool activeHigh = true) {
    SetFunctions(function, function, activeHigh);
  }
  void SetFunctions(unsigned ofLine1, unsigned ofLine2, bool activeHigh = true) {
    Write(reg::kDioCtrl,
          static_cast<std::uint16_t>((activeHigh ? 3U : 0U) | ofLine1 << 2U | ofLine2 << 4U));
  }
  // Bit 0 is line 1, bit 1 line 2.
  unsigned Levels() { return (sensor.PinLevel(1) ? 1U : 0U) | (sensor.PinLevel(2) ? 2U : 0U); }
};

TEST_F(Pins, GeneralPurposeOutputsHaveTheLevelsThatAreSetWhateverThePolarity) {
  for (const bool activeHigh : {false, true}) {
    SetFunction(kGpio, activeHigh);
    for (std::uint16_t levels = 0; levels < 4; ++levels) {
      Write(reg::kGpioCtrl, static_cast<std::uint16_t>(unsigned{levels} << 8U | 3U));
      EXPECT_EQ(Levels(), levels);
      EXPECT_EQ(Read(reg::kGpioCtrl), levels << 8 | 3);
    }
  }
}

TEST_F(Pins, OutputsDoNotCareForWhatIsDrivenFromOutside) {
  SetFunction(kGpio);
  Write(reg::kGpioCtrl, 0x0003);
  sensor.DrivePin(1, true);
  sensor.DrivePin(2, true);
  EXPECT_EQ(Levels(), 0U);
  EXPECT_EQ(Read(reg::kGpioCtrl), 0x0003);
}

TEST_F(Pins, LevelOfAnInputIsReadInGpioCtrl) {
  SetFunction(kGpio);
  Write(reg::kGpioCtrl, 0);
  EXPECT_EQ(Read(reg::kGpioCtrl), 0);
  sensor.DrivePin(1, true);
  EXPECT_EQ(Levels(), 1U);
  EXPECT_EQ(Read(reg::kGpioCtrl), 1 << 8);
  EXPECT_EQ(Read(reg::kGpioCtrl + 1), 1 << 8);
  sensor.DrivePin(2, true);
  sensor.DrivePin(1, false);
  EXPECT_EQ(Read(reg::kGpioCtrl), 1 << 9);
}

TEST_F(Pins, OutputLevelWrittenToAnInputShowsWhenItBecomesAnOutput) {
  SetFunction(kGpio);
  Write(reg::kGpioCtrl, 1 << 8);
  EXPECT_EQ(Levels(), 0U);
  EXPECT_EQ(Read(reg::kGpioCtrl), 0);
  WriteByte(reg::kGpioCtrl, 3);
  EXPECT_EQ(Levels(), 1U);
  EXPECT_EQ(Read(reg::kGpioCtrl), 1 << 8 | 3);
}

TEST_F(Pins, OutputLevelSavedToFlashIsTheOneWrittenNotTheOneDriven) {
  SetFunction(kGpio);
  Write(reg::kGpioCtrl, 1 << 8);
  sensor.DrivePin(2, true);
  Command(kFlashUpdate);
  Command(kSoftwareReset);
  WriteByte(reg::kGpioCtrl, 3);
  EXPECT_EQ(Levels(), 1U);
}

TEST_F(Pins, LevelBitsOfLinesWithAnotherFunctionReadAsWritten) {
  for (const unsigned function : {kAlarm, kTrigger, kBusy}) {
    SetFunction(function);
    Write(reg::kGpioCtrl, 0);
    sensor.DrivePin(1, true);
    EXPECT_EQ(Read(reg::kGpioCtrl), 0) << function;
    sensor.DrivePin(1, false);
    Write(reg::kGpioCtrl, 3 << 8);
    EXPECT_EQ(Read(reg::kGpioCtrl), 3 << 8) << function;
  }
}

TEST_F(Pins, ALineThatTriggersCapturesHasTheLevelDrivenFromOutside) {
  SetFunction(kTrigger);
  EXPECT_EQ(Levels(), 0U);
  sensor.DrivePin(2, true);
  EXPECT_EQ(Levels(), 2U);
  sensor.DrivePin(2, false);
  EXPECT_EQ(Levels(), 0U);
}

TEST_F(Pins, FromTheFactoryLine1ShowsBusyAndLine2IsAnInput) {
  EXPECT_EQ(Levels(), 0U);
  sensor.DrivePin(2, true);
  EXPECT_EQ(Levels(), 2U);
  StartStop();
  EXPECT_EQ(Levels(), 3U);
}

TEST_F(Pins, BusyIsActiveDuringACaptureOrACommand) {
  for (const bool activeHigh : {false, true}) {
    SetFunction(kBusy, activeHigh);
    const unsigned active = activeHigh ? 3U : 0U;
    EXPECT_EQ(Levels(), 3U - active);
    StartStop();
    EXPECT_EQ(Levels(), active);
    clock.Advance(45ms);
    EXPECT_EQ(Levels(), active);
    clock.Advance(1ms);
    EXPECT_EQ(Levels(), 3U - active);
    Give(kAutonull);
    EXPECT_EQ(Levels(), active);
    clock.Advance(170ms);
    EXPECT_EQ(Levels(), 3U - active);
  }
}

TEST_F(Pins, BusyIsInactiveInThePauseOfASeries) {
  SetFunction(kBusy);
  SetMode(1);
  Write(reg::kRecPrd, 1);
  StartStop();
  clock.Advance(500ms);
  EXPECT_EQ(Levels(), 0U);
  clock.Advance(520ms);
  EXPECT_EQ(Levels(), 3U);
}

TEST_F(Pins, AlarmLinesShowAnyAlarmUnlessAlarm1AndAlarm2AreParted) {
  SetFunction(kAlarm);
  Write(reg::kAlmCtrl, kXyz);
  CaptureTone(kCalmG);
  EXPECT_EQ(Levels(), 0U);
  CaptureTone(kWarningG);
  EXPECT_EQ(Levels(), 3U);

  Write(reg::kAlmCtrl, kXyz | kParts);
  EXPECT_EQ(Levels(), 1U);
  CaptureTone(kFaultG);
  EXPECT_EQ(Levels(), 3U);
  CaptureTone(kCalmG);
  EXPECT_EQ(Levels(), 0U);
}

TEST_F(Pins, PartedLinesShowTheAlarmsOfEveryAxisAndNotTheSystemAlarm) {
  SetFunction(kAlarm);
  const unsigned levels[] = {1, 1, 1, 2, 2, 2, 0};  // for STATUS bits 8 to 14
  for (unsigned bit = 0; bit < 7; ++bit) {
    Write(reg::kAlmCtrl, kParts | kLatch);
    Write(reg::kStatus, static_cast<std::uint16_t>(0x100U << bit));
    EXPECT_EQ(Levels(), levels[bit]) << bit;
    Write(reg::kAlmCtrl, kLatch);
    EXPECT_EQ(Levels(), 3U) << bit;
  }
  Write(reg::kStatus, 0x80FF);
  EXPECT_EQ(Levels(), 0U) << "the other flags are not alarms";
}

TEST_F(Pins, AlarmLineCanBeActiveLow) {
  SetFunction(kAlarm, false);
  Write(reg::kAlmCtrl, kXyz | kParts);
  CaptureTone(kWarningG);
  EXPECT_EQ(Levels(), 2U);
}

TEST_F(Pins, AlarmLineIsHeldByLatchingAndReleasedByClearing) {
  SetFunction(kAlarm);
  Write(reg::kAlmCtrl, kXyz | kLatch);
  CaptureTone(kFaultG);
  CaptureTone(kCalmG);
  EXPECT_EQ(Levels(), 3U);
  Give(kClearStatus);
  EXPECT_EQ(Levels(), 0U);
}

TEST_F(Pins, LinesHaveFunctionAndPolarityOfTheirOwn) {
  Write(reg::kDioCtrl, kAlarm << 2 | kBusy << 4 | 2);  // line 1 active low, line 2 active high
  EXPECT_EQ(Levels(), 1U);
  Write(reg::kDioCtrl, kBusy << 2 | kAlarm << 4 | 1);
  EXPECT_EQ(Levels(), 2U);
}

TEST_F(Pins, EdgeToTheActiveLevelOfATriggerStartsACapture) {
  for (const int line : {1, 2}) {
    for (const bool activeHigh : {false, true}) {
      SetFunctions(line == 1 ? kTrigger : kGpio, line == 2 ? kTrigger : kGpio, activeHigh);
      sensor.DrivePin(line, !activeHigh);
      ASSERT_FALSE(sensor.IsCapturing());
      sensor.DrivePin(line, activeHigh);
      EXPECT_TRUE(sensor.IsCapturing()) << line << activeHigh;
      EXPECT_FALSE(DataReady());
      clock.Advance(50ms);
      EXPECT_TRUE(DataReady());

      sensor.DrivePin(line, activeHigh);
      EXPECT_FALSE(sensor.IsCapturing()) << "no edge";
      sensor.DrivePin(line, !activeHigh);
      EXPECT_FALSE(sensor.IsCapturing()) << "the other edge";
    }
  }
  EXPECT_EQ(Read(reg::kRecCnt), 4);
}

TEST_F(Pins, EdgeOnALineWithAnotherFunctionStartsNothing) {
  for (const unsigned function : {kGpio, kAlarm, kBusy}) {
    SetFunction(function);
    for (const bool high : {true, false}) {
      sensor.DrivePin(1, high);
      sensor.DrivePin(2, high);
      EXPECT_FALSE(sensor.IsCapturing()) << function;
    }
  }
}

TEST_F(Pins, EdgeDuringACaptureOrCommandIsIgnored) {
  SetFunction(kTrigger);
  StartStop();
  sensor.DrivePin(1, true);
  EXPECT_TRUE(sensor.IsCapturing());
  clock.Advance(50ms);
  EXPECT_TRUE(DataReady());
  EXPECT_EQ(Read(reg::kRecCnt), 1);

  Give(kAutonull);
  sensor.DrivePin(2, true);
  clock.Advance(1s);
  EXPECT_EQ(Read(reg::kRecCnt), 1);
}

TEST_F(Pins, EdgeStartsASeriesAndBeginsItAnewInThePause) {
  SetFunction(kTrigger);
  SetMode(1);
  Write(reg::kRecPrd, 1);
  sensor.DrivePin(1, true);
  EXPECT_TRUE(sensor.IsInSeries());
  clock.Advance(500ms);
  sensor.DrivePin(2, true);
  EXPECT_TRUE(sensor.IsCapturing());
  clock.Advance(999ms);
  EXPECT_EQ(Read(reg::kRecCnt), 2) << "the period runs from the new start";
  clock.Advance(50ms);
  EXPECT_EQ(Read(reg::kRecCnt), 3);
}

TEST_F(Pins, ChangeOfFunctionOrPolarityIsNoEdge) {
  SetFunction(kGpio);
  sensor.DrivePin(1, true);
  SetFunction(kTrigger, false);
  SetFunction(kTrigger, true);
  EXPECT_FALSE(sensor.IsCapturing());
}

TEST_F(Pins, SleepingSensorIsNotTriggered) {
  SetFunction(kTrigger);
  Command(kPowerDown);
  sensor.DrivePin(1, true);
  EXPECT_TRUE(sensor.IsAsleep());
  EXPECT_FALSE(sensor.IsCapturing());
}

TEST_F(Pins, ThereAreTwo) {
  EXPECT_THROW(static_cast<void>(sensor.PinLevel(0)), std::out_of_range);
  EXPECT_THROW(sensor.DrivePin(3, true), std::out_of_range);
}

}  // namespace
}  // namespace kestrel
