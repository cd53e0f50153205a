// Baselines: what is usual, where the limits lie, and how often they would alarm for nothing.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kestrel::analysis {

// Levels in dB of captures with the same settings, of one bin or band.
struct Usual {
  std::size_t captures = 0;
  double meanDb = 0;
  double sigmaDb = 0;  // of the sample, n − 1; 0 of one capture
};

// None without captures, or where a level is not finite.
[[nodiscard]] std::optional<Usual> UsualOf(std::span<const double> levelsDb);

// mean + k σ.
[[nodiscard]] double LimitOf(const Usual& usual, double k);

// The smallest level with at least this share (0 to 1) of the captures at or below; none of none.
[[nodiscard]] std::optional<double> PercentileOf(std::span<const double> levelsDb, double share);

// Captures needed so that, with this confidence, the largest of them is above what `share` of all
// captures keep to: 59 for 0.95 with 0.95, 299 for 0.99 with 0.95. None where one is not between 0
// and 1.
[[nodiscard]] std::optional<int> CapturesNeeded(double share, double confidence);

// Share of captures in which at least one of so many independent comparisons at k σ alarms for
// nothing: 2.4 % for 18 at 3.
[[nodiscard]] double FalseAlarmRate(int comparisons, double k);

// The rank, from 1, of the smallest of so many levels that `share` of all captures keep to, said
// with this confidence; none where there are fewer than CapturesNeeded.
[[nodiscard]] std::optional<int> RankFor(int captures, double share, double confidence);

// 95 % bounds of a share that was counted (Clopper and Pearson): 5 of 132 are 1.2 to 8.6 %.
struct ShareBounds {
  double low = 0;
  double high = 1;
};
[[nodiscard]] ShareBounds BoundsOf(int counted, int of);

// m of the last n levels above the limit raise an alarm; it ends when m of the last n are below the
// limit by the hysteresis.
struct AlarmRule {
  int m = 3;
  int n = 5;
  double hysteresisDb = 1;
  bool operator==(const AlarmRule&) const = default;
};

// An alarm that is told one level after the other. A level that is no number counts as neither
// above `limit` nor below `release`.
class StandingAlarm {
 public:
  // Of `rule` without its hysteresis; m and n below 1 count as 1, m above n as n.
  StandingAlarm(double limit, double release, const AlarmRule& rule);
  // Whether it stands after this level.
  bool Next(double level);
  void Restart();

 private:
  enum class Place : std::uint8_t { Between, Above, Below };
  void Count(Place place, int change);

  double limit_;
  double release_;
  int m_;
  std::vector<Place> last_;  // n of them, in a ring
  std::size_t next_ = 0;
  int above_ = 0;
  int below_ = 0;
  bool stands_ = false;
};

// Whether an alarm stands after each of the levels, oldest first. A level that is no number counts
// as neither above nor below. m and n below 1 count as 1, m above n as n.
[[nodiscard]] std::vector<bool> Replay(std::span<const double> levelsDb, double limitDb,
                                       const AlarmRule& rule);

// A limit in dB re 1 g peak as a magnitude word of the sensor, 1 to 65535: the next word at or
// above it.
[[nodiscard]] int ThresholdWord(double limitDb, double stepG);

}  // namespace kestrel::analysis
