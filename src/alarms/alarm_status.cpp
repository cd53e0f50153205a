// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "alarms/alarm_status.h"

#include "app/program_state.h"
#include "device/alarm_flags.h"
#include "device/rec_ctrl.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

std::int16_t StatusRow(Axis axis) {
  return std::array{row::ALM_X_STAT, row::ALM_Y_STAT, row::ALM_Z_STAT}[Index(axis)];
}
std::int16_t PeakRow(Axis axis) {
  return std::array{row::ALM_X_PEAK, row::ALM_Y_PEAK, row::ALM_Z_PEAK}[Index(axis)];
}
std::int16_t PeakBinRow(Axis axis) {
  return std::array{row::ALM_X_FREQ, row::ALM_Y_FREQ, row::ALM_Z_FREQ}[Index(axis)];
}

std::int16_t Bit(std::int32_t word, int bit) {
  return static_cast<std::int16_t>(word >> bit & 1);
}

}  // namespace

void AlarmStatus::DisplaySpectralALarmsStatus() {
  for (const Axis axis : kAxes) {
    registers_.ReadReg(StatusRow(axis));
    if (!RegisterAccess::Usable()) return;
    ShowAxis(axis, RegValue);
  }
}

// A fault outranks a warning: it is applied after it.
void AlarmStatus::ShowAxis(Axis axis, std::int32_t word) {
  AlarmFlags& warnings = warnings_[Index(axis)];
  AlarmFlags& faults = faults_[Index(axis)];
  bool warned = false;
  bool faulted = false;
  view_.SetBand(axis, GeneralNumber(kAlarmBandNumber.Take(word)));
  for (int band = 1; band <= kAlarmBands; ++band) {
    const auto at = static_cast<std::size_t>(band);
    warnings[at] = Bit(word, WarningBit(band));
    faults[at] = Bit(word, FaultBit(band));
    warned = warned || warnings[at] != 0;
    faulted = faulted || faults[at] != 0;
    const double calm = warnings[at] != 0 ? clrYellow : clrGreen;
    view_.SetIndicator(axis, band, faults[at] != 0 ? clrRed : calm);
  }
  const char* calm = warned ? " Warning" : " None";
  view_.SetAlarm(axis, faulted ? " Fault" : calm);
}

void AlarmStatus::DisplayPeakAlarms() {
  for (const Axis axis : kAxes) {
    registers_.ReadReg(PeakRow(axis));
    if (!RegisterAccess::Usable()) return;
    view_.SetPeak(axis, " " + FixedNumber(RegValue * gRecCtrl->gLsb(), 3));
    registers_.ReadReg(PeakBinRow(axis));
    if (!RegisterAccess::Usable()) return;
    view_.SetPeakBin(axis, " " + GeneralNumber(RegValue));
  }
}

}  // namespace kestrel
