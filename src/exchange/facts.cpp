// The facts of a record: what was measured, how, where, by what, and what is not as it seems.
// SPDX-License-Identifier: MIT
#include "exchange/facts.h"

#include <array>
#include <cmath>

#include "record/frequency.h"
#include "record/record_notices.h"
#include "record/utc_time.h"

namespace kestrel::exchange {
namespace {

using Facts = std::vector<Fact>;

bool IsSpectrum(const Record& record) {
  return record.kind == RecordKind::Spectrum;
}

FactValue TextOrNone(const std::string& text) {
  if (text.empty()) return {};
  return text;
}

FactValue Whole(std::int32_t value) {
  return static_cast<std::int64_t>(value);
}

FactValue WindowName(std::int16_t code) {
  constexpr std::array<const char*, 3> kNames{"rectangular", "Hanning", "flat top"};
  const auto at = static_cast<std::size_t>(code);
  return at < kNames.size() ? FactValue(std::string(kNames[at])) : FactValue();
}

FactValue RangeG(std::int16_t code) {
  return code >= 0 && code <= 3 ? FactValue(FullScaleOf(code)) : FactValue();
}

void AddWhatAndWhere(Facts& facts, const NotedRecord& noted) {
  const RecordNote& note = noted.note;
  const auto time = TimeOf(noted);
  facts.push_back({"type", std::string(IsSpectrum(noted.record) ? "spectrum" : "time")});
  const bool known = time.time_since_epoch().count() != 0;
  facts.push_back({"time", known ? FactValue(UtcText(time)) : FactValue()});
  facts.push_back({"machine", TextOrNone(note.machine)});
  facts.push_back({"point", TextOrNone(note.point)});
  facts.push_back({"orientation", TextOrNone(note.orientation)});
  facts.push_back({"speed_rpm", note.speedRpm ? FactValue(*note.speedRpm) : FactValue()});
  facts.push_back({"note", TextOrNone(note.note)});
  facts.push_back({"tags", note.tags});
  facts.push_back({"program", TextOrNone(note.program)});
}

void AddSensor(Facts& facts, const NotedRecord& noted) {
  const SensorIdentity& sensor = noted.record.sensor;
  facts.push_back({"sensor", TextOrNone(noted.note.sensor)});
  facts.push_back({"product", sensor.product != 0 ? Whole(sensor.product) : FactValue()});
  facts.push_back({"interface", TextOrNone(sensor.interface)});
  facts.push_back({"adapter", TextOrNone(sensor.adapter)});
  facts.push_back({"simulated", sensor.simulated});
}

void AddSettings(Facts& facts, const Record& record) {
  const RecordSettings& settings = record.settings;
  facts.push_back({"unit", std::string("g")});
  facts.push_back({"points", Whole(record.Width() + 1)});
  facts.push_back({"sample_rate_option", Whole(settings.option)});
  facts.push_back({"sample_rate_hz", SampleFrequency(settings.option)});
  facts.push_back({IsSpectrum(record) ? "bin_width_hz" : "sample_interval_s", StepOf(record)});
  facts.push_back({"rec_info", Whole(settings.recInfo)});
  facts.push_back({"rec_ctrl", Whole(settings.recCtrl)});
  facts.push_back({"window_code", Whole(settings.window)});
  facts.push_back({"window", WindowName(settings.window)});
  facts.push_back({"averages_as_read", Whole(settings.averages)});
  facts.push_back({"range_code", Whole(settings.range)});
  facts.push_back({"range_g", RangeG(settings.range)});
  facts.push_back({"scaled_range_code", Whole(record.scaledRange)});
  facts.push_back({"lsb_weight_g", record.lsbWeight});
}

void AddConditions(Facts& facts, const Record& record) {
  const RecordOrigin& origin = record.origin;
  facts.push_back({"supply_v", record.conditions.supplyV});
  facts.push_back({"temperature_c", record.conditions.temperatureC});
  facts.push_back({"record_count", Whole(record.conditions.recordCount)});
  facts.push_back(
      {"record_count_before", origin.countBefore ? Whole(*origin.countBefore) : FactValue()});
  facts.push_back({"stored_number", origin.stored ? Whole(*origin.stored) : FactValue()});
  facts.push_back({"stopped", origin.stopped});
  facts.push_back({"new", record.IsNew()});
  facts.push_back({"status", record.status.known ? Whole(record.status.word) : FactValue()});
}

void AddAlarms(Facts& facts, const AlarmState& alarms) {
  for (const Axis axis : kAxes) {
    const AxisAlarms& state = alarms.Of(axis);
    const std::string name = std::string("alarm_") + static_cast<char>(Letter(axis) + 'a' - 'A');
    const auto peak = [&](const FactValue& value) {
      return alarms.peaksKnown ? value : FactValue();
    };
    facts.push_back({name + "_status", alarms.statusKnown ? Whole(state.status) : FactValue()});
    facts.push_back({name + "_peak", peak(Whole(state.peak))});
    facts.push_back({name + "_peak_g", peak(alarms.PeakG(axis))});
    facts.push_back({name + "_peak_bin", peak(Whole(state.peakBin))});
  }
}

void AddNotices(Facts& facts, const Record& record) {
  std::vector<std::string> notices;
  for (const RecordNotice& notice : RecordNotices(record, {})) {
    notices.push_back(notice.what + ": " + notice.means);
  }
  facts.push_back({"notices", std::move(notices)});
}

// What is no finite number is not known.
void DropWhatIsNoNumber(FactValue& value) {
  const auto* single = std::get_if<float>(&value);
  const auto* number = std::get_if<double>(&value);
  if ((single != nullptr && !std::isfinite(*single)) ||
      (number != nullptr && !std::isfinite(*number))) {
    value = {};
  }
}

}  // namespace

std::vector<Fact> FactsOf(const NotedRecord& noted) {
  Facts facts;
  AddWhatAndWhere(facts, noted);
  AddSensor(facts, noted);
  AddSettings(facts, noted.record);
  AddConditions(facts, noted.record);
  AddAlarms(facts, noted.record.alarms);
  AddNotices(facts, noted.record);
  for (Fact& fact : facts) DropWhatIsNoNumber(fact.value);
  return facts;
}

std::chrono::system_clock::time_point TimeOf(const NotedRecord& noted) {
  return noted.note.time.value_or(noted.record.time);
}

double StepOf(const Record& record) {
  const int option = record.settings.option;
  return IsSpectrum(record) ? BinWidth(option) : 1 / SampleFrequency(option);
}

double PlaceOf(const Record& record, std::size_t point) {
  const auto at = static_cast<double>(point);
  const int option = record.settings.option;
  return IsSpectrum(record) ? at * BinWidth(option) : at / SampleFrequency(option);
}

}  // namespace kestrel::exchange
