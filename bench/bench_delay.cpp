// Kestrel evaluation program
// SPDX-License-Identifier: MIT
// How late WaitUntil returns, and what a long wait costs. Run it idle, then beside busy processes.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

#include "platform/linux/system_clock.h"

namespace {

using std::chrono::nanoseconds;

double ProcessorSeconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

double Seconds(nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

void PrintLateness(kestrel::Clock& clock, nanoseconds wait, int rounds) {
  std::vector<double> lateUs;
  for (int i = 0; i < rounds; ++i) {
    const nanoseconds deadline = clock.Monotonic() + wait;
    clock.WaitUntil(deadline);
    lateUs.push_back(Seconds(clock.Monotonic() - deadline) * 1e6);
  }
  std::sort(lateUs.begin(), lateUs.end());
  const auto at = [&](double part) {
    return lateUs[static_cast<std::size_t>(part * static_cast<double>(lateUs.size() - 1))];
  };
  std::printf(
      "%8.0f us wait, %5d rounds: late by %.2f us median, %.2f 95 %%, %.2f 99 %%, %.2f max\n",
      Seconds(wait) * 1e6, rounds, at(0.5), at(0.95), at(0.99), at(1.0));
}

void PrintCost(kestrel::Clock& clock, nanoseconds wait) {
  const double usedBefore = ProcessorSeconds();
  const nanoseconds start = clock.Monotonic();
  clock.WaitUntil(start + wait);
  const double share = (ProcessorSeconds() - usedBefore) / Seconds(clock.Monotonic() - start);
  std::printf("%8.0f us wait: %.3f %% of a core\n", Seconds(wait) * 1e6, share * 100);
}

}  // namespace

int main() {
  kestrel::SystemClock clock;
  PrintLateness(clock, std::chrono::microseconds{10}, 20000);
  PrintLateness(clock, std::chrono::microseconds{100}, 20000);
  PrintLateness(clock, std::chrono::milliseconds{5}, 400);
  PrintLateness(clock, std::chrono::milliseconds{50}, 60);
  for (const int ms : {5, 50, 500}) PrintCost(clock, std::chrono::milliseconds{ms});
}
