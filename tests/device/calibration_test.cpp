// Null registers shown, typed, written and measured.
// SPDX-License-Identifier: MIT
#include "device/calibration.h"

#include "regmap/register_table.h"
#include "support/given.h"
#include "support/journal.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;
using Waits = std::vector<std::chrono::nanoseconds>;

constexpr auto kAccessGap = 100us;  // after each register access
constexpr std::array kAddresses{address::kXNull, address::kYNull, address::kZNull};
const Frames kReadAll =
    ReadFrames(address::kXNull) + ReadFrames(address::kYNull) + ReadFrames(address::kZNull);

class Null : public RegisterBench, public CalibrationView {
 protected:
  void ShowNull(Axis axis, const std::string& word, const std::string& value) override {
    words.at(Index(axis)) = word;
    values.at(Index(axis)) = value;
  }
  std::string ValueText(Axis axis) override { return values.at(Index(axis)); }
  void ShowNote(const std::string& text) override { note = text; }
  void ShowBusy(const std::string& text) override {
    journal.Note((text.empty() ? "idle after " : "busy after ") +
                 std::to_string(sensor.AllFrames().size()));
  }

  void Hold(int x, int y, int z) {
    sensor.Set(address::kXNull, x);
    sensor.Set(address::kYNull, y);
    sensor.Set(address::kZNull, z);
  }

  // Writes a text; the register's word afterwards.
  int WordOf(Axis axis, const std::string& text) {
    values.at(Index(axis)) = text;
    logic.WriteNull(axis);
    return sensor.Word(kAddresses.at(Index(axis)));
  }

  // The run-time error of writing a text.
  std::string ErrorOf(Axis axis, const std::string& text) {
    values.at(Index(axis)) = text;
    try {
      logic.WriteNull(axis);
    } catch (const RuntimeError& error) {
      return error.what();
    }
    return "";
  }

  std::array<std::string, 3> words;
  std::array<std::string, 3> values;
  std::string note;
  Journal journal;
  Calibration logic{core.registers, core.delay, pointer, *this};
};

using Texts = std::array<std::string, 3>;

TEST_F(Null, WordsAreHexadecimalAndValuesHaveFourDecimals) {
  Hold(0xFFFF, 0x0001, 0x7FFF);
  logic.ReadCalRegisters();
  EXPECT_EQ(words, (Texts{"FFFF", "1", "7FFF"}));
  EXPECT_EQ(values, (Texts{"-0.0048", "0.0048", "156.2452"}));
  EXPECT_EQ(TakeFrames(), kReadAll);
  Hold(0, 0x8000, 0x00A0);
  logic.ReadCalRegisters();
  EXPECT_EQ(words, (Texts{"0", "8000", "A0"}));
  EXPECT_EQ(values, (Texts{"0.0000", "-156.2500", "0.7629"}));
}

// Four decimals are enough to tell neighbours apart. Steps of 17 lead from 0 to the last word.
TEST_F(Null, WordsOfTheWholeRangeAreWrittenBackAsTheyWereRead) {
  for (int word = 0; word <= 0xFFFF; word += 17) {
    Hold(word, word, word);
    logic.ReadCalRegisters();
    const auto axis = static_cast<std::size_t>(word % 3);
    sensor.Set(kAddresses[axis], 0x1234);
    TakeFrames();
    logic.WriteNull(kAxes[axis]);
    ASSERT_EQ(TakeFrames(), WriteFrames(kAddresses[axis], word) + kReadAll) << std::hex << word;
    ASSERT_EQ(note, "");
  }
}

TEST_F(Null, EachAxisHasItsRegister) {
  for (const Axis axis : kAxes) {
    Hold(0, 0, 0);
    TakeFrames();
    EXPECT_EQ(WordOf(axis, "1"), 210);
    EXPECT_EQ(TakeFrames(), WriteFrames(kAddresses.at(Index(axis)), 210) + kReadAll);
  }
}

