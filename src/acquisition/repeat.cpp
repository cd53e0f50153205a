// The schedule of repeated captures.
// SPDX-License-Identifier: MIT
#include "acquisition/repeat.h"

#include <algorithm>

namespace kestrel {
namespace {

using std::chrono::nanoseconds;
using namespace std::chrono_literals;
using Do = RepeatStep::Do;

constexpr nanoseconds kSeekEvery = 1s;
// REC_CNT is looked at ten times a period, within these bounds.
constexpr nanoseconds kLookSoonest = 250ms;
constexpr nanoseconds kLookLatest = 5s;
constexpr int kLooksPerPeriod = 10;
constexpr std::int32_t kCounts = 0x10000;  // REC_CNT wraps at 16 bits

double Seconds(nanoseconds time) {
  return std::chrono::duration<double>(time).count();
}

// Records from one REC_CNT to a later one; 1 where the sensor has begun to count anew.
std::int32_t Moved(std::int32_t from, std::int32_t to) {
  const std::int32_t moved = (to - from) & (kCounts - 1);
  return moved < kCounts / 2 ? moved : 1;
}

}  // namespace

Repeat::Repeat(Clock& clock, const RepeatSettings& settings)
    : clock_(clock), settings_(settings), latest_(clock.Monotonic()), start_(latest_) {
  settings_.period = std::max<nanoseconds>(settings_.period, kShortestRepeat);
}

Repeat::Time Repeat::Now() {
  latest_ = std::max(latest_, clock_.Monotonic());
  return latest_;
}

RepeatStep Repeat::Next() {
  const Time now = Now();
  if (ended_) return {Do::End};
  if (capturing_) return {Do::Nothing};
  if (lost_) {
    const Time seek = *lookedAt_ + kSeekEvery;
    return now < seek ? RepeatStep{Do::Wait, seek} : RepeatStep{Do::SeekSensor};
  }
  if (!held_.empty()) return {Do::Wait, now + kLookSoonest};
  return Follows() ? NextOfSeries(now) : NextCapture(now);
}

RepeatStep Repeat::NextCapture(Time now) const {
  if (settings_.mode == RepeatMode::AtOnce || SlotAt(now) > lastSlot_) return {Do::Capture};
  return {Do::Wait, Due()};
}

RepeatStep Repeat::NextOfSeries(Time now) const {
  if (beginSeries_) return {Do::Capture};
  if (seen_ != fetched_ && !postponed_) return {Do::Fetch};
  if (!lookedAt_ || now >= *lookedAt_ + LookEvery()) return {Do::LookAtCount};
  return {Do::Wait, *lookedAt_ + LookEvery()};
}

Repeat::Time Repeat::LookEvery() const {
  if (!sensorPeriod_) return kLookSoonest;
  return std::clamp<Time>(*sensorPeriod_ / kLooksPerPeriod, kLookSoonest, kLookLatest);
}

void Repeat::CaptureBegan() {
  began_ = Now();
  capturing_ = true;
  note_.clear();
  if (settings_.mode != RepeatMode::Every) return;
  const std::int64_t slot = SlotAt(began_);
  missed_ += std::max<std::int64_t>(slot - lastSlot_ - 1, 0);
  lastSlot_ = std::max(slot, lastSlot_);
}

// In timer mode it is the count that tells of records.
void Repeat::CaptureDone() {
  if (!capturing_) return;
  capturing_ = false;
  beginSeries_ = false;
  if (!Follows()) {
    lasted_ = Now() - began_;
    CountOne();
  }
  if (ending_) End("stopped");
}

void Repeat::CountOne() {
  ++done_;
  if (settings_.times && done_ >= *settings_.times) End("");
}

void Repeat::CaptureStopped() {
  capturing_ = false;
  End("the last capture was stopped");
}

void Repeat::CaptureFailed(const std::string& why) {
  capturing_ = false;
  End(why);
}

void Repeat::SensorLost(const std::string& why) {
  if (ended_ || lost_) return;
  if (capturing_ && !Follows()) ++missed_;
  capturing_ = false;
  lost_ = true;
  lostAt_ = Now();
  lookedAt_ = lostAt_;
  if (gaps_.size() == kMostGaps) gaps_.erase(gaps_.begin());
  gaps_.push_back({.from = clock_.UtcNow(), .to = {}, .reason = why});
  if (ending_) End("stopped");
}

// The time of day may have been set meanwhile: the gap is as long as it lasted.
void Repeat::SensorBack() {
  if (!lost_) return;
  lost_ = false;
  gaps_.back().to =
      gaps_.back().from +
      std::chrono::duration_cast<std::chrono::system_clock::duration>(Now() - lostAt_);
  lookedAt_.reset();
  moved_.reset();
  seriesMayHaveEnded_ = Follows();
}

void Repeat::UserStopped() {
  if (ended_) return;
  ending_ = capturing_;
  if (!ending_) End("stopped");
}

void Repeat::End(const std::string& why) {
  if (ended_) return;
  ended_ = true;
  ending_ = false;
  note_ = why;
}

// What the sensor holds before is no new record. One that lost its power has ended its series, and
// counts from 0 on.
void Repeat::CountSeen(std::int32_t count) {
  const Time now = Now();
  lookedAt_ = now;
  postponed_ = false;
  if (!fetched_) fetched_ = seen_ = count;
  if (seriesMayHaveEnded_ && (count < *fetched_ || count == 0)) {
    beginSeries_ = true;
    fetched_ = seen_ = count;
  }
  seriesMayHaveEnded_ = false;
  NoteCount(count, now);
}

void Repeat::CountFetched(std::int32_t count) {
  if (!Follows() || ended_) return;
  NoteCount(count, Now());
  const std::int32_t moved = fetched_ ? Moved(*fetched_, count) : 0;
  fetched_ = count;
  if (moved == 0) return;
  note_.clear();
  missed_ += moved - 1;
  CountOne();
}

void Repeat::NoteCount(std::int32_t count, Time now) {
  if (seen_ && *seen_ != count) moved_ = now;
  seen_ = count;
}

void Repeat::FetchMissed(const std::string& why) {
  capturing_ = false;
  note_ = why;
  postponed_ = true;
  lookedAt_ = Now();
  if (ending_) End("stopped");
}

RepeatProgress Repeat::Progress() {
  const Time now = Now();
  RepeatProgress progress{.settings = settings_,
                          .state = RepeatState::Waiting,
                          .done = done_,
                          .missed = missed_,
                          .nextIn = NextIn(now),
                          .remaining = Remaining(now),
                          .ending = ending_,
                          .reason = note_,
                          .gaps = gaps_};
  if (ended_) {
    progress.state = RepeatState::Ended;
  } else if (capturing_) {
    progress.state = RepeatState::Capturing;
  } else if (lost_ || !held_.empty()) {
    progress.state = RepeatState::Paused;
    progress.reason = lost_ ? gaps_.back().reason : held_;
  }
  return progress;
}

std::optional<double> Repeat::NextIn(Time now) const {
  if (ended_ || capturing_ || lost_) return std::nullopt;
  if (settings_.mode == RepeatMode::Every) {
    return SlotAt(now) > lastSlot_ ? 0.0 : Seconds(Due() - now);
  }
  if (!Follows() || !moved_ || !sensorPeriod_ || now > *moved_ + *sensorPeriod_) {
    return std::nullopt;
  }
  return Seconds(*moved_ + *sensorPeriod_ - now);
}

std::optional<double> Repeat::Remaining(Time now) const {
  if (ended_ || lost_ || !settings_.times) return std::nullopt;
  const double left = *settings_.times - done_;
  const double capture = Seconds(lasted_.value_or(Time{0}));
  const double begun = capturing_ ? Seconds(now - began_) : 0.0;
  double all = 0;
  if (settings_.mode == RepeatMode::Every) {
    const double wait = capturing_ ? 0.0 : NextIn(now).value_or(0.0);
    all = wait + (left - 1) * std::max(Seconds(settings_.period), capture) + capture - begun;
  } else if (settings_.mode == RepeatMode::AtOnce) {
    if (!lasted_) return std::nullopt;
    all = left * capture - begun;
  } else {
    if (!sensorPeriod_) return std::nullopt;
    all = left * Seconds(*sensorPeriod_) - (moved_ ? Seconds(now - *moved_) : 0.0);
  }
  return std::max(all, 0.0);
}

}  // namespace kestrel
