// Seeded trials of a monitor: whatever can go wrong goes wrong at random, and all is accounted for.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "support/monitored_world.h"

namespace kestrel {

inline constexpr const char* kTrialPlan =
    "bench = Hall 3\nsensor = Pump 7\nevery = 10 s\n[capture]\naverages = 1\n";

class MonitoredTrials {
 public:
  using Time = std::chrono::nanoseconds;

  MonitoredTrials(MonitoredWorld& world, std::uint32_t seed) : world_(world), random_(seed) {}

  // Goes on for so long, with some fault about every `mean`.
  void Run(Time time, Time mean) {
    const Time end = world_.clock.Boot() + time;
    while (world_.clock.Boot() < end) {
      world_.Run(Time{Within(1, 2 * mean.count())});
      OneFault();
    }
  }
  // How often each kind of fault came.
  [[nodiscard]] const std::map<std::string, int>& Faults() const { return faults_; }

  // A real broker goes and comes back, too.
  std::function<void(bool isBack)> broker = [](bool) {};
  // After each orderly end.
  std::function<void()> ended = [] {};

 private:
  std::int64_t Within(std::int64_t least, std::int64_t most) {
    return least +
           static_cast<std::int64_t>(random_() % static_cast<std::uint64_t>(most - least + 1));
  }
  Time Seconds(int least, int most) {
    return std::chrono::milliseconds{Within(least * 1000, most * 1000)};
  }

  void OneFault() {
    static constexpr int kKinds = 15;  // the vibration changes more often than others come
    const auto fault = static_cast<int>(random_() % kKinds);
    SensorFault(fault);
    OtherFault(fault);
  }
  void SensorFault(int fault) {
    SimulatedHardware& hardware = world_.Hardware();
    if (fault == 0) {
      Count("unplugged");
      hardware.Adapter().Unplug(0);
      world_.Run(Seconds(1, 600));
      hardware.Adapter().Replug(0);
    } else if (fault == 1) {
      Count("without power");
      hardware.Sensor().CutPower();
      world_.Run(Seconds(1, 300));
      hardware.Sensor().RestorePower();
    } else if (fault == 2) {
      Count("restarted");
      hardware.Sensor().CutPower();
      hardware.Sensor().RestorePower();
    } else if (fault == 3) {
      Count("replaced");
      hardware.Adapter().Unplug(0);
      world_.Run(Seconds(0, 60));
      BoardDescription other;
      other.string2 = u"board " + std::u16string(1, static_cast<char16_t>(u'A' + random_() % 26));
      hardware.Adapter().SetBoard(0, other);
      hardware.Sensor().CutPower();
      hardware.Sensor().RestorePower();
    } else if (fault == 4 || fault >= 12) {
      Count("another vibration");
      hardware.Sensor().SetScenario(random_() % 2 == 0 ? AtRest() : BearingFault());
    }
  }
  void OtherFault(int fault) {
    if (fault == 5 || fault == 6) {
      Count(fault == 5 ? "archive away" : "disk full");
      const auto kind = fault == 5 ? database::Fault::Lost : database::Fault::Full;
      *world_.archiveFault = static_cast<int>(kind);
      if (fault == 6) *world_.diskFault = static_cast<int>(kind);
      world_.Run(Seconds(1, 900));
      *world_.archiveFault = *world_.diskFault = -1;
    } else if (fault == 7) {
      Count("broker away");
      BrokerFault();
    } else if (fault == 8) {
      Count("clock stepped");
      world_.clock.Set(Seconds(0, 7200) - std::chrono::hours{1});
    } else if (fault == 9) {
      Count("suspended");
      world_.clock.Sleep(Seconds(1, 1800));
    } else if (fault == 10) {
      Count("stopped");
      world_.Stop();
      ended();
      world_.clock.WaitUntil(world_.clock.Monotonic() + Seconds(0, 100));
      world_.Start();
    } else if (fault == 11) {
      Count("ended without notice");
      world_.Settle();
      world_.Kill();
      world_.Start();
    }
  }
  void BrokerFault() {
    world_.publisher.isConnected = false;
    world_.publisher.isFull = random_() % 2 == 0;
    broker(false);
    world_.Run(Seconds(1, 900));
    broker(true);
    world_.publisher.isConnected = true;
    world_.publisher.isFull = false;
  }
  void Count(const std::string& name) { ++faults_[name]; }

  MonitoredWorld& world_;
  std::mt19937_64 random_;  // spans of time need all 64 bits
  std::map<std::string, int> faults_;
};

// What is in the archive beside what was asked for.
struct MonitoredAccount {
  std::int64_t asked = 0;
  std::int64_t kept = 0;
  std::int64_t missed = 0;           // as the journal tells, while it ran
  std::int64_t notRunning = 0;       // as the journal tells, while it did not
  std::int64_t leastNotRunning = 0;  // those that had gone by then
  std::int64_t mostNotRunning = 0;
  std::vector<std::string> damage{};  // of the archive
  std::string doubledAlarm{};         // one that began or ended twice; empty: none
  std::string journal{};              // a line a kind: how many, how much they missed
  [[nodiscard]] bool IsWhole() const {
    return asked == kept + missed && damage.empty() && doubledAlarm.empty() &&
           notRunning >= leastNotRunning && notRunning <= mostNotRunning;
  }
};

[[nodiscard]] inline MonitoredAccount AccountOf(MonitoredWorld& world) {
  auto archive = world.OpenArchive();
  MonitoredAccount account{
      .asked = world.Asked(), .kept = archive.Count(), .damage = archive.Damage()};
  std::map<std::string, std::pair<int, std::int64_t>> kinds;
  for (const archive::JournalEntry& entry : archive::EntriesOf(archive)) {
    ++kinds[entry.kind].first;
    kinds[entry.kind].second += entry.missed;
    (entry.kind == "not running" ? account.notRunning : account.missed) += entry.missed;
  }
  // Each start begins a period anew.
  const std::int64_t gone = world.GoneBy() - world.Asked();
  account.leastNotRunning = gone - world.Starts();
  account.mostNotRunning = gone + world.Starts();
  for (const auto& [kind, sums] : kinds) {
    account.journal +=
        kind + ": " + std::to_string(sums.first) + ", missed " + std::to_string(sums.second) + "\n";
  }
  std::map<std::string, bool> stands;
  for (const publish::Alarm& alarm : world.publisher.alarms) {
    const std::string name = std::to_string(static_cast<int>(alarm.kind)) +
                             std::to_string(static_cast<int>(alarm.grade)) + Letter(alarm.axis) +
                             std::to_string(alarm.number.value_or(0));
    const bool begins = alarm.event == publish::AlarmEvent::Begin;
    if (stands[name] == begins) account.doubledAlarm = name;
    stands[name] = begins;
  }
  return account;
}

}  // namespace kestrel
