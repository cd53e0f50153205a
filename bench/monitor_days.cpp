// Thirty days of a monitor in simulated time, with faults of every kind at random.
// SPDX-License-Identifier: MIT
// A capture every 10 s. Every one is in the archive, or the journal tells its absence; every alarm
// comes to a subscriber of a real broker once, through the monitor's own outbox, though the broker
// is stopped, restarted and made slow; memory does not grow.
// monitor_days [DAYS [SEED]]; files are made in TMPDIR.

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/system.h"
#include "support/monitored_trials.h"
#include "support/temporary_broker.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

constexpr double kMostGrowth = 1.05;  // of memory after the last day, over that after the first
// A day ends quietly, so that memory is compared in the same state.
constexpr std::chrono::hours kEventful{20};
constexpr std::chrono::hours kQuiet{4};
constexpr std::chrono::hours kMeanBetweenFaults{1};

struct Memory {      // MB
  double own = 0;    // resident pages of the process's own
  double files = 0;  // resident pages of program and libraries, which the machine takes and reads
                     // anew as it likes
  double inUse = 0;  // asked for and not given back
};

// Pages that the library holds back for later are given back first.
Memory MemoryNow() {
  malloc_trim(0);
  const auto heap = mallinfo2();
  Memory memory{.inUse = static_cast<double>(heap.uordblks + heap.hblkhd) / (1 << 20)};
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("RssAnon:")) memory.own = std::stod(line.substr(8)) / 1024;
    if (line.starts_with("RssFile:")) memory.files = std::stod(line.substr(8)) / 1024;
  }
  return memory;
}

// Bands that the machine is beyond while its bearing is bad.
BandTable Bands() {
  BandTable table;
  table(kFLowField, 1, 0) = 5;
  table(kFHighField, 1, 0) = 250;
  for (const Axis axis : kAxes) table(Alarm1Field(axis), 1, 0) = 3000;
  return table;
}

// A broker, who listens to it, and the monitor's way to it.
class Wire {
 public:
  explicit Wire(MonitoredWorld& world, std::uint32_t seed)
      : world_(world), random_(seed), subscriber_(broker_.Port()) {
    const bool listens = Eventually([&] {
      return PublishTo(broker_.Port(), "ready", "1") && !subscriber_.Payloads("ready").empty();
    });
    if (!listens) throw std::runtime_error("nobody listens to the broker");
    Begin();
  }

  // The monitor's program ends and starts again.
  void Begin() {
    publish::PublisherChoice choice{.names = {"Hall 3", "Pump 7"},
                                    .outbox = (folder_.path() / "outbox.db").string()};
    choice.settings.broker = publish::BrokerSettings{
        .host = "127.0.0.1", .port = static_cast<std::uint16_t>(broker_.Port())};
    world_.publisher.next.reset();
    world_.publisher.next = publish::MakePublisher(choice);
  }
  void Disturb(bool isBack) {
    if (!isBack) {
      isStopped_ = random_() % 2 == 0;
      isStopped_ ? broker_.Stop() : broker_.Freeze();
      ++(isStopped_ ? stopped : slow);
    } else {
      isStopped_ ? broker_.Start() : broker_.GoOn();
    }
  }

  // How many begins and ends of alarms the journal has; what is wrong with those that came.
  std::string FaultsOf(const std::vector<archive::JournalEntry>& journal) {
    std::map<std::string, int> due;
    for (const archive::JournalEntry& entry : journal) {
      if (entry.kind != "alarm") continue;
      due[archive::TextOf(entry.uid) + "-begin"] = 0;
      if (entry.ended) due[archive::TextOf(entry.uid) + "-end"] = 0;
    }
    alarms = due.size();
    const std::string topic = "kestrel/Hall 3/Pump 7/alarm";
    (void)Eventually([&] { return subscriber_.Payloads(topic).size() >= due.size(); }, 120s);
    std::this_thread::sleep_for(1s);  // what comes twice comes now
    for (const std::string& alarm : subscriber_.Payloads(topic)) {
      ++due[nlohmann::json::parse(alarm)["id"]];
    }
    std::string faults;
    for (const auto& [id, times] : due) {
      if (times != 1) faults += id + " came " + std::to_string(times) + " times\n";
    }
    return faults;
  }

