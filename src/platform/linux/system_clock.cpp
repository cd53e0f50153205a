// Sleeping until shortly before a deadline and watching the rest, on Linux.
// SPDX-License-Identifier: MIT
#include "platform/linux/system_clock.h"

#include <sys/prctl.h>

#include <cerrno>
#include <ctime>

namespace kestrel {
namespace {

constexpr unsigned long kTimerSlackNs = 1;  // by default the system lets timers be 50 us late

std::chrono::nanoseconds Now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::chrono::seconds{now.tv_sec} + std::chrono::nanoseconds{now.tv_nsec};
}

void SleepUntil(std::chrono::nanoseconds moment) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
  timespec until{};
  until.tv_sec = seconds.count();
  until.tv_nsec = (moment - seconds).count();
  while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
  }
}

}  // namespace

SystemClock::SystemClock() {
  // Without it waits are still right: the slack is far less than what is watched.
  static_cast<void>(prctl(PR_SET_TIMERSLACK, kTimerSlackNs, 0UL, 0UL, 0UL));
}

double SystemClock::SecondsSinceMidnight() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  tm local{};
  localtime_r(&now.tv_sec, &local);
  const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  return seconds + static_cast<double>(now.tv_nsec) * 1e-9;
}

std::chrono::system_clock::time_point SystemClock::UtcNow() {
  return std::chrono::system_clock::now();
}

std::chrono::nanoseconds SystemClock::Monotonic() {
  return Now();
}

void SystemClock::WaitUntil(std::chrono::nanoseconds deadline) {
  const std::chrono::nanoseconds back = deadline - margin_.Watched();
  if (back > Now()) {
    SleepUntil(back);
    margin_.Note(Now() - back);
  }
  while (Now() < deadline) {
  }
}

// The empty asm keeps the optimiser from dropping the loop or counting in larger steps.
void SystemClock::RunEmptyLoop(std::int32_t passes, std::int32_t iterations) {
  for (std::int32_t pass = 0; pass < passes; ++pass) {
    for (std::int32_t i = 0; i < iterations; ++i) asm volatile("" : "+r"(i));
  }
}

}  // namespace kestrel
