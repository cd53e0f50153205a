// The window of the null registers of the three axes.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "connection/core.h"
#include "device/calibration.h"
#include "ui/parts/sensor_window.h"

namespace kestrel {

// The null registers of the three axes. Y and Z are labelled AUX0 and AUX1 here. What is typed and
// not yet written stays while the window becomes active again; Escape takes it back.
class frmCalibration : public SensorWindow, public CalibrationView {
 public:
  frmCalibration(Core& core, HandlerEdge& edge, QWidget* parent);

  void ReadCalRegisters() { logic_.ReadCalRegisters(); }
  void RetrieveAndRead() { logic_.RetrieveAndRead(); }

  void ShowNull(Axis axis, const std::string& word, const std::string& value) override;
  [[nodiscard]] std::string ValueText(Axis axis) override;
  void ShowNote(const std::string& text) override;
  void ShowBusy(const std::string& text) override;

 protected:
  void ReadSensor() override { ReadCalRegisters(); }
  void ShowLastRead() override {}
  void Form_Activate() override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Row {
    QLabel* word;
    QLineEdit* value;
    QPushButton* write;
  };

  [[nodiscard]] QLayout* Rows();
  void Connect();
  [[nodiscard]] bool IsEdited() const;

  Calibration logic_;
  std::array<Row, 3> rows_;
  QPushButton* cmdAutoNull_;
  QPushButton* cmdFlashUpdate_;
  bool keepEdits_ = false;
};

}  // namespace kestrel
