// The digital lines' words shown and written.
// SPDX-License-Identifier: MIT
#include "device/dio_gpio.h"

#include "support/given.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;
using Waits = std::vector<std::chrono::nanoseconds>;

constexpr auto kAccessGap = 100us;  // after each register access
constexpr std::array kFunctions{DioFunction::Gpio, DioFunction::Alarm, DioFunction::CaptureTrigger,
                                DioFunction::Busy};
const Frames kRead = ReadFrames(address::kDioCtrl) + ReadFrames(address::kGpioCtrl);
constexpr int kRequestsPerEdit = 9;  // a write and two reads, three each

// A window whose options report every change, the program's own ones as well.
class Dio : public RegisterBench, public DioGpioView {
 protected:
  void ShowControls(const DioControls& controls) override {
    shown = controls;
    logic.DioChanged();
    logic.GpioChanged();
  }
  DioControls Controls() override { return shown; }

  void Read(int dio, int gpio) {
    sensor.Set(address::kDioCtrl, dio);
    sensor.Set(address::kGpioCtrl, gpio);
    logic.ReadDIOGPIO();
    TakeFrames();
  }
  DioLine& Line(std::size_t line) { return shown.lines.at(line); }
  void Choose(std::size_t line, int function, bool high) {
    Line(line).function = kFunctions.at(static_cast<std::size_t>(function));
    Line(line).activeHigh = high;
  }

  int DioWordAfter() {
    logic.DioChanged();
    EXPECT_EQ(TakeFrames(), WriteFrames(address::kDioCtrl, sensor.Word(address::kDioCtrl)) + kRead);
    return sensor.Word(address::kDioCtrl);
  }
  int GpioWordAfter() {
    logic.GpioChanged();
    EXPECT_EQ(TakeFrames(),
              WriteFrames(address::kGpioCtrl, sensor.Word(address::kGpioCtrl)) + kRead);
    return sensor.Word(address::kGpioCtrl);
  }

  DioControls shown;
  DioGpio logic{core.registers, core.delay, *this};
};

TEST_F(Dio, EveryWordIsShownWithoutBeingWritten) {
  for (int word = 0; word <= 0xFF; ++word) {
    sensor.Set(address::kDioCtrl, word);
    sensor.Set(address::kGpioCtrl, word * 0x101);
    logic.ReadDIOGPIO();
    ASSERT_EQ(TakeFrames(), kRead) << std::hex << word;
    EXPECT_EQ(Line(0).function, kFunctions.at(static_cast<std::size_t>(word >> 2 & 3)));
    EXPECT_EQ(Line(1).function, kFunctions.at(static_cast<std::size_t>(word >> 4 & 3)));
  }
}

TEST_F(Dio, ActiveHighIsSelectedWhateverTheSensorHolds) {
  for (int word = 0; word < 4; ++word) {
    Read(word, 0);
    EXPECT_EQ(Line(0).activeHigh, std::optional<bool>(true)) << word;
    EXPECT_EQ(Line(1).activeHigh, std::optional<bool>(true)) << word;
    EXPECT_EQ(Line(0).polarityBit, std::optional<bool>((word & 1) != 0)) << word;
    EXPECT_EQ(Line(1).polarityBit, std::optional<bool>((word & 2) != 0)) << word;
  }
}

TEST_F(Dio, TheWholeWordsAreShown) {
  Read(0xA5C3, 0xFF0F);
  EXPECT_EQ(shown.dioCtrl, "A5C3");
  EXPECT_EQ(shown.gpioCtrl, "FF0F");
  Read(0, 0);
  EXPECT_EQ(shown.dioCtrl, "0");
  EXPECT_EQ(shown.gpioCtrl, "0");
}

TEST_F(Dio, GeneralPurposeLinesShowDirectionAndLevel) {
  Read(0x0000, 0x0201);
  EXPECT_EQ(Line(0).output, std::optional<bool>(true));
  EXPECT_EQ(Line(0).high, std::optional<bool>(false));
  EXPECT_EQ(Line(1).output, std::optional<bool>(false));
  EXPECT_EQ(Line(1).high, std::optional<bool>(true));
  Read(0x0000, 0x0102);
  EXPECT_EQ(Line(0).output, std::optional<bool>(false));
  EXPECT_EQ(Line(0).high, std::optional<bool>(true));
  EXPECT_EQ(Line(1).output, std::optional<bool>(true));
  EXPECT_EQ(Line(1).high, std::optional<bool>(false));
}

TEST_F(Dio, LinesWithAnotherFunctionShowNeitherDirectionNorLevel) {
  Read(0x0014, 0x0303);
  for (const DioLine& line : shown.lines) {
    EXPECT_EQ(line.function, DioFunction::Alarm);
    EXPECT_FALSE(line.output.has_value());
    EXPECT_FALSE(line.high.has_value());
  }
}

