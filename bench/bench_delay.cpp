// How late a wait returns, and what a long one costs.
// SPDX-License-Identifier: MIT
// How late WaitUntil returns, what a long wait costs, and what the waits of a read-out come to
// beside busy processes, which it starts itself.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <functional>
#include <thread>
#include <vector>

#include "figure.h"
#include "platform/linux/system_clock.h"

namespace {

using kestrel::Amount;
using kestrel::PrintNote;
using std::chrono::nanoseconds;

double ProcessorSeconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

double Seconds(nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

using Lateness = std::vector<double>;  // us, sorted

Lateness Measure(kestrel::Clock& clock, nanoseconds wait, int rounds,
                 const std::function<void(nanoseconds deadline)>& waitUntil) {
  Lateness late;
  for (int i = 0; i < rounds; ++i) {
    const nanoseconds deadline = clock.Monotonic() + wait;
    waitUntil(deadline);
    late.push_back(Seconds(clock.Monotonic() - deadline) * 1e6);
  }
  std::sort(late.begin(), late.end());
  return late;
}

double At(const Lateness& late, double part) {
  return late[static_cast<std::size_t>(part * static_cast<double>(late.size() - 1))];
}

Lateness PrintLateness(kestrel::Clock& clock, nanoseconds wait, int rounds) {
  Lateness late = Measure(clock, wait, rounds, [&](nanoseconds end) { clock.WaitUntil(end); });
  PrintNote("A wait of " + Amount(Seconds(wait) * 1e6, 0, "us is late by ") +
            Amount(At(late, 0.5), 2, "us (median), ") + Amount(At(late, 0.95), 2, "us (95 %), ") +
            Amount(At(late, 0.99), 2, "us (99 %)."));
  return late;
}

void PrintCost(kestrel::Clock& clock, nanoseconds wait) {
  const double usedBefore = ProcessorSeconds();
  const nanoseconds start = clock.Monotonic();
  clock.WaitUntil(start + wait);
  const double share = (ProcessorSeconds() - usedBefore) / Seconds(clock.Monotonic() - start);
  PrintNote("A wait of " + Amount(Seconds(wait) * 1e3, 0, "ms costs ") +
            Amount(share * 100, 2, "% of a core."));
}

// The waits between register accesses, beside the system's own sleep.
void PrintShortWait(kestrel::Clock& clock) {
  constexpr nanoseconds kWait = std::chrono::microseconds{100};
  constexpr double kPromisedUs = 5;
  const double ours = At(PrintLateness(clock, kWait, 20000), 0.5);
  const double sleep = At(Measure(clock, kWait, 2000,
                                  [](nanoseconds end) {
                                    using std::chrono::steady_clock;
                                    std::this_thread::sleep_until(steady_clock::time_point(end));
                                  }),
                          0.5);
  kestrel::Print({.name = "lateness of a 100 us wait, median",
                  .measured = Amount(ours, 2, "us"),
                  .peer = "plain sleep: " + Amount(sleep, 1, "us"),
                  .ratio = ours / sleep,
                  .promise = "at most 5 us",
                  .kept = ours <= kPromisedUs});
}

// A process for each processor that does nothing but count.
class BusyProcessors {
 public:
  BusyProcessors() {
    for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
      const pid_t child = fork();
      if (child == 0) {
        for (;;) asm volatile("");
      }
      if (child > 0) children_.push_back(child);
    }
  }
  ~BusyProcessors() {
    for (const pid_t child : children_) {
      kill(child, SIGKILL);
      waitpid(child, nullptr, 0);
    }
  }
  BusyProcessors(const BusyProcessors&) = delete;
  BusyProcessors& operator=(const BusyProcessors&) = delete;

 private:
  std::vector<pid_t> children_;
};

// The waits of an ordinary read-out of 3 x 256 points, as a multiple of what was asked for.
double WaitsOfAReadout(kestrel::Clock& clock, const std::function<void(nanoseconds)>& waitUntil) {
  constexpr int kWaits = 2 * 3 * 256;
  constexpr nanoseconds kWait = std::chrono::microseconds{100};
  const nanoseconds start = clock.Monotonic();
  for (int i = 0; i < kWaits; ++i) waitUntil(clock.Monotonic() + kWait);
  return Seconds(clock.Monotonic() - start) / (kWaits * Seconds(kWait));
}

// By turns with waits of which 80 us are always watched.
void PrintWaitsUnderLoad(kestrel::Clock& clock) {
  constexpr int kRounds = 5;
  constexpr nanoseconds kAlwaysWatched = std::chrono::microseconds{80};
  constexpr double kPromised = 0.75;
  const BusyProcessors busy;
  Lateness ours;
  Lateness watching;
  for (int round = 0; round < kRounds; ++round) {
    ours.push_back(WaitsOfAReadout(clock, [&](nanoseconds end) { clock.WaitUntil(end); }));
    watching.push_back(WaitsOfAReadout(clock, [&](nanoseconds end) {
      using std::chrono::steady_clock;
      std::this_thread::sleep_until(steady_clock::time_point(end - kAlwaysWatched));
      while (clock.Monotonic() < end) {
      }
    }));
  }
  std::sort(ours.begin(), ours.end());
  std::sort(watching.begin(), watching.end());
  kestrel::Print({.name = "waits of a read-out, all processors busy",
                  .measured = Amount(At(ours, 0.5), 2, "x their floor"),
                  .peer = "always watching 80 us: " + Amount(At(watching, 0.5), 2, "x"),
                  .ratio = At(ours, 0.5) / At(watching, 0.5),
                  .promise = "at most 0.75 x of that",
                  .kept = At(ours, 0.5) <= kPromised * At(watching, 0.5)});
}

}  // namespace

int main() {
  kestrel::SystemClock clock;
  PrintShortWait(clock);
  PrintLateness(clock, std::chrono::microseconds{10}, 20000);
  PrintLateness(clock, std::chrono::milliseconds{5}, 400);
  PrintLateness(clock, std::chrono::milliseconds{50}, 60);
  for (const int ms : {5, 50, 500}) PrintCost(clock, std::chrono::milliseconds{ms});
  PrintWaitsUnderLoad(clock);
}
