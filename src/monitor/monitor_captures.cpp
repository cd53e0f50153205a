// What a monitor does with its sensor, and what becomes of records.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>

#include "analysis/joined.h"
#include "monitor/monitor.h"
#include "monitor/own_records.h"
#include "record/record_count.h"

namespace kestrel::monitor {
namespace {

archive::Remarks RemarksOf(const Plan& plan) {
  archive::Remarks remarks = plan.remarks;
  if (remarks.machine.empty()) remarks.machine = plan.sensor;
  return remarks;
}

}  // namespace

template <typename Value>
bool Monitor::Came(const Tried<Value>& tried, std::int64_t missed) {
  const auto* trouble = std::get_if<Trouble>(&tried);
  if (trouble != nullptr) Missed(*trouble, missed);
  return trouble == nullptr;
}

void Monitor::Missed(const Trouble& trouble, std::int64_t captures) {
  const Now now = Time();
  dealt_ = now.wall;
  if (trouble.kind == Trouble::Kind::Ended) {
    return incidents_.Once(Incident::CaptureLost, trouble.text, now.wall, now.wall, captures);
  }
  const Incident kind =
      trouble.kind == Trouble::Kind::Away ? Incident::SensorAway : Incident::SensorSilent;
  incidents_.Begin(kind, trouble.text, now);
  incidents_.Missed(kind, captures);
  runner_.Lost(now.boot);
  TellStatus(publish::State::Trouble);
}

void Monitor::Note(const SensorNews& news) {
  const Now now = Time();
  if (!news.replaced.empty()) {
    incidents_.Once(Incident::AdapterReplaced, news.replaced, now.wall, now.wall);
    judge_.Restart();
  }
  if (!news.putBack.empty()) {
    incidents_.Once(Incident::SettingsChanged, news.putBack + ".", now.wall, now.wall);
  } else if (news.restarted) {
    incidents_.Once(Incident::SensorRestarted,
                    "The sensor counts its records from 0 again; its settings are as set.",
                    now.wall, now.wall);
  }
  for (const std::string& line : site_.station.TakeNotes()) site_.say(OneLine(line), true);
}

void Monitor::Connect() {
  const auto tried = sensor_.Connect();
  if (!Came(tried, 0)) return;
  const Now now = Time();
  incidents_.End(Incident::SensorAway, now);
  Note(std::get<SensorNews>(tried));
  runner_.Connected(now.boot);
  TellStatus(publish::State::Up);
}

void Monitor::Capture(std::size_t step) {
  const Now due = Time();
  incidents_.End(Incident::Late, due);
  runner_.Began(due.boot);
  const auto checked = sensor_.Check();
  if (!Came(checked, 1)) return;
  Note(std::get<SensorNews>(checked));
  const auto captured = sensor_.Capture(plan_.steps.at(step));
  if (!Came(captured, 1)) return;
  incidents_.End(Incident::SensorSilent, Time());
  Keep(std::get<std::vector<Record>>(captured), step);
  dealt_ = due.wall;
  TellStatus(publish::State::Up);
}

void Monitor::BeginSeries() {
  const auto checked = sensor_.Check();
  if (!Came(checked, 0)) return;
  Note(std::get<SensorNews>(checked));
  const auto began = sensor_.BeginSeries(plan_.steps.front(), plan_.every);
  if (Came(began, 0)) runner_.SeriesBegan(std::get<std::int32_t>(began), Time().boot);
}

void Monitor::LookAtCount() {
  const auto count = sensor_.Count();
  if (Came(count, 0)) runner_.CountSeen(std::get<std::int32_t>(count), Time().boot);
}

void Monitor::Fetch() {
  const auto fetched = sensor_.Newest();
  if (!Came(fetched, 0)) return;
  const auto& newest = std::get<std::optional<NewestRecord>>(fetched);
  if (!newest) return LookAtCount();
  const Now now = Time();
  const bool isNew = KeepFromSensor(newest->record, newest->isInFlash);
  runner_.Fetched(newest->record.conditions.recordCount, isNew, now.boot);
  incidents_.End(Incident::SensorSilent, now);
  dealt_ = now.wall;
  TellStatus(publish::State::Up);
}

void Monitor::FetchStored() {
  const auto fetched = sensor_.Stored();
  if (!Came(fetched, 0)) return;
  const auto& stored = std::get<StoredRecords>(fetched);
  const auto found = std::ranges::count_if(
      stored.records, [this](const Record& record) { return KeepFromSensor(record, true); });
  const Now now = Time();
  runner_.CountSeen(stored.count, now.boot);
  NoteReplaced(runner_.StoredFetched(found, stored.areAll), now);
}

void Monitor::NoteReplaced(std::int64_t lost, const Now& now) {
  if (lost <= 0) return;
  incidents_.Once(Incident::CaptureLost,
                  RecordCount(lost) + " of the sensor's series " +
                      (lost == 1 ? "was replaced before it" : "were replaced before they") +
                      " could be fetched.",
                  now.wall, now.wall, lost);
}

void Monitor::Keep(const std::vector<Record>& records, std::size_t step) {
  const bool isWide = plan_.steps.at(step).kind == StepKind::Wide;
  const archive::WideMark mark{.set = archive::NewUid()};
  for (const Record& record : records) {
    const archive::Uid uid = archive::NewUid();
    Hand(record, uid, isWide ? std::optional{mark} : std::nullopt);
    Judge(record, uid, step);
  }
  if (isWide) JudgeWide(records, mark.set);
}

// False where it was kept before.
bool Monitor::KeepFromSensor(const Record& record, bool isInFlash) {
  const archive::Uid uid = UidOfWords(record);
  const bool isNew = seen_.Add(archive::TextOf(uid), isInFlash);
  diary_.Set(past::kRecent, seen_.Text());
  if (!isNew) return false;
  Hand(record, uid, std::nullopt);
  Judge(record, uid, 0);
  return true;
}

void Monitor::Hand(const Record& record, const archive::Uid& uid,
                   const std::optional<archive::WideMark>& wide) {
  handed_.push_back({uid});
  lastRecord_ = record.time;
  keeper_->Keep({.uid = uid,
                 .record = record,
                 .remarks = RemarksOf(plan_),
                 .program = site_.program,
                 .bench = plan_.bench,
                 .wide = wide});
  if (site_.publisher == nullptr) return;
  site_.publisher->Tell(LevelsOf(record, uid, names_));
  if (record.kind == RecordKind::Spectrum) {
    site_.publisher->Tell(SpectrumOf(record, uid, names_));
  }
}

void Monitor::Judge(const Record& record, const archive::Uid& uid, std::size_t step) {
  Findings findings = FoundBySensor(record);
  if (step < bands_.size() && bands_[step]) {
    const Findings more = judge_.Judge(record, *bands_[step]);
    findings.insert(findings.end(), more.begin(), more.end());
    diary_.Set(past::kLevels, judge_.Text());
  }
  Tell(alarms_.Take(findings, record.time, uid));
}

void Monitor::JudgeWide(const std::vector<Record>& records, const archive::Uid& uid) {
  if (!plan_.judging.severity || records.empty()) return;
  std::vector<analysis::Joined> axes;
  for (const Axis axis : kAxes) {
    std::vector<analysis::Spectrum> spectra;
    for (const Record& record : records) {
      const auto spectrum = analysis::SpectrumOf(record, axis, {.ownRange = true});
      if (spectrum) spectra.push_back(*spectrum);
    }
    const auto joined = analysis::Join(std::move(spectra));
    if (joined) axes.push_back(*joined);
  }
  Tell(alarms_.Take(FoundBySeverity(axes, plan_.judging), records.back().time, uid));
}

// On the disk first: a beginning that was told is known again after whatever happens.
void Monitor::Tell(std::vector<AlarmNews> news) {
  if (news.empty()) return;
  for (AlarmNews& one : news) {
    diary_.Put(one.entry);
    const bool begins = one.alarm.event == publish::AlarmEvent::Begin;
    unsaid_.push_back((begins ? "Alarm " : "Alarm over ") + archive::TextOf(one.entry.uid) + ": " +
                      one.entry.text + ".");
    if (site_.publisher != nullptr) untold_.push_back(std::move(one.alarm));
  }
  diary_.Set(past::kAlarms, alarms_.Text());
  NoteUntold();
}

void Monitor::NoteUntold() {
  std::string lines;
  for (const publish::Alarm& alarm : untold_) lines += LineOf(alarm) + "\n";
  diary_.Set(past::kUntold, lines);
}

void Monitor::TellAlarms() {
  if (unsaid_.empty() && untold_.empty()) return;
  if (!diary_.Flush()) return;
  for (const std::string& line : unsaid_) site_.say(line, true);
  unsaid_.clear();
  if (site_.publisher == nullptr || untold_.empty()) return;
  const std::size_t before = untold_.size();
  while (!untold_.empty() && site_.publisher->Tell(untold_.front())) untold_.pop_front();
  if (untold_.size() != before) NoteUntold();
}

void Monitor::TellStatus(publish::State state) {
  incidentsTold_ = incidents_.Open();
  if (site_.publisher == nullptr) return;
  const Now now = Time();
  const bool isLasting =
      incidents_.IsOpen(Incident::SensorAway) || incidents_.IsOpen(Incident::SensorSilent);
  publish::Status status{
      .of = names_,
      .state = state == publish::State::Up && isLasting ? publish::State::Trouble : state,
      .time = now.wall,
      .lastRecord = lastRecord_,
      .records = safe_,
      .missed = incidents_.AllMissed(),
      .incidentsOpen = incidents_.Open(),
      .alarmsOn = alarms_.Standing()};
  if (!plan_.FollowsTimer() && state != publish::State::Stopped) {
    status.nextCapture = now.wall + std::chrono::duration_cast<std::chrono::system_clock::duration>(
                                        runner_.NextCapture() - now.boot);
  }
  site_.publisher->Tell(status);
}

}  // namespace kestrel::monitor
