// Yielding with and without the user's actions.
// SPDX-License-Identifier: MIT
#include "ui/parts/qt_event_loop.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace kestrel {

QtEventLoop::QtEventLoop() {
  timer_.setObjectName("TimerDelayA");
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, [this] {
    if (tick_) tick_();
  });
}

void QtEventLoop::Yield() {
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void QtEventLoop::YieldUntilEvent() {
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

// Presses reach the window through sockets, too, when another program operates it.
void QtEventLoop::YieldToPaint() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                  QEventLoop::ExcludeSocketNotifiers);
}

void QtEventLoop::StartTimer(std::chrono::milliseconds interval, std::function<void()> tick) {
  tick_ = std::move(tick);
  timer_.start(interval);
}

void QtEventLoop::StopTimer() {
  timer_.stop();
}

}  // namespace kestrel