TEST_F(Dio, FunctionAndPolarityOfBothLinesAreWrittenTogether) {
  Read(0, 0);
  for (int word = 0; word < 0x40; ++word) {
    Choose(0, word >> 2 & 3, (word & 1) != 0);
    Choose(1, word >> 4 & 3, (word & 2) != 0);
    EXPECT_EQ(DioWordAfter(), word);
  }
}

TEST_F(Dio, WhatIsReadIsWrittenBackWithPolarityHigh) {
  for (int word = 0; word <= 0xFF; ++word) {
    Read(word, 0);
    EXPECT_EQ(DioWordAfter(), (word & 0x3C) | 3) << std::hex << word;
  }
}

TEST_F(Dio, ActiveLowIsWrittenAndShownAsHighAgain) {
  Read(0x0003, 0);
  Line(0).activeHigh = false;
  EXPECT_EQ(DioWordAfter(), 0x0002);
  EXPECT_EQ(Line(0).activeHigh, std::optional<bool>(true));
  EXPECT_EQ(Line(0).polarityBit, std::optional<bool>(false));
  EXPECT_EQ(DioWordAfter(), 0x0003) << "the option that is shown is what is written next";
}

TEST_F(Dio, EveryCombinationOfDirectionsAndLevelsIsWritten) {
  Read(0, 0);
  for (int bits = 0; bits < 16; ++bits) {
    Line(0).output = (bits & 1) != 0;
    Line(1).output = (bits & 2) != 0;
    Line(0).high = (bits & 4) != 0;
    Line(1).high = (bits & 8) != 0;
    EXPECT_EQ(GpioWordAfter(), (bits & 3) | (bits & 12) << 6) << bits;
  }
}

TEST_F(Dio, AnInputsLevelIsWrittenNevertheless) {
  Read(0, 0);
  Line(0).high = true;
  EXPECT_EQ(GpioWordAfter(), 0x0100);
  EXPECT_EQ(Line(0).output, std::optional<bool>(false));
}

// A line with another function has no direction and level selected.
TEST_F(Dio, WhereNothingIsSelectedZeroIsWritten) {
  Read(0x0004, 0x0303);
  Line(1).high = false;
  EXPECT_EQ(GpioWordAfter(), 0x0002);
  Line(0) = {};
  Line(1) = {};
  EXPECT_EQ(DioWordAfter(), 0);
}

TEST_F(Dio, OnlyFunctionsAreWaitedFor) {
  Read(0, 0);
  clock.ClearWaits();
  logic.DioChanged();
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 100ms, kAccessGap, kAccessGap}));
  clock.ClearWaits();
  logic.GpioChanged();
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, kAccessGap, kAccessGap}));
}

// Options that were never filled would wipe out what the sensor holds.
TEST_F(Dio, AChoiceBeforeAnythingWasReadIsRefreshedAway) {
  sensor.Set(address::kDioCtrl, 0x002B);
  Line(0).function = DioFunction::Busy;
  logic.DioChanged();
  EXPECT_EQ(TakeFrames(), kRead);
  EXPECT_EQ(shown.dioCtrl, "2B");
  logic.DioChanged();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kDioCtrl, 0x2B) + kRead);
}

TEST_F(Dio, UnpluggedAtAnyRequestThereIsOneMessageAndTheLastReadingStays) {
  for (const bool gpio : {false, true}) {
    for (int request = 1; request <= kRequestsPerEdit; ++request) {
      SCOPED_TRACE(request);
      Read(0x0010, 0x0101);
      messages.Clear();
      sensor.UnplugAtRequest(request);
      Choose(0, 3, false);
      if (gpio) {
        logic.GpioChanged();
      } else {
        logic.DioChanged();
      }
      EXPECT_EQ(messages.Texts().size(), 1U);
      EXPECT_EQ(shown.dioCtrl, "10");
      EXPECT_EQ(shown.gpioCtrl, "101");
      EXPECT_EQ(Line(0).function, DioFunction::Gpio);
      EXPECT_EQ(Line(0).output, std::optional<bool>(true));
      EXPECT_EQ(Line(1).function, DioFunction::Alarm);
      sensor.PlugInAgain();
      Given(UsbPresent) = true;
    }
  }
}

TEST_F(Dio, AfterALossTheFirstChoiceReadsTheSensorAnew) {
  Read(0, 0);
  sensor.UnplugAtRequest(1);
  logic.ReadDIOGPIO();
  sensor.PlugInAgain();
  Given(UsbPresent) = true;
  TakeFrames();
  logic.GpioChanged();
  EXPECT_EQ(TakeFrames(), kRead);
}

TEST_F(Dio, WhatWasChosenAndRefusedIsTakenBack) {
  Read(0x0030, 0);
  Line(0).function = DioFunction::Alarm;
  logic.ShowLastRead();
  EXPECT_EQ(Line(0).function, DioFunction::Gpio);
  EXPECT_EQ(Line(1).function, DioFunction::Busy);
  EXPECT_EQ(TakeFrames(), Frames{});
}

}  // namespace
}  // namespace kestrel
