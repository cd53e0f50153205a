// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/frm1.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMessageBox>
#include <QStatusBar>
#include <QVBoxLayout>

#include "app/config_file.h"
#include "app/start.h"
#include "numeric/number_format.h"
#include "numeric/runtime_error.h"
#include "ui/interface_text.h"
#include "ui/widgets.h"

namespace kestrel {

frm1::frm1(Core& core, std::function<void()> connectSimulator)
    : core_(core),
      connectSimulator_(std::move(connectSimulator)),
      menu_(new MainMenu(*this)),
      conditions_(new ConditionsPanel),
      record_(new RecordPanel(conditions_->lblRecCount)),
      capture_(new CapturePanel(*record_, *conditions_, core.seams.pointer)),
      plotPanel_(new PlotPanel),
      statusPanel_(new StatusPanel),
      alarmPanel_(new AlarmPanel),
      lblInterface_(MakeLabel("lblInterface", "")),
      alarms_(core.registers, *alarmPanel_),
      plot_(*plotPanel_, alarms_, core.seams.loop, core.seams.messages),
      status_(core.registers, alarms_, core.seams.loop, *statusPanel_),
      log_(core.seams.files, core.seams.locale, core.seams.loop, *capture_),
      delay_(core.seams.loop),
      readout_(core.registers, plot_, *plotPanel_, log_, core.seams.loop, core.seams.messages,
               *capture_),
      cycle_(core, delay_, status_, readout_, plot_, *capture_),
      settings_(core.registers, status_, alarms_, core.seams.messages, *record_) {
  setObjectName("frm1");
  LayOut();
  Connect();
  Handle("Form_Load", [this] { Form_Load(); });
}

void frm1::LayOut() {
  auto* left = new QVBoxLayout;
  left->addWidget(capture_);
  left->addWidget(record_);
  left->addStretch();
  auto* middle = new QVBoxLayout;
  middle->addWidget(plotPanel_, 1);
  middle->addWidget(alarmPanel_);
  auto* right = new QVBoxLayout;
  right->addWidget(conditions_);
  right->addWidget(statusPanel_);
  right->addStretch();

  auto* columns = new QHBoxLayout;
  columns->addLayout(left);
  columns->addLayout(middle, 1);
  columns->addLayout(right);
  auto* all = new QWidget;
  all->setLayout(columns);
  setCentralWidget(all);
  statusBar()->addWidget(lblInterface_);
  statusBar()->addPermanentWidget(capture_->progress);
  resize(1240, 690);
}

void frm1::Connect() {
  const auto click = [this](auto* sender, auto signal, const char* name, auto handler) {
    connect(sender, signal, this, [this, name, handler] { Handle(name, handler); });
  };
  const auto pressed = &QPushButton::clicked;
  click(capture_->cmdStart, pressed, "cmdStart_Click", [this] { cycle_.cmdStart_Click(); });
  click(capture_->cmdReadBuffer, pressed, "cmdReadBuffer_Click",
        [this] { cycle_.cmdReadBuffer_Click(); });
  click(capture_->ckDataLog, &QCheckBox::clicked, "ckDataLog_Click", [this] { ckDataLog_Click(); });
  click(statusPanel_->CmdReadStatus, pressed, "CmdReadStatus_Click",
        [this] { CmdReadStatus_Click(); });
  click(statusPanel_->cmdClearStatus, pressed, "cmdClearStatus_Click",
        [this] { status_.ClearStatus("cmdClearStatus"); });

  click(record_, &RecordPanel::RecCtrlChanged, "Set_RecCtrl", [this] { settings_.Set_RecCtrl(); });
  click(record_, &RecordPanel::RecPrdChanged, "Write_RecPrd", [this] { settings_.Write_RecPrd(); });
  click(record_, &RecordPanel::FftAvgsChanged, "cbxFFTAvgs_Click",
        [this] { settings_.cbxFFTAvgs_Click(); });
  click(record_, &RecordPanel::RecPntrChanged, "cbxRecPntr_Click",
        [this] { settings_.cbxRecPntr_Click(); });

  click(plotPanel_->cmdPlotScale, pressed, "cmdPlotScale_Click",
        [this] { plot_.cmdPlotScale_Click(); });
  for (const Axis axis : kAxes) {
    click(plotPanel_->TraceBox(axis), &QCheckBox::clicked, "SetPlotTrace",
          [this] { plot_.SetPlotTrace(); });
  }

  const auto chosen = &QAction::triggered;
  click(menu_->mnuSimulated, chosen, "mnuSimulated_Click", [this] { mnuSimulated_Click(); });
  click(menu_->mnu31407, chosen, "mnu31407_Click", [this] { mnu31407_Click(); });
  click(menu_->mnuAbout, chosen, "mnuAbout_Click", [this] { mnuAbout_Click(); });
  connect(menu_->MnuExit, chosen, this, &QWidget::close);
  qApp->installEventFilter(this);
}

void frm1::Form_Load() {
  setWindowTitle(QString("Norvale    ") + kApplicationTitle);
  SetCommInterfaceIndicators();
  record_->FillLists();
  conditions_->LbLSupply->setText("noData");
  conditions_->LbLTemp->setText("noData");
  plotPanel_->SetStartValues();
  plotPanel_->IniAlarmBandLabels();
  capture_->ckAutoPlot->setChecked(true);
  SetProductNumber(kProduct31407);
}

void frm1::Handle(const char* name, const std::function<void()>& handler) {
  if (readout_.Busy()) {
    statusBar()->showMessage(tr("The record is being read. Please try again in a moment."), 3000);
    return;
  }
  try {
    handler();
  } catch (const RuntimeError& error) {
    core_.seams.messages.Show(std::string(name) + "\n" + error.what());
  }
  SetCommInterfaceIndicators();
}

void frm1::SetCommInterfaceIndicators() {
  const InterfaceText text = DescribeInterface();
  lblInterface_->setText(QString::fromStdString(text.line));
  lblInterface_->setToolTip(QString::fromStdString(text.detail));
  menu_->mnuParallel->setChecked(InterfaceType == kParallelPort);
  menu_->mnuUsb->setChecked(InterfaceType == kUsbAdapter);
}

void frm1::SetProductNumber(std::int16_t product) {
  ProductNumber = product;
  conditions_->lblProduct->setText(QString::number(product));
  menu_->mnu31407->setChecked(product == kProduct31407);
  settings_.ReadMainFormRegisters();
}

void frm1::mnuSimulated_Click() {
  if (cycle_.Running()) {
    statusBar()->showMessage(tr("Stop the capture before you choose another interface."), 3000);
    return;
  }
  connectSimulator_();
  InterfaceType = kUsbAdapter;
  WriteConfigFile(core_.seams.files);
  InitInterface(core_);
  settings_.ReadMainFormRegisters();
}

void frm1::mnu31407_Click() {
  SetProductNumber(kProduct31407);
  WriteConfigFile(core_.seams.files);
}

void frm1::mnuAbout_Click() {
  QMessageBox::about(this, tr("About"),
                     tr("%1 %2\n\nBench program for one tri-axial vibration sensor.")
                         .arg(kApplicationTitle, QApplication::applicationVersion()));
}

void frm1::CmdReadStatus_Click() {
  status_.ReadStatus("CmdReadStatus");
  settings_.ReadMainFormRegisters();
}

void frm1::ckDataLog_Click() {
  capture_->ShowDataLogState();
  status_.ReadStatus("ckDataLog");
  settings_.ReadMainFormRegisters();
}

// A capture that is waited for ends first; its handler then unwinds without touching the window.
void frm1::closeEvent(QCloseEvent* event) {
  cycle_.Close();
  QMainWindow::closeEvent(event);
}

// Escape stops a capture whichever control of this window has the focus.
bool frm1::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyRelease && capture_->KeyPreview()) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (key->key() == Qt::Key_Escape && !key->isAutoRepeat() && widget != nullptr &&
        widget->window() == this) {
      Handle("Form_KeyUp", [this] { cycle_.Form_KeyUp(kEscapeKey); });
      return true;
    }
  }
  return QMainWindow::eventFilter(watched, event);
}

}  // namespace kestrel
