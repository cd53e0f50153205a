// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "app/core.h"
#include "device/calibration.h"
#include "ui/secondary_window.h"

namespace kestrel {

// The null registers of the three axes. Y and Z are labelled AUX0 and AUX1 here.
class frmCalibration : public SecondaryWindow, public CalibrationView {
 public:
  frmCalibration(Core& core, HandlerEdge& edge, QWidget* parent);

  void ShowNull(Axis axis, const std::string& word, const std::string& value) override;
  [[nodiscard]] std::string ValueText(Axis axis) override;

 protected:
  void Form_Activate() override;

 private:
  struct Row {
    QLabel* word;
    QLineEdit* value;
    QPushButton* write;
  };

  void LayOut();
  void Connect();

  Calibration logic_;
  std::array<Row, 3> rows_;
  QPushButton* cmdAutoNull_;
  QPushButton* cmdFlashUpdate_;
};

}  // namespace kestrel
