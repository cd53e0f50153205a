// Tests of the journal beside a monitor that runs.
// SPDX-License-Identifier: MIT
#include "monitor/journal_rows.h"

#include <gtest/gtest.h>

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

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
