// What a monitored world left in its archive, and that nothing of it is unaccounted for.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "archive/journal.h"
#include "support/monitored_world.h"
#include "support/sensor_frames.h"

namespace kestrel::monitor {

inline constexpr const char* kPlan =
    "bench = Hall 3\nsensor = Pump 7\nevery = 10 s\n[capture]\naverages = 2\n";

// A band of Y at option 0 that warns of what is measured on a running machine.
inline BandTable BandsThatYExceeds() {
  BandTable table;
  table(kFLowField, 2, 0) = 10;
  table(kFHighField, 2, 0) = 200;
  table(Alarm1Field(Axis::Y), 2, 0) = 50;
  return table;
}

inline std::vector<archive::JournalEntry> Entries(MonitoredWorld& world,
                                                  const std::string& kind = "") {
  auto archive = world.OpenArchive();
  auto entries = archive::EntriesOf(archive, {.kind = kind});
  std::ranges::reverse(entries);
  return entries;
}

inline std::int64_t Kept(MonitoredWorld& world) {
  return world.OpenArchive().Count();
}

inline std::int64_t MissedOf(const std::vector<archive::JournalEntry>& entries) {
  std::int64_t missed = 0;
  for (const archive::JournalEntry& entry : entries) missed += entry.missed;
  return missed;
}

// Of a sensor whose timer stores all it takes, and that another cable goes on powering.
class StoringWorld : public MonitoredWorld {
 public:
  explicit StoringWorld(std::chrono::seconds every)
      : MonitoredWorld("bench = b\nsensor = s\nconnect = usb Ezusb-0\nevery = " +
                           std::to_string(every.count()) + " s\n[timer]\n",
                       StoringMachine()) {
    Hardware().Adapter().SetBoard(1, BoardDescription{});
  }

 private:
  static Scenario StoringMachine() {
    constexpr std::uint16_t kTimerStoresAll = 0x1039;  // Hanning, 70 g
    Scenario scenario = RunningMachine();
    scenario.preset.settings.push_back({address::kRecCtrl, kTimerStoresAll});
    return scenario;
  }
};

// What somebody else does with the sensor: the last answer.
inline int Exchange(MonitoredWorld& world, const std::vector<int>& frames) {
  int answer = 0;
  for (const int frame : frames) {
    answer = world.Hardware().Sensor().Exchange(static_cast<std::uint16_t>(frame));
  }
  return answer;
}
inline int WordAt(MonitoredWorld& world, int address) {
  return Exchange(world, ReadFrames(address));
}
inline void Write(MonitoredWorld& world, int address, int word) {
  Exchange(world, WriteFrames(address, word));
}

inline void PullOutFor(MonitoredWorld& world, std::chrono::seconds time) {
  world.Hardware().Adapter().Unplug(0);
  world.Run(time);
  world.Hardware().Adapter().Replug(0);
}

// Every capture that was asked for while it ran is kept, or its absence is told.
inline void ExpectAllAccounted(MonitoredWorld& world) {
  const auto entries = Entries(world);
  std::int64_t whileAway = 0;
  for (const archive::JournalEntry& entry : entries) {
    if (entry.kind == "not running") whileAway += entry.missed;
  }
  std::string told;
  for (const archive::JournalEntry& entry : entries) {
    told += entry.kind + ", missed " + std::to_string(entry.missed) + ": " + entry.text + "\n";
  }
  EXPECT_EQ(Kept(world) + MissedOf(entries) - whileAway, world.Asked()) << told;
}

}  // namespace kestrel::monitor
