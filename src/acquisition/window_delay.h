// WindowDelay: waits during which the user's handlers run.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "seams/event_loop.h"

namespace kestrel {

extern const std::int16_t& DelayActive;  // 1 while DelayA waits (0); TimerDelayA's tick clears it

// Back to the start value in brackets.
void ResetDelayActive();

// Waits that keep the windows alive. There is one timer and one flag: a wait inside a wait ends the
// outer one at the same tick.
class WindowDelay {
 public:
  explicit WindowDelay(EventLoop& loop) : loop_(loop) {}

  // Waits about `ms` milliseconds, rounded half to even, handling events meanwhile. The only place
  // where a capture yields to the user.
  void DelayA(double ms);

  void TimerDelayA_Timer();

  // Ends the wait at hand and makes every later one return at once: the window is closing.
  void Close();

 private:
  EventLoop& loop_;
  bool closed_ = false;
};

}  // namespace kestrel
