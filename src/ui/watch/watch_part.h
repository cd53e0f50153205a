// What the main window has of the monitor: who has the sensor, the notice of it, the orderly end.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "ui/library/record_keeper.h"
#include "ui/parts/interface_text.h"
#include "ui/parts/notice_strip.h"
#include "ui/watch/alarm_teller.h"
#include "ui/watch/monitor_host.h"
#include "ui/watch/monitor_runner.h"
#include "ui/watch/present_plan.h"
#include "ui/watch/sensor_loan.h"

namespace kestrel {

// What the system gives to monitoring; made by the entry point.
struct WatchChoice {
  MakeMonitorProcess make = {};         // none: the command-line program beside this one
  Notifier* notifier = nullptr;         // none: nobody is told
  std::function<void()> letGo = [] {};  // of boards and ports
  PresentRoad road = {};
};

class WatchPart : public QObject {
  Q_OBJECT

 public:
  struct Parts {
    Core& core;
    HandlerEdge& edge;
    SettingsExchange& settings;
    NoticeStrip& strip;
    RecordKeeper& keeper;
    std::string bench;
    std::function<bool()> isBusy;
    std::function<void(const SettingsExchange::Shown&)> giveSettingsBack;
    std::function<void()> openMonitor;  // the window that shows it
  };

  WatchPart(const Parts& parts, const WatchChoice& choice);

  [[nodiscard]] MonitorRunner& Runner() { return runner_; }
  [[nodiscard]] bool HasLent() const { return loan_.IsLent(); }
  // What is said to whoever wants the sensor meanwhile.
  [[nodiscard]] QString WhoHasIt() const;
  // In the place of an interface's name.
  [[nodiscard]] InterfaceText Interface() const;
  // For the analyser.
  [[nodiscard]] MonitorHost Host();

  // Before the main window closes: false while a monitor is to end in order; `goOn` is called when
  // it has. Asked again meanwhile, it is left to end by itself.
  [[nodiscard]] bool MayClose(std::function<void()> goOn);
  void Close() { loan_.Close(); }

 signals:
  void Changed();  // who has the sensor

 private:
  [[nodiscard]] QString Lend(const monitor::Plan& plan);
  void ShowNotice();

  Parts parts_;
  PresentRoad road_;
  SensorLoan loan_;
  MonitorRunner runner_;
  AlarmTeller teller_;
  QString shown_;  // in the strip, the user may have closed it
  bool isClosing_ = false;
};

}  // namespace kestrel
