// Entries, pastes, drags and steps back carried out on the band table.
// SPDX-License-Identifier: MIT
#include "alarms/band_edits.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "alarms/band_clipboard.h"

namespace kestrel {
namespace {

EditOutcome Outcome(bool changed, std::string message, std::string details = "") {
  return {.changed = changed, .message = std::move(message), .details = std::move(details)};
}

bool Editable(BandCell cell, const BandEdits::Context& context) {
  return IsBin(cell.column) || context.scale.Known();
}

std::string Count(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// What a block of cells met while it was filled.
struct Filling {
  std::size_t taken = 0;
  std::size_t withoutRange = 0;
  std::vector<std::string> corrections;

  [[nodiscard]] std::string Message(const std::string& done) const {
    std::string message = Count(taken, "value ", "values ") + done;
    if (!corrections.empty()) {
      message += ", " + std::to_string(corrections.size()) + " corrected. " + corrections.front();
    } else {
      message += ".";
    }
    if (withoutRange > 0) message += std::string(" ") + kNoRange;
    return message;
  }
  [[nodiscard]] std::string Details() const {
    std::string details;
    for (const std::string& correction : corrections) {
      details += (details.empty() ? "" : "\n") + correction;
    }
    return details;
  }
};

std::size_t WidestRow(const TextBlock& texts) {
  std::size_t widest = 0;
  for (const auto& row : texts) widest = std::max(widest, row.size());
  return widest;
}

// The cells that a text of this size fills when it is pasted over a block, and what lies beyond.
struct Target {
  CellBlock cells;
  std::size_t beyond = 0;
};

Target FindTarget(const CellBlock& block, const TextBlock& texts) {
  const auto rows = static_cast<int>(std::min<std::size_t>(texts.size(), 1000));
  const auto columns = static_cast<int>(std::min<std::size_t>(WidestRow(texts), 1000));
  if (block.Bands() % rows == 0 && block.Columns() % columns == 0) return {.cells = block};
  Target target{.cells = {block.first,
                          {std::min(block.first.band + rows - 1, kAlarmBands),
                           std::min(block.first.column + columns - 1, kBandColumns)}}};
  for (std::size_t row = 0; row < texts.size(); ++row) {
    const std::size_t width =
        row < static_cast<std::size_t>(target.cells.Bands())
            ? std::min(texts[row].size(), static_cast<std::size_t>(target.cells.Columns()))
            : 0;
    target.beyond += texts[row].size() - width;
  }
  return target;
}

// An option in which two tables that are not the same differ: `shown` where it does.
int DifferingOption(const BandTable& a, const BandTable& b, int shown) {
  const auto differs = [&](int option) {
    for (int band = 1; band <= kAlarmBands; ++band) {
      for (const int field : kBandFields) {
        if (a(field, band, option) != b(field, band, option)) return true;
      }
    }
    return false;
  };
  if (differs(shown)) return shown;
  int option = 0;
  while (option < kSampleRateOptions - 1 && !differs(option)) ++option;
  return option;
}

}  // namespace

EditOutcome BandEdits::Enter(BandCell cell, const std::string& text, const Context& context) {
  if (!Editable(cell, context)) return Outcome(false, kNoRange);
  const CheckedEntry entry = CheckEntry(cell.column, text, context.scale, context.decimalMark);
  Store(cell, entry.value, context.option);
  // Typed anew it is meant as it is typed, even if the code is the one that it was.
  history_.MeanFor({FieldOf(cell.column), cell.band, context.option}, context.range);
  return Outcome(Keep("entry of " + CellName(cell), context),
                 entry.correction.empty() ? "" : CellName(cell) + ": " + entry.correction);
}

EditOutcome BandEdits::Zero(const CellBlock& block, const Context& context) {
  Filling filling;
  for (int band = block.first.band; band <= block.last.band; ++band) {
    for (int column = block.first.column; column <= block.last.column; ++column) {
      if (!Editable({band, column}, context)) {
        ++filling.withoutRange;
        continue;
      }
      Store({band, column}, 0, context.option);
      ++filling.taken;
    }
  }
  return Outcome(Keep("setting to 0", context), filling.Message("set to 0"));
}

EditOutcome BandEdits::Paste(const CellBlock& block, const std::string& text,
                             const Context& context) {
  const TextBlock texts = ParseTextBlock(text);
  if (texts.empty()) return Outcome(false, "There is no text to paste.");
  const Target target = FindTarget(block, texts);
  const CellBlock& cells = target.cells;
  Filling filling;
  for (int band = cells.first.band; band <= cells.last.band; ++band) {
    const auto& row = texts[static_cast<std::size_t>(band - cells.first.band) % texts.size()];
    for (int column = cells.first.column; column <= cells.last.column; ++column) {
      const auto at = static_cast<std::size_t>(column - cells.first.column) % WidestRow(texts);
      if (at >= row.size() || row[at].empty()) continue;
      const BandCell cell{band, column};
      if (!Editable(cell, context)) {
        ++filling.withoutRange;
        continue;
      }
      const CheckedEntry entry = CheckEntry(column, row[at], context.scale, context.decimalMark);
      Store(cell, entry.value, context.option);
      ++filling.taken;
      if (!entry.correction.empty()) {
        filling.corrections.push_back(CellName(cell) + ": " + entry.correction);
      }
    }
  }
  std::string message = filling.Message("pasted");
  if (target.beyond > 0) {
    message += " " + Count(target.beyond, "value", "values") + " beyond the grid left out.";
  }
  return Outcome(Keep("paste", context), message, filling.Details());
}

EditOutcome BandEdits::SetEdges(int band, int fLow, int fHigh, const Context& context) {
  const int low = std::clamp(fLow, 0, kLastBin);
  const int high = std::clamp(fHigh, 0, kLastBin);
  Store({band, 1}, low, context.option);
  Store({band, 2}, high, context.option);
  const std::string name = "Band " + std::to_string(band);
  if (!Keep("move of " + name, context)) return {};
  return Outcome(true, name + ": F-low " + std::to_string(low) + ", F-high " +
                           std::to_string(high) + " taken from the plot.");
}

EditOutcome BandEdits::SetLevel(int band, int alarm, Axis axis, double g, const Context& context) {
  if (!context.scale.Known()) return Outcome(false, kNoRange);
  const BandScale& scale = context.scale;
  const BandCell cell{band, ThresholdColumn(alarm, axis)};
  const double level = std::isnan(g) ? 0 : std::clamp(g, 0.0, scale.gMax);
  const auto code = static_cast<std::int32_t>(std::nearbyint(level / scale.gLsb));
  Store(cell, code, context.option);
  if (!Keep("move of " + CellName(cell), context)) return {};
  return Outcome(
      true, CellName(cell) + ": " + CellText(cell.column, code, scale) + " g taken from the plot.");
}

EditOutcome BandEdits::Take(const BandProposal& proposal) {
  std::size_t changed = 0;
  for (const auto& [place, value] : proposal.values) {
    std::int32_t& now = table_(place.field, place.band, place.option);
    const bool isBin = place.field == kFLowField || place.field == kFHighField;
    if (now != value) {
      now = value;
      ++changed;
    } else if (!isBin) {
      history_.MeanFor(place, proposal.range);  // the same code, said for this range
    }
  }
  const bool isStep = history_.Keep(proposal.what, proposal.range);
  return Outcome(isStep, isStep ? Count(changed, "value", "values") +
                                      " taken over: " + proposal.what + ". Undo takes them back."
                                : "Nothing taken over: the table holds these values already.");
}

EditOutcome BandEdits::KeepInG(const Context& context) {
  const auto strange = StrangeThresholds(table_, history_.Ranges(), context.range);
  std::size_t above = 0;
  std::size_t below = 0;
  for (const BandPlace& place : strange) {
    std::int32_t& code = table_(place.field, place.band, place.option);
    const RangeStep step = InRange(code, ValueAt(history_.Ranges(), place), context.range);
    code = step.code;
    above += step.above ? 1 : 0;
    below += step.below ? 1 : 0;
  }
  const bool changed = history_.KeepFor("keeping thresholds in g", context.range);
  std::string message = Count(strange.size(), "threshold", "thresholds") +
                        " recalculated for the range " + RangeName(context.range);
  if (above > 0) {
    message +=
        "; " +
        Count(above, "lies above its full scale and was", "lie above its full scale and were") +
        " set to " + ThresholdText(kLargestCode, context.range);
  }
  if (below > 0) {
    message += "; " +
               Count(below, "lies below its smallest step and was",
                     "lie below its smallest step and were") +
               " set to 0";
  }
  return Outcome(changed, message + ". Not yet written to the sensor.");
}

EditOutcome BandEdits::Undo(int& option) {
  history_.Keep("change");
  return Turn(&BandHistory::Undo, "Undone: " + history_.NextUndo() + ".", option);
}

EditOutcome BandEdits::Redo(int& option) {
  history_.Keep("change");
  return Turn(&BandHistory::Redo, "Done again: " + history_.NextRedo() + ".", option);
}

EditOutcome BandEdits::Turn(bool (BandHistory::*turn)(), const std::string& message, int& option) {
  const BandTable before = table_;
  if (!(history_.*turn)()) return {};
  option = DifferingOption(before, table_, option);
  return Outcome(true, message);
}

}  // namespace kestrel
