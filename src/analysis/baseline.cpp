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
constexpr int kMostSteps = 200;
constexpr double kSmall = 1e-300;
constexpr double kExact = 1e-15;
constexpr double kRounding = 1e-12;  // of a probability

bool IsShare(double share) {
  return share > 0 && share < 1;
}

// x^a (1 − x)^b / B(a, b).
double BetaFactor(double a, double b, double x) {
  return std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) +
                  b * std::log1p(-x));
}

// The continued fraction of the incomplete beta function, by Lentz's method; converges fast for
// x < (a + 1) / (a + b + 2), in some sqrt(max(a, b)) steps.
double BetaFraction(double a, double b, double x) {
  const auto apart = [](double value) { return std::fabs(value) < kSmall ? kSmall : value; };
  double c = 1;
  double d = 1 / apart(1 - (a + b) * x / (a + 1));
  double fraction = d;
  const int most = kMostSteps + static_cast<int>(10 * std::sqrt(std::max(a, b)));
  for (int m = 1; m <= most; ++m) {
    const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
    d = 1 / apart(1 + even * d);
    c = apart(1 + even / c);
    fraction *= d * c;
    const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
    d = 1 / apart(1 + odd * d);
    c = apart(1 + odd / c);
    fraction *= d * c;
    if (std::fabs(d * c - 1) < kExact) break;
  }
  return fraction;
}

// P(X >= counted) for X of `of` trials: the regularised incomplete beta function. `counted` 1 to
// `of`, `share` between 0 and 1.
double AtLeast(int counted, int of, double share) {
  const double a = counted;
  const double b = of - counted + 1.0;
  if (share < (a + 1) / (a + b + 2)) {
    return BetaFactor(a, b, share) * BetaFraction(a, b, share) / a;
  }
  return 1 - BetaFactor(b, a, 1 - share) * BetaFraction(b, a, 1 - share) / b;
}

// The share at which P(X >= counted) is `probability`; it rises with the share. Newton's steps
// where they stay between the bounds known so far, halves of these elsewhere.
double ShareWith(int counted, int of, double probability) {
  const double a = counted;
  const double b = of - counted + 1.0;
  double low = 0;
  double high = 1;
  double share = a / (a + b);
  for (int i = 0; i < kMostSteps; ++i) {
    const double error = AtLeast(counted, of, share) - probability;
    (error < 0 ? low : high) = share;
    const double slope = BetaFactor(a, b, share) / (share * (1 - share));
    double next = share - error / slope;
    if (!(next > low && next < high)) next = (low + high) / 2;
    const bool isThere = std::fabs(next - share) <= kExact * share;
    share = next;
    if (isThere) break;
  }
  return share;
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

std::optional<int> RankFor(int captures, double share, double confidence) {
  const auto needed = CapturesNeeded(share, confidence);
  if (!needed || captures < *needed) return std::nullopt;
  int low = 1;  // P(X >= rank) falls with the rank
  int high = captures;
  while (low < high) {
    const int middle = low + (high - low) / 2;
    if (AtLeast(middle, captures, share) <= (1 - confidence) * (1 + kRounding))
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

StandingAlarm::StandingAlarm(double limit, double release, const AlarmRule& rule)
    : limit_(limit), release_(release) {
  const int n = std::max(rule.n, 1);
  m_ = std::clamp(rule.m, 1, n);
  last_.resize(static_cast<std::size_t>(n), Place::Between);
}

void StandingAlarm::Restart() {
  std::ranges::fill(last_, Place::Between);
  above_ = below_ = 0;
  stands_ = false;
}

void StandingAlarm::Count(Place place, int change) {
  if (place == Place::Above) above_ += change;
  if (place == Place::Below) below_ += change;
}

bool StandingAlarm::Next(double level) {
  const Place place = level > limit_     ? Place::Above
                      : level < release_ ? Place::Below
                                         : Place::Between;
  Count(last_[next_], -1);
  Count(place, 1);
  last_[next_] = place;
  next_ = next_ + 1 == last_.size() ? 0 : next_ + 1;
  stands_ = stands_ ? below_ < m_ : above_ >= m_;
  return stands_;
}

std::vector<bool> Replay(std::span<const double> levelsDb, double limitDb, const AlarmRule& rule) {
  StandingAlarm alarm(limitDb, limitDb - std::max(rule.hysteresisDb, 0.0), rule);
  std::vector<bool> alarms;
  alarms.reserve(levelsDb.size());
  for (const double level : levelsDb) alarms.push_back(alarm.Next(level));
  return alarms;
}

int ThresholdWord(double limitDb, double stepG) {
  if (!(stepG > 0) || !std::isfinite(limitDb)) return static_cast<int>(kMostWord);
  const double word = std::ceil(std::pow(10, limitDb / 20) / stepG - 1e-9);
  return static_cast<int>(std::clamp(word, 1.0, kMostWord));
}

}  // namespace kestrel::analysis
