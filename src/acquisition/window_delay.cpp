// The timer and the flag behind waits that keep the windows alive.
// SPDX-License-Identifier: MIT
#include "acquisition/window_delay.h"

#include <chrono>

#include "numeric/conversions.h"

namespace kestrel {

std::int16_t DelayActive = 0;

void WindowDelay::DelayA(double ms) {
  const std::chrono::milliseconds interval{ToLong(ms)};
  if (closed_) return;
  if (interval.count() <= 0) {
    loop_.Yield();
    return;
  }
  loop_.StartTimer(interval, [this] { TimerDelayA_Timer(); });
  DelayActive = 1;
  do {
    loop_.YieldUntilEvent();
  } while (DelayActive == 1);
  loop_.StopTimer();
}

void WindowDelay::TimerDelayA_Timer() {
  DelayActive = 0;
}

void WindowDelay::Close() {
  closed_ = true;
  DelayActive = 0;
}

}  // namespace kestrel
