// The alarm control window.
// SPDX-License-Identifier: MIT
#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <array>

#include "connection/core.h"
#include "device/alm_ctrl_editor.h"
#include "ui/parts/mouse_up_option.h"
#include "ui/parts/sensor_window.h"

namespace kestrel {

// Edits ALM_CTRL: which alarms are on, what the system alarm watches, what they drive.
class frmALM_CTRL : public SensorWindow, public AlarmControlView {
 public:
  frmALM_CTRL(Core& core, HandlerEdge& edge, QWidget* parent);

  void Display_AlmCtrl() { control_.Display_AlmCtrl(); }
  void Write_AlmCtrl() { control_.Write_AlmCtrl(); }

  void ShowControls(const AlarmControls& controls) override;
  [[nodiscard]] AlarmControls Controls() override;

 protected:
  void ReadSensor() override { Display_AlmCtrl(); }
  void ShowLastRead() override { control_.ShowLastRead(); }

 private:
  [[nodiscard]] QWidget* SpectralBox();
  [[nodiscard]] QWidget* SystemBox();
  [[nodiscard]] QWidget* OutputBox();
  void Connect();

  AlmCtrlEditor control_;
  QLabel* lblHexWord_;
  QComboBox* cbxResponseDelay_;
  QCheckBox* ckDIOenable_;
  std::array<QCheckBox*, 3> spectralEnable_;
  QCheckBox* ckSystemAlarmEnable_;
  MouseUpOption* opGreaterThan_;
  MouseUpOption* opLessThan_;
  MouseUpOption* opSupply_;
  MouseUpOption* opTemperature_;
  QLineEdit* txtSAmag_;
  QButtonGroup* polarity_;
  QButtonGroup* source_;
};

}  // namespace kestrel
