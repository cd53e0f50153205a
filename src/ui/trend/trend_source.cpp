// How the archive is asked for a level, and what came since is added.
// SPDX-License-Identifier: MIT
#include "ui/trend/trend_source.h"

#include <cmath>
#include <utility>

#include "record/utc_time.h"

namespace kestrel {
namespace {

using archive::Archive;

constexpr std::chrono::milliseconds kTellEvery{40};
constexpr double kDay = 86'400;

}  // namespace

TrendSource::TrendSource(const archive::Place& place) : library_(place) {
  connect(&library_, &Library::TroubleChanged, this, &TrendSource::TroubleChanged);
  connect(&library_, &Library::Failed, this, &TrendSource::End);
}

TrendSource::~TrendSource() {
  if (stop_) *stop_ = true;
}

void TrendSource::Ask(const archive::Filter& filter, const trend::Level& level) {
  filter_ = filter;
  asked_ = level;
  isBehind_ = false;
  Read(filter, true);
}

void TrendSource::Follow() {
  if (IsReading()) {
    isBehind_ = true;
    return;
  }
  if (!isRead_ || data_.Newest() == std::chrono::system_clock::time_point{}) {
    Read(filter_, true);
    return;
  }
  archive::Filter later = filter_;
  later.from = std::max(filter_.from.value_or(data_.Newest()), data_.Newest());
  Read(later, false);
}

void TrendSource::Read(const archive::Filter& filter, bool isAll) {
  if (stop_) *stop_ = true;
  stop_ = std::make_shared<std::atomic<bool>>(false);
  emit ReadingChanged();
  library_.Read([this, stop = stop_, filter, whole = filter_, level = asked_,
                 isAll](Archive& archive) -> std::function<void()> {
    auto told = std::chrono::steady_clock::now();
    const archive::GoOn goOn = [&](std::int64_t done, std::int64_t all) {
      const auto now = std::chrono::steady_clock::now();
      if (now - told > kTellEvery) {
        told = now;
        QMetaObject::invokeMethod(
            this,
            [this, stop, done, all] {
              if (!*stop) emit Progressed(done, all);
            },
            Qt::QueuedConnection);
      }
      return !*stop;
    };
    auto answer = std::make_shared<Answer>();
    answer->levels = LevelsOver(archive, filter, AskedOf(level), goOn);
    if (*stop) return {};
    answer->temperature = LevelsOver(archive, filter, {.of = archive::TrendOf::Temperature}, goOn);
    if (!isAll) answer->found = static_cast<std::int64_t>(archive.Find(whole).size());
    return [this, stop, answer, isAll] {
      if (!*stop) Take(std::move(*answer), isAll);
    };
  });
}

void TrendSource::Take(Answer answer, bool isAll) {
  if (isAll) {
    const std::size_t series = asked_ == read_ ? data_.series : 0;
    const double start = data_.start;
    data_ = {.levels = std::move(answer.levels), .temperature = std::move(answer.temperature)};
    data_.start = start;
    data_.Choose(series < data_.levels.series.size() ? series : 0);
  } else {
    data_.Add(std::move(answer.levels), std::move(answer.temperature));
  }
  const double newest = SecondsOf(data_.Newest());
  if (!hasStart_ && newest > 0) {
    hasStart_ = true;
    data_.start = std::floor(newest / kDay) * kDay;
  }
  read_ = asked_;
  isRead_ = true;
  const bool isOther = !isAll && answer.found != data_.Count();
  End();
  emit Changed();
  if (isOther) {
    Read(filter_, true);
  } else if (std::exchange(isBehind_, false)) {
    Follow();
  }
}

void TrendSource::End() {
  stop_.reset();
  emit ReadingChanged();
}

void TrendSource::Cancel() {
  if (!stop_) return;
  *stop_ = true;
  library_.CancelRead();
  isBehind_ = false;
  asked_ = read_;
  End();
}

void TrendSource::Choose(std::size_t series) {
  if (series >= data_.levels.series.size() || series == data_.series) return;
  data_.Choose(series);
  emit Changed();
}

}  // namespace kestrel
