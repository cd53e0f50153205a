// Finding gaps and events among points, and their figures.
// SPDX-License-Identifier: MIT
#include "trend/parts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "numeric/number_texts.h"
#include "record/utc_time.h"

namespace kestrel::trend {
namespace {

constexpr double kGapFactor = 8;
constexpr double kLeastGap = 10;  // s
constexpr std::size_t kLeastPoints = 4;
constexpr int kBands = 6;

double Median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  if (values.size() % 2 == 1) return *middle;
  return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

// Of ALM_x_STAT: two flags a band, warning and fault, above the number of a band.
bool IsOn(const archive::LevelPoint& point, Axis axis, int band, bool isFault) {
  const int bit = 2 * band + (isFault ? 3 : 2);
  return (point.alarms[Index(axis)] >> bit & 1) != 0;
}

// Follows one alarm through the points.
class Follower {
 public:
  Follower(Axis axis, int band, bool isFault, std::vector<AlarmEvent>& events)
      : axis_(axis), band_(band), isFault_(isFault), events_(events) {}

  void Take(const archive::LevelPoint& point) {
    const double time = SecondsOf(point.time);
    if (!IsOn(point, axis_, band_, isFault_)) {
      End(AlarmEvent::End::Over, time);
      return;
    }
    if (!event_) Begin(point, time);
    last_ = time;
    const double value = point.value[Index(axis_)];
    if (std::isnan(value) || (event_->largest && *event_->largest >= value)) return;
    event_->largest = value;
    event_->id = point.id;
  }
  void EndUnknown() { End(AlarmEvent::End::Unknown, last_); }
  void EndOpen() { End(AlarmEvent::End::Open, last_); }

 private:
  void Begin(const archive::LevelPoint& point, double time) {
    event_ = AlarmEvent{.axis = axis_, .band = band_, .isFault = isFault_};
    event_->begin = time;
    event_->id = point.id;
  }
  void End(AlarmEvent::End end, double time) {
    if (!event_) return;
    event_->end = end;
    event_->to = time;
    events_.push_back(*event_);
    event_.reset();
  }

  Axis axis_;
  int band_;
  bool isFault_;
  std::vector<AlarmEvent>& events_;
  std::optional<AlarmEvent> event_;
  double last_ = 0;
};

void Follow(Follower follower, Points points, std::span<const Gap> gaps) {
  auto gap = gaps.begin();
  for (std::size_t i = 0; i < points.size(); ++i) {
    follower.Take(points[i]);
    if (gap == gaps.end() || gap->before != i) continue;
    follower.EndUnknown();
    ++gap;
  }
  follower.EndOpen();
}

}  // namespace

std::vector<Gap> GapsIn(Points points) {
  if (points.size() < kLeastPoints) return {};
  std::vector<double> distances;
  distances.reserve(points.size());
  for (std::size_t i = 1; i < points.size(); ++i) {
    distances.push_back(SecondsOf(points[i].time) - SecondsOf(points[i - 1].time));
  }
  const std::vector<double> all = distances;
  const double least = std::max(kGapFactor * Median(distances), kLeastGap);
  std::vector<Gap> gaps;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i] <= least) continue;
    gaps.push_back({i, SecondsOf(points[i].time), SecondsOf(points[i + 1].time)});
  }
  return gaps;
}

std::vector<AlarmEvent> EventsIn(Points points, std::span<const Gap> gaps) {
  std::vector<AlarmEvent> events;
  std::array<std::int32_t, 3> any{};
  for (const archive::LevelPoint& point : points) {
    for (std::size_t i = 0; i < any.size(); ++i) any[i] |= point.alarms[i];
  }
  for (const Axis axis : kAxes) {
    archive::LevelPoint ever;
    ever.alarms = any;
    for (int band = 1; band <= kBands; ++band) {
      for (const bool isFault : {false, true}) {
        if (!IsOn(ever, axis, band, isFault)) continue;
        Follow(Follower(axis, band, isFault, events), points, gaps);
      }
    }
  }
  std::ranges::stable_sort(events, std::greater{}, &AlarmEvent::begin);
  return events;
}

std::string NameOf(const AlarmEvent& event) {
  return (event.isFault ? "Fault " : "Warning ") + std::to_string(event.band) + ", " +
         Letter(event.axis);
}

std::string DurationText(double seconds) {
  using analysis::NumberText;
  constexpr double kMinute = 60;
  constexpr double kHour = 3600;
  constexpr double kDay = 86'400;
  if (seconds < 90) return NumberText(seconds, seconds < 10 ? 1 : 0) + " s";
  if (seconds < 90 * kMinute) return NumberText(seconds / kMinute, 0) + " min";
  if (seconds < 2 * kDay) return NumberText(seconds / kHour, 1) + " h";
  return NumberText(seconds / kDay, 1) + " d";
}

std::string LastedText(const AlarmEvent& event) {
  if (event.end == AlarmEvent::End::Open) return "open";
  const std::string lasted = DurationText(event.to - event.begin);
  return event.end == AlarmEvent::End::Unknown ? "at least " + lasted : lasted;
}

std::optional<Statistics> StatisticsOf(Points points, std::size_t axis, const PlotRange& seconds) {
  std::vector<double> values;
  for (const archive::LevelPoint& point : points) {
    const double value = point.value[axis];
    if (seconds.Holds(SecondsOf(point.time)) && !std::isnan(value)) values.push_back(value);
  }
  if (values.empty()) return std::nullopt;
  Statistics told{.count = values.size()};
  const auto [least, largest] = std::ranges::minmax(values);
  told.least = least;
  told.largest = largest;
  const auto count = static_cast<double>(values.size());
  told.mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
  double squares = 0;
  for (const double value : values) squares += (value - told.mean) * (value - told.mean);
  if (values.size() > 1) told.deviation = std::sqrt(squares / (count - 1));
  told.median = Median(values);
  return told;
}

}  // namespace kestrel::trend
