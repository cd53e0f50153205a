// The data-log settings window: names proposed, kept, refused.
// SPDX-License-Identifier: MIT
#include "logging/data_log_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "logging/data_log.h"
#include "logging/reset_logging.h"
#include "support/given.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"

namespace kestrel {
namespace {

using Words = std::vector<std::string>;

class LogSettings : public testing::Test {
 protected:
  LogSettings() { ResetLogging(); }
  ~LogSettings() override { ResetLogging(); }

  // What OK says to a typed name; the settings stay open.
  Words Refusal(const std::string& name) {
    messages.Clear();
    DataLogSettings settings(messages);
    settings.txtFileName_Change(name);
    EXPECT_FALSE(settings.cmdOK_Click());
    return messages.Texts();
  }

  RecordingMessages messages;
};

TEST_F(LogSettings, ANameIsProposedWhereNoneIsSet) {
  const DataLogSettings settings(messages);
  EXPECT_EQ(DataLogName, "DATALOG");
}

TEST_F(LogSettings, TheUsersNameIsNotReplacedByTheProposal) {
  Given(DataLogName) = "pump";
  const DataLogSettings settings(messages);
  EXPECT_EQ(DataLogName, "pump");
}

TEST_F(LogSettings, OkKeepsTheProposedName) {
  DataLogSettings settings(messages);
  EXPECT_TRUE(settings.cmdOK_Click());
  EXPECT_EQ(DataLogName, "DATALOG");
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(LogSettings, ATypedNameHoldsAtOnceAndOkKeepsIt) {
  Given(DataLogName) = "pump";
  DataLogSettings settings(messages);
  settings.txtFileName_Change("fan 3");
  EXPECT_EQ(DataLogName, "fan 3");
  settings.ChooseFormat(true);
  EXPECT_TRUE(settings.cmdOK_Click());
  EXPECT_EQ(DataLogName, "fan 3");
  EXPECT_TRUE(DataFormatLSB);
}

TEST_F(LogSettings, CancelTakesNameAndFormatBack) {
  Given(DataLogName) = "pump";
  Given(DataFormatLSB) = true;
  DataLogSettings settings(messages);
  settings.txtFileName_Change("fan");
  settings.ChooseFormat(false);
  settings.cmdCancel_Click();
  EXPECT_EQ(DataLogName, "pump");
  EXPECT_TRUE(DataFormatLSB);
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(LogSettings, CancelTakesTheProposedNameBackToo) {
  DataLogSettings settings(messages);
  settings.cmdCancel_Click();
  EXPECT_EQ(DataLogName, "");
}

TEST_F(LogSettings, AnEmptyNameIsRefusedAndTheEarlierOneStays) {
  Given(DataLogName) = "pump";
  EXPECT_EQ(Refusal(""), Words{"Please enter a file name or press CANCEL"});
  EXPECT_EQ(DataLogName, "pump");
}

TEST_F(LogSettings, ARefusedNameIsRefusedAgainUntilItIsChanged) {
  DataLogSettings settings(messages);
  settings.txtFileName_Change("");
  EXPECT_FALSE(settings.cmdOK_Click());
  EXPECT_FALSE(settings.cmdOK_Click());
  EXPECT_EQ(messages.Texts().size(), 2U);
  settings.txtFileName_Change("fan");
  EXPECT_TRUE(settings.cmdOK_Click());
  EXPECT_EQ(DataLogName, "fan");
}

TEST_F(LogSettings, NamesInOtherScriptsAreKept) {
  for (const char* name : {"Prüfstand", "насос", "泵"}) {
    DataLogSettings settings(messages);
    settings.txtFileName_Change(name);
    EXPECT_TRUE(settings.cmdOK_Click()) << name;
    EXPECT_EQ(DataLogName, name);
  }
  EXPECT_TRUE(messages.Texts().empty());
}

TEST_F(LogSettings, ANameThatCannotBeAFileNameIsRefusedWithTheName) {
  Given(DataLogName) = "pump";
  const std::string tooLong(241, 'n');
  EXPECT_EQ(Refusal("a/b"), Words{"File name a/b: the character / cannot stand in a file name."});
  EXPECT_EQ(Refusal("a\\b"),
            Words{"File name a\\b: the character \\ cannot stand in a file name."});
  EXPECT_EQ(Refusal("nul"), Words{"File name nul: this name is reserved by the system."});
  EXPECT_EQ(Refusal(tooLong),
            Words{"File name " + tooLong + ": a name may have 240 bytes, this one has 241."});
  EXPECT_EQ(DataLogName, "pump");
}

TEST_F(LogSettings, TheFormatHoldsAtOnce) {
  DataLogSettings settings(messages);
  settings.ChooseFormat(true);
  EXPECT_TRUE(DataFormatLSB);
  settings.ChooseFormat(false);
  EXPECT_FALSE(DataFormatLSB);
}

TEST_F(LogSettings, ResetBeginsWithFile1AndOkKeepsIt) {
  Given(DataLogIndex) = 32767;
  DataLogSettings settings(messages);
  settings.cmdReSetFileIndex_Click();
  EXPECT_EQ(DataLogIndex, 1);
  EXPECT_TRUE(settings.cmdOK_Click());
  EXPECT_EQ(DataLogIndex, 1);
}

TEST_F(LogSettings, CancelTakesAResetBackHoweverOftenItWasPressed) {
  Given(DataLogIndex) = 9;
  DataLogSettings settings(messages);
  settings.cmdReSetFileIndex_Click();
  settings.cmdReSetFileIndex_Click();
  settings.cmdCancel_Click();
  EXPECT_EQ(DataLogIndex, 9);
}

TEST_F(LogSettings, CancelKeepsTheNumbersOfFilesThatWereWrittenMeanwhile) {
  Given(DataLogIndex) = 9;
  DataLogSettings settings(messages);
  Given(DataLogIndex) = 11;  // two captures
  settings.cmdCancel_Click();
  EXPECT_EQ(DataLogIndex, 11);
  settings.cmdReSetFileIndex_Click();
  Given(DataLogIndex) = 14;
  settings.cmdCancel_Click();
  EXPECT_EQ(DataLogIndex, 14);
}

TEST_F(LogSettings, ANameOfBlanksIsRefusedLikeNone) {
  Given(DataLogName) = "pump";
  for (const char* name : {" ", "   ", "\t"}) {
    EXPECT_EQ(Refusal(name), Words{"Please enter a file name or press CANCEL"}) << name;
  }
  EXPECT_EQ(DataLogName, "pump");
}

}  // namespace
}  // namespace kestrel
