// Register by register, in the order in which the sensor is asked.
// SPDX-License-Identifier: MIT
#include "acquisition/readings.h"

#include "alarms/alarm_words.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

template <typename... Values>
void Tell(const std::function<void(Values...)>& step, Values... values) {
  if (step) step(values...);
}

bool ReadSurroundings(RegisterAccess& registers, Conditions& conditions,
                      const ReadoutSteps& steps) {
  const auto supply = registers.Read(row::SUPPLY_OUT);
  if (!supply) return false;
  conditions.supplyV = supply->scaled;
  Tell(steps.supply, supply->scaled);
  const auto temperature = registers.Read(row::TEMP_OUT);
  if (!temperature) return false;
  conditions.temperatureC = temperature->scaled;
  Tell(steps.temperature, temperature->scaled);
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

std::optional<Conditions> ReadConditions(RegisterAccess& registers) {
  Conditions conditions;
  if (!ReadSurroundings(registers, conditions, {})) return std::nullopt;
  return conditions;
}

void ReadBuffersAs(RecordKind kind) {
  for (const Axis axis : kAxes) SetSigned(BufferRow(axis), kind == RecordKind::Time);
}

std::optional<Record> ReadRecordBuffers(RegisterAccess& registers, FastReadout& fast,
                                        RecordKind kind, const ReadoutSteps& steps) {
  std::optional<RegisterAccess::HeldOpen> held;
  if (fast.InUse()) held.emplace(registers);
  Record record;
  record.kind = kind;
  const auto count = ReadWord(registers, row::REC_CNT);
  if (!count) return std::nullopt;
  record.conditions.recordCount = *count;
  Tell(steps.counted, *count);
  if (!ReadSurroundings(registers, record.conditions, steps)) return std::nullopt;
  const auto info = ReadWord(registers, row::REC_INFO);
  if (!info) return std::nullopt;
  record.settings = SettingsFromWords(*info, 0);
  steps.scale(record);
  if (!fast.ReadPoints(record, steps)) return std::nullopt;
  return record;
}

}  // namespace kestrel
