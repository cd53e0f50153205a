// How each cure of a record's notice is carried out.
// SPDX-License-Identifier: MIT
#include "ui/main/record_cures.h"

namespace kestrel {

// Those that use the sensor are refused while a capture is waited for.
void RecordCures::CarryOut(Cure cure) {
  switch (cure) {
    case Cure::CaptureAgain:
      parts_.capture.cmdStart->click();
      break;
    case Cure::UseOwnRange:
      parts_.edge.Run("UseOwnRange", [this] { UseOwnRange(); });
      break;
    case Cure::UseHigherRange:
      parts_.edge.RunIdle("UseHigherRange", [this] { UseHigherRange(); });
      break;
    case Cure::SelectInterface:
      parts_.edge.Run("mnuUsb_Click", [this] { parts_.windows.OpenUsb(); });
      break;
    default:
      break;
  }
}

bool RecordCures::ChooseOption(int option) {
  constexpr int kBits = 4;
  bool isChosen = false;
  parts_.edge.RunIdle("ChooseOption", [this, option, &isChosen] {
    for (int bit = 0; bit < kBits; ++bit) {
      parts_.record.SetSampleRateBit(bit, (option >> bit & 1) != 0);
    }
    parts_.settings.Set_RecCtrl();
    isChosen = gRecCtrl->SampleRate() == option && parts_.core.registers.Reachable();
  });
  return isChosen;
}

void RecordCures::UseOwnRange() {
  const Record& record = parts_.core.record.Get();
  parts_.core.record.HandOver(Rescaled(record, record.settings.range));
  parts_.plot.PlotRecord();
}

void RecordCures::UseHigherRange() {
  const int range = parts_.core.record.Get().settings.range;
  if (!parts_.record.Select(Setting::SignalRange, range + 1)) return;
  parts_.settings.Set_RecCtrl();
}

}  // namespace kestrel
