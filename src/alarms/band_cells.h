// Cells of the band editor's grid: texts, entries, problems.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "alarms/band_table.h"

namespace kestrel {

inline constexpr int kBandColumns = 8;  // numbered 1 to 8, the fields in the order of kBandFields
inline constexpr int kLastBin = 255;

// A cell of the editor's grid: a band and a column.
struct BandCell {
  int band = 1;
  int column = 1;
  bool operator==(const BandCell&) const = default;
};

// A rectangle of cells, its ends included.
struct CellBlock {
  BandCell first;
  BandCell last;
  [[nodiscard]] int Bands() const { return last.band - first.band + 1; }
  [[nodiscard]] int Columns() const { return last.column - first.column + 1; }
};

// The measurement range that turns magnitude codes into g; zeros while none is known.
struct BandScale {
  double gLsb = 0;  // g per LSB
  double gMax = 0;  // g at full scale
  [[nodiscard]] bool Known() const { return gLsb > 0; }
  bool operator==(const BandScale&) const = default;
};

// The range as the sensor's record control was last read.
[[nodiscard]] BandScale CurrentScale();

// Decimals of which the last counts in smaller steps than this.
[[nodiscard]] int DecimalsFinerThan(double step);

[[nodiscard]] int FieldOf(int column);
// Columns 1 and 2 hold bins, the others thresholds.
[[nodiscard]] inline bool IsBin(int column) {
  return column <= 2;
}
// Column of a threshold; `alarm` is 1 or 2.
[[nodiscard]] inline int ThresholdColumn(int alarm, Axis axis) {
  return 3 * alarm + static_cast<int>(Index(axis));
}
[[nodiscard]] std::string ColumnName(int column);   // "F-low", "alarm 1 X"
[[nodiscard]] std::string CellName(BandCell cell);  // "Band 2, F-low"

inline constexpr const char* kNoThreshold = "-";
inline constexpr const char* kNoRange =
    "The range of the sensor is not known, so thresholds cannot be determined in g.";

// A bin as a whole number, a threshold in g with so many decimals that the text stands for this
// code alone; "-" for a threshold without a known range. Decimal mark ".".
[[nodiscard]] std::string CellText(int column, std::int32_t value, const BandScale& scale);

// What is stored for a text typed into a cell.
struct CheckedEntry {
  std::int32_t value = 0;
  std::string correction;  // why it is not what was typed; "" when it is
};
// No number counts as 0, bins stop at 0 and 255, thresholds at 0 and full scale. `decimalMark` is
// accepted besides ".". A threshold needs a known range.
[[nodiscard]] CheckedEntry CheckEntry(int column, const std::string& text, const BandScale& scale,
                                      char decimalMark);

// Something about a band that cannot be meant.
struct BandProblem {
  bool empty = false;  // the band covers no bin; otherwise alarm 1 lies above alarm 2
  std::string text;    // one sentence
};
[[nodiscard]] std::optional<BandProblem> ProblemOf(const BandTable& table, BandCell cell,
                                                   int option);
// Each problem of the option's bands once, with the band's name.
[[nodiscard]] std::vector<std::string> ProblemsOf(const BandTable& table, int option);

}  // namespace kestrel
