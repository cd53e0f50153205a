// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "cli/console.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// How long Ctrl-C may go unnoticed.
constexpr milliseconds kGlance{20};

}  // namespace

void ConsoleLoop::StartTimer(milliseconds interval, std::function<void()> tick) {
  interval_ = interval;
  due_ = clock_.Monotonic() + interval_;
  tick_ = std::move(tick);
}

void ConsoleLoop::YieldUntilEvent() {
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

void ConsoleLoop::Pause(nanoseconds duration) {
  const nanoseconds end = clock_.Monotonic() + duration;
  for (nanoseconds now = clock_.Monotonic(); now < end; now = clock_.Monotonic()) {
    if (LookForInterrupt()) return;
    clock_.WaitUntil(std::min(end, now + kGlance));
  }
}

bool ConsoleLoop::LookForInterrupt() {
  if (!interrupted_()) return false;
  wasInterrupted_ = true;
  if (const auto action = std::exchange(action_, nullptr)) action();
  return true;
}

void StreamMessages::Show(const std::string& text, const std::string& title) {
  ++count_;
  std::string line = title.empty() ? text : title + ": " + text;
  std::erase(line, '\r');
  line.erase(0, std::min(line.find_first_not_of('\n'), line.size()));
  line.erase(line.find_last_not_of('\n') + 1);
  stream_ << line << '\n';
}

}  // namespace kestrel