TEST_F(Null, ZIsDividedByTheFactorOfY) {
  Given(RegScale)[row::X_NULL] = 1;
  Given(RegScale)[row::Y_NULL] = 2;
  Given(RegScale)[row::Z_NULL] = 4;
  EXPECT_EQ(WordOf(Axis::X, "400"), 400);
  EXPECT_EQ(WordOf(Axis::Y, "400"), 200);
  EXPECT_EQ(WordOf(Axis::Z, "400"), 200);
}

TEST_F(Null, HalvesAreRoundedToTheEvenWord) {
  Given(RegScale)[row::X_NULL] = 1;
  EXPECT_EQ(WordOf(Axis::X, "2.5"), 2);
  EXPECT_EQ(WordOf(Axis::X, "3.5"), 4);
  EXPECT_EQ(WordOf(Axis::X, "-2.5"), 0xFFFE);
}

TEST_F(Null, ANegativeValueIsWrittenInTwosComplement) {
  EXPECT_EQ(WordOf(Axis::X, "-0.0048"), 0xFFFF);
  EXPECT_EQ(WordOf(Axis::Y, "-156.25"), 0x8000);
}

TEST_F(Null, ATextThatBeginsWithNoNumberWritesZeroAndSaysSo) {
  Hold(5, 5, 5);
  EXPECT_EQ(WordOf(Axis::X, "abc"), 0);
  EXPECT_EQ(note, "X_NULL: \"abc\" was taken as 0.");
  EXPECT_EQ(WordOf(Axis::Z, ""), 0);
  EXPECT_EQ(note, "Z_NULL: \"\" was taken as 0.");
  EXPECT_EQ(words, (Texts{"0", "5", "0"}));
}

TEST_F(Null, TheNumberATextBeginsWithCountsAndIsTold) {
  EXPECT_EQ(WordOf(Axis::Y, "1 g"), 210);
  EXPECT_EQ(note, "Y_NULL: \"1 g\" was taken as 1.");
  EXPECT_EQ(WordOf(Axis::Y, "1"), 210);
  EXPECT_EQ(note, "");
}

TEST_F(Null, ADecimalCommaEndsTheNumberAndIsExplained) {
  locale.decimalMark = ',';
  EXPECT_EQ(WordOf(Axis::X, "1,5"), 210);
  EXPECT_EQ(note, "X_NULL: \"1,5\" was taken as 1. The decimal mark is a point.");
}

TEST_F(Null, AValueThatDoesNotFitIsNamedAndNotWritten) {
  Hold(7, 7, 7);
  for (const char* text : {"156.26", "-156.26", "1e99", "-1e999"}) {
    SCOPED_TRACE(text);
    TakeFrames();
    const std::string error = ErrorOf(Axis::Y, text);
    EXPECT_EQ(error.rfind(std::string("Overflow: \"") + text + "\"", 0), 0U) << error;
    EXPECT_NE(error.find("Y_NULL"), std::string::npos) << error;
    EXPECT_EQ(TakeFrames(), Frames{});
    EXPECT_EQ(values[1], text) << "it stays to be corrected";
  }
  EXPECT_EQ(WordOf(Axis::Y, "156.245"), 0x7FFF) << "the last word that fits";
}

TEST_F(Null, ARegisterOutsideTheTableIsAnIndexError) {
  Given(row::Y_NULL) = 86;
  EXPECT_EQ(ErrorOf(Axis::Y, "1"), "Subscript out of range");
  EXPECT_EQ(ErrorOf(Axis::Z, "1"), "Subscript out of range") << "it takes the factor of Y";
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(Null, AWriteIsWaitedForAndAllRowsAreReadBack) {
  static_cast<void>(WordOf(Axis::X, "0.5"));
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 100ms, kAccessGap, kAccessGap, kAccessGap}));
  EXPECT_EQ(words, (Texts{"69", "0", "0"}));
  EXPECT_EQ(values[0], "0.5007");
  EXPECT_EQ(pointer.Shown(), Words{});
}

