// Tests of a monitor's account: what is written is read, and what is none is none.
// SPDX-License-Identifier: MIT
#include "monitor/account.h"

#include <gtest/gtest.h>

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

std::chrono::system_clock::time_point At(std::chrono::milliseconds time) {
  return std::chrono::system_clock::time_point{} + 480'000h + time;
}

Account Full() {
  return {.doing = Account::Doing::Capturing,
          .isConnected = true,
          .nextIn = 12.25,
          .lastRecord = At(1500ms),
          .records = 128,
          .unsafe = 2,
          .missed = 3,
          .incidents = {{.uid = archive::NewUid(),
                         .kind = "sensor away",
                         .began = At(0ms),
                         .missed = 4,
                         .text = "Ezusb-0 is in use by \"another\"."}},
          .alarms = {{.uid = archive::NewUid(),
                      .kind = "alarm",
                      .began = At(20ms),
                      .text = "Fault 3, Z, option 0, of the sensor: 1.2 g"}}};
}

TEST(Account, IsReadAsItWasWritten) {
  const Account full = Full();
  EXPECT_EQ(ToldBy(LineOf(full)).account, full);
  const Account little;
  EXPECT_EQ(ToldBy(LineOf(little)).account, little);
}

TEST(Account, IsOneLineWhateverItsTextsHold) {
  Account account = Full();
  account.incidents[0].text = "two\nlines, \"quoted\", \xFF not text";
  const std::string line = LineOf(account);
  EXPECT_EQ(line.find('\n'), std::string::npos);
  const auto read = ToldBy(line).account;
  ASSERT_TRUE(read);
  EXPECT_EQ(read->incidents[0].text, "two\nlines, \"quoted\", \xEF\xBF\xBD not text");
}

TEST(Account, ATextForPeopleIsALineToo) {
  const Said said{"Kept record 12.", true};
  EXPECT_EQ(ToldBy(LineOf(said)).said, said);
  EXPECT_FALSE(ToldBy(LineOf(said)).account);
}

TEST(Account, WhatIsNoneIsNone) {
  const std::string whole = LineOf(Full());
  std::vector<std::string> lines{"",
                                 "{}",
                                 "[]",
                                 "null",
                                 "12",
                                 "\"doing\"",
                                 "{\"doing\":7}",
                                 "{\"say\":1}",
                                 "{\"say\":\"x\"}",
                                 "{\"doing\":\"waiting\"}"};
  for (std::size_t i = 0; i < whole.size(); ++i) lines.push_back(whole.substr(0, i));
  for (const std::string& line : lines) {
    const Told told = ToldBy(line);
    EXPECT_FALSE(told.account || told.said) << line;
  }
}

archive::JournalEntry Entry(const std::string& text, std::chrono::minutes began, bool isOver) {
  const auto time = std::chrono::system_clock::time_point{} + 480'000h + began;
  archive::JournalEntry entry{.uid = archive::NewUid(), .began = time, .text = text};
  if (isOver) entry.ended = time + 1min;
  return entry;
}

std::string Told(const std::vector<JournalRow>& rows) {
  std::string text;
  for (const JournalRow& row : rows) text += row.entry.text + (row.lasts ? "! " : " ");
  return text;
}

TEST(JournalRows, WhatLastsComesFirstTheLatestAtTheTop) {
  const std::vector<archive::JournalEntry> journal{Entry("a", 1min, true), Entry("b", 2min, false),
                                                   Entry("c", 3min, true), Entry("d", 4min, false)};
  EXPECT_EQ(Told(RowsOf(journal, nullptr)), "d! b! c a ");
}

TEST(JournalRows, WhatTheMonitorTellsIsAheadOfTheArchive) {
  archive::JournalEntry known = Entry("in both", 5min, false);
  const std::vector<archive::JournalEntry> journal{known, Entry("over by now", 6min, false)};
  known.missed = 7;
  const Account account{.incidents = {known, Entry("not there yet", 7min, false)},
                        .alarms = {Entry("alarm", 1min, false)}};
  const auto rows = RowsOf(journal, &account);
  EXPECT_EQ(Told(rows), "not there yet! in both! alarm! over by now ");
  EXPECT_EQ(rows[1].entry.missed, 7);
}

}  // namespace
}  // namespace kestrel::monitor
