// One turn after another: look, decide, do, note.
// SPDX-License-Identifier: MIT
#include "monitor/monitor.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "archive/record_row.h"
#include "monitor/own_records.h"
#include "monitor/plan/plan_words.h"

namespace kestrel::monitor {
namespace {

using std::chrono::nanoseconds;
using std::chrono::system_clock;

constexpr std::chrono::seconds kBrokerPatience{10};
constexpr std::chrono::seconds kKeepingPatience{30};
constexpr std::chrono::seconds kBringingPatience{5};

std::string Captures(std::int64_t count) {
  return std::to_string(count) + (count == 1 ? " capture" : " captures");
}

std::string SecondsOf(nanoseconds time) {
  return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(time).count()) + " s";
}

}  // namespace

Monitor::Monitor(const Plan& plan, std::vector<std::optional<BandTable>> bands, Site site)
    : plan_(plan),
      bands_(std::move(bands)),
      site_(std::move(site)),
      clocks_(site_.clock, site_.sinceBoot),
      names_{plan.bench, plan.sensor},
      diary_(site_.diary),
      incidents_(names_, [this](const archive::JournalEntry& entry) { NoteIncident(entry); }),
      alarms_(names_),
      judge_(plan.judging.rule),
      sensor_(site_.station, site_.patience),
      runner_(plan_, site_.sinceBoot()) {}

Monitor::~Monitor() = default;

void Monitor::NoteIncident(const archive::JournalEntry& entry) {
  diary_.Put(entry);
  const bool isNew = lastSaid_ != entry.uid;
  lastSaid_ = entry.uid;
  if (entry.ended) {
    site_.say("Over: " + entry.kind +
                  (entry.missed > 0 ? ", " + Captures(entry.missed) + " missed" : "") + ". " +
                  entry.text,
              false);
  } else if (isNew && entry.missed == 0) {
    site_.say(entry.kind + ": " + entry.text, true);
  }
}

void Monitor::Start() {
  RestorePast();
  keeper_ = std::make_unique<archive::Keeper>(site_.keeper);
  diary_.Set(past::kEnded, "0");
  TellStatus(publish::State::Starting);
}

void Monitor::RestorePast() {
  const Diary::Past past = diary_.Read();
  const auto text = [&](const char* name) {
    const auto found = past.texts.find(name);
    return found == past.texts.end() ? std::string() : found->second;
  };
  const Now now = Time();
  incidents_.Restore(past.open);
  alarms_.Restore(text(past::kAlarms), past.open);
  judge_.Restore(text(past::kLevels));
  std::istringstream untold(text(past::kUntold));
  for (std::string line; std::getline(untold, line);) {
    if (auto alarm = AlarmFrom(line, names_)) untold_.push_back(*std::move(alarm));
  }
  seen_.Restore(text(past::kRecent));
  Tell(alarms_.EndWhere([this](const AlarmKey& key) { return !IsJudged(plan_, key); }, now.wall));
  dealt_ = accounted_ = now.wall - plan_.every;
  if (text(past::kAccounted).empty()) return;
  const auto last = archive::TimeOf(std::strtoll(text(past::kAccounted).c_str(), nullptr, 10));
  const std::int64_t missed = MissedBetween(last, now.wall, plan_.every);
  incidents_.Once(Incident::NotRunning,
                  text(past::kEnded) == "1"
                      ? "The monitor was stopped and started again."
                      : "The monitor ended without notice and was started again.",
                  std::min(last, now.wall), now.wall, missed);
}

bool Monitor::Turn() {
  Look();
  CountPassed();
  if (site_.patience.IsEnding()) runner_.Stop();
  const Next next = runner_.Decide(Time().boot);
  Do(next);
  TellAlarms();
  diary_.Flush();
  diary_.Bring();
  return next.what != Next::Do::End;
}

void Monitor::Do(const Next& next) {
  doing_ = next.what;
  switch (next.what) {
    case Next::Do::Wait:
      return Wait(next.until);
    case Next::Do::Connect:
      return Connect();
    case Next::Do::Capture:
      return Capture(next.step);
    case Next::Do::BeginSeries:
      return BeginSeries();
    case Next::Do::LookAtCount:
      return LookAtCount();
    case Next::Do::Fetch:
      return Fetch();
    case Next::Do::FetchStored:
      return FetchStored();
    case Next::Do::End:
      return;
  }
}

void Monitor::Wait(nanoseconds until) {
  const nanoseconds left = until - Time().boot;
  if (left <= nanoseconds{0}) return;
  site_.clock.WaitUntil(site_.clock.Monotonic() + std::min<nanoseconds>(left, site_.glance));
}

void Monitor::Finish() {
  const bool isSafe = !keeper_ || keeper_->Finish(kKeepingPatience);
  LookAtKeeping();
  if (!isSafe) {
    incidents_.Once(Incident::CaptureLost, "Records could be kept nowhere at the monitor's end.",
                    Time().wall, Time().wall, static_cast<std::int64_t>(handed_.size()));
    handed_.clear();
    dealt_ = Time().wall;
    LookAtKeeping();
  }
  TellStatus(publish::State::Stopped);
  TellAlarms();
  diary_.Set(past::kEnded, "1");
  diary_.Flush();
  if (const auto& trouble = diary_.Trouble()) {
    return site_.say(
        "The journal's last entries could not be kept: " + std::string(trouble->what()) + ".",
        true);
  }
  if (diary_.BringAll(kBringingPatience)) return;
  site_.say("The journal's last entries are brought to the archive at the next start.", true);
}

