// Tells the desktop of alarms that begin and end, and of a monitor that ended by itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <vector>

#include "archive/journal.h"
#include "ui/watch/monitor_runner.h"
#include "ui/watch/notifier.h"

namespace kestrel {

// Alarms that stood before the monitor was started were told when they began.
class AlarmTeller : public QObject {
 public:
  // Without a notifier nobody is told.
  AlarmTeller(MonitorRunner& runner, Notifier* notifier);

  // Remembered from one start of the program to the next.
  [[nodiscard]] bool IsOn() const { return isOn_; }
  void SwitchOn(bool isOn);

 private:
  void Look();
  void Tell(const QString& title, const QString& text);
  [[nodiscard]] QString Sensor() const;

  MonitorRunner& runner_;
  Notifier* notifier_;
  bool isOn_;
  bool isFollowing_ = false;
  std::vector<archive::JournalEntry> standing_;
};

}  // namespace kestrel
