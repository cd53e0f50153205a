// Which registers hold the alarm words, and how they are decoded.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_words.h"

#include <algorithm>

#include "device/alarm_flags.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

std::int16_t FlagsRow(Axis axis) {
  return std::array{row::ALM_X_STAT, row::ALM_Y_STAT, row::ALM_Z_STAT}[Index(axis)];
}
std::int16_t PeakRow(Axis axis) {
  return std::array{row::ALM_X_PEAK, row::ALM_Y_PEAK, row::ALM_Z_PEAK}[Index(axis)];
}
std::int16_t PeakBinRow(Axis axis) {
  return std::array{row::ALM_X_FREQ, row::ALM_Y_FREQ, row::ALM_Z_FREQ}[Index(axis)];
}

bool Read(RegisterAccess& registers, std::int16_t row, std::int32_t& word) {
  const auto reading = registers.Read(row);
  if (reading) word = reading->value;
  return reading.has_value();
}

AlarmFlags Flags(std::int32_t word, int (*bitOf)(int band)) {
  AlarmFlags flags{};
  for (int band = 1; band <= kAlarmBands; ++band) {
    flags[static_cast<std::size_t>(band)] = static_cast<std::int16_t>(word >> bitOf(band) & 1);
  }
  return flags;
}

}  // namespace

std::optional<AlarmState> ReadAlarmFlags(RegisterAccess& registers, const AlarmState& earlier) {
  AlarmState state = earlier;
  for (const Axis axis : kAxes) {
    if (!Read(registers, FlagsRow(axis), state.axes[Index(axis)].status)) return std::nullopt;
  }
  state.statusKnown = true;
  return state;
}

std::optional<AlarmState> ReadAlarmPeaks(RegisterAccess& registers, const AlarmState& earlier) {
  AlarmState state = earlier;
  for (const Axis axis : kAxes) {
    AxisAlarms& alarms = state.axes[Index(axis)];
    if (!Read(registers, PeakRow(axis), alarms.peak)) return std::nullopt;
    if (!Read(registers, PeakBinRow(axis), alarms.peakBin)) return std::nullopt;
  }
  state.peaksKnown = true;
  return state;
}

AlarmFlags WarningsOf(const AxisAlarms& alarms) {
  return Flags(alarms.status, [](int band) { return WarningBit(band); });
}

AlarmFlags FaultsOf(const AxisAlarms& alarms) {
  return Flags(alarms.status, [](int band) { return FaultBit(band); });
}

std::int16_t BandOf(const AxisAlarms& alarms) {
  return kAlarmBandNumber.Take(alarms.status);
}

bool SamePeaks(const AlarmState& a, const AlarmState& b) {
  return std::ranges::all_of(kAxes, [&](Axis axis) {
    return a.Of(axis).peak == b.Of(axis).peak && a.Of(axis).peakBin == b.Of(axis).peakBin;
  });
}

}  // namespace kestrel
