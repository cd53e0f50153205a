// How the main window is put together and what its controls do.
// SPDX-License-Identifier: MIT
#include "ui/main/frm1.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QStatusBar>
#include <array>
#include <utility>

#include "app/program_state.h"
#include "numeric/number_format.h"
#include "ui/parts/interface_text.h"
#include "ui/parts/line_label.h"
#include "ui/parts/wheel_guard.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kNoticeMs = 3000;

}  // namespace

frm1::frm1(Core& core, SimulatorControl simulator, const ArchiveChoice& archive,
           const WatchChoice& watch)
    : core_(core),
      edge_(core.seams.messages,
            {.busy = [this] { return desk_.readout.Busy(); },
             .refused =
                 [this] {
                   statusBar()->showMessage(
                       watch_.HasLent() ? watch_.WhoHasIt()
                                        : tr("The sensor is being read or written. Please try "
                                             "again in a moment."),
                       kNoticeMs);
                 },
             .after =
                 [this] {
                   SetCommInterfaceIndicators();
                   windows_.Refresh();
                   analyser_.Refresh();
                   logNotice_.ShowLast();
                 },
             .idle = [this] { return IsIdle(); }}),
      menu_(new MainMenu(*this)),
      conditions_(new ConditionsPanel(core.seams.locale)),
      record_(new RecordPanel(conditions_->lblRecCount)),
      capture_(new CapturePanel(*record_, *conditions_, core.seams.pointer)),
      plotPanel_(new PlotPanel(core.record)),
      caption_(new RecordCaption),
      statusPanel_(new StatusPanel(core.seams.locale)),
      alarmPanel_(new AlarmPanel(core.seams.locale)),
      lostNotice_(new LostNotice(core, edge_)),
      strip_(new NoticeStrip("noticeStrip", lostNotice_)),
      notices_(*strip_),
      watcher_(new AdapterWatcher(core, edge_, this)),
      lblInterface_(new LineLabel),
      desk_(core, {*alarmPanel_, *plotPanel_, *plotPanel_, *statusPanel_, *capture_, *capture_,
                   *capture_, *record_, *plotPanel_}),
      logNotice_(core, desk_.log, *capture_, *statusBar()),
      pointer_(*plotPanel_, desk_.overlay, desk_.cursor, edge_),
      windows_(core, edge_, desk_.overlay, this),
      freshness_({core.registers, desk_, windows_, *record_, *conditions_, *statusPanel_,
                  *alarmPanel_, *lostNotice_, *strip_, notices_}),
      cures_({core, edge_, desk_.plot, desk_.settings, *record_, *capture_, windows_}),
      commands_({core, edge_, desk_, windows_, *menu_, *this, std::move(simulator),
                 [this] { return IsIdle(); },
                 [this](std::int16_t product) { SetProductNumber(product); }}),
      fastReadout_(desk_.readout.Fast(), *menu_->mnuFastReadout, *strip_, edge_),
      repeat_({core, edge_, desk_, freshness_, *capture_, *menu_, *this, cures_}),
      keeper_(core.record, archive),
      archive_({keeper_, *menu_, core.seams.messages, core.seams.pointer, *this}),
      watch_({core, edge_, desk_.settings, *strip_, keeper_, archive.bench,
              [this] { return repeat_.Running() || desk_.cycle.Running(); },
              [this](const auto& earlier) { static_cast<void>(freshness_.GiveBack(earlier)); },
              [this] { analyser_.OpenMonitor(); }},
             watch),
      analyser_({core, *capture_, *menu_, cures_, repeat_.Runner(), repeat_.Wide(),
                 [this] { repeat_.Open(); }, keeper_, windows_, watch_}),
      layout_({*capture_, *record_, *plotPanel_, *caption_, *analyser_.cmdAnalyser, *alarmPanel_,
               *conditions_, *statusPanel_, *strip_}) {
  setObjectName("frm1");
  windows_.KeepSetupsIn(setup::SetupFolderBeside(archive.usual), archive.program);
  lblInterface_->setObjectName("lblInterface");
  lblInterface_->setTextFormat(Qt::PlainText);
  LayOut();
  ConnectButtons();
  ConnectSettings();
  ConnectPlot();
  commands_.Connect();
  ConnectWindows();
  ConnectNotices();
  qApp->installEventFilter(this);
  qApp->installEventFilter(new WheelGuard(this));
  Handle("Form_Load", [this] { Form_Load(); });
  layout_.Fit(*this);
}

void frm1::LayOut() {
  layout_.Fill(*this);
  statusBar()->addWidget(lblInterface_, 1);
  statusBar()->addPermanentWidget(capture_->progress);
  resize(1240, 690);
}

template <typename Sender, typename Signal, typename Handler>
void frm1::On(Sender* sender, Signal signal, const char* name, Handler handler) {
  connect(sender, signal, this, [this, name, handler] { Handle(name, handler); });
}

