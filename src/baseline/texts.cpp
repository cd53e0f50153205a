// Counts and bands in words.
// SPDX-License-Identifier: MIT
#include "baseline/texts.h"

#include "analysis/windows.h"
#include "numeric/number_texts.h"
#include "record/frequency.h"

namespace kestrel::baseline {

namespace {

constexpr double kLargestWord = 65535;

}  // namespace

using analysis::NumberText;

std::string BoundsText(const Count& count) {
  const analysis::ShareBounds bounds = count.Bounds();
  return NumberText(100 * bounds.low, 1) + " to " + NumberText(100 * bounds.high, 1);
}

std::string CountText(const Count& count) {
  if (count.of == 0) return "none of 0";
  return NumberText(count.counted, 0) + " of " + NumberText(count.of, 0) + ", " +
         NumberText(100 * count.Share(), 1) + " % (" + BoundsText(count) + " %)";
}

std::string BinsText(const Band& band) {
  return std::to_string(band.lowBin) + " to " + std::to_string(band.highBin);
}

std::string HertzRangeText(const Band& band, int option) {
  const double width = BinWidth(option);
  const int decimals = width < 10 ? 1 : 0;
  return NumberText(band.lowBin * width, decimals) + " to " +
         NumberText(band.highBin * width, decimals);
}

bool ReachesOffset(const Band& band, int window) {
  const std::size_t first = analysis::FirstVibrationBin(analysis::WindowOfCode(window));
  return band.lowBin < static_cast<int>(first);
}

std::vector<std::string> RemarksOn(const Workbench& bench) {
  std::vector<std::string> remarks;
  for (int band = 1; band <= kAlarmBands; ++band) {
    std::string before;
    for (const Axis axis : kAxes) {
      const CellState& cell = bench.At({band, axis});
      const std::string where =
          "Band " + std::to_string(band) + ", " + std::string(1, Letter(axis)) + ": ";
      const std::string& refusal =
          bench.UsesPresent() ? cell.levels.refusal : cell.proposal.refusal;
      if (!refusal.empty() && refusal != before) {
        remarks.push_back((before.empty() ? "Band " + std::to_string(band) + ": " : where) +
                          refusal);
      }
      before = refusal;
      if (cell.isMoved && !bench.UsesPresent())
        remarks.push_back(where + "moved off the rule's proposal.");
      if (bench.CanBeWritten() && (cell.warning >= kLargestWord || cell.fault >= kLargestWord)) {
        remarks.push_back(where + "a threshold of the largest code, 65,535, never alarms.");
      }
    }
    if (ReachesOffset(bench.BandAt(band), bench.TheSets().settings.window) &&
        bench.At({band, Axis::X}).levels.refusal.empty()) {
      remarks.push_back("Band " + std::to_string(band) +
                        ": reaches into the bins that hold offset, no vibration" +
                        (bench.CanBeWritten() ? "; the sensor looks there too." : "."));
    }
  }
  return remarks;
}

}  // namespace kestrel::baseline
