// How a monitor stands, as a line that the program which started it reads and shows.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "archive/journal.h"
#include "monitor/monitor.h"

namespace kestrel::monitor {

struct Account {
  enum class Doing { Waiting, Connecting, Capturing, Ending };
  Doing doing = Doing::Connecting;
  bool isConnected = false;
  // To the next capture, s; none where the sensor's own timer decides.
  std::optional<double> nextIn{};
  std::optional<std::chrono::system_clock::time_point> lastRecord{};
  std::int64_t records = 0;  // safe on a disk since the start
  std::int64_t unsafe = 0;   // in memory only
  std::int64_t missed = 0;
  // What lasts; bench and sensor are left out, and who started the monitor knows them.
  std::vector<archive::JournalEntry> incidents{};
  std::vector<archive::JournalEntry> alarms{};
  bool operator==(const Account&) const = default;
};

// A text for people, as the monitor says it.
struct Said {
  std::string text{};
  bool isTrouble = false;
  bool operator==(const Said&) const = default;
};

[[nodiscard]] Account AccountOf(Monitor& monitor);

// Each on one line, JSON, without the line's end. Times have milliseconds.
[[nodiscard]] std::string LineOf(const Account& account);
[[nodiscard]] std::string LineOf(const Said& said);

// What a line tells: one of the two, or neither where it is none of them.
struct Told {
  std::optional<Account> account{};
  std::optional<Said> said{};
};
[[nodiscard]] Told ToldBy(std::string_view line);

// An entry of the journal as it is shown beside a monitor that runs.
struct JournalRow {
  archive::JournalEntry entry{};
  bool lasts = false;
};

// What the archive holds, and what a monitor that runs tells: of an entry that both know the
// monitor's, which is ahead of the archive. `account` null: none runs. What lasts comes first, the
// latest of it at the top, then the rest likewise.
[[nodiscard]] std::vector<JournalRow> RowsOf(const std::vector<archive::JournalEntry>& journal,
                                             const Account* account);

}  // namespace kestrel::monitor
