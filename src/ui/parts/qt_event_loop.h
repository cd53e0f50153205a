// The toolkit's event loop behind the seam.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <functional>

#include "seams/event_loop.h"

namespace kestrel {

// The toolkit's event loop, with TimerDelayA as its window timer.
class QtEventLoop : public EventLoop {
 public:
  QtEventLoop();

  void Yield() override;
  void YieldUntilEvent() override;
  void YieldToPaint() override;
  void StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) override;
  void StopTimer() override;

 private:
  QTimer timer_;
  std::function<void()> tick_;
};

}  // namespace kestrel