  std::size_t alarms = 0;
  int stopped = 0;
  int slow = 0;

 private:
  MonitoredWorld& world_;
  std::mt19937 random_;
  TemporaryFolder folder_;
  TemporaryBroker broker_;
  Subscriber subscriber_;
  bool isStopped_ = false;
};

struct Days {
  Memory first;
  Memory last;
  // With the same pages of files at both.
  [[nodiscard]] double First() const { return first.own + first.files; }
  [[nodiscard]] double Last() const { return last.own + first.files; }
};

Days Live(MonitoredWorld& world, MonitoredTrials& trials, int days) {
  Days memory;
  for (int day = 1; day <= days; ++day) {
    trials.Run(kEventful, kMeanBetweenFaults);
    world.Run(kQuiet);
    world.Settle();
    memory.last = MemoryNow();
    if (day == 1) memory.first = memory.last;
    std::fprintf(stderr, "day %d, %.2f MB resident, of its own %.2f MB, in use %.2f MB\n", day,
                 memory.last.own + memory.last.files, memory.last.own, memory.last.inUse);
  }
  return memory;
}

void TellFaults(const MonitoredTrials& trials, const Wire& wire) {
  for (const auto& [fault, times] : trials.Faults()) {
    std::printf("  %d times %s\n", times, fault.c_str());
  }
  std::printf("  the broker: %d times stopped, %d times slow\n", wire.stopped, wire.slow);
}

int Run(int days, std::uint32_t seed) {
  System::KeepMemorySmall();
  const auto start = std::chrono::steady_clock::now();
  MonitoredWorld world(kTrialPlan, BearingFault());
  world.mostSaid = 0;
  world.glance = 2s;
  world.bands = {Bands()};
  Wire wire(world, seed);
  MonitoredTrials trials(world, seed);
  trials.broker = [&](bool isBack) { wire.Disturb(isBack); };
  trials.ended = [&] { wire.Begin(); };
  world.Start();
  const Days memory = Live(world, trials, days);
  world.Stop();
  const MonitoredAccount account = AccountOf(world);
  auto archive = world.OpenArchive();
  const std::string faults = wire.FaultsOf(archive::EntriesOf(archive));
  world.publisher.next.reset();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  TellFaults(trials, wire);
  std::printf("%s%s", account.journal.c_str(), faults.c_str());
  const bool isKept = account.IsWhole() && faults.empty() && wire.alarms > 0 &&
                      memory.Last() <= memory.First() * kMostGrowth;
  std::printf(
      "%d days in %.0f s, seed %u: %lld captures asked for, %lld kept, %lld told as missed; while "
      "it did not run %lld told as missed of %lld to %lld; %zu alarm messages, %s; archive %s; "
      "memory "
      "%.1f MB after day 1, %.1f MB at the end: %s\n",
      days, taken.count(), seed, static_cast<long long>(account.asked),
      static_cast<long long>(account.kept), static_cast<long long>(account.missed),
      static_cast<long long>(account.notRunning), static_cast<long long>(account.leastNotRunning),
      static_cast<long long>(account.mostNotRunning), wire.alarms,
      faults.empty() ? "each came once" : "NOT each came once",
      account.damage.empty() ? "whole" : account.damage.front().c_str(), memory.First(),
      memory.Last(), isKept ? "kept" : "BROKEN");
  return isKept ? 0 : 1;
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  const int days = argc > 1 ? std::atoi(argv[1]) : 30;
  const auto seed = static_cast<std::uint32_t>(argc > 2 ? std::atol(argv[2]) : 1);
  return kestrel::Run(days, seed);
}
