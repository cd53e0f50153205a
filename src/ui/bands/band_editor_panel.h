// The controls of the alarm editor and their places.
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QWidget>

#include "ui/bands/band_grid.h"
#include "ui/bands/range_notice.h"

namespace kestrel {

// The controls of the alarm editor and their places.
class BandEditorPanel : public QWidget {
 public:
  explicit BandEditorPanel(BandGridModel& model);

  QComboBox* cbxSRoption;
  QLabel* lblBins;   // frequencies of the option
  QLabel* lblRange;  // what thresholds can be
  QPushButton* cmdUndo;
  QPushButton* cmdRedo;
  RangeNotice* rangeNotice;
  BandGrid* grid;
  QLabel* lblState;  // what the sensor does not hold, and what cannot be meant
  QLabel* lblTransfer;
  QProgressBar* barTransfer;
  QPushButton* cmdCancel;
  QLabel* lblmsg;
  QLabel* lblHint;

  QPushButton* cmdReadAll;
  QPushButton* cmdWriteAll;
  QPushButton* cmdClearAll;

  QComboBox* cbxAfiles;
  QPushButton* cmdReadFile;
  QPushButton* cmdWriteFile;
  QLineEdit* txtFileName;
  QPushButton* cmdUseName;

  QRadioButton* opOFF;
  QRadioButton* opX;
  QRadioButton* opY;
  QRadioButton* opZ;
  QPushButton* cmdPlotBands;
  QPushButton* cmdClose;

  // While bands are transferred, progress and Cancel take the place of the state line and nothing
  // else can be used.
  void ShowTransferring(bool transferring);

 private:
  void LayOut();
  [[nodiscard]] QWidget* Head();
  [[nodiscard]] QWidget* SensorGroup();
  [[nodiscard]] QWidget* FileGroup();
  [[nodiscard]] QWidget* PlotGroup();

  QStackedWidget* state_;
  QWidget* usable_;  // what cannot be used during a transfer
  QWidget* foot_;
};

}  // namespace kestrel
