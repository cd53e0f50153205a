// What one record says about each alarm that could be.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "alarms/band_table.h"
#include "analysis/joined.h"
#include "monitor/plan/plan.h"
#include "publish/messages.h"

namespace kestrel::monitor {

using publish::AlarmGrade;
using publish::AlarmKind;

// Names an alarm of one sensor.
struct AlarmKey {
  AlarmKind kind = AlarmKind::Band;
  AlarmGrade grade = AlarmGrade::Warning;
  Axis axis = Axis::X;
  int option = 0;  // of the band; 0 of a severity
  int number = 0;  // of the band, 1..6; 0 of a severity
  auto operator<=>(const AlarmKey&) const = default;
};
// "Fault 3, Z, option 0, of the sensor", "Warning, X, severity".
[[nodiscard]] std::string NameOf(const AlarmKey& key);

// Whether an alarm stands after a record, and by which level.
struct Finding {
  AlarmKey key{};
  bool stands = false;
  std::optional<double> level{};
  std::optional<double> limit{};
  const char* unit = "g";
};
using Findings = std::vector<Finding>;

// What the sensor itself says of a spectrum: both grades of six bands and three axes. None of a
// time record, or where its alarms were not read.
[[nodiscard]] Findings FoundBySensor(const Record& record);

// Levels of bands against thresholds of a file, m of the last n with hysteresis; what it remembers
// of each alarm is kept as a text.
class ThresholdJudge {
 public:
  explicit ThresholdJudge(const analysis::AlarmRule& rule) : rule_(rule) {}

  // Of a spectrum; bands of its option. None of a time record.
  [[nodiscard]] Findings Judge(const Record& record, const BandTable& bands);
  // Nothing before is remembered: what follows comes from elsewhere.
  void Restart() { cells_.clear(); }

  [[nodiscard]] std::string Text() const;
  // Damaged lines are left out.
  void Restore(const std::string& text);

 private:
  struct Cell {
    std::string
        last{};  // of the last n, oldest first: 'a' above, 'b' below the release, '-' between
    bool stands = false;
  };
  [[nodiscard]] bool Next(Cell& cell, double level, double threshold) const;

  analysis::AlarmRule rule_;
  std::map<AlarmKey, Cell> cells_;
};

// Of each axis of a wide spectrum that covers the band of the severity; others are left out.
[[nodiscard]] Findings FoundBySeverity(std::span<const analysis::Joined> axes,
                                       const Judging& judging);

// Keys as words of a text, and back.
[[nodiscard]] std::string KeyText(const AlarmKey& key);
[[nodiscard]] std::optional<AlarmKey> KeyFrom(const std::string& text);

}  // namespace kestrel::monitor
