// The timer and the flag behind waits that keep the windows alive.
// SPDX-License-Identifier: MIT
#include "acquisition/window_delay.h"

#include <chrono>

#include "numeric/conversions.h"

namespace kestrel {

namespace {

std::int16_t active = 0;

}  // namespace

const std::int16_t& DelayActive = active;

void ResetDelayActive() {
  active = 0;
}

void WindowDelay::DelayA(double ms) {
  const std::chrono::milliseconds interval{ToLong(ms)};
  if (closed_) return;
  if (interval.count() <= 0) {
    loop_.Yield();
    return;
  }
  loop_.StartTimer(interval, [this] { TimerDelayA_Timer(); });
  active = 1;
  do {
    loop_.YieldUntilEvent();
  } while (DelayActive == 1);
  loop_.StopTimer();
}

void WindowDelay::TimerDelayA_Timer() {
  active = 0;
}

void WindowDelay::Close() {
  closed_ = true;
  active = 0;
}

}  // namespace kestrel