TEST_F(Null, AutonullIsSentWaitedForAndReadBack) {
  sensor.OnRead(address::kYNull, [] { return 0xFFF0; });
  logic.cmdAutoNull_Click();
  EXPECT_EQ(TakeFrames(), Frames{0xBE01} + kReadAll);
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 175ms, kAccessGap, kAccessGap, kAccessGap}));
  EXPECT_EQ(words, (Texts{"0", "FFF0", "0"}));
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
}

TEST_F(Null, AFlashUpdateIsSentAndNothingIsReadBack) {
  logic.cmdFlashUpdate_Click();
  EXPECT_EQ(TakeFrames(), Frames{0xBF10});
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 600ms}));
  EXPECT_EQ(words, Texts{});
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
}

TEST_F(Null, RetrievingIsSentWaitedForAndReadBack) {
  logic.RetrieveAndRead();
  EXPECT_EQ(TakeFrames(), Frames{0xBF20} + kReadAll);
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 250ms, kAccessGap, kAccessGap, kAccessGap}));
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
}

TEST_F(Null, TheBusySignShowsFromBeforeACommandToTheEndOfItsWait) {
  logic.cmdFlashUpdate_Click();
  EXPECT_EQ(journal.Entries(), (Words{"busy after 0", "idle after 1"}));
}

TEST_F(Null, ThePointerIsRestoredWhenTheSensorIsLost) {
  sensor.UnplugAtRequest(1);
  logic.cmdFlashUpdate_Click();
  EXPECT_EQ(messages.Texts(), Words{"Error Writing SPI"});
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
}

TEST_F(Null, ThePointerIsRestoredWhenTheCommandFails) {
  Given(row::COMMAND) = 86;
  EXPECT_THROW(logic.cmdFlashUpdate_Click(), RuntimeError);
  EXPECT_EQ(pointer.Shown(), (Words{"hourglass", "default"}));
  EXPECT_EQ(journal.Entries(), (Words{"busy after 0", "idle after 0"}));
}

TEST_F(Null, UnpluggedAtAnyRequestThereIsOneMessageAndNoRowChanges) {
  constexpr int kRequestsPerWrite = 12;  // a write and three reads, three each
  for (int request = 1; request <= kRequestsPerWrite; ++request) {
    SCOPED_TRACE(request);
    Hold(1, 2, 3);
    logic.ReadCalRegisters();
    const Texts before = values;
    messages.Clear();
    note.clear();
    Hold(9, 9, 9);
    sensor.UnplugAtRequest(request);
    EXPECT_NO_THROW(WordOf(Axis::X, "7,5"));
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(words, (Texts{"1", "2", "3"}));
    EXPECT_EQ(values, (Texts{"7,5", before[1], before[2]})) << "what was typed is kept";
    EXPECT_EQ(note.empty(), request <= 3) << "told only of what was written";
    sensor.PlugInAgain();
    Given(UsbPresent) = true;
  }
}

TEST_F(Null, WhatWasTypedCanBeTakenBack) {
  Hold(1, 0, 0);
  logic.ReadCalRegisters();
  values[0] = "typed";
  logic.ShowLastRead();
  EXPECT_EQ(values[0], "0.0048");
}

// The four decimals shown are enough to tell all words apart.
TEST_F(Null, WritingWhatIsShownKeepsTheWord) {
  for (int word = 0; word < 0x10000; word += 11) {
    Hold(word, 0xFFFF - word, word ^ 0x5555);
    logic.ReadCalRegisters();
    for (const Axis axis : kAxes) {
      const int held = sensor.Word(kAddresses.at(Index(axis)));
      ASSERT_EQ(WordOf(axis, values.at(Index(axis))), held);
    }
    TakeFrames();
    clock.ClearWaits();
  }
}

}  // namespace
}  // namespace kestrel
