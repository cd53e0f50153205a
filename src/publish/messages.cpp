// The members of each message, in the order in which a person reads them.
// SPDX-License-Identifier: MIT
#include "publish/messages.h"

#include <nlohmann/json.hpp>

#include "record/utc_time.h"

namespace kestrel::publish {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kLongestNote = 1000;  // bytes

Json OrNull(const auto& value) {
  return value ? Json(*value) : Json();
}

Json TimeOrNull(const std::optional<Moment>& time) {
  return time ? Json(UtcText(*time)) : Json();
}

Json HeadOf(const Names& names) {
  return {{"bench", CleanText(names.bench)}, {"sensor", CleanText(names.sensor)}};
}

void Add(Json& json, const RecordFacts& record) {
  json["time"] = UtcText(record.time);
  json["record"] = CleanText(record.uid);
  json["option"] = record.option;
  json["window"] = record.window;
  json["range_g"] = record.range;
}

Json AxisJson(const AxisLevels& axis) {
  Json json{
      {"rms_g", OrNull(axis.rmsG)}, {"peak_g", OrNull(axis.peakG)}, {"top_hz", OrNull(axis.topHz)}};
  if (axis.severityMms) json["severity_mm_s"] = *axis.severityMms;
  if (!axis.zone.empty()) json["severity_zone"] = CleanText(axis.zone);
  return json;
}

std::string LineOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string LetterOf(Axis axis) {
  return {static_cast<char>('x' + Index(axis))};
}

}  // namespace

std::string JsonOf(const Levels& levels) {
  Json json = HeadOf(levels.of);
  Add(json, levels.record);
  for (const Axis axis : kAxes) json["axes"][LetterOf(axis)] = AxisJson(levels.axes[Index(axis)]);
  return LineOf(json);
}

std::string JsonOf(const Alarm& alarm) {
  Json json{{"id", CleanText(alarm.id)}};
  json.update(HeadOf(alarm.of));
  json["event"] = NameOf(alarm.event);
  json["what"] = NameOf(alarm.kind);
  json["grade"] = NameOf(alarm.grade);
  json["axis"] = LetterOf(alarm.axis);
  json["option"] = OrNull(alarm.option);
  json["number"] = OrNull(alarm.number);
  json["time"] = UtcText(alarm.time);
  json["record"] = alarm.uid.empty() ? Json() : Json(CleanText(alarm.uid));
  json["level"] = OrNull(alarm.level);
  json["limit"] = OrNull(alarm.limit);
  json["unit"] = CleanText(alarm.unit);
  return LineOf(json);
}

std::string JsonOf(const Status& status) {
  Json json = HeadOf(status.of);
  json["state"] = NameOf(status.state);
  json["time"] = UtcText(status.time);
  json["next_capture"] = TimeOrNull(status.nextCapture);
  json["last_record"] = TimeOrNull(status.lastRecord);
  json["records"] = status.records;
  json["missed"] = status.missed;
  json["incidents_open"] = status.incidentsOpen;
  json["alarms_on"] = status.alarmsOn;
  json["note"] = CleanText(status.note, kLongestNote);
  return LineOf(json);
}

std::string JsonOf(const Spectrum& spectrum) {
  Json json = HeadOf(spectrum.of);
  Add(json, spectrum.record);
  json["bin_hz"] = spectrum.binHz;
  json["unit"] = "g peak";
  for (const Axis axis : kAxes) json["axes"][LetterOf(axis)] = spectrum.g[Index(axis)];
  return LineOf(json);
}

std::string LostJson(const Names& names) {
  Json json = HeadOf(names);
  json["state"] = NameOf(State::Lost);
  return LineOf(json);
}

const char* NameOf(AlarmEvent event) {
  return event == AlarmEvent::Begin ? "begin" : "end";
}

const char* NameOf(AlarmKind kind) {
  if (kind == AlarmKind::Band) return "band";
  return kind == AlarmKind::Threshold ? "threshold" : "severity";
}

const char* NameOf(AlarmGrade grade) {
  return grade == AlarmGrade::Warning ? "warning" : "fault";
}

const char* NameOf(State state) {
  switch (state) {
    case State::Starting:
      return "starting";
    case State::Up:
      return "up";
    case State::Trouble:
      return "trouble";
    case State::Stopped:
      return "stopped";
    case State::Lost:
      break;
  }
  return "lost";
}

}  // namespace kestrel::publish
