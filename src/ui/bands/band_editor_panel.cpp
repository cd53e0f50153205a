// Making and laying out the alarm editor's controls.
// SPDX-License-Identifier: MIT
#include "ui/bands/band_editor_panel.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <array>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

QRadioButton* MakeOption(const char* name, const QString& caption, const QString& toolTip) {
  auto* option = new QRadioButton(caption);
  option->setObjectName(name);
  option->setToolTip(toolTip);
  return option;
}

QLabel* MakeNote(const char* name) {
  QLabel* label = MakeLabel(name, "");
  label->setWordWrap(true);
  // A long path does not widen the window. The height is asked for the width there is.
  QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  label->setSizePolicy(policy);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  return label;
}

QLineEdit* MakeNameBox(const char* name, const QString& toolTip) {
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setToolTip(toolTip);
  return box;
}

}  // namespace

BandEditorPanel::BandEditorPanel(BandGridModel& model)
    : cbxSRoption(MakeComboBox("cbxSRoption", tr("Sample-rate option"),
                               tr("Sample-rate option whose six bands are shown"))),
      lblBins(MakeLabel("lblBins", "")),
      lblRange(MakeLabel("lblRange", "")),
      cmdUndo(MakeButton("cmdUndo", tr("&Undo"), "")),
      cmdRedo(MakeButton("cmdRedo", tr("Re&do"), "")),
      rangeNotice(new RangeNotice),
      grid(new BandGrid(model)),
      lblState(MakeNote("lblState")),
      lblTransfer(MakeLabel("lblTransfer", "")),
      barTransfer(new QProgressBar),
      cmdCancel(MakeButton("cmdCancel", tr("Cancel"), tr("End the transfer (Esc)"))),
      lblmsg(MakeNote("lblmsg")),
      lblHint(MakeNote("lblHint")),
      cmdReadAll(MakeButton("cmdReadAll", tr("&Read all"),
                            tr("Read the bands of all sample-rate options from the sensor"))),
      cmdWriteAll(MakeButton("cmdWriteAll", tr("&Write all"),
                             tr("Write the bands of all sample-rate options to the sensor"))),
      cmdClearAll(MakeButton("cmdClearAll", tr("&Clear all"),
                             tr("Set all bands to 0, here and in the sensor"))),
      cbxAfiles(MakeComboBox("cbxAfiles", tr("Alarm file"),
                             tr("File to load or to save, beside the program or with your\n"
                                "documents: AlarmSpectrum_ + any name + .csv"))),
      cmdReadFile(MakeButton("cmdReadFile", tr("&Load file"),
                             tr("Load the bands from this file; nothing is sent to the sensor"))),
      cmdWriteFile(MakeButton("cmdWriteFile", tr("&Save file"),
                              tr("Save the bands of all sample-rate options to this file"))),
      txtFileName(MakeNameBox("txtFileName", tr("A name for a new alarm file"))),
      cmdUseName(MakeButton("cmdUseName", tr("Use na&me"),
                            tr("Take the proposed name as the alarm file"))),
      opOFF(MakeOption("opOFF", tr("&Off"), tr("No bands on the plot"))),
      opX(MakeOption("opX", tr("&X"), tr("Bands and thresholds of axis X on the plot"))),
      opY(MakeOption("opY", tr("&Y"), tr("Bands and thresholds of axis Y on the plot"))),
      opZ(MakeOption("opZ", tr("&Z"), tr("Bands and thresholds of axis Z on the plot"))),
      cmdPlotBands(MakeButton("cmdPlotBands", tr("&Plot bands"),
                              tr("Draw the record and its bands on the plot now"))),
      cmdClose(MakeButton("cmdClose", tr("Clos&e"), tr("Close this window"))),
      state_(new QStackedWidget),
      usable_(new QWidget),
      foot_(new QWidget) {
  barTransfer->setObjectName("barTransfer");
  barTransfer->setAccessibleName(tr("Bands transferred"));
  barTransfer->setFormat(tr("%v of %m bands"));
  lblTransfer->setMinimumWidth(fontMetrics().horizontalAdvance(tr("Reading ")));
  cbxAfiles->setEditable(true);
  cbxAfiles->setInsertPolicy(QComboBox::NoInsert);
  cbxAfiles->setCompleter(nullptr);
  opOFF->setChecked(true);
  cbxAfiles->lineEdit()->setAccessibleName(tr("Alarm file"));
  const std::array axes{opX, opY, opZ};
  for (QRadioButton* option : axes) {
    option->setAccessibleName(tr("Bands of axis %1").arg(option->text().remove('&')));
  }
  LayOut();
  // Enter moves in the grid and presses no button.
  for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
}

