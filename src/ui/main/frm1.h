// The main window.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <functional>
#include <memory>

#include "acquisition/desk.h"
#include "app/handler_edge.h"
#include "connection/core.h"
#include "station/sensor_road.h"
#include "ui/library/record_keeper.h"
#include "ui/main/adapter_watcher.h"
#include "ui/main/analyser_part.h"
#include "ui/main/archive_part.h"
#include "ui/main/freshness.h"
#include "ui/main/log_notice.h"
#include "ui/main/lost_notice.h"
#include "ui/main/main_layout.h"
#include "ui/main/main_menu.h"
#include "ui/main/main_notices.h"
#include "ui/main/menu_commands.h"
#include "ui/main/record_cures.h"
#include "ui/main/repeat_part.h"
#include "ui/main/secondary_windows.h"
#include "ui/panels/alarm_panel.h"
#include "ui/panels/capture_panel.h"
#include "ui/panels/conditions_panel.h"
#include "ui/panels/record_panel.h"
#include "ui/panels/status_panel.h"
#include "ui/parts/notice_strip.h"
#include "ui/plot/plot_panel.h"
#include "ui/plot/plot_pointer.h"
#include "ui/plot/record_caption.h"
#include "ui/readout/fast_readout_part.h"
#include "ui/watch/watch_part.h"

namespace kestrel {

// The main window: record settings, capture, plot and status, and the menus to everything else.
class frm1 : public QMainWindow {
 public:
  // Records are kept in the archive that is chosen, if any.
  frm1(Core& core, SimulatorControl simulator, const ArchiveChoice& archive = {},
       const WatchChoice& watch = {});

  // The edge that the handlers of this and all secondary windows run in.
  [[nodiscard]] HandlerEdge& Edge() { return edge_; }

  void SetCommInterfaceIndicators();
  void SetProductNumber(std::int16_t product);

  // The alarm bands on the plot, as their editor uses them.
  [[nodiscard]] BandOverlay& Overlay() { return desk_.overlay; }

  // Repeated captures, one program's worth, for whoever shows or starts them.
  [[nodiscard]] RepeatRunner& Repeats() { return repeat_.Runner(); }
  [[nodiscard]] WideRunner& WideCaptures() { return repeat_.Wide(); }

  // Keeps the records that are read.
  [[nodiscard]] RecordKeeper& Keeper() { return keeper_; }

  // Monitoring by a plan, which borrows the sensor.
  [[nodiscard]] WatchPart& Watch() { return watch_; }

  // The data-log files that captures go to.
  [[nodiscard]] const DataLog& Log() const { return desk_.log; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LayOut();
  void ConnectButtons();
  void ConnectSettings();
  void ConnectPlot();
  void ConnectWindows();
  void ConnectNotices();
  void ShowRecordLine();
  template <typename Sender, typename Signal, typename Handler>
  void On(Sender* sender, Signal signal, const char* name, Handler handler);
  void Form_Load();

  void Handle(const char* name, const std::function<void()>& handler) { edge_.Run(name, handler); }

  // Whether no capture is waited for; says so in the status bar where one is.
  bool IsIdle();

  void CmdReadStatus_Click();
  void ckDataLog_Click();

  Core& core_;
  HandlerEdge edge_;

  MainMenu* menu_;
  ConditionsPanel* conditions_;
  RecordPanel* record_;
  CapturePanel* capture_;
  PlotPanel* plotPanel_;
  RecordCaption* caption_;
  StatusPanel* statusPanel_;
  AlarmPanel* alarmPanel_;
  LostNotice* lostNotice_;
  NoticeStrip* strip_;
  MainNotices notices_;
  QPointer<AdapterWatcher> watcher_;
  QLabel* lblInterface_;

  Desk desk_;
  LogNotice logNotice_;
  CurrentRecord::Listener recordListener_;
  PlotPointer pointer_;
  SecondaryWindows windows_;
  Freshness freshness_;
  RecordCures cures_;
  MenuCommands commands_;
  FastReadoutPart fastReadout_;
  RepeatPart repeat_;
  RecordKeeper keeper_;
  ArchivePart archive_;
  WatchPart watch_;
  AnalyserPart analyser_;
  MainLayout layout_;
};

}  // namespace kestrel
