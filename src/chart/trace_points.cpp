// Thinning points to least and largest of a pixel column.
// SPDX-License-Identifier: MIT
#include "chart/trace_points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

namespace kestrel {
namespace {

void AddColumn(std::span<const PlotPoint> column, PlotLine& line) {
  if (column.size() <= 4) {
    line.insert(line.end(), column.begin(), column.end());
    return;
  }
  const auto [least, largest] = std::minmax_element(
      column.begin(), column.end(), [](const auto& a, const auto& b) { return a.y < b.y; });
  std::array<std::size_t, 4> kept{0, static_cast<std::size_t>(least - column.begin()),
                                  static_cast<std::size_t>(largest - column.begin()),
                                  column.size() - 1};
  std::sort(kept.begin(), kept.end());
  const auto end = std::unique(kept.begin(), kept.end());
  for (auto index = kept.begin(); index != end; ++index) line.push_back(column[*index]);
}

void Finish(PlotLine& line, std::vector<PlotLine>& lines) {
  if (!line.empty()) lines.push_back(ReducedToColumns(line));
  line.clear();
}

PlotPoint Along(const PlotPoint& a, const PlotPoint& b, double part) {
  return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
}

// The part of a segment between two heights, as fractions of its length; empty when first > last.
std::pair<double, double> PartSeen(const PlotPoint& a, const PlotPoint& b, const PlotRange& seen) {
  if (a.y == b.y) return seen.Holds(a.y) ? std::pair(0.0, 1.0) : std::pair(1.0, 0.0);
  const double one = (seen.low - a.y) / (b.y - a.y);
  const double other = (seen.high - a.y) / (b.y - a.y);
  return {std::max(0.0, std::min(one, other)), std::min(1.0, std::max(one, other))};
}

// Walks along a line and keeps where in the pattern it is.
class Dasher {
 public:
  explicit Dasher(std::span<const double> pattern)
      : pattern_(pattern), period_(std::accumulate(pattern.begin(), pattern.end(), 0.0)) {}

  void Follow(const PlotPoint& a, const PlotPoint& b, const PlotRange& seen) {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const auto [first, last] = PartSeen(a, b, seen);
    if (!(first < last)) {
      Skip(length);
      return;
    }
    if (first > 0) Skip(first * length);
    Draw(Along(a, b, first), Along(a, b, last), (last - first) * length);
    if (last < 1) Skip((1 - last) * length);
  }
  std::vector<PlotLine> Take() { return std::move(dashes_); }

 private:
  void Skip(double length) {
    const double before = std::accumulate(pattern_.begin(), pattern_.begin() + At(), 0.0);
    done_ = std::fmod(before + done_ + length, period_);
    isJoined_ = false;
    for (at_ = 0; at_ + 1 < pattern_.size() && done_ >= pattern_[at_]; ++at_) {
      done_ -= pattern_[at_];
    }
  }
  // `done_` of the part `at_` lies behind.
  void Draw(const PlotPoint& a, const PlotPoint& b, double length) {
    for (double done = 0; done < length;) {
      const bool isOn = at_ % 2 == 0;
      const double step = std::min(pattern_[at_] - done_, length - done);
      if (isOn) {
        if (!isJoined_) dashes_.push_back({Along(a, b, done / length)});
        dashes_.back().push_back(Along(a, b, std::min(1.0, (done + step) / length)));
      }
      isJoined_ = isOn;
      done += std::max(step, 1e-6);
      done_ += step;
      if (done_ < pattern_[at_] - 1e-9) continue;
      isJoined_ = false;
      done_ = 0;
      at_ = (at_ + 1) % pattern_.size();
    }
  }

  [[nodiscard]] std::ptrdiff_t At() const { return static_cast<std::ptrdiff_t>(at_); }

  std::span<const double> pattern_;
  double period_;
  std::size_t at_ = 0;
  double done_ = 0;
  bool isJoined_ = false;  // the last dash goes on
  std::vector<PlotLine> dashes_;
};

}  // namespace

PlotLine ReducedToColumns(std::span<const PlotPoint> points) {
  PlotLine line;
  for (std::size_t from = 0; from < points.size();) {
    const double column = std::floor(points[from].x);
    std::size_t to = from + 1;
    while (to < points.size() && points[to].x < column + 1) ++to;
    AddColumn(points.subspan(from, to - from), line);
    from = to;
  }
  return line;
}

std::vector<PlotLine> LinesInView(std::span<const double> x, std::span<const double> y,
                                  const AxisMap& across, const AxisMap& up) {
  const std::size_t count = std::min(x.size(), y.size());
  const auto begin = x.begin();
  const auto end = begin + static_cast<std::ptrdiff_t>(count);
  auto from = std::lower_bound(begin, end, across.Range().low);
  auto to = std::upper_bound(begin, end, across.Range().high);
  if (from != begin) --from;
  if (to != end) ++to;
  std::vector<PlotLine> lines;
  PlotLine line;
  line.reserve(static_cast<std::size_t>(std::max<std::ptrdiff_t>(to - from, 0)));
  for (auto place = from; place < to; ++place) {
    const double value = y[static_cast<std::size_t>(place - begin)];
    if (std::isfinite(value)) {
      line.push_back({across.ToPixel(*place), up.ToPixel(value)});
    } else {
      Finish(line, lines);
    }
  }
  Finish(line, lines);
  return lines;
}

std::vector<PlotLine> Dashes(std::span<const PlotPoint> line, std::span<const double> pattern,
                             const PlotRange& seen) {
  const auto isLength = [](double length) { return length > 0; };
  if (line.size() < 2 || pattern.size() < 2 || !std::ranges::all_of(pattern, isLength)) return {};
  Dasher dasher(pattern.first(pattern.size() / 2 * 2));
  for (std::size_t i = 1; i < line.size(); ++i) dasher.Follow(line[i - 1], line[i], seen);
  return dasher.Take();
}

std::span<const double> DashPattern(int dash) {
  static constexpr std::array<double, 2> kDashed{6, 3};
  static constexpr std::array<double, 2> kDotted{1.5, 2.5};
  static constexpr std::array<double, 4> kDashDot{8, 2.5, 1.5, 2.5};
  static constexpr std::array<double, 2> kLong{16, 5};
  static constexpr std::array<double, 6> kDashDotDot{8, 2, 1.5, 2, 1.5, 2};
  switch (dash) {
    case 1:
      return kDashed;
    case 2:
      return kDotted;
    case 3:
      return kDashDot;
    case 4:
      return kLong;
    case 5:
      return kDashDotDot;
    default:
      return {};
  }
}

}  // namespace kestrel
