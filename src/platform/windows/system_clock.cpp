// Sleeping most of a wait and watching the rest, on Windows.
// SPDX-License-Identifier: MIT
#include "platform/windows/system_clock.h"

#include <windows.h>

// After windows.h, which it builds on.
#include <timeapi.h>

namespace kestrel {
namespace {

constexpr UINT kTimerMs = 1;
constexpr std::chrono::milliseconds kWatched{2};  // a sleep may last this much too long

}  // namespace

SystemClock::SystemClock() {
  timeBeginPeriod(kTimerMs);
}

SystemClock::~SystemClock() {
  timeEndPeriod(kTimerMs);
}

double SystemClock::SecondsSinceMidnight() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return (now.wHour * 60 + now.wMinute) * 60 + now.wSecond + now.wMilliseconds * 1e-3;
}

std::chrono::system_clock::time_point SystemClock::UtcNow() {
  return std::chrono::system_clock::now();
}

std::chrono::nanoseconds SystemClock::Monotonic() {
  return std::chrono::steady_clock::now().time_since_epoch();
}

void SystemClock::WaitUntil(std::chrono::nanoseconds deadline) {
  const auto left = deadline - Monotonic();
  if (left > kWatched) {
    Sleep(static_cast<DWORD>(
        std::chrono::duration_cast<std::chrono::milliseconds>(left - kWatched).count()));
  }
  while (Monotonic() < deadline) {
  }
}

// The empty asm keeps the optimiser from dropping the loop or counting in larger steps.
void SystemClock::RunEmptyLoop(std::int32_t passes, std::int32_t iterations) {
  for (std::int32_t pass = 0; pass < passes; ++pass) {
    for (std::int32_t i = 0; i < iterations; ++i) asm volatile("" : "+r"(i));
  }
}

}  // namespace kestrel
