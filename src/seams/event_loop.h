// The seam to the windowing toolkit's event loop and its one timer.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>

namespace kestrel {

// The windowing toolkit's event loop as the logic sees it, with one window timer. Handlers may run
// inside Yield and YieldUntilEvent, never inside YieldToPaint or elsewhere.
class EventLoop {
 public:
  virtual ~EventLoop() = default;

  // Handles what is pending and returns.
  virtual void Yield() = 0;

  // Sleeps until there is something to handle, handles it and returns.
  virtual void YieldUntilEvent() = 0;

  // Handles what is pending except key strokes and pointer actions, which stay queued: what was
  // changed on screen shows, and no handler of the user's runs.
  virtual void YieldToPaint() = 0;

  // Calls `tick` every `interval` from the event loop, until stopped. A timer that runs already is
  // started anew.
  virtual void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) = 0;
  virtual void StopTimer() = 0;
};

}  // namespace kestrel