void Monitor::Look() {
  LookAtClocks();
  LookAtKeeping();
  LookAtBroker(Time());
  if (incidents_.Open() != incidentsTold_) TellStatus(publish::State::Up);
}

void Monitor::LookAtClocks() {
  const ClockNews news = clocks_.Look();
  const Now now = Time();
  if (news.sleep) {
    const std::int64_t passed = runner_.TakePassed(now.boot);
    incidents_.Once(Incident::Suspended,
                    "The machine was asleep for " + SecondsOf(news.sleep->lasted) + ".",
                    news.sleep->from, now.wall, passed);
    dealt_ = now.wall;
  }
  if (news.step) {
    const bool isForward = news.step->after > news.step->before;
    const auto by =
        isForward ? news.step->after - news.step->before : news.step->before - news.step->after;
    incidents_.Once(Incident::ClockStepped,
                    std::string("The clock was set ") + (isForward ? "forward" : "back") + " by " +
                        SecondsOf(by) + ".",
                    news.step->after, news.step->after);
    dealt_ = now.wall;
  }
}

// What the keeper has dealt with is what it was handed first.
void Monitor::LookAtKeeping() {
  if (!keeper_) return;
  const archive::KeeperState state = keeper_->State();
  const Now now = Time();
  if (state.refused > refused_) {
    incidents_.Once(Incident::RecordRefused, state.trouble, now.wall, now.wall,
                    state.refused - refused_);
  }
  while (static_cast<std::int64_t>(handed_.size()) > state.unsafe) {
    if (state.refused == refused_) {
      site_.say("Kept record " + archive::TextOf(handed_.front().uid) + ".", false);
      ++safe_;
    }
    handed_.pop_front();
  }
  refused_ = state.refused;
  runner_.Hold(state.unsafe >= kMostUnsafe);
  const auto& disk = diary_.Trouble();
  const bool isFull =
      state.fault == database::Fault::Full || (disk && disk->fault == database::Fault::Full);
  const bool isAway = !isFull && state.refused == 0 && !state.trouble.empty();
  isFull ? incidents_.Begin(Incident::DiskFull, disk ? disk->what() : state.trouble, now)
         : incidents_.End(Incident::DiskFull, now);
  isAway ? incidents_.Begin(Incident::ArchiveAway, state.trouble, now)
         : incidents_.End(Incident::ArchiveAway, now);
  if (!handed_.empty() || accounted_ == dealt_) return;
  accounted_ = dealt_;
  diary_.Set(past::kAccounted, std::to_string(archive::Nanoseconds(accounted_)));
  // At once: after a kill, what is not noted here is told as missed though it is kept.
  diary_.Flush();
}

void Monitor::LookAtBroker(const Now& now) {
  if (site_.publisher == nullptr) return;
  const publish::PublisherState state = site_.publisher->State();
  if (!state.hasBroker || state.isConnected) {
    brokerGone_.reset();
    return incidents_.End(Incident::BrokerAway, now);
  }
  if (!brokerGone_) brokerGone_ = now.boot;
  if (now.boot - *brokerGone_ >= kBrokerPatience) {
    incidents_.Begin(Incident::BrokerAway,
                     state.trouble.empty() ? "The broker cannot be reached." : state.trouble, now);
  }
}

// Captures that went by, to the account of what stood in their way.
void Monitor::CountPassed() {
  const Now now = Time();
  const std::int64_t passed = runner_.TakePassed(now.boot);
  if (passed == 0) return;
  dealt_ = now.wall;
  for (const Incident kind :
       {Incident::SensorAway, Incident::SensorSilent, Incident::DiskFull, Incident::ArchiveAway}) {
    const bool isOfSensor = kind == Incident::SensorAway || kind == Incident::SensorSilent;
    if (!incidents_.IsOpen(kind) || isOfSensor == runner_.IsConnected()) continue;
    if (!isOfSensor && !runner_.IsHeld()) continue;
    return incidents_.Missed(kind, passed);
  }
  incidents_.Begin(Incident::Late, "Captures last longer than " + PeriodText(plan_.every) + ".",
                   now);
  incidents_.Missed(Incident::Late, passed);
}

Progress Monitor::State() {
  Progress progress{.isConnected = runner_.IsConnected(),
                    .records = safe_,
                    .unsafe = static_cast<std::int64_t>(handed_.size()),
                    .missed = incidents_.AllMissed(),
                    .incidentsOpen = incidents_.Open(),
                    .alarmsOn = alarms_.Standing(),
                    .lastRecord = lastRecord_};
  progress.doing = doing_;
  if (!plan_.FollowsTimer()) progress.nextIn = runner_.NextCapture() - Time().boot;
  return progress;
}

std::vector<archive::JournalEntry> Monitor::OpenIncidents() const {
  return incidents_.OpenEntries();
}

std::vector<archive::JournalEntry> Monitor::StandingAlarms() const {
  return alarms_.Entries();
}

}  // namespace kestrel::monitor
