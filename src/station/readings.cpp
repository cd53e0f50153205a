// Register by register, in the order in which the sensor is asked.
// SPDX-License-Identifier: MIT
#include "station/readings.h"

#include <array>

#include "alarms/alarm_words.h"
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

std::optional<AlarmState> ReadAlarms(RegisterAccess& registers) {
  const auto peaks = ReadAlarmPeaks(registers, {});
  auto alarms = peaks ? ReadAlarmFlags(registers, *peaks) : std::nullopt;
  const auto info = alarms ? ReadWord(registers, row::REC_INFO) : std::nullopt;
  if (!info) return std::nullopt;
  alarms->gPerPeakLsb = LsbWeightOf(SettingsFromWords(*info, 0).range, RecordKind::Spectrum);
  return alarms;
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
                                        std::int16_t range,
                                        const std::function<void(int done, int total)>& progress) {
  Record record;
  record.kind = kind;
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
