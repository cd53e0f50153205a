// The texts and colours of spectral alarms and peaks.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_status.h"

#include <algorithm>

#include "app/program_state.h"
#include "device/rec_ctrl.h"
#include "numeric/number_format.h"

namespace kestrel {
namespace {

bool Any(const AlarmFlags& flags) {
  return std::ranges::any_of(flags, [](std::int16_t flag) { return flag != 0; });
}

}  // namespace

void AlarmStatus::DisplaySpectralALarmsStatus() {
  const auto state = ReadAlarmFlags(registers_, state_);
  if (!state) return;
  state_ = *state;
  for (const Axis axis : kAxes) ShowFlags(axis);
}

// A fault outranks a warning: it is applied after it.
void AlarmStatus::ShowFlags(Axis axis) {
  const AlarmFlags warnings = WarningsOf(state_.Of(axis));
  const AlarmFlags faults = FaultsOf(state_.Of(axis));
  view_.SetBand(axis, GeneralNumber(BandOf(state_.Of(axis))));
  for (int band = 1; band <= kAlarmBands; ++band) {
    const auto at = static_cast<std::size_t>(band);
    const double calm = warnings[at] != 0 ? clrYellow : clrGreen;
    view_.SetIndicator(axis, band, faults[at] != 0 ? clrRed : calm);
  }
  const char* calm = Any(warnings) ? " Warning" : " None";
  view_.SetAlarm(axis, Any(faults) ? " Fault" : calm);
}

// Peaks that differ from those shown are new: they belong to the range that is set.
void AlarmStatus::DisplayPeakAlarms() {
  auto state = ReadAlarmPeaks(registers_, state_);
  if (!state) return;
  if (gPerNewLsb_) {
    state->gPerPeakLsb = *gPerNewLsb_;
  } else if (!state_.peaksKnown || !SamePeaks(*state, state_)) {
    state->gPerPeakLsb = gRecCtrl->gLsb();
  }
  gPerNewLsb_.reset();
  state_ = *state;
  for (const Axis axis : kAxes) ShowPeak(axis);
}

void AlarmStatus::ShowPeak(Axis axis) {
  view_.SetPeak(axis, " " + FixedNumber(state_.PeakG(axis), 3));
  view_.SetPeakBin(axis, " " + GeneralNumber(state_.Of(axis).peakBin));
}

}  // namespace kestrel