void BandEditorPanel::LayOut() {
  auto* transfer = new QWidget;
  auto* line = new QHBoxLayout(transfer);
  line->setContentsMargins(0, 0, 0, 0);
  line->addWidget(lblTransfer);
  line->addWidget(barTransfer, 1);
  line->addWidget(cmdCancel);
  state_->addWidget(lblState);
  state_->addWidget(transfer);
  state_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

  auto* usable = new QVBoxLayout(usable_);
  usable->setContentsMargins(0, 0, 0, 0);
  usable->addWidget(Head());
  usable->addWidget(rangeNotice);
  usable->addWidget(grid, 1);
  auto* foot = new QHBoxLayout(foot_);
  foot->setContentsMargins(0, 0, 0, 0);
  foot->addWidget(SensorGroup());
  foot->addWidget(FileGroup(), 1);
  foot->addWidget(PlotGroup());

  auto* all = new QVBoxLayout(this);
  all->addWidget(usable_, 1);
  all->addWidget(state_);
  all->addWidget(lblmsg);
  all->addWidget(foot_);
  auto* last = new QHBoxLayout;
  last->addWidget(lblHint, 1);
  last->addWidget(cmdClose, 0, Qt::AlignBottom);
  all->addLayout(last);
  // A message of two lines moves nothing.
  lblmsg->setMinimumHeight(2 * fontMetrics().lineSpacing());
}

QWidget* BandEditorPanel::Head() {
  auto* head = new QWidget;
  auto* line = new QHBoxLayout(head);
  line->setContentsMargins(0, 0, 0, 0);
  line->addWidget(MakeCaption(tr("Sample-rate opt&ion"), cbxSRoption));
  line->addWidget(cbxSRoption);
  line->addSpacing(fontMetrics().averageCharWidth());
  line->addWidget(lblBins);
  line->addSpacing(2 * fontMetrics().averageCharWidth());
  line->addWidget(lblRange);
  line->addStretch();
  line->addWidget(cmdUndo);
  line->addWidget(cmdRedo);
  return head;
}

QWidget* BandEditorPanel::SensorGroup() {
  auto* group = new QGroupBox(tr("Sensor"));
  auto* column = new QVBoxLayout(group);
  column->addWidget(cmdReadAll);
  column->addWidget(cmdWriteAll);
  column->addWidget(cmdClearAll);
  return group;
}

QWidget* BandEditorPanel::FileGroup() {
  auto* group = new QGroupBox(tr("Alarm files"));
  auto* places = new QGridLayout(group);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdReadFile, 1);
  buttons->addWidget(cmdWriteFile, 1);
  places->addWidget(MakeCaption(tr("Alarm &file"), cbxAfiles), 0, 0);
  places->addWidget(cbxAfiles, 0, 1, 1, 2);
  places->addLayout(buttons, 1, 1, 1, 2);
  places->addWidget(MakeCaption(tr("Proposed &name"), txtFileName), 2, 0);
  places->addWidget(txtFileName, 2, 1);
  places->addWidget(cmdUseName, 2, 2);
  places->setColumnStretch(1, 1);
  return group;
}

QWidget* BandEditorPanel::PlotGroup() {
  auto* group = new QGroupBox(tr("Bands on the plot"));
  auto* places = new QGridLayout(group);
  places->addWidget(opOFF, 0, 0);
  places->addWidget(opX, 1, 0);
  places->addWidget(opY, 1, 1);
  places->addWidget(opZ, 1, 2);
  places->addWidget(cmdPlotBands, 2, 0, 1, 3);
  return group;
}

void BandEditorPanel::ShowTransferring(bool transferring) {
  usable_->setEnabled(!transferring);
  foot_->setEnabled(!transferring);
  state_->setCurrentIndex(transferring ? 1 : 0);
}

}  // namespace kestrel
