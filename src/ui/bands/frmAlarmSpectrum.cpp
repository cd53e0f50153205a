// The editor's handlers for edits, files and the plot.
// SPDX-License-Identifier: MIT
#include "ui/bands/frmAlarmSpectrum.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "alarms/alarm_file.h"
#include "alarms/band_clipboard.h"
#include "app/program_state.h"
#include "connection/core.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QPoint kOffsetTwips{300, 3000};

constexpr const char* kReadLater =
    "The sensor is in use, by a capture or another window. The bands are read as soon as it is "
    "free; nothing is written before that.";

bool IsOption(int option) {
  return option >= 0 && option < kSampleRateOptions;
}

}  // namespace

frmAlarmSpectrum::frmAlarmSpectrum(Core& core, HandlerEdge& edge, OverlayControl& overlay,
                                   QWidget* parent)
    : SecondaryWindow("frmAlarmSpectrum", tr("Alarm spectrum"), edge, parent, kOffsetTwips),
      core_(core),
      overlay_(overlay),
      edits_(ChangeableBands()),
      transfer_(core.registers, core.delay, core.seams.loop, core.seams.messages, *this),
      files_(core.seams.files, core.seams.loop, core.seams.messages, *this),
      model_(AlarmBandTable,
             {.inSensor = SensorHolds(),
              .enter = [this](BandCell cell, const std::string& text) { Text1_Change(cell, text); },
              .check =
                  [this](BandCell cell, const std::string& text) {
                    const BandEdits::Context now = Context();
                    return CheckEntry(cell.column, text, now.scale, now.decimalMark).correction;
                  }},
             this),
      panel_(new BandEditorPanel(model_)),
      undo_(new QAction(this)),
      redo_(new QAction(this)) {
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(panel_);
  // First of all, whatever the button does: it may be pressed without the focus leaving the cell.
  for (const QAbstractButton* button : findChildren<QAbstractButton*>()) {
    connect(button, &QAbstractButton::clicked, panel_->grid, &BandGrid::Commit);
  }
  ConnectEdits();
  ConnectTransfers();
  ConnectPlot();
  afterPainting_.setSingleShot(true);
  connect(&afterPainting_, &QTimer::timeout, this, [this] { Form_Load(); });
  panel_->grid->setFocus();
  Refresh();
}

// Edits touch nothing but the table and may be made at any time.
void frmAlarmSpectrum::ConnectEdits() {
  BandGrid* grid = panel_->grid;
  grid->refused = [this] { SetMessage(kNoRange); };
  connect(grid->copy, &QAction::triggered, this, [this] { CopyBlock(); });
  connect(grid->cut, &QAction::triggered, this, [this] {
    CopyBlock();
    Finish(edits_.Zero(panel_->grid->Selected(), Context()));
  });
  connect(grid->zero, &QAction::triggered, this,
          [this] { Finish(edits_.Zero(panel_->grid->Selected(), Context())); });
  connect(grid->paste, &QAction::triggered, this, [this] {
    const std::string text = QGuiApplication::clipboard()->text().toStdString();
    Finish(edits_.Paste(panel_->grid->Selected(), text, Context()));
  });
  const auto turn = [this](QAction* action, QPushButton* button, const QList<QKeySequence>& keys,
                           EditOutcome (BandEdits::*step)(int&)) {
    action->setText(button->text());
    action->setShortcuts(keys);
    addAction(action);
    panel_->grid->addAction(action);
    connect(action, &QAction::triggered, this, [this, step] { Turn(step); });
    connect(button, &QPushButton::clicked, this, [this, step] { Turn(step); });
  };
  turn(undo_, panel_->cmdUndo, {Qt::CTRL | Qt::Key_Z}, &BandEdits::Undo);
  turn(redo_, panel_->cmdRedo, {Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
       &BandEdits::Redo);
}

void frmAlarmSpectrum::ConnectTransfers() {
  const auto clicked = &QPushButton::clicked;
  connect(panel_->cbxSRoption, &QComboBox::currentIndexChanged, this,
          [this] { cbxSRoption_Click(); });
  connect(panel_->cmdReadAll, clicked, this, [this] { cmdReadAll_Click(); });
  connect(panel_->cmdWriteAll, clicked, this, [this] { cmdWriteAll_Click(); });
  connect(panel_->cmdClearAll, clicked, this, [this] { cmdClearAll_Click(); });
  connect(panel_->cmdCancel, clicked, this, [this] { CancelTransfer(); });
  connect(panel_->cmdReadFile, clicked, this, [this] { cmdReadFile_Click(); });
  On(panel_->cmdWriteFile, clicked, "cmdWriteFile_Click", [this] { cmdWriteFile_Click(); });
  connect(panel_->cmdUseName, clicked, this,
          [this] { panel_->cbxAfiles->setEditText(panel_->txtFileName->text()); });
  connect(panel_->cmdClose, clicked, this, &QWidget::close);
  connect(panel_->rangeNotice->cmdKeepG, clicked, this, [this] { KeepThresholdsInG(); });
  connect(panel_->rangeNotice->cmdKeepCodes, clicked, this, [this] { KeepThresholdCodes(); });
}

// A release of the pointer or a choice by keys is a click.
void frmAlarmSpectrum::ConnectPlot() {
  On(panel_->opOFF, &QRadioButton::clicked, "opOFF_Click", [this] { opOFF_Click(); });
  for (QRadioButton* option : {panel_->opX, panel_->opY, panel_->opZ}) {
    On(option, &QRadioButton::clicked, "opXYZ_MouseUp", [this] { PlotChosenAxis(); });
  }
  On(panel_->cmdPlotBands, &QPushButton::clicked, "cmdPlotBands_Click",
     [this] { cmdPlotBands_Click(); });
}

void frmAlarmSpectrum::showEvent(QShowEvent* event) {
  SecondaryWindow::showEvent(event);
  if (event->spontaneous()) return;
  loadWhenPainted_ = true;
  panel_->opOFF->setChecked(true);
  update();
}

// The reading takes a while, so the window is on the screen before it begins.
void frmAlarmSpectrum::paintEvent(QPaintEvent* event) {
  SecondaryWindow::paintEvent(event);
  if (!loadWhenPainted_) return;
  loadWhenPainted_ = false;
  afterPainting_.start();
}

void frmAlarmSpectrum::Form_Load() {
  {
    const QSignalBlocker quiet(panel_->cbxSRoption);
    const int option = std::max(0, panel_->cbxSRoption->currentIndex());
    panel_->cbxSRoption->clear();
    panel_->cbxSRoption->addItems(Numbers(kSampleRateOptions - 1));
    panel_->cbxSRoption->setCurrentIndex(option);
  }
  panel_->txtFileName->setText(kDefaultAlarmFile);
  ListFiles();
  panel_->cbxAfiles->setEditText("");
  unread_ = true;
  opened_ = AlarmBandTable;
  ReadOpened();
  if (unread_) SetMessage(kReadLater);
  TakeWaiting();
}

// Files may have come or gone meanwhile.
void frmAlarmSpectrum::Form_Activate() {
  ListFiles();
  Refresh();
}

void frmAlarmSpectrum::Form_Unload() {
  loadWhenPainted_ = false;
  afterPainting_.stop();
  unread_ = false;
  if (taking_) {
    std::exchange(taking_, {})->told("Not taken over: the window Alarm spectrum was closed.");
  }
  overlay_.ClearABLabels();
  overlay_.ClearLines();
  panel_->opOFF->setChecked(true);
}

// The close button, Escape and cmdClose all end here.
void frmAlarmSpectrum::reject() {
  if (transfer_.Running()) {
    closeAfterTransfer_ = true;
    CancelTransfer();
    return;
  }
  panel_->grid->Commit();
  Form_Unload();
  SecondaryWindow::reject();
}

void frmAlarmSpectrum::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && transfer_.Running()) {
    CancelTransfer();
  } else {
    SecondaryWindow::keyPressEvent(event);
  }
}