void frm1::ConnectButtons() {
  const auto clicked = &QPushButton::clicked;
  On(capture_->cmdStart, clicked, "cmdStart_Click", [this] {
    desk_.settings.HideWorkingSign();
    notices_.CaptureStarted();
    repeat_.NoteStartPressed();
    desk_.cycle.cmdStart_Click();
  });
  On(capture_->cmdReadBuffer, clicked, "cmdReadBuffer_Click", [this] {
    if (IsIdle()) desk_.cycle.cmdReadBuffer_Click();
  });
  On(record_->cmdGetRecord, clicked, "cmdGetRecord_Click", [this] {
    if (IsIdle()) desk_.cycle.cmdGetRecord_Click(record_->Selected(Setting::RecPntr));
  });
  On(record_->cmdRecInfo, clicked, "cmdRecInfo_Click", [this] { windows_.OpenRecInfo(); });
  desk_.log.BeforeReplacing([this] {
    logNotice_.FileInTheWay(repeat_.Running(), [this] {
      QMetaObject::invokeMethod(
          this, [this] { windows_.OpenDataLog(); }, Qt::QueuedConnection);
    });
  });
  On(capture_->ckDataLog, &QCheckBox::clicked, "ckDataLog_Click", [this] { ckDataLog_Click(); });
  On(capture_->cmdConfigDataLog, clicked, "cmdConfigDataLog_Click",
     [this] { windows_.OpenDataLog(); });
  On(statusPanel_->CmdReadStatus, clicked, "CmdReadStatus_Click",
     [this] { CmdReadStatus_Click(); });
  On(statusPanel_->cmdClearStatus, clicked, "cmdClearStatus_Click",
     [this] { desk_.status.ClearStatus("cmdClearStatus"); });
}

// The sign that settings were exchanged waits; a capture's own wait must not be disturbed by it.
void frm1::ConnectSettings() {
  const auto setting = [this](auto signal, const char* name, void (SettingsExchange::*exchange)()) {
    On(record_, signal, name, [this, exchange] {
      (desk_.settings.*exchange)();
      if (!desk_.cycle.Running()) desk_.settings.ShowWorkingCapPrd();
    });
  };
  setting(&RecordPanel::RecCtrlChanged, "Set_RecCtrl", &SettingsExchange::Set_RecCtrl);
  setting(&RecordPanel::RecPrdChanged, "Write_RecPrd", &SettingsExchange::Write_RecPrd);
  setting(&RecordPanel::FftAvgsChanged, "cbxFFTAvgs_Click", &SettingsExchange::cbxFFTAvgs_Click);
  setting(&RecordPanel::RecPntrChanged, "cbxRecPntr_Click", &SettingsExchange::cbxRecPntr_Click);
}

void frm1::ConnectPlot() {
  On(plotPanel_->cmdPlotScale, &QPushButton::clicked, "cmdPlotScale_Click", [this] {
    desk_.plot.cmdPlotScale_Click();
    if (desk_.overlay.IsOn()) desk_.overlay.PlotBands();
  });
  connect(plotPanel_->cmdPlotScale, &ScaleButton::ScaleChosen, this, [this](const QString& scale) {
    Handle("cmdPlotScale_Choose", [this, &scale] {
      desk_.plot.TakeScale(scale.toStdString());
      if (desk_.overlay.IsOn()) desk_.overlay.PlotBands();
    });
  });
  for (const Axis axis : kAxes) {
    On(plotPanel_->TraceBox(axis), &QCheckBox::clicked, "SetPlotTrace", [this] {
      desk_.plot.SetPlotTrace();
      desk_.overlay.RecordRedrawn();
    });
  }
  recordListener_ = core_.record.OnChange([this] {
    desk_.cursor.RecordChanged();
    ShowRecordLine();
  });
}

// What tells that the adapter is gone, or that another one has been chosen.
void frm1::ConnectWindows() {
  const auto refill = [this] { freshness_.InterfaceChosen(); };
  On(lostNotice_, &LostNotice::SelectWanted, "mnuUsb_Click", [this] { windows_.OpenUsb(); });
  connect(lostNotice_, &LostNotice::InterfaceChosen, this, refill);
  connect(&windows_, &SecondaryWindows::BandRangeNoted, &notices_, &MainNotices::ShowBandRange);
  connect(&notices_, &MainNotices::KeepThresholdsWanted, this,
          [this] { windows_.KeepThresholdsInG(); });
  connect(&windows_, &SecondaryWindows::InterfaceChosen, this, refill);
  connect(&windows_, &SecondaryWindows::CommandSent, this,
          [this](int bit) { freshness_.CommandSent(bit); });
  connect(&windows_, &SecondaryWindows::RegisterWritten, this,
          [this](int row) { freshness_.RegisterWritten(row); });
  connect(&windows_, &SecondaryWindows::SetupRestored, this, [this] {
    Handle("SetupRestored", [this] {
      windows_.ForgetSensor();
      freshness_.ReadAll();
      windows_.ReadAgain();
    });
  });
  desk_.cycle.OnFoundAgain(refill);
  connect(&watch_, &WatchPart::Changed, this, [this] {
    const std::array<QWidget*, 3> users{record_, capture_, statusPanel_};
    for (QWidget* panel : users) panel->setEnabled(!watch_.HasLent());
    SetCommInterfaceIndicators();
    analyser_.Refresh();
  });
  connect(watcher_, &AdapterWatcher::Lost, this, [this] {
    SetCommInterfaceIndicators();
    analyser_.NoteGap("sensor unplugged");
    analyser_.Refresh();
  });
}

