// Registers read, written and listed by hand, over a scripted sensor.
// SPDX-License-Identifier: MIT
#include "device/manual_register.h"

#include "regmap/register_table.h"
#include "support/fake_register_view.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;
using Waits = std::vector<std::chrono::nanoseconds>;

constexpr int kListReads = 49;  // registers that a listing reads
constexpr auto kAccessGap = 100us;

class ManualRegisterLogic : public RegisterBench {
 protected:
  // The frames without those of a listing, which is expected to come after `before` frames.
  Frames WithoutListing(std::size_t before) {
    Frames frames = TakeFrames();
    if (frames.size() < before + 2 * kListReads) {
      ADD_FAILURE() << "no listing in " << frames.size() << " frames";
      return frames;
    }
    const auto first = frames.begin() + static_cast<long>(before);
    EXPECT_EQ(*first, 0x0000) << "a listing begins with the first register";
    frames.erase(first, first + 2 * kListReads);
    return frames;
  }

  FakeRegisterView view;
  ManualRegister manual{core.registers, core.delay, files, locale, messages, view};
};

TEST_F(ManualRegisterLogic, ChoosingARegisterReadsAndShowsIt) {
  sensor.Set(0x02, 0xFFFE);
  manual.cmboRegister_Click(row::X_NULL);
  EXPECT_EQ(TakeFrames(), ReadFrames(0x02));
  EXPECT_EQ(view.shownRow, row::X_NULL);
  EXPECT_EQ(view.value, (FakeRegisterView::Value{row::X_NULL, -2, -2 * RegScale[row::X_NULL]}));
}

TEST_F(ManualRegisterLogic, ChoosingARegisterThatCannotBeReadSendsNothingAndShowsZero) {
  manual.cmboRegister_Click(row::COMMAND);
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(view.value, (FakeRegisterView::Value{row::COMMAND, 0, 0}));
}

TEST_F(ManualRegisterLogic, ChoosingAReservedRegisterReadsIt) {
  manual.cmboRegister_Click(row::SCRATCH_A);
  EXPECT_EQ(TakeFrames(), ReadFrames(0x58));
}

TEST_F(ManualRegisterLogic, WithoutAChoiceNothingIsShownReadOrWritten) {
  for (const int index : {-1, 58, 40000}) {
    SCOPED_TRACE(index);
    messages.Clear();
    manual.cmboRegister_Click(index);
    EXPECT_EQ(view.shownRow, kNoRegister);
    manual.cmdRead_Click(index);
    EXPECT_EQ(view.note, "Choose a register first.");
    manual.cmdWrite_Click(index, "12");
    EXPECT_EQ(messages.Texts(), Words{"Writing a register: no register is chosen."});
  }
  EXPECT_FALSE(view.value.has_value());
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(ManualRegisterLogic, ReadShowsTheRegisterAgain) {
  sensor.Set(address::kTempOut, 1);
  manual.cmdRead_Click(row::TEMP_OUT);
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kTempOut));
  ASSERT_TRUE(view.value.has_value());
  EXPECT_FLOAT_EQ(view.value->scaled, 624.53F);
  EXPECT_EQ(view.note, "TEMP_OUT read.");
}

TEST_F(ManualRegisterLogic, ReadLeavesReservedAndUnreadableRegistersAlone) {
  manual.cmdRead_Click(row::SCRATCH_A);
  EXPECT_EQ(view.note, "A reserved register is read only when it is chosen.");
  manual.cmdRead_Click(row::COMMAND);
  EXPECT_EQ(view.note, "COMMAND cannot be read.");
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_FALSE(view.value.has_value());
}

TEST_F(ManualRegisterLogic, AWriteIsFollowedByAWaitAListingAndARead) {
  manual.cmdWrite_Click(row::REC_CTRL, "1234");
  const Frames write = WriteFrames(address::kRecCtrl, 0x1234);
  EXPECT_EQ(WithoutListing(write.size()), write + ReadFrames(address::kRecCtrl));
  ASSERT_GE(clock.Waits().size(), 3U);
  EXPECT_EQ(Waits(clock.Waits().begin(), clock.Waits().begin() + 3),
            (Waits{kAccessGap, 100ms, kAccessGap}));
  EXPECT_EQ(view.value, (FakeRegisterView::Value{row::REC_CTRL, 0x1234, 4660}));
  EXPECT_NE(view.list.find("REC_CTRL     \t1C\t1234\r\n"), std::string::npos);
  EXPECT_EQ(view.note, "1234 written to REC_CTRL, which now holds 1234.");
}

