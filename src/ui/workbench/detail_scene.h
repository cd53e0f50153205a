// What the plot of one band and axis shows: distribution, thresholds, shares of false and missed.
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>
#include <optional>
#include <vector>

#include "chart/axis_map.h"
#include "record/axis.h"

namespace kestrel {

// Which of a band's two thresholds.
enum class AlarmLevel { Warning, Fault };
inline constexpr std::array<AlarmLevel, 2> kAlarmLevels{AlarmLevel::Warning, AlarmLevel::Fault};
[[nodiscard]] inline constexpr std::size_t Index(AlarmLevel level) {
  return static_cast<std::size_t>(level);
}

// All levels are in g peak.
struct DetailScene {
  struct Bar {
    double from = 0;
    double to = 0;
    int count = 0;
    bool operator==(const Bar&) const = default;
  };
  // A share 0 to 1 at a threshold, with its 95 % bounds.
  struct Share {
    double g = 0;
    double share = 0;
    double low = 0;
    double high = 1;
    bool operator==(const Share&) const = default;
  };

  QString hint = {};  // where there is nothing to show: what will be here
  QString name = {};  // "band 3, Z"
  Axis axis = Axis::X;
  PlotRange across{0.1, 1};  // g
  std::vector<Bar> good = {};
  int goodCount = 0;
  std::vector<double> bad = {};  // of each known bad record
  std::vector<Share> falseAlarms = {};
  std::vector<Share> misses = {};
  std::array<std::optional<double>, 2> proposed = {};  // by AlarmLevel
  std::array<std::optional<double>, 2> now = {};
  std::array<QString, 2> flags = {};  // "Warning 0.693 g"
  QString note = {};                  // "mean 0.582 g, σ 0.34 dB"
  bool showsBad = true;
  bool showsNow = true;
  std::optional<double> decibelsRe = {};  // g; labels in dB re it
};

}  // namespace kestrel
