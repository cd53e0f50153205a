// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <functional>
#include <memory>

#include "acquisition/capture_cycle.h"
#include "acquisition/record_settings.h"
#include "app/core.h"
#include "ui/alarm_panel.h"
#include "ui/capture_panel.h"
#include "ui/conditions_panel.h"
#include "ui/main_menu.h"
#include "ui/plot_panel.h"
#include "ui/record_panel.h"
#include "ui/status_panel.h"

namespace kestrel {

// The main window: record settings, capture, plot and status, and the menus to everything else.
class frm1 : public QMainWindow {
 public:
  // `connectSimulator` puts the simulated sensor in the place of the system's devices.
  frm1(Core& core, std::function<void()> connectSimulator);

  void SetCommInterfaceIndicators();
  void SetProductNumber(std::int16_t product);

  // The data-log files that captures go to.
  [[nodiscard]] const DataLog& Log() const { return log_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut();
  void Connect();
  void Form_Load();

  // Runs what a control does. A run-time error ends it with a message box that names it; while a
  // record is being read nothing that touches the sensor may start.
  void Handle(const char* name, const std::function<void()>& handler);

  void mnuSimulated_Click();
  void mnu31407_Click();
  void mnuAbout_Click();
  void CmdReadStatus_Click();
  void ckDataLog_Click();

  Core& core_;
  std::function<void()> connectSimulator_;

  MainMenu* menu_;
  ConditionsPanel* conditions_;
  RecordPanel* record_;
  CapturePanel* capture_;
  PlotPanel* plotPanel_;
  StatusPanel* statusPanel_;
  AlarmPanel* alarmPanel_;
  QLabel* lblInterface_;

  AlarmStatus alarms_;
  SpectrumPlot plot_;
  StatusDisplay status_;
  DataLog log_;
  WindowDelay delay_;
  CaptureReadout readout_;
  CaptureCycle cycle_;
  RecordSettings settings_;
};

}  // namespace kestrel
