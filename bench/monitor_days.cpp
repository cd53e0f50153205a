// Thirty days of a monitor in simulated time, with faults of every kind at random.
// SPDX-License-Identifier: MIT
// A capture every 10 s. Every one is in the archive, or the journal tells its absence; memory does
// not grow. monitor_days [DAYS [SEED]]; the archive is made in TMPDIR.

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "support/monitored_trials.h"

namespace kestrel {
namespace {

constexpr double kMostGrowth = 1.05;  // of memory after the last day, over that after the first
constexpr std::chrono::hours kDay{24};
constexpr std::chrono::hours kMeanBetweenFaults{2};

// What is in use; pages that the library holds back for later are given back first.
double ResidentMegabytes() {
  malloc_trim(0);
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) / 1024;
  }
  return 0;
}

int Run(int days, std::uint32_t seed) {
  const auto start = std::chrono::steady_clock::now();
  MonitoredWorld world(kTrialPlan, BearingFault());
  world.mostSaid = 0;
  world.glance = std::chrono::seconds{2};
  MonitoredTrials trials(world, seed);
  world.Start();
  double first = 0;
  for (int day = 1; day <= days; ++day) {
    trials.Run(kDay, kMeanBetweenFaults);
    if (day == 1) first = ResidentMegabytes();
    std::fprintf(stderr, "day %d, %.1f MB\n", day, ResidentMegabytes());
  }
  const double last = ResidentMegabytes();
  world.Stop();
  const MonitoredAccount account = AccountOf(world);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  for (const auto& [fault, times] : trials.Faults()) {
    std::printf("  %d times %s\n", times, fault.c_str());
  }
  std::printf("%s", account.journal.c_str());
  const bool isKept = account.IsWhole() && last <= first * kMostGrowth;
  std::printf(
      "%d days in %.0f s, seed %u: %lld captures asked for, %lld kept, %lld told as missed; %zu "
      "alarm messages%s; archive %s; memory %.1f MB after day 1, %.1f MB at the end: %s\n",
      days, taken.count(), seed, static_cast<long long>(account.asked),
      static_cast<long long>(account.kept), static_cast<long long>(account.missed),
      world.publisher.alarms.size(), account.doubledAlarm.empty() ? ", none doubled" : ", DOUBLED",
      account.damage.empty() ? "whole" : account.damage.front().c_str(), first, last,
      isKept ? "kept" : "BROKEN");
  return isKept ? 0 : 1;
}

}  // namespace
}  // namespace kestrel

int main(int argc, char** argv) {
  const int days = argc > 1 ? std::atoi(argv[1]) : 30;
  const auto seed = static_cast<std::uint32_t>(argc > 2 ? std::atol(argv[2]) : 1);
  return kestrel::Run(days, seed);
}
