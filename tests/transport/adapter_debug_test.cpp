// Actions of the adapter debug window.
// SPDX-License-Identifier: MIT
#include "transport/adapter_debug.h"
#include "support/given.h"

#include "debug_fixture.h"
#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNoBoard = "Please Select a Buffer first";

class AdapterDebugLogic : public DebugTest {};

TEST_F(AdapterDebugLogic, EveryActionAsksForAnAdapterFirst) {
  Type({"1C00"});
  const auto actions = [this] {
    debug_.cmdReadBits_Click();
    debug_.cmdReadDelay_Click();
    debug_.txtLoopDelay_KeyDown("5");
    EXPECT_FALSE(debug_.cmdWriteSpi_Click());
  };
  Given(UsbPresent) = false;
  actions();
  EXPECT_EQ(messages_.Texts(), std::vector<std::string>(4, kNoBoard));
  Given(UsbPresent) = true;
  Given(SelectedAdapterNumber) = -1;
  actions();
  EXPECT_EQ(messages_.Texts(), std::vector<std::string>(8, kNoBoard));
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_THAT(debug_.Log().Entries(), IsEmpty());
  EXPECT_EQ(UsbSpiSetupValue, 25);
}

TEST_F(AdapterDebugLogic, BothBytesOfTheBoardsAnswerAreShown) {
  boards_.answers = {{0x78, 0x05}, {0x01, 0xFF}};
  debug_.cmdReadBits_Click();
  debug_.cmdReadDelay_Click();
  EXPECT_EQ(view_.bits, "78 05 hex  (120, 5)");
  EXPECT_EQ(view_.delay, "01 FF hex  (1, 255)");
  EXPECT_THAT(boards_.Sent(), ElementsAre("01", "01"));
}

TEST_F(AdapterDebugLogic, ABoardLostWhileItIsAskedLeavesWhatWasShown) {
  view_.bits = "before";
  boards_.FailAt(2);
  debug_.cmdReadBits_Click();
  EXPECT_EQ(view_.bits, "before");
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Writing SPI"));
  EXPECT_TRUE(debug_.Log().Entries().back().failed);
}

TEST_F(AdapterDebugLogic, TheSetupValueIsSentAndShownAsSent) {
  debug_.txtLoopDelay_KeyDown(" 33 ");
  EXPECT_EQ(view_.setup, "33");
  debug_.txtLoopDelay_KeyDown("255");
  debug_.txtLoopDelay_KeyDown("0");
  EXPECT_EQ(view_.setup, "1") << "the board knows no 0";
  EXPECT_THAT(boards_.Sent(), ElementsAre("0B 21", "0B FF", "0B 01"));
  EXPECT_EQ(UsbSpiSetupValue, 1);
}

