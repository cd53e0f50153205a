// Records against the sensor's bands, a file's thresholds and the zones of severity.
// SPDX-License-Identifier: MIT
#include "monitor/findings.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "analysis/band_levels.h"
#include "record/alarm_bits.h"

namespace kestrel::monitor {
namespace {

constexpr std::array<AlarmGrade, 2> kGrades{AlarmGrade::Warning, AlarmGrade::Fault};
constexpr int kBins = 256;

}  // namespace

std::string NameOf(const AlarmKey& key) {
  std::string name = key.grade == AlarmGrade::Fault ? "Fault" : "Warning";
  if (key.number > 0) name += " " + std::to_string(key.number);
  name += std::string(", ") + Letter(key.axis);
  if (key.kind == AlarmKind::Severity) return name + ", severity";
  name += ", option " + std::to_string(key.option);
  return name + (key.kind == AlarmKind::Band ? ", of the sensor" : ", of the plan's bands");
}

std::string KeyText(const AlarmKey& key) {
  return std::to_string(static_cast<int>(key.kind)) + "." +
         std::to_string(static_cast<int>(key.grade)) + "." + Letter(key.axis) + "." +
         std::to_string(key.option) + "." + std::to_string(key.number);
}

std::optional<AlarmKey> KeyFrom(const std::string& text) {
  for (int kind = 0; kind < 3; ++kind) {
    for (const AlarmGrade grade : kGrades) {
      for (const Axis axis : kAxes) {
        for (int option = 0; option < kSampleRateOptions; ++option) {
          for (int number = 0; number <= kAlarmBands; ++number) {
            const AlarmKey key{static_cast<AlarmKind>(kind), grade, axis, option, number};
            if (KeyText(key) == text) return key;
          }
        }
      }
    }
  }
  return std::nullopt;
}

Findings FoundBySensor(const Record& record) {
  Findings findings;
  if (record.kind != RecordKind::Spectrum || !record.alarms.statusKnown) return findings;
  for (const Axis axis : kAxes) {
    const std::int32_t word = record.alarms.Of(axis).status;
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const AlarmGrade grade : kGrades) {
        const int bit = grade == AlarmGrade::Fault ? FaultBit(band) : WarningBit(band);
        Finding finding{.key = {AlarmKind::Band, grade, axis, record.settings.option, band},
                        .stands = (word >> bit & 1) != 0};
        if (record.alarms.peaksKnown) finding.level = record.alarms.PeakG(axis);
        findings.push_back(finding);
      }
    }
  }
  return findings;
}

Findings ThresholdJudge::Judge(const Record& record, const BandTable& bands) {
  Findings findings;
  if (record.kind != RecordKind::Spectrum) return findings;
  const int option = std::clamp<int>(record.settings.option, 0, kSampleRateOptions - 1);
  const double stepG = LsbWeightOf(record.settings.range, RecordKind::Spectrum);
  for (int band = 1; band <= kAlarmBands; ++band) {
    const int low = bands(kFLowField, band, option);
    const int high = bands(kFHighField, band, option);
    if (low < 0 || high < low || high >= kBins) continue;
    for (const Axis axis : kAxes) {
      double level = 0;
      for (int bin = low; bin <= high; ++bin) level = std::max(level, record.Of(axis).raw(bin));
      for (const AlarmGrade grade : kGrades) {
        const int field = grade == AlarmGrade::Fault ? Alarm2Field(axis) : Alarm1Field(axis);
        const double threshold = bands(field, band, option);
        if (threshold <= 0) continue;
        const AlarmKey key{AlarmKind::Threshold, grade, axis, option, band};
        findings.push_back({.key = key,
                            .stands = Next(cells_[key], level, threshold),
                            .level = level * stepG,
                            .limit = threshold * stepG});
      }
    }
  }
  return findings;
}

// One of one is each record by itself, as the sensor judges it.
bool ThresholdJudge::Next(Cell& cell, double level, double threshold) const {
  const bool isAbove = analysis::Exceeds(level, threshold);
  const auto n = static_cast<std::size_t>(std::max(rule_.n, 1));
  const auto m = std::clamp<std::ptrdiff_t>(rule_.m, 1, static_cast<std::ptrdiff_t>(n));
  if (n == 1) return cell.stands = isAbove;
  const double release = threshold * std::pow(10, -std::max(rule_.hysteresisDb, 0.0) / 20);
  cell.last += isAbove ? 'a' : level < release ? 'b' : '-';
  if (cell.last.size() > n) cell.last.erase(0, cell.last.size() - n);
  if (!cell.stands && std::ranges::count(cell.last, 'a') >= m) cell.stands = true;
  if (cell.stands && std::ranges::count(cell.last, 'b') >= m) cell.stands = false;
  return cell.stands;
}

std::string ThresholdJudge::Text() const {
  std::string text;
  for (const auto& [key, cell] : cells_) {
    if (cell.last.empty() && !cell.stands) continue;
    text += KeyText(key) + (cell.stands ? " 1 " : " 0 ") + cell.last + "\n";
  }
  return text;
}

void ThresholdJudge::Restore(const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string name;
    std::string stands;
    Cell cell;
    words >> name >> stands >> cell.last;
    const auto key = KeyFrom(name);
    if (!key || cell.last.find_first_not_of("ab-") != std::string::npos) continue;
    cell.stands = stands == "1";
    cells_[*key] = cell;
  }
}

Findings FoundBySeverity(std::span<const analysis::Joined> axes, const Judging& judging) {
  Findings findings;
  if (!judging.severity) return findings;
  const analysis::ZoneLimits& limits = *judging.severity;
  const std::array<double, 3> lowerEnds{limits.ab, limits.bc, limits.cd};  // of zones B, C, D
  for (const analysis::Joined& joined : axes) {
    const auto estimate = analysis::EstimateSeverity(joined, limits);
    if (!estimate) continue;
    for (const AlarmGrade grade : kGrades) {
      const analysis::Zone from =
          grade == AlarmGrade::Fault ? judging.severityFault : judging.severityWarning;
      findings.push_back({.key = {AlarmKind::Severity, grade, joined.captures.front().axis, 0, 0},
                          .stands = estimate->zone >= from,
                          .level = estimate->mmPerS,
                          .limit = lowerEnds.at(static_cast<std::size_t>(from) - 1),
                          .unit = "mm/s"});
    }
  }
  return findings;
}

}  // namespace kestrel::monitor
