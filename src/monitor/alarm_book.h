// Which alarms stand: each begins once and ends once, over restarts of the program too.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "archive/journal.h"
#include "monitor/findings.h"

namespace kestrel::monitor {

// A beginning or an end, as it is told to others and as the journal keeps it.
struct AlarmNews {
  publish::Alarm alarm{};
  archive::JournalEntry entry{};
};

class AlarmBook {
 public:
  explicit AlarmBook(publish::Names names) : names_(std::move(names)) {}

  // What a record has changed; `uid` names the record. Alarms that it says nothing of stay.
  [[nodiscard]] std::vector<AlarmNews> Take(const Findings& findings,
                                            std::chrono::system_clock::time_point time,
                                            const archive::Uid& uid);
  // Ends those that nobody judges any more.
  [[nodiscard]] std::vector<AlarmNews> EndWhere(const std::function<bool(const AlarmKey&)>& is,
                                                std::chrono::system_clock::time_point time);

  [[nodiscard]] int Standing() const { return static_cast<int>(standing_.size()); }
  [[nodiscard]] std::vector<archive::JournalEntry> Entries() const;  // of those that stand
  // Those that stand, for Restore.
  [[nodiscard]] std::string Text() const;
  // `open`: the journal's entries that last. A line without its entry is left out.
  void Restore(const std::string& text, const std::vector<archive::JournalEntry>& open);

 private:
  struct Told {
    std::optional<double> level{};
    std::optional<double> limit{};
    const char* unit = "";
    std::string uid{};  // of the record
  };
  [[nodiscard]] AlarmNews News(const AlarmKey& key, publish::AlarmEvent event, const Told& told,
                               std::chrono::system_clock::time_point time,
                               archive::JournalEntry entry) const;

  publish::Names names_;
  std::map<AlarmKey, archive::JournalEntry> standing_;
};

// A beginning or an end as a line of a text, and back; the names are not in it.
[[nodiscard]] std::string LineOf(const publish::Alarm& alarm);
[[nodiscard]] std::optional<publish::Alarm> AlarmFrom(const std::string& line,
                                                      const publish::Names& names);

inline constexpr const char* kAlarmWord = "alarm";  // of its entries in the journal

}  // namespace kestrel::monitor