TEST_F(AdapterDebugLogic, OtherSetupValuesAreNamedAndNotSent) {
  for (const char* text : {"", "256", "-1", "2.5", "12x", "0x10", "1e9"}) {
    messages_.Clear();
    debug_.txtLoopDelay_KeyDown(text);
    EXPECT_THAT(messages_.Texts(),
                ElementsAre("SPI set-up value: \"" + std::string(text) +
                            "\" is not a whole number from 0 to 255.\nNothing was sent."));
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_EQ(UsbSpiSetupValue, 25);
}

TEST_F(AdapterDebugLogic, TheOptionsChooseTheTransferCommand) {
  Type({"1C00"});
  AdapterDebug::optSpiChan_Click(1);
  debug_.cmdWriteSpi_Click();
  AdapterDebug::optSpiChan_Click(0);
  debug_.cmdWriteSpi_Click();
  EXPECT_THAT(boards_.Sent(), ElementsAre("0E 01 01 1C 00", "0D 01 01 1C 00"));
}

TEST_F(AdapterDebugLogic, PolarityIsOneOfTwoCaptions) {
  EXPECT_EQ(AdapterDebug::OtherPolarity("Pos"), "Neg");
  EXPECT_EQ(AdapterDebug::OtherPolarity("Neg"), "Pos");
}

TEST_F(AdapterDebugLogic, TypedFramesGoOutInOneTransferAndTheirAnswersShow) {
  Type({"1C00", "0x9d12", "fe01"});
  boards_.answers = {{0x00, 0x01, 0xAB, 0xCD, 0xFF, 0xFF}};
  EXPECT_TRUE(debug_.cmdWriteSpi_Click());
  EXPECT_THAT(boards_.Sent(), ElementsAre("0D 01 03 1C 00 9D 12 FE 01"));
  EXPECT_THAT(view_.answers, ElementsAre("0001", "ABCD", "FFFF"));
  EXPECT_EQ(view_.transfers, 1);
  EXPECT_EQ(view_.errors, 0);
}

TEST_F(AdapterDebugLogic, AFaultyFrameIsNamedPointedAtAndNothingIsSent) {
  Type({"1C00", "FF12"});
  EXPECT_FALSE(debug_.cmdWriteSpi_Click());
  EXPECT_THAT(messages_.Texts(), ElementsAre(HasSubstr("Frame 2: \"FF12\" cannot be sent")));
  EXPECT_EQ(view_.pointedAt, 2);
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_EQ(view_.transfers, 0);
  EXPECT_TRUE(UsbPresent);
}

TEST_F(AdapterDebugLogic, AFailedTransferIsCountedAndTheEarlierAnswersStay) {
  Type({"1C00"});
  boards_.answers = {{0x12, 0x34}};
  debug_.cmdWriteSpi_Click();
  boards_.FailAt(3);
  EXPECT_FALSE(debug_.cmdWriteSpi_Click());
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Reading SPI"));
  EXPECT_THAT(view_.answers, ElementsAre("1234"));
  EXPECT_EQ(view_.transfers, 2);
  EXPECT_EQ(view_.errors, 1);
}

TEST_F(AdapterDebugLogic, RepeatingSendsTheLastFramesWhateverWasTransferredMeanwhile) {
  Type({"1C00", "1D00"});
  debug_.cmdWriteSpi_Click();
  Type({"7777"});
  Given(SpiTx)(1) = 0x0A00;
  Given(SpiTx)(2) = 0x0A00;
  boards_.ClearLog();
  EXPECT_TRUE(debug_.Repeat());
  EXPECT_THAT(boards_.Sent(), ElementsAre("0D 01 02 1C 00 1D 00"));
}

TEST_F(AdapterDebugLogic, SavingWritesAllThatWentOverTheWire) {
  Type({"1C00"});
  debug_.txtLoopDelay_KeyDown("33");
  clock_.AdvanceSeconds(0.5);
  boards_.answers = {{0x12, 0x34}, {0x78, 0x21}};
  debug_.cmdWriteSpi_Click();
  debug_.cmdReadBits_Click();
  const std::filesystem::path file = debug_.cmdSave_Click(files_, locale_, "Neg");
  EXPECT_EQ(file, "/program/Adapter_LOG.txt");
  EXPECT_EQ(files_.contents[file],
            "Saved\t" + locale_.ShortDate() + " " + locale_.Time() +
                "\r\nAdapter\tEzusb-0 FIFO4, Maker, Adapter, firmware 2.7\r\nPolarity\tNeg\r\n"
                "Transfers\t1\r\nErrors\t0\r\nOlder entries dropped\t0\r\n\r\n"
                "No.\tTime/s\tCommand\tSent\tReceived\r\n"
                "1\t0.000\t11\t21\t\r\n"
                "2\t0.500\t13\t1C00\t1234\r\n"
                "3\t0.500\t1\t\t78 21\r\n");
}

TEST_F(AdapterDebugLogic, EverySavedFileIsANewOne) {
  Type({"1C00"});
  debug_.cmdWriteSpi_Click();
  files_.readOnly = {"/program"};
  EXPECT_EQ(debug_.cmdSave_Click(files_, locale_, "Pos"), "/documents/Adapter_LOG.txt");
  EXPECT_EQ(debug_.cmdSave_Click(files_, locale_, "Pos"), "/documents/Adapter_LOG_2.txt");
  EXPECT_EQ(debug_.cmdSave_Click(files_, locale_, "Pos"), "/documents/Adapter_LOG_3.txt");
}

TEST_F(AdapterDebugLogic, AFileThatCannotBeWrittenIsAnErrorAndTheLogStays) {
  Type({"1C00"});
  debug_.cmdWriteSpi_Click();
  files_.failure = "disk full";
  EXPECT_THROW(static_cast<void>(debug_.cmdSave_Click(files_, locale_, "Pos")), RuntimeError);
  EXPECT_EQ(debug_.Log().Entries().size(), 1U);
}

TEST_F(AdapterDebugLogic, NothingSentIsNothingToSave) {
  EXPECT_TRUE(debug_.cmdSave_Click(files_, locale_, "Pos").empty());
  EXPECT_THAT(messages_.Texts(), ElementsAre("Save: nothing has been sent yet."));
  EXPECT_TRUE(files_.contents.empty());
}

TEST_F(AdapterDebugLogic, ClearingForgetsAnswersCountsAndLog) {
  Type({"1C00"});
  debug_.cmdWriteSpi_Click();
  debug_.cmdClear_Click();
  EXPECT_THAT(view_.answers, IsEmpty());
  EXPECT_EQ(view_.transfers, 0);
  EXPECT_THAT(debug_.Log().Entries(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
