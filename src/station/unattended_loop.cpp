// How a wait without windows passes, and where it looks for an interrupt.
// SPDX-License-Identifier: MIT
#include "station/unattended_loop.h"

#include <algorithm>
#include <utility>

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// How long an interrupt may go unnoticed.
constexpr milliseconds kGlance{20};

}  // namespace

void UnattendedLoop::StartTimer(milliseconds interval, std::function<void()> tick) {
  interval_ = interval;
  due_ = clock_.Monotonic() + interval_;
  tick_ = std::move(tick);
}

void UnattendedLoop::YieldUntilEvent() {
  while (!LookForInterrupt() && tick_) {
    const nanoseconds now = clock_.Monotonic();
    if (now >= due_) {
      due_ = now + interval_;
      const std::function<void()> tick = tick_;
      tick();
      return;
    }
    clock_.WaitUntil(std::min(due_, now + kGlance));
  }
}

bool UnattendedLoop::Pause(nanoseconds duration) {
  const nanoseconds end = clock_.Monotonic() + duration;
  for (nanoseconds now = clock_.Monotonic(); now < end; now = clock_.Monotonic()) {
    if (LookForInterrupt()) return false;
    clock_.WaitUntil(std::min(end, now + kGlance));
  }
  return true;
}

void UnattendedLoop::Forget() {
  wasInterrupted_ = false;
  action_ = nullptr;
}

bool UnattendedLoop::LookForInterrupt() {
  if (!interrupted_ || !interrupted_()) return false;
  wasInterrupted_ = true;
  if (const auto action = std::exchange(action_, nullptr)) action();
  return true;
}

}  // namespace kestrel