TEST_F(ManualRegisterLogic, TheNoteTellsWhatTheRegisterHoldsInstead) {
  sensor.OnRead(address::kRecCtrl, [] { return 0x3FBF; });
  manual.cmdWrite_Click(row::REC_CTRL, "ffff");
  EXPECT_EQ(view.note, "FFFF written to REC_CTRL, which now holds 3FBF.");
}

TEST_F(ManualRegisterLogic, TheNoteOnANegativeValueNamesTheWord) {
  manual.cmdWrite_Click(row::X_NULL, "FFFE");
  EXPECT_EQ(view.note, "FFFE written to X_NULL, which now holds FFFE.");
  EXPECT_EQ(view.value->value, -2);
}

TEST_F(ManualRegisterLogic, ACommandIsOneFrameAndNotReadBack) {
  manual.cmdWrite_Click(row::COMMAND, "0800");
  EXPECT_EQ(WithoutListing(1), Frames{kCaptureFrame});
  EXPECT_EQ(view.note, "800 written to COMMAND.");
}

TEST_F(ManualRegisterLogic, TheKeyIsWrittenLowByteFirst) {
  manual.cmdWrite_Click(row::KEYCODE, "1234");
  EXPECT_EQ(WithoutListing(2), (Frames{0xD034, 0xD112}) + ReadFrames(0x50));
}

