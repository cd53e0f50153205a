// The controls of captures and of the data log.
// SPDX-License-Identifier: MIT
#include "ui/panels/capture_panel.h"

#include <QGridLayout>

#include "ui/parts/widgets.h"

namespace kestrel {

CapturePanel::CapturePanel(RecordPanel& record, ConditionsPanel& conditions, MousePointer& pointer)
    : cmdStart(MakeButton("cmdStart", kStartCaption, tr("Take one capture, or stop it (F5)"))),
      cmdReadBuffer(MakeButton("cmdReadBuffer", tr("Read &buffer"),
                               tr("Read the sensor's buffers without a new capture"))),
      ckAutoPlot(MakeCheckBox("ckAutoPlot", tr("A&uto-plot"),
                              tr("Read and plot each capture as soon as it is complete"))),
      ckDataLog(MakeCheckBox("ckDataLog", "", tr("Write every record that is read to a file"))),
      txtFileCount(MakeReadOut("txtFileCount", tr("Number of the last data-log file"))),
      cmdConfigDataLog(MakeButton("cmdConfigDataLog", tr("Settings..."),
                                  tr("Name and format of the data-log files"))),
      progress(new QProgressBar),
      record_(record),
      conditions_(conditions),
      pointer_(pointer),
      lblCapturingData_(MakeLabel("lblCapturingData", tr("Capturing data..."))) {
  setTitle(tr("Capture"));
  LayOut();
  cmdConfigDataLog->setAccessibleName(tr("Data-log settings..."));
  ShowDataLogState();
}

void CapturePanel::LayOut() {
  QFont large = cmdStart->font();
  large.setPointSizeF(large.pointSizeF() * 1.25);
  large.setBold(true);
  cmdStart->setFont(large);
  cmdStart->setMinimumHeight(2 * fontMetrics().height());
  cmdStart->setShortcut(QKeySequence("F5"));
  lblCapturingData_->setParent(this);
  lblCapturingData_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  lblCapturingData_->hide();
  txtFileCount->setMaximumWidth(fontMetrics().horizontalAdvance("00000") + 20);
  txtFileCount->setAlignment(Qt::AlignRight);
  ClearGround(*txtFileCount);
  progress->setObjectName("prgReadout");
  progress->setAccessibleName(tr("Read-out of the record"));
  progress->setTextVisible(false);
  progress->setMaximumWidth(24 * fontMetrics().averageCharWidth());
  // Shown while no layout can happen.
  KeepPlaceWhileHidden(progress);
  progress->hide();

  auto* grid = new QGridLayout(this);
  grid->addWidget(cmdStart, 0, 0, 1, 2);
  grid->addWidget(cmdReadBuffer, 1, 0);
  grid->addWidget(ckAutoPlot, 1, 1);
  grid->addWidget(ckDataLog, 2, 0);
  grid->addWidget(txtFileCount, 2, 1);
  grid->addWidget(cmdConfigDataLog, 3, 0, 1, 2);
  grid->setColumnStretch(0, 1);
  SetSpacing(RoomySpacing());
}

void CapturePanel::SetSpacing(const Spacing& spacing) {
  auto* grid = qobject_cast<QGridLayout*>(layout());
  SpaceGroup(*grid, spacing);
  grid->setVerticalSpacing(spacing.control);
  grid->setHorizontalSpacing(spacing.beside);
}

// Beside the group's title, where it takes no room from the controls.
void CapturePanel::Place() {
  const int left = fontMetrics().horizontalAdvance(title() + "00");
  lblCapturingData_->setGeometry(left, 0, width() - left - 2, fontMetrics().height());
}

void CapturePanel::resizeEvent(QResizeEvent* event) {
  QGroupBox::resizeEvent(event);
  Place();
}

std::string CapturePanel::StartCaption() {
  return cmdStart->text().toStdString();
}

// A button's shortcut goes with its text.
void CapturePanel::SetStartCaption(const std::string& caption) {
  cmdStart->setText(QString::fromStdString(caption));
  cmdStart->setShortcut(QKeySequence("F5"));
  emit CaptureStateChanged();
}

void CapturePanel::ShowCapturingData(bool shown) {
  if (shown) lblCapturingData_->setText(tr("Capturing data..."));
  lblCapturingData_->setVisible(shown);
}

// Whole seconds: a text that changed with every poll would lay the panel out anew each time.
void CapturePanel::ShowElapsed(double seconds) {
  const QString text = tr("Capturing data... %1 s").arg(static_cast<int>(seconds));
  if (seconds >= 1 && text != lblCapturingData_->text()) lblCapturingData_->setText(text);
}

std::string CapturePanel::FftAvgsText() {
  return record_.FftAvgsText().toStdString();
}
int CapturePanel::RecModeIndex() {
  return record_.Selected(Setting::RecMode);
}
bool CapturePanel::AutoPlotTicked() {
  return ckAutoPlot->isChecked();
}
bool CapturePanel::DataLogTicked() {
  return ckDataLog->isChecked();
}

void CapturePanel::SetRecCount(const std::string& text) {
  record_.SetRecCount(text);
}

void CapturePanel::SetSupply(const std::string& text) {
  conditions_.LbLSupply->setText(QString::fromStdString(text));
}

void CapturePanel::SetTemp(const std::string& text) {
  conditions_.LbLTemp->setText(QString::fromStdString(text));
  conditions_.NoteReading();
}

void CapturePanel::ShowHourglass(bool shown) {
  if (shown) {
    pointer_.ShowHourglass();
  } else {
    pointer_.ShowDefault();
  }
}

// Painted at once: the read-out does not return to the event loop.
void CapturePanel::ShowProgress(int done, int total) {
  progress->setMaximum(total);
  progress->setValue(done);
  if (progress->isHidden()) progress->show();
  progress->repaint();
}

void CapturePanel::HideProgress() {
  progress->hide();
}

void CapturePanel::SetFileCountColour(double colour) {
  PaintGround(txtFileCount, ToColour(colour));
}

void CapturePanel::SetFileCount(const std::string& text) {
  txtFileCount->setText(QString::fromStdString(text));
}

void CapturePanel::ShowDataLogState() {
  const bool on = ckDataLog->isChecked();
  ckDataLog->setText(on ? "Datalog   ON" : "Datalog   OFF");
  txtFileCount->setEnabled(on);
}

}  // namespace kestrel
