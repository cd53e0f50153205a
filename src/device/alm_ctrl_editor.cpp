// From the window's controls to ALM_CTRL and back.
// SPDX-License-Identifier: MIT
#include "device/alm_ctrl_editor.h"

#include <cstdint>

#include "device/alm_ctrl.h"
#include "device/updating_flag.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "record/axis.h"

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

AlarmControls FromModel(const cALMCtrl& model) {
  AlarmControls controls;
  controls.hexWord = Hex(model.ReadWord());
  controls.dioEnable = model.EnableAlarm1Alarm2onDIO1DIO2() != 0;
  controls.responseDelay = model.ResponseDelay();
  controls.spectralEnable = {model.SpectralAlarmXEnable() != 0, model.SpectralAlarmYEnable() != 0,
                             model.SpectralAlarmZEnable() != 0};
  controls.greaterThan = Pair(model.SystemAlarmComparisonPolarity());
  controls.systemEnable = model.SystemAlarmEnable() != 0;
  controls.temperature = Pair(model.SystemAlarmSource());
  return controls;
}

void ToModel(const AlarmControls& controls, cALMCtrl& model) {
  model.EnableAlarm1Alarm2onDIO1DIO2(Bit(controls.dioEnable));
  model.ResponseDelay(ToInteger(controls.responseDelay));
  model.SpectralAlarmXEnable(Bit(controls.spectralEnable[Index(Axis::X)]));
  model.SpectralAlarmYEnable(Bit(controls.spectralEnable[Index(Axis::Y)]));
  model.SpectralAlarmZEnable(Bit(controls.spectralEnable[Index(Axis::Z)]));
  model.SystemAlarmComparisonPolarity(Bit(controls.greaterThan.value_or(false)));
  model.SystemAlarmEnable(Bit(controls.systemEnable));
  model.SystemAlarmSource(Bit(controls.temperature.value_or(false)));
}

}  // namespace

void AlmCtrlEditor::Display_AlmCtrl() {
  const UpdatingFlag updating(updating_);
  current_ = gAlmCtrl->ReadAlmCtrl();
  if (current_) read_ = FromModel(*gAlmCtrl);
  view_.ShowControls(read_);
}

void AlmCtrlEditor::Write_AlmCtrl() {
  ToModel(view_.Controls(), *gAlmCtrl);
  gAlmCtrl->WriteAlmCtrl();
  Display_AlmCtrl();
}

void AlmCtrlEditor::Changed() {
  if (updating_) return;
  if (current_) {
    Write_AlmCtrl();
  } else {
    Display_AlmCtrl();
  }
}

void AlmCtrlEditor::ShowLastRead() {
  const UpdatingFlag updating(updating_);
  view_.ShowControls(read_);
}

}  // namespace kestrel
