// Statistics of usual levels.
// SPDX-License-Identifier: MIT
#include "analysis/baseline.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace kestrel::analysis {
namespace {

constexpr double kTail = 0.025;  // either side of 95 %
constexpr double kMostWord = 65535;
constexpr int kBisections = 60;

bool IsShare(double share) {
  return share > 0 && share < 1;
}

// P(X >= counted) for X of `of` trials.
double AtLeast(int counted, int of, double share) {
  if (counted <= 0) return 1;
  double sum = 0;
  for (int k = counted; k <= of; ++k) {
    const double choose = std::lgamma(of + 1.0) - std::lgamma(k + 1.0) - std::lgamma(of - k + 1.0);
    sum += std::exp(choose + k * std::log(share) + (of - k) * std::log1p(-share));
  }
  return std::min(sum, 1.0);
}

// The share at which P(X >= counted) is `probability`; it rises with the share.
double ShareWith(int counted, int of, double probability) {
  double low = 0;
  double high = 1;
  for (int i = 0; i < kBisections; ++i) {
    const double middle = (low + high) / 2;
    (AtLeast(counted, of, middle) < probability ? low : high) = middle;
  }
  return (low + high) / 2;
}

// How many of the last n, up to and with `end`, keep a condition.
template <typename Condition>
int CountLast(std::span<const double> levels, std::size_t end, int n, Condition condition) {
  const std::size_t first = end + 1 - std::min(end + 1, static_cast<std::size_t>(n));
  return static_cast<int>(std::count_if(levels.begin() + static_cast<std::ptrdiff_t>(first),
                                        levels.begin() + static_cast<std::ptrdiff_t>(end + 1),
                                        condition));
}

}  // namespace

std::optional<Usual> UsualOf(std::span<const double> levelsDb) {
  if (levelsDb.empty()) return std::nullopt;
  const auto count = static_cast<double>(levelsDb.size());
  Usual usual{.captures = levelsDb.size(),
              .meanDb = std::accumulate(levelsDb.begin(), levelsDb.end(), 0.0) / count};
  if (!std::isfinite(usual.meanDb)) return std::nullopt;
  double square = 0;
  for (const double level : levelsDb) square += std::pow(level - usual.meanDb, 2);
  if (levelsDb.size() > 1) usual.sigmaDb = std::sqrt(square / (count - 1));
  return usual;
}

double LimitOf(const Usual& usual, double k) {
  return usual.meanDb + k * usual.sigmaDb;
}

std::optional<double> PercentileOf(std::span<const double> levelsDb, double share) {
  if (levelsDb.empty() || !(share >= 0 && share <= 1)) return std::nullopt;
  if (!std::ranges::all_of(levelsDb, [](double level) { return std::isfinite(level); })) {
    return std::nullopt;
  }
  std::vector<double> sorted(levelsDb.begin(), levelsDb.end());
  std::ranges::sort(sorted);
  const double rank = std::ceil(share * static_cast<double>(sorted.size()) - 1e-9);
  return sorted[static_cast<std::size_t>(std::max(rank - 1, 0.0))];
}

std::optional<int> CapturesNeeded(double share, double confidence) {
  if (!IsShare(share) || !IsShare(confidence)) return std::nullopt;
  const double needed = std::ceil(std::log1p(-confidence) / std::log(share) - 1e-9);
  if (!(needed < 1e9)) return std::nullopt;
  return static_cast<int>(std::max(needed, 1.0));
}

double FalseAlarmRate(int comparisons, double k) {
  if (comparisons <= 0 || !std::isfinite(k)) return 0;
  const double one = std::erfc(k / std::numbers::sqrt2) / 2;
  return -std::expm1(comparisons * std::log1p(-one));
}

ShareBounds BoundsOf(int counted, int of) {
  if (of <= 0 || counted < 0 || counted > of) return {};
  return {.low = counted == 0 ? 0 : ShareWith(counted, of, kTail),
          .high = counted == of ? 1 : ShareWith(counted + 1, of, 1 - kTail)};
}

std::vector<bool> Replay(std::span<const double> levelsDb, double limitDb, const AlarmRule& rule) {
  const int n = std::max(rule.n, 1);
  const int m = std::clamp(rule.m, 1, n);
  const double release = limitDb - std::max(rule.hysteresisDb, 0.0);
  std::vector<bool> alarms;
  bool alarm = false;
  for (std::size_t end = 0; end < levelsDb.size(); ++end) {
    const int above = CountLast(levelsDb, end, n, [&](double level) { return level > limitDb; });
    const int below = CountLast(levelsDb, end, n, [&](double level) { return level < release; });
    alarm = alarm ? below < m : above >= m;
    alarms.push_back(alarm);
  }
  return alarms;
}

int ThresholdWord(double limitDb, double stepG) {
  if (!(stepG > 0) || !std::isfinite(limitDb)) return static_cast<int>(kMostWord);
  const double word = std::ceil(std::pow(10, limitDb / 20) / stepG - 1e-9);
  return static_cast<int>(std::clamp(word, 1.0, kMostWord));
}

}  // namespace kestrel::analysis
