// The window of the data-log files' name, number and format.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

#include "app/handler_edge.h"
#include "connection/core.h"
#include "logging/data_log_settings.h"

namespace kestrel {

// Name, number and format of the data-log files, and where they go. Lives for one edit.
class frmFileDir : public QDialog {
 public:
  frmFileDir(Core& core, HandlerEdge& edge, QWidget* parent);

  void ShowFileNumber();

 protected:
  void reject() override;  // Cancel, Escape and the window's close button

 private:
  void Load();
  void LayOut();
  void Connect();

  Core& core_;
  HandlerEdge& edge_;
  DataLogSettings settings_;
  QLineEdit* txtFileName_;
  QLabel* lblFileNumber_;
  QLabel* lblFileExtension_;
  QLabel* lblInTheWay_;  // earlier files that will be replaced
  QLabel* lblFolder_;
  QRadioButton* opDataFormatLSB_;
  QRadioButton* OpDataFormatScaled_;
  QPushButton* cmdReSetFileIndex_;
  QPushButton* cmdOpenFolder_;
  QPushButton* cmdOK_;
  QPushButton* cmdCancel_;
};

}  // namespace kestrel