void frmAlarmSpectrum::CancelTransfer() {
  if (!transfer_.Running()) return;
  cancelled_ = true;
  transfer_.Cancel();
}

BandEdits::Context frmAlarmSpectrum::Context() {
  return {.option = model_.Option(),
          .scale = CurrentScale(),
          .decimalMark = core_.seams.locale.DecimalMark(),
          .range = CurrentRange()};
}

SensorValues frmAlarmSpectrum::SensorHolds() const {
  return
      [this](int field, int band, int option) { return transfer_.InSensor(field, band, option); };
}

void frmAlarmSpectrum::Text1_Change(BandCell cell, const std::string& text) {
  const int option = panel_->cbxSRoption->currentIndex();
  if (!IsOption(option)) {
    core_.seams.messages.Show("Error...\nsub routine = WriteBandsFlash()\nStatus Rate Option  = " +
                              std::to_string(option) +
                              "\nValid values for Status Rate Option Are 0,1,2,3\n");
    return;
  }
  Finish(edits_.Enter(cell, text, Context()));
}

void frmAlarmSpectrum::CopyBlock() {
  const BandEdits::Context now = Context();
  QGuiApplication::clipboard()->setText(QString::fromStdString(
      BlockText(AlarmBandTable, panel_->grid->Selected(), now.option, now.scale, now.decimalMark)));
}

void frmAlarmSpectrum::Finish(const EditOutcome& outcome) {
  SetMessage(outcome.message);
  panel_->lblmsg->setToolTip(QString::fromStdString(outcome.details));
  Refresh();
  if (outcome.changed) RedrawOverlay();
}

void frmAlarmSpectrum::Turn(EditOutcome (BandEdits::*turn)(int&)) {
  if (transfer_.Running()) return;
  panel_->grid->Commit();
  int option = OverlayOption();
  const EditOutcome outcome = (edits_.*turn)(option);
  if (!outcome.changed) return;
  DisplaySpectrum(static_cast<std::int16_t>(option));
  Finish(outcome);
}

bool frmAlarmSpectrum::KeepStep(const std::string& what) {
  const bool changed = edits_.History().Keep(what, CurrentRange());
  Refresh();
  return changed;
}

void frmAlarmSpectrum::DisplaySpectrum(std::int16_t option) {
  if (!IsOption(option)) {
    core_.seams.messages.Show(
        "Error...\nsub routine = DisplaySpectrum()\nSampleRateOption  = " + std::to_string(option) +
        "\nValid values for SampleRtaeOption Are 0,1,2,3\n");
    return;
  }
  const QSignalBlocker quiet(panel_->cbxSRoption);
  panel_->cbxSRoption->setCurrentIndex(option);
  Refresh();
}

void frmAlarmSpectrum::DisplaySelected() {
  DisplaySpectrum(static_cast<std::int16_t>(panel_->cbxSRoption->currentIndex()));
}

// What is being typed belongs to the option it was begun in.
void frmAlarmSpectrum::cbxSRoption_Click() {
  panel_->grid->Commit();
  DisplaySelected();
  RedrawOverlay();
}

}  // namespace kestrel
