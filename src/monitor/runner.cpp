// The decisions of a monitor.
// SPDX-License-Identifier: MIT
#include "monitor/runner.h"

#include <algorithm>
#include <utility>

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;
using Do = Next::Do;

constexpr Runner::Time kFirstTry = 1s;
constexpr Runner::Time kLongestTry = 10s;
constexpr Runner::Time kLookSoonest = 250ms;
constexpr Runner::Time kLookLatest = 5s;
constexpr int kLooksPerPeriod = 10;
// A series whose count has not moved for so many periods has ended.
constexpr int kPeriodsOfSilence = 3;
constexpr Runner::Time kLeastSilence = 90s;
constexpr std::int32_t kCounts = 0x10000;  // REC_CNT wraps at 16 bits

// Records from one count to a later one; a sensor that has begun anew counts from 0.
std::int64_t Moved(std::int32_t from, std::int32_t to) {
  const std::int32_t moved = (to - from) & (kCounts - 1);
  return moved < kCounts / 2 ? moved : to;
}

}  // namespace

Runner::Runner(const Plan& plan, Time start)
    : schedule_(start, plan.every),
      steps_(std::max<std::size_t>(plan.steps.size(), 1)),
      followsTimer_(plan.FollowsTimer()),
      period_(plan.every),
      nextTry_(start),
      tryAfter_(kFirstTry) {}

Next Runner::Decide(Time now) {
  if (stopped_) return {Do::End};
  if (!connected_) {
    if (now >= nextTry_) return {Do::Connect};
    return {Do::Wait, nextTry_};
  }
  if (held_) return {Do::Wait, now + kLookSoonest};
  if (followsTimer_) return OfSeries(now);
  const auto due = schedule_.Due(now);
  if (!due) return {Do::Wait, schedule_.Next()};
  return {.what = Do::Capture, .step = static_cast<std::size_t>(*due) % steps_};
}

// Of a series the sensor's own count tells, as long as it runs.
std::int64_t Runner::TakePassed(Time now) {
  return followsTimer_ && seriesRuns_ ? 0 : schedule_.TakePassed(now);
}

void Runner::Connected(Time now) {
  connected_ = true;
  tryAfter_ = kFirstTry;
  nextTry_ = now;
  lookInFlash_ = true;
  lookFirst_ = seriesRuns_;
}

void Runner::Lost(Time now) {
  connected_ = false;
  nextTry_ = now + tryAfter_;
  tryAfter_ = std::min(2 * tryAfter_, kLongestTry);
}

void Runner::Began(Time now) {
  if (const auto due = schedule_.Due(now)) schedule_.Take(*due);
}

Runner::Time Runner::LookEvery() const {
  return std::clamp<Time>(period_ / kLooksPerPeriod, kLookSoonest, kLookLatest);
}

Next Runner::OfSeries(Time now) {
  if (seriesRuns_ && lookFirst_) return {Do::LookAtCount};
  // The newest first: what comes out of the flash takes its place in the buffers.
  if (seriesRuns_ && seen_ != fetched_) return {Do::Fetch};
  if (lookInFlash_) return {Do::FetchStored};
  if (!seriesRuns_) return {Do::BeginSeries};
  if (now - movedAt_ > std::max(kPeriodsOfSilence * period_, kLeastSilence)) {
    seriesRuns_ = false;
    return {Do::Wait, now};
  }
  if (now >= lookedAt_ + LookEvery()) return {Do::LookAtCount};
  return {Do::Wait, lookedAt_ + LookEvery()};
}

void Runner::SeriesBegan(std::int32_t count, Time now) {
  seriesRuns_ = true;
  lookFirst_ = false;
  behind_ = 0;
  seen_ = fetched_ = count;
  lookedAt_ = movedAt_ = now;
  schedule_.TakeUpTo(now);
}

void Runner::CountSeen(std::int32_t count, Time now) {
  lookedAt_ = now;
  if (seen_ != count) movedAt_ = now;
  seen_ = count;
  if (!std::exchange(lookFirst_, false)) return;
  // One that restarted has ended its series.
  if (count < fetched_.value_or(0) || count == 0) seriesRuns_ = false;
}

void Runner::Fetched(std::int32_t count, bool isNew, Time now) {
  const std::int64_t missing = Moved(fetched_.value_or(count), count) - (isNew ? 1 : 0);
  if (missing > 0) {
    behind_ += missing;
    lookInFlash_ = true;
  }
  if (seen_ != count) movedAt_ = now;
  seen_ = fetched_ = count;
  schedule_.TakeUpTo(now);
}

std::int64_t Runner::StoredFetched(std::int64_t found, bool isAll) {
  behind_ = std::max<std::int64_t>(behind_ - found, 0);
  if (!isAll) return 0;
  lookInFlash_ = false;
  return std::exchange(behind_, 0);
}

}  // namespace kestrel::monitor
