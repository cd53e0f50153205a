// Alarms begun and ended.
// SPDX-License-Identifier: MIT
#include "monitor/alarm_book.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>

#include "archive/record_row.h"
#include "numeric/number_parse.h"
#include "numeric/number_texts.h"

namespace kestrel::monitor {
namespace {

std::string LevelText(double level, std::optional<double> limit, const char* unit) {
  std::string text = analysis::SignificantText(level) + " " + unit;
  if (limit) text += ", limit " + analysis::SignificantText(*limit) + " " + unit;
  return text;
}

std::string NumberText(std::optional<double> value) {
  std::array<char, 64> text{"-"};
  if (value) std::snprintf(text.data(), text.size(), "%.17g", *value);
  return text.data();
}

}  // namespace

std::string LineOf(const publish::Alarm& alarm) {
  const AlarmKey key{alarm.kind, alarm.grade, alarm.axis, alarm.option.value_or(0),
                     alarm.number.value_or(0)};
  return alarm.id + " " + (alarm.event == publish::AlarmEvent::Begin ? "begin " : "end ") +
         KeyText(key) + " " + std::to_string(archive::Nanoseconds(alarm.time)) + " " +
         (alarm.uid.empty() ? "-" : alarm.uid) + " " + NumberText(alarm.level) + " " +
         NumberText(alarm.limit) + " " + (alarm.unit.empty() ? "-" : alarm.unit);
}

std::optional<publish::Alarm> AlarmFrom(const std::string& line, const publish::Names& names) {
  std::istringstream words(line);
  std::string event;
  std::string name;
  std::int64_t time = 0;
  std::string level;
  std::string limit;
  publish::Alarm alarm{.of = names};
  words >> alarm.id >> event >> name >> time >> alarm.uid >> level >> limit >> alarm.unit;
  const auto key = KeyFrom(name);
  if (!words || !key || (event != "begin" && event != "end")) return std::nullopt;
  alarm.event = event == "begin" ? publish::AlarmEvent::Begin : publish::AlarmEvent::End;
  alarm.kind = key->kind;
  alarm.grade = key->grade;
  alarm.axis = key->axis;
  if (key->kind != AlarmKind::Severity) {
    alarm.option = key->option;
    alarm.number = key->number;
  }
  alarm.time = archive::TimeOf(time);
  if (alarm.uid == "-") alarm.uid.clear();
  if (alarm.unit == "-") alarm.unit.clear();
  alarm.level = WholeTextNumber(level);
  alarm.limit = WholeTextNumber(limit);
  return alarm;
}

AlarmNews AlarmBook::News(const AlarmKey& key, publish::AlarmEvent event, const Told& told,
                          std::chrono::system_clock::time_point time,
                          archive::JournalEntry entry) const {
  publish::Alarm alarm{
      .id = archive::TextOf(entry.uid) + (event == publish::AlarmEvent::Begin ? "-begin" : "-end"),
      .of = names_,
      .event = event,
      .kind = key.kind,
      .grade = key.grade,
      .axis = key.axis,
      .time = time,
      .uid = told.uid,
      .level = told.level,
      .limit = told.limit,
      .unit = told.unit};
  if (key.kind != AlarmKind::Severity) {
    alarm.option = key.option;
    alarm.number = key.number;
  }
  return {std::move(alarm), std::move(entry)};
}

std::vector<AlarmNews> AlarmBook::Take(const Findings& findings,
                                       std::chrono::system_clock::time_point time,
                                       const archive::Uid& uid) {
  std::vector<AlarmNews> news;
  for (const Finding& finding : findings) {
    const auto found = standing_.find(finding.key);
    if (finding.stands == (found != standing_.end())) continue;
    const Told told{finding.level, finding.limit, finding.unit, archive::TextOf(uid)};
    if (finding.stands) {
      archive::JournalEntry entry{.uid = archive::NewUid(),
                                  .bench = names_.bench,
                                  .sensor = names_.sensor,
                                  .kind = kAlarmWord,
                                  .began = time,
                                  .text = NameOf(finding.key)};
      if (told.level) entry.text += ": " + LevelText(*told.level, told.limit, told.unit);
      standing_[finding.key] = entry;
      news.push_back(News(finding.key, publish::AlarmEvent::Begin, told, time, std::move(entry)));
    } else {
      archive::JournalEntry entry = std::move(found->second);
      standing_.erase(found);
      entry.ended = std::max(time, entry.began);
      news.push_back(News(finding.key, publish::AlarmEvent::End, told, time, std::move(entry)));
    }
  }
  return news;
}

std::vector<AlarmNews> AlarmBook::EndWhere(const std::function<bool(const AlarmKey&)>& is,
                                           std::chrono::system_clock::time_point time) {
  std::vector<AlarmNews> news;
  for (auto at = standing_.begin(); at != standing_.end();) {
    if (!is(at->first)) {
      ++at;
      continue;
    }
    archive::JournalEntry entry = std::move(at->second);
    entry.ended = std::max(time, entry.began);
    entry.text += "; no longer judged";
    news.push_back(News(at->first, publish::AlarmEvent::End, {}, time, std::move(entry)));
    at = standing_.erase(at);
  }
  return news;
}

std::vector<archive::JournalEntry> AlarmBook::Entries() const {
  std::vector<archive::JournalEntry> entries;
  entries.reserve(standing_.size());
  for (const auto& [key, entry] : standing_) entries.push_back(entry);
  return entries;
}

std::string AlarmBook::Text() const {
  std::string text;
  for (const auto& [key, entry] : standing_)
    text += KeyText(key) + " " + archive::TextOf(entry.uid) + "\n";
  return text;
}

void AlarmBook::Restore(const std::string& text, const std::vector<archive::JournalEntry>& open) {
  std::istringstream lines(text);
  std::string name;
  std::string uid;
  while (lines >> name >> uid) {
    const auto key = KeyFrom(name);
    const auto entry = std::ranges::find_if(
        open, [&](const archive::JournalEntry& each) { return archive::TextOf(each.uid) == uid; });
    if (key && entry != open.end()) standing_[*key] = *entry;
  }
}

}  // namespace kestrel::monitor
