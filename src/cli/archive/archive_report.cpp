// What is told of a kept record.
// SPDX-License-Identifier: MIT
#include "cli/archive/archive_report.h"

#include <algorithm>

#include "numeric/number_format.h"
#include "record/frequency.h"
#include "record/record_line.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

using archive::KeptRecord;
using archive::Remarks;

const char* KindOf(const Record& record) {
  return record.kind == RecordKind::Time ? "time" : "spectrum";
}

// Tabs and lines' ends would make another column or line of it.
std::string OneLine(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return text;
}

std::string Joined(const std::vector<std::string>& tags) {
  std::string text;
  for (const std::string& tag : tags) text += (text.empty() ? "" : ", ") + tag;
  return text;
}

Json SettingsJson(const Record& record) {
  const RecordSettings& settings = record.settings;
  Json json{{"sample_rate_option", settings.option},
            {"sample_rate_hz", SampleFrequency(settings.option)},
            {"range_g", FullScaleOf(settings.range)},
            {"window", settings.window}};
  if (record.kind == RecordKind::Spectrum) {
    json["averages"] = std::max<int>(settings.averages, 1);
  }
  json["rec_info"] = settings.recInfo;
  json["rec_ctrl"] = settings.recCtrl;
  return json;
}

Json LevelsJson(const archive::KeptLevels& levels) {
  Json json = Json::object();
  for (const Axis axis : kAxes) {
    const auto& level = levels[Index(axis)];
    json[std::string(1, Letter(axis))] =
        level ? Json{{"rms_g", level->rmsG}, {"peak_g", level->peakG}} : Json();
  }
  return json;
}

Json RemarksJson(const Remarks& remarks) {
  Json json{{"machine", remarks.machine},
            {"point", remarks.point},
            {"orientation", remarks.orientation},
            {"rpm", nullptr},
            {"note", remarks.note},
            {"tags", remarks.tags}};
  if (remarks.rpm) json["rpm"] = *remarks.rpm;
  return json;
}

}  // namespace

archive::WideSet FoundWideSet(archive::Archive& archive, const std::string& name) {
  std::optional<archive::Uid> uid = archive::UidFrom(name);
  if (!uid) {
    const auto sets = FindWideSets(archive, {});
    if (sets.empty()) throw RuntimeError("There is no wide spectrum in the archive.");
    uid = sets.front();
  }
  auto set = GetWideSet(archive, *uid);
  if (!set) throw RuntimeError("There is no wide spectrum " + name + " in the archive.");
  return std::move(*set);
}

std::string ListHead() {
  return "id\ttime (UTC)\tkind\tsettings\tRMS X, g\tRMS Y, g\tRMS Z, g\talarm\tmachine\tpoint\ttags"
         "\tnote\n";
}

std::string ListLine(const KeptRecord& kept) {
  const Record& record = kept.record;
  std::string line = std::to_string(kept.id) + '\t' + UtcText(record.time) + '\t' + KindOf(record) +
                     '\t' + RecordLine(record, {});
  for (const auto& level : kept.levels) {
    line += '\t' + (level ? FixedNumber(level->rmsG, 4) : std::string("-"));
  }
  line += std::string("\t") + (record.alarms.IsOn() ? "yes" : "no");
  for (const std::string& text :
       {kept.remarks.machine, kept.remarks.point, Joined(kept.remarks.tags), kept.remarks.note}) {
    line += '\t' + OneLine(text);
  }
  return line + '\n';
}

Json KeptJson(const KeptRecord& kept) {
  const Record& record = kept.record;
  Json json{{"id", kept.id},
            {"time", UtcText(record.time)},
            {"kind", KindOf(record)},
            {"settings", SettingsJson(record)},
            {"levels", LevelsJson(kept.levels)},
            {"alarm", record.alarms.IsOn()},
            {"supply_v", static_cast<double>(record.conditions.supplyV)},
            {"temperature_c", static_cast<double>(record.conditions.temperatureC)}};
  json.update(RemarksJson(kept.remarks));
  json["simulated"] = record.sensor.simulated;
  json["interface"] = record.sensor.interface;
  json["adapter"] = record.sensor.adapter;
  json["program"] = kept.program;
  json["bench"] = kept.bench;
  json["uid"] = archive::TextOf(kept.uid);
  json["wide"] = kept.wide ? Json(archive::TextOf(kept.wide->set)) : Json();
  if (kept.deleted) json["deleted"] = UtcText(*kept.deleted);
  return json;
}

void PrintKept(std::ostream& out, const KeptRecord& kept) {
  const Remarks& remarks = kept.remarks;
  out << "Record " << kept.id << ", taken " << UtcText(kept.record.time) << '\n';
  const auto line = [&](const char* name, const std::string& text) {
    if (!text.empty()) out << "  " << name << ' ' << OneLine(text) << '\n';
  };
  line("machine", remarks.machine);
  line("point", remarks.point);
  line("orientation", remarks.orientation);
  if (remarks.rpm) line("speed, rpm", GeneralNumber(*remarks.rpm));
  line("tags", Joined(remarks.tags));
  line("note", remarks.note);
  line("sensor", kept.record.sensor.simulated ? "simulated" : kept.record.sensor.interface);
  line("bench", kept.bench);
  if (kept.wide) line("wide spectrum", archive::TextOf(kept.wide->set));
  if (kept.deleted) line("deleted", UtcText(*kept.deleted));
}

}  // namespace kestrel