// Cures use the sensor: not while a capture is waited for.
void frm1::ConnectNotices() {
  const auto cure = [this](auto signal, const char* name, void (Freshness::*deed)()) {
    connect(&notices_, signal, this,
            [this, name, deed] { edge_.RunIdle(name, [this, deed] { (freshness_.*deed)(); }); });
  };
  cure(&MainNotices::RestoreWanted, "RestoreSettings", &Freshness::RestoreSettings);
  cure(&MainNotices::StopTimerWanted, "StopTimer", &Freshness::StopTimer);
  cure(&MainNotices::ReadWanted, "ReadMainFormRegisters", &Freshness::ReadAll);
  connect(caption_, &RecordCaption::CureWanted, this,
          [this](Cure wanted) { cures_.CarryOut(wanted); });
}

void frm1::ShowRecordLine() {
  const bool isLost = !watch_.HasLent() && !core_.registers.Reachable();
  caption_->Show(core_.record.Get(), {.sensorLost = isLost});
}

void frm1::Form_Load() {
  setWindowTitle(QString("Norvale    ") + kApplicationTitle);
  SetCommInterfaceIndicators();
  record_->FillLists();
  conditions_->SetStartValues();
  plotPanel_->SetStartValues();
  plotPanel_->IniAlarmBandLabels();
  desk_.overlay.initPlotLines();
  capture_->ckAutoPlot->setChecked(true);
  SetProductNumber(kProduct31407);
}

bool frm1::IsIdle() {
  if (!desk_.cycle.Running()) return true;
  statusBar()->showMessage(tr("Please wait for the capture or stop it first."), kNoticeMs);
  return false;
}

void frm1::SetCommInterfaceIndicators() {
  if (watcher_) watcher_->Begin();
  const InterfaceText text = watch_.HasLent() ? watch_.Interface() : DescribeInterface();
  lblInterface_->setText(QString::fromStdString(text.line));
  // Where the status bar is too narrow for the line, the tip still has all of it.
  lblInterface_->setToolTip(QString::fromStdString(text.line + "\n" + text.detail).trimmed());
  menu_->mnuParallel->setChecked(InterfaceType == kParallelPort);
  menu_->mnuUsb->setChecked(InterfaceType == kUsbAdapter);
  fastReadout_.Refresh();
  menu_->ShowDebug(commands_.SensorIsSimulated());
  conditions_->ShowSimulated(commands_.SensorIsSimulated());
  freshness_.Refresh();
  ShowRecordLine();
}

void frm1::SetProductNumber(std::int16_t product) {
  ChooseProduct(product);
  conditions_->lblProduct->setText(QString::number(product));
  menu_->mnu31407->setChecked(product == kProduct31407);
  desk_.settings.ReadMainFormRegisters();
}

void frm1::CmdReadStatus_Click() {
  desk_.status.ReadStatus("CmdReadStatus");
  desk_.settings.ReadMainFormRegisters();
}

void frm1::ckDataLog_Click() {
  capture_->ShowDataLogState();
  if (capture_->ckDataLog->isChecked() && logNotice_.SwitchedOn()) windows_.OpenDataLog();
  desk_.status.ReadStatus("ckDataLog");
  desk_.settings.ReadMainFormRegisters();
}

// A capture that is waited for ends first; its handler then unwinds without touching the window.
void frm1::closeEvent(QCloseEvent* event) {
  if (!windows_.MayClose() || !archive_.MayClose() || !repeat_.MayClose([this] { close(); }) ||
      !watch_.MayClose([this] { close(); })) {
    event->ignore();
    return;
  }
  repeat_.Close();
  watch_.Close();
  desk_.cycle.Close();
  windows_.CancelTransfers();
  analyser_.Close();
  QMainWindow::closeEvent(event);
}

// Escape stops a capture whichever control of this window has the focus.
bool frm1::eventFilter(QObject* watched, QEvent* event) {
  if (watched->isWidgetType() && pointer_.TakesKey(*event)) return true;
  // A window that becomes active reads the sensor: a loss is found before that, without a message.
  if (event->type() == QEvent::WindowActivate && watcher_) watcher_->Look();
  if (event->type() == QEvent::KeyPress && repeat_.TakesKey(*watched, *event)) return true;
  if (event->type() == QEvent::KeyRelease && capture_->KeyPreview()) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (key->key() == Qt::Key_Escape && !key->isAutoRepeat() && widget != nullptr &&
        widget->window() == this) {
      Handle("Form_KeyUp", [this] {
        repeat_.NoteStartPressed();
        desk_.cycle.Form_KeyUp(kEscapeKey);
      });
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace kestrel
