// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "device/alm_ctrl_editor.h"

#include <cstdint>

#include "device/alm_ctrl.h"
#include "device/axis.h"
#include "device/updating_flag.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"

namespace kestrel {
namespace {

std::int16_t Bit(bool on) {
  return on ? std::int16_t{1} : std::int16_t{0};
}

// Any other code than 1 or 0 selects neither.
std::optional<bool> Pair(std::int16_t code) {
  if (code != 0 && code != 1) return std::nullopt;
  return code == 1;
}

}  // namespace

void AlmCtrlEditor::Display_AlmCtrl() {
  const UpdatingFlag updating(updating_);
  gAlmCtrl->ReadAlmCtrl();
  if (!RegisterAccess::Usable()) return;
  AlarmControls controls;
  controls.dioEnable = gAlmCtrl->EnableAlarm1Alarm2onDIO1DIO2() != 0;
  controls.responseDelay = gAlmCtrl->ResponseDelay();
  controls.spectralEnable = {gAlmCtrl->SpectralAlarmXEnable() != 0,
                             gAlmCtrl->SpectralAlarmYEnable() != 0,
                             gAlmCtrl->SpectralAlarmZEnable() != 0};
  controls.greaterThan = Pair(gAlmCtrl->SystemAlarmComparisonPolarity());
  controls.systemEnable = gAlmCtrl->SystemAlarmEnable() != 0;
  controls.temperature = Pair(gAlmCtrl->SystemAlarmSource());
  view_.ShowControls(Hex(gAlmCtrl->ReadWord()), controls);
}

void AlmCtrlEditor::Write_AlmCtrl() {
  const AlarmControls controls = view_.Controls();
  gAlmCtrl->EnableAlarm1Alarm2onDIO1DIO2(Bit(controls.dioEnable));
  gAlmCtrl->ResponseDelay(ToInteger(controls.responseDelay));
  gAlmCtrl->SpectralAlarmXEnable(Bit(controls.spectralEnable[Index(Axis::X)]));
  gAlmCtrl->SpectralAlarmYEnable(Bit(controls.spectralEnable[Index(Axis::Y)]));
  gAlmCtrl->SpectralAlarmZEnable(Bit(controls.spectralEnable[Index(Axis::Z)]));
  gAlmCtrl->SystemAlarmComparisonPolarity(Bit(controls.greaterThan.value_or(false)));
  gAlmCtrl->SystemAlarmEnable(Bit(controls.systemEnable));
  gAlmCtrl->SystemAlarmSource(Bit(controls.temperature.value_or(false)));
  gAlmCtrl->WriteAlmCtrl();
  Display_AlmCtrl();
}

void AlmCtrlEditor::Changed() {
  if (!updating_) Write_AlmCtrl();
}

}  // namespace kestrel
