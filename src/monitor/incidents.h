// What stands in the way of captures, with beginning and end, each told once.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "archive/journal.h"
#include "monitor/clock_watch.h"
#include "publish/names.h"

namespace kestrel::monitor {

enum class Incident {
  SensorAway,       // no road to it: unplugged, without power
  SensorSilent,     // there, but it does not finish captures: asleep, or it does not take settings
  SettingsChanged,  // it came back with others; they were put back
  SensorRestarted,  // it counts its records from 0
  AdapterReplaced,
  ArchiveAway,
  DiskFull,
  RecordRefused,  // the archive can never take it
  BrokerAway,
  ClockStepped,
  Suspended,    // the machine slept
  Late,         // captures lasted longer than the period
  CaptureLost,  // one capture did not come to its end, or a record of the sensor's was not fetched
  NotRunning    // the monitor itself
};
inline constexpr std::size_t kIncidents = 14;

// As the journal keeps it: "sensor away". It stays the same for ever.
[[nodiscard]] const char* WordOf(Incident kind);

// A text from outside on one line: control characters and bytes that are no text become "?".
[[nodiscard]] std::string OneLine(const std::string& text);

// At most one incident of a kind lasts at a time.
class Incidents {
 public:
  using Put = std::function<void(const archive::JournalEntry&)>;  // of each that has changed

  Incidents(publish::Names names, Put put) : names_(std::move(names)), put_(std::move(put)) {}

  // Goes on with what lasted when the program ended; of other kinds than an incident's the entry is
  // left alone.
  void Restore(std::span<const archive::JournalEntry> open);

  // Nothing happens where one of this kind lasts already; nothing where none does.
  void Begin(Incident kind, const std::string& text, const Now& now);
  void End(Incident kind, const Now& now);
  // One that began before this program's start.
  void BeginAt(Incident kind, const std::string& text, std::chrono::system_clock::time_point began,
               const Now& now);
  // Captures that did not come because of one that lasts.
  void Missed(Incident kind, std::int64_t captures);
  // One that is over already.
  void Once(Incident kind, const std::string& text, std::chrono::system_clock::time_point from,
            std::chrono::system_clock::time_point to, std::int64_t missed = 0);

  [[nodiscard]] bool IsOpen(Incident kind) const { return open_.contains(kind); }
  // Those that last, in the order of their kinds.
  [[nodiscard]] std::vector<archive::JournalEntry> OpenEntries() const;
  [[nodiscard]] int Open() const { return static_cast<int>(open_.size()); }
  [[nodiscard]] std::int64_t AllMissed() const { return missed_; }

 private:
  struct Lasting {
    archive::JournalEntry entry;
    std::chrono::nanoseconds boot;  // when it began, or was restored
    std::chrono::system_clock::time_point bootWall;
  };
  [[nodiscard]] archive::JournalEntry Entry(Incident kind, const std::string& text) const;

  publish::Names names_;
  Put put_;
  std::map<Incident, Lasting> open_;
  std::int64_t missed_ = 0;
};

}  // namespace kestrel::monitor
