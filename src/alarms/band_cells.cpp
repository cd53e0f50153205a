// What a typed cell is worth, and what is wrong with a band.
// SPDX-License-Identifier: MIT
#include "alarms/band_cells.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "device/rec_ctrl.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"

namespace kestrel {
namespace {

constexpr int kFLowColumn = 1;
constexpr int kFHighColumn = 2;

std::int32_t ValueOf(const BandTable& table, int band, int column, int option) {
  return table(FieldOf(column), band, option);
}

// What was typed, short and on one line.
std::string Quoted(const std::string& text) {
  constexpr std::size_t kShown = 24;
  std::string shown = text.substr(0, kShown);
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  if (text.size() > kShown) {
    for (std::size_t at = kShown; at > 0 && continues(text[at]); --at) shown.resize(at - 1);
    shown += "...";
  }
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  }
  return '"' + shown + '"';
}

std::optional<double> NumberIn(std::string text, char decimalMark) {
  if (decimalMark != '.') std::replace(text.begin(), text.end(), decimalMark, '.');
  return WholeTextNumber(text);
}

CheckedEntry CheckBin(double typed) {
  const double taken = std::clamp(typed, 0.0, static_cast<double>(kLastBin));
  CheckedEntry entry{.value = ToLong(taken), .correction = ""};
  if (typed < 0) {
    entry.correction = "is below 0";
  } else if (typed > kLastBin) {
    entry.correction = "is above " + std::to_string(kLastBin);
  } else if (typed != entry.value) {
    entry.correction = "is not a whole number";
  }
  return entry;
}

CheckedEntry CheckThreshold(double typed, const BandScale& scale) {
  CheckedEntry entry{.value = ToLong(std::clamp(typed, 0.0, scale.gMax) / scale.gLsb),
                     .correction = ""};
  // The text of the highest code may itself be rounded up.
  const bool nearest = std::nearbyint(typed / scale.gLsb) == entry.value;
  if (typed < 0) {
    entry.correction = "is below 0";
  } else if (typed > scale.gMax && !nearest) {
    entry.correction = "is above the full scale of the range";
  }
  return entry;
}

}  // namespace

BandScale CurrentScale() {
  if (!gRecCtrl) return {};
  return {.gLsb = gRecCtrl->gLsb(), .gMax = gRecCtrl->gMax()};
}

int DecimalsFinerThan(double step) {
  constexpr int kMostDecimals = 15;
  double last = 1;
  int decimals = 0;
  while (last >= step && decimals < kMostDecimals) {
    last /= 10;
    ++decimals;
  }
  return decimals;
}

int FieldOf(int column) {
  return kBandFields.at(static_cast<std::size_t>(column - 1));
}

std::string ColumnName(int column) {
  return kBandFieldNames.at(static_cast<std::size_t>(column - 1));
}

std::string CellName(BandCell cell) {
  return "Band " + std::to_string(cell.band) + ", " + ColumnName(cell.column);
}

std::string CellText(int column, std::int32_t value, const BandScale& scale) {
  if (IsBin(column)) return std::to_string(value);
  if (!scale.Known()) return kNoThreshold;
  // The text is then less than half an LSB off.
  return FixedNumber(value * scale.gLsb, DecimalsFinerThan(scale.gLsb));
}

CheckedEntry CheckEntry(int column, const std::string& text, const BandScale& scale,
                        char decimalMark) {
  const std::optional<double> number = NumberIn(text, decimalMark);
  CheckedEntry entry =
      IsBin(column) ? CheckBin(number.value_or(0)) : CheckThreshold(number.value_or(0), scale);
  if (!number) entry.correction = "is not a number";
  if (!entry.correction.empty()) {
    entry.correction = Quoted(text) + " " + entry.correction + "; " +
                       CellText(column, entry.value, scale) + (IsBin(column) ? "" : " g") +
                       " taken.";
  }
  return entry;
}

std::optional<BandProblem> ProblemOf(const BandTable& table, BandCell cell, int option) {
  const auto value = [&](int column) { return ValueOf(table, cell.band, column, option); };
  if (IsBin(cell.column)) {
    if (value(kFLowColumn) <= value(kFHighColumn)) return std::nullopt;
    return BandProblem{.empty = true, .text = "F-low is above F-high, so it covers no bin."};
  }
  const Axis axis = kAxes.at(static_cast<std::size_t>(cell.column) % kAxes.size());
  if (value(ThresholdColumn(1, axis)) <= value(ThresholdColumn(2, axis))) return std::nullopt;
  return BandProblem{.empty = false,
                     .text = std::string("alarm 1 is above alarm 2 on ") + Letter(axis) + "."};
}

std::vector<std::string> ProblemsOf(const BandTable& table, int option) {
  std::vector<std::string> problems;
  for (int band = 1; band <= kAlarmBands; ++band) {
    const auto add = [&](int column) {
      const auto problem = ProblemOf(table, {band, column}, option);
      if (problem) problems.push_back("Band " + std::to_string(band) + ": " + problem->text);
    };
    add(kFLowColumn);
    for (const Axis axis : kAxes) add(ThresholdColumn(1, axis));
  }
  return problems;
}

}  // namespace kestrel