TEST_F(ManualRegisterLogic, WritesOneToFourHexadecimalDigits) {
  struct Case {
    const char* text;
    int word;
  };
  for (const Case& input : {Case{"0", 0}, Case{"f", 15}, Case{" 1f ", 0x1F}, Case{"0x1F", 0x1F},
                            Case{"&HfFfE", 0xFFFE}, Case{"0000", 0}, Case{"FFFF", 0xFFFF}}) {
    SCOPED_TRACE(input.text);
    manual.cmdWrite_Click(row::FFT_AVG, input.text);
    EXPECT_EQ(sensor.Word(address::kFftAvg), input.word);
  }
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(ManualRegisterLogic, AnyOtherTextWritesWhatItIsConvertedToAndTheNoteSaysSo) {
  struct Case {
    const char* text;
    int word;
  };
  for (const Case& input :
       {Case{" ", 0}, Case{"G", 0}, Case{"1G", 1}, Case{"12345", 0x2345}, Case{"00001", 1},
        Case{"-1", 0}, Case{"+1", 0}, Case{"1 2", 1}, Case{"0x", 0}, Case{"&H", 0}, Case{"0x 1", 0},
        Case{"x1", 0}, Case{"1.5", 1}, Case{"\xC3\xA4", 0}, Case{"0x1Fz", 0x1F}}) {
    SCOPED_TRACE(input.text);
    sensor.Set(address::kFftAvg, 0x777);
    manual.cmdWrite_Click(row::FFT_AVG, input.text);
    EXPECT_EQ(sensor.Word(address::kFftAvg), input.word);
    const std::string start =
        std::string("\"") + input.text + "\" is not a word of 1 to 4 hexadecimal digits. ";
    EXPECT_EQ(view.note.substr(0, start.size()), start);
    EXPECT_NE(view.note.find(" written to FFT_AVG, which now holds "), std::string::npos);
  }
  manual.cmdWrite_Click(row::FFT_AVG, "");
  EXPECT_EQ(sensor.Word(address::kFftAvg), 0);
  EXPECT_EQ(view.note, "The box was empty. 0 written to FFT_AVG, which now holds 0.");
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(ManualRegisterLogic, ARegisterThatCannotBeWrittenIsNamed) {
  manual.cmdWrite_Click(row::ENDURANCE, "1");
  manual.cmdWrite_Click(row::SCRATCH_B, "1");
  EXPECT_EQ(messages.Texts(), (Words{"Writing a register: ENDURANCE cannot be written.",
                                     "Writing a register: reserved cannot be written."}));
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(ManualRegisterLogic, FlashUpdateIsOneCommandAndAQuarterOfASecond) {
  manual.cmdUpdateFlash_Click();
  EXPECT_EQ(TakeFrames(), Frames{0xBE40});
  EXPECT_EQ(clock.Waits(), (Waits{kAccessGap, 250ms}));
  EXPECT_EQ(view.note, "The sensor was told to store its settings in its flash memory.");
}

TEST_F(ManualRegisterLogic, WithoutAnInterfaceFlashUpdateStillTakesItsTime) {
  core.registers.Use(kNoInterface);
  manual.cmdUpdateFlash_Click();
  EXPECT_EQ(TakeFrames(), Frames{});
  ASSERT_FALSE(clock.Waits().empty());
  EXPECT_EQ(clock.Waits().back(), 250ms);
  EXPECT_EQ(view.note, "The sensor cannot be reached.");
}

TEST_F(ManualRegisterLogic, WithoutAnInterfaceEveryRegisterListsAs0AndTheNoteSaysSo) {
  core.registers.Use(kNoInterface);
  manual.cmdReadAllReg_Click();
  EXPECT_EQ(manual.Listing().lines.size(), 50U);
  for (const RegisterListing::Line& line : manual.Listing().lines) EXPECT_EQ(line.word, "0000");
  EXPECT_EQ(view.listNote, "No interface is selected: nothing was read, every value stands as 0.");
}

TEST_F(ManualRegisterLogic, ReadAllShowsTheListAndWhenItWasRead) {
  manual.cmdReadAllReg_Click();
  EXPECT_EQ(view.list, manual.Listing().text);
  EXPECT_EQ(view.listNote, "50 registers, read at 9:26:53 AM.");
  sensor.Set(address::kStatus, 1);
  manual.cmdReadAllReg_Click();
  EXPECT_EQ(view.listNote, "50 registers, read at 9:26:53 AM. Changed: STATUS.");
}

TEST_F(ManualRegisterLogic, TheListIsWrittenAsItStands) {
  manual.cmdReadAllReg_Click();
  sensor.Set(address::kStatus, 1);
  TakeFrames();
  manual.cmdWriteFile_Click();
  EXPECT_EQ(TakeFrames(), Frames{});
  const std::string& log = files.contents["/program/Registers_LOG.txt"];
  ASSERT_GT(log.size(), view.list.size());
  EXPECT_EQ(log.substr(log.size() - view.list.size()), view.list);
  EXPECT_EQ(view.note, "The list was written to /program/Registers_LOG.txt.");
}

TEST_F(ManualRegisterLogic, AnEarlierLogIsNotReplacedByNoList) {
  files.contents["/program/Registers_LOG.txt"] = "earlier";
  manual.cmdWriteFile_Click();
  EXPECT_EQ(files.contents["/program/Registers_LOG.txt"], "earlier");
  EXPECT_EQ(messages.Texts(), Words{"Writing Registers_LOG.txt: there is no register list yet. "
                                    "Nothing was written."});
}

TEST_F(ManualRegisterLogic, ALostSensorLeavesTheListAndSaysOfWhenItIs) {
  manual.cmdReadAllReg_Click();
  const std::string list = view.list;
  locale.time = "9:30:00 AM";
  sensor.UnplugAtRequest(50);
  manual.cmdReadAllReg_Click();
  EXPECT_EQ(messages.Texts().size(), 1U);
  EXPECT_EQ(view.list, list);
  EXPECT_EQ(view.listsShown, 1);
  EXPECT_EQ(manual.Listing().text, list);
  EXPECT_EQ(view.listNote, "The sensor cannot be reached. This is the list read at 9:26:53 AM.");
}

// A write takes 3 requests, a listing 3 for each register, the read-back 3.
TEST_F(ManualRegisterLogic, ASensorLostAnywhereInAWriteGivesOneMessageAndKeepsTheValueShown) {
  sensor.Set(address::kFftAvg, 8);
  manual.cmboRegister_Click(row::FFT_AVG);
  const auto shown = view.value;
  for (int request = 1; request <= 3 + 3 * kListReads + 3; ++request) {
    SCOPED_TRACE(request);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
    messages.Clear();
    sensor.UnplugAtRequest(request);
    manual.cmdWrite_Click(row::FFT_AVG, "9");
    EXPECT_EQ(messages.Texts().size(), 1U);
    EXPECT_EQ(view.value, shown);
    EXPECT_EQ(view.note, "The sensor cannot be reached.");
  }
}

TEST_F(ManualRegisterLogic, WithoutAnInterfaceNothingIsWritten) {
  core.registers.Use(kNoInterface);
  manual.cmdWrite_Click(row::FFT_AVG, "9");
  EXPECT_EQ(view.note, "The sensor cannot be reached.");
  EXPECT_EQ(clock.Waits(), Waits{});
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_TRUE(messages.Texts().empty());
}

}  // namespace
}  // namespace kestrel
