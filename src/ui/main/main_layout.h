// The main window's panels in their columns.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMainWindow>

#include "ui/panels/alarm_panel.h"
#include "ui/panels/capture_panel.h"
#include "ui/panels/conditions_panel.h"
#include "ui/panels/record_panel.h"
#include "ui/panels/status_panel.h"
#include "ui/parts/notice_strip.h"
#include "ui/plot/plot_panel.h"
#include "ui/plot/record_caption.h"

namespace kestrel {

// Settings on the left, the plot with its record and alarms in the middle, the sensor's state on
// the right, notices below all.
class MainLayout {
 public:
  struct Parts {
    CapturePanel& capture;
    RecordPanel& record;
    PlotPanel& plot;
    RecordCaption& caption;
    QPushButton& analyser;
    AlarmPanel& alarms;
    ConditionsPanel& conditions;
    StatusPanel& status;
    NoticeStrip& strip;
  };

  explicit MainLayout(const Parts& parts) : parts_(parts) {}

  // As the window's content.
  void Fill(QMainWindow& window) const;
  // Leaves less room between the parts where the screen needs it; where that is not enough, the
  // content scrolls. To be asked once, before the window is shown.
  void Fit(QMainWindow& window) const;

 private:
  void Space(QMainWindow& window, const Spacing& spacing) const;

  Parts parts_;
};

}  // namespace kestrel
