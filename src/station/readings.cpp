// Register by register, in the order in which the sensor is asked.
// SPDX-License-Identifier: MIT
#include "station/readings.h"

#include <array>

#include "device/rec_ctrl.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr int kPointsPerProgressStep = 64;

using AxisRows = std::array<std::int16_t, 3>;

bool ReadPoints(RegisterAccess& registers, Axis axis, Record& record,
                const std::function<void(int done, int total)>& progress) {
  const std::int16_t buffer = AxisRows{row::X_BUF, row::Y_BUF, row::Z_BUF}[Index(axis)];
  const int points = static_cast<int>(record.Points());
  AxisRecord& read = record.Of(axis);
  for (int i = 0; i < points; ++i) {
    const bool pointed = registers.Write(row::BUF_PNTR, i);
    const auto word = pointed ? ReadWord(registers, buffer) : std::nullopt;
    if (!word) return false;
    read.raw(i) = *word;
    read.data(i) = *word * record.lsbWeight;
    if (i % kPointsPerProgressStep == 0) {
      progress(static_cast<int>(Index(axis)) * points + i, 3 * points);
    }
  }
  return true;
}

}  // namespace

std::optional<std::int32_t> ReadWord(RegisterAccess& registers, std::int16_t row) {
  const auto reading = registers.Read(row);
  if (!reading) return std::nullopt;
  return reading->value;
}

std::optional<StatusFlags> ReadStatusFlags(RegisterAccess& registers) {
  const auto word = ReadWord(registers, row::STATUS);
  if (!word) return std::nullopt;
  return StatusFlags{.word = *word, .known = true};
}

bool ReadAlarmPeaks(RegisterAccess& registers, AlarmState& alarms) {
  const AxisRows peaks{row::ALM_X_PEAK, row::ALM_Y_PEAK, row::ALM_Z_PEAK};
  const AxisRows bins{row::ALM_X_FREQ, row::ALM_Y_FREQ, row::ALM_Z_FREQ};
  for (const Axis axis : kAxes) {
    const auto peak = ReadWord(registers, peaks[Index(axis)]);
    const auto bin = peak ? ReadWord(registers, bins[Index(axis)]) : std::nullopt;
    if (!bin) return false;
    alarms.axes[Index(axis)].peak = *peak;
    alarms.axes[Index(axis)].peakBin = *bin;
  }
  alarms.gPerPeakLsb = gRecCtrl->gLsb();
  alarms.peaksKnown = true;
  return true;
}

bool ReadAlarmFlags(RegisterAccess& registers, AlarmState& alarms) {
  const AxisRows rows{row::ALM_X_STAT, row::ALM_Y_STAT, row::ALM_Z_STAT};
  for (const Axis axis : kAxes) {
    const auto word = ReadWord(registers, rows[Index(axis)]);
    if (!word) return false;
    alarms.axes[Index(axis)].status = *word;
  }
  alarms.statusKnown = true;
  return true;
}

bool ReadConditions(RegisterAccess& registers, Conditions& conditions) {
  const auto supply = registers.Read(row::SUPPLY_OUT);
  const auto temperature = supply ? registers.Read(row::TEMP_OUT) : std::nullopt;
  if (!temperature) return false;
  conditions.supplyV = supply->scaled;
  conditions.temperatureC = temperature->scaled;
  return true;
}

std::optional<Record> ReadRecordBuffers(RegisterAccess& registers, RecordKind kind,
                                        std::int16_t range, const Record& earlier,
                                        const std::function<void(int done, int total)>& progress) {
  Record record;
  record.kind = kind;
  record.axes = earlier.axes;
  record.scaledRange = range;
  record.lsbWeight = LsbWeightOf(range, kind);
  const auto count = ReadWord(registers, row::REC_CNT);
  if (!count) return std::nullopt;
  record.conditions.recordCount = *count;
  if (!ReadConditions(registers, record.conditions)) return std::nullopt;
  const auto info = ReadWord(registers, row::REC_INFO);
  if (!info) return std::nullopt;
  record.settings = SettingsFromWords(*info, 0);
  for (const Axis axis : kAxes) {
    if (!ReadPoints(registers, axis, record, progress)) return std::nullopt;
  }
  return record;
}

}  // namespace kestrel
