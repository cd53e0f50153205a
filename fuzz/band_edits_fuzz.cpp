// Arbitrary edits, pastes, drags and steps of the history on the band table.
// SPDX-License-Identifier: MIT
// Arbitrary texts typed into and pasted over the band editor's cells, drags on the plot, and steps
// back and forth between them.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string>
#include <vector>

#include "alarms/band_clipboard.h"
#include "alarms/band_edits.h"
#include "alarms/band_state.h"
#include "input.h"
#include "require.h"

namespace kestrel {
namespace {

constexpr int kMostOperations = 40;
constexpr int kHighestCode = 65535;

BandEdits::Context ContextOf(Input& input) {
  // g per LSB of the ranges, spectra first; 0 while no range is known.
  constexpr std::array<double, 9> kLsbs{0.0000153, 0.0000763, 0.0003052, 0.0011921, 0,
                                        0.0000306, 0.0001526, 0.0006104, 0.0023842};
  const double lsb = kLsbs.at(static_cast<std::size_t>(input.Between(0, 8)));
  return {.option = input.Between(0, kSampleRateOptions - 1),
          .scale = {.gLsb = lsb, .gMax = lsb * kHighestCode},
          .decimalMark = input.Byte() % 2 == 0 ? '.' : ','};
}

BandCell CellOf(Input& input) {
  const int band = input.Between(1, kAlarmBands);
  return {band, input.Between(1, kBandColumns)};
}

CellBlock BlockOf(Input& input) {
  const BandCell first = CellOf(input);
  return {first,
          {input.Between(first.band, kAlarmBands), input.Between(first.column, kBandColumns)}};
}

double NumberOf(Input& input) {
  std::uint64_t bits = 0;
  for (int i = 0; i < 8; ++i) bits = bits << 8U | input.Byte();
  return std::bit_cast<double>(bits);
}

bool IsInside(const CellBlock& block, BandCell cell) {
  return cell.band >= block.first.band && cell.band <= block.last.band &&
         cell.column >= block.first.column && cell.column <= block.last.column;
}

// The editor of one input, and every table that its history should know.
class Bench {
 public:
  explicit Bench(Input& input) : input_(input) {}

  void Run() {
    for (int i = 0; i < kMostOperations && !input_.Empty(); ++i) {
      const BandTable before = table_;
      const BandEdits::Context context = ContextOf(input_);
      Operate(context, before);
      CheckTable();
      CheckSteps();
    }
    CheckState();
    WalkThrough();
  }

 private:
  void Operate(const BandEdits::Context& context, const BandTable& before) {
    switch (input_.Between(0, 7)) {
      case 0: {
        const BandCell cell = CellOf(input_);
        const std::string text(input_.Until('\n'));
        const EditOutcome outcome = edits_.Enter(cell, text, context);
        CheckEntered(cell, text, context);
        return CheckStep(outcome, before, {cell, cell}, context.option);
      }
      case 1: {
        const CellBlock block = BlockOf(input_);
        return CheckStep(edits_.Zero(block, context), before, block, context.option);
      }
      case 2: {
        const CellBlock block = BlockOf(input_);
        const std::string text(input_.Until('\0'));
        CheckParsed(text);
        const EditOutcome outcome = edits_.Paste(block, text, context);
        return CheckStep(outcome, before, {block.first, {kAlarmBands, kBandColumns}},
                         context.option);
      }
      case 3: {
        const int band = input_.Between(1, kAlarmBands);
        const int low = static_cast<std::int16_t>(input_.Word());
        const int high = static_cast<std::int16_t>(input_.Word());
        const EditOutcome outcome = edits_.SetEdges(band, low, high, context);
        return CheckStep(outcome, before, {{band, 1}, {band, 2}}, context.option);
      }
      case 4: {
        const BandCell cell = CellOf(input_);
        if (IsBin(cell.column)) return;
        const int alarm = cell.column < 6 ? 1 : 2;
        const Axis axis = kAxes.at(static_cast<std::size_t>(cell.column % 3));
        const EditOutcome outcome =
            edits_.SetLevel(cell.band, alarm, axis, NumberOf(input_), context);
        return CheckStep(outcome, before, {cell, cell}, context.option);
      }
      case 5:
        return Undo();
      case 6:
        return Redo();
      default:
        CheckCopy(BlockOf(input_), context);
    }
  }

  // A step of the user's: no other cells change, and a change is a step of the history.
  void CheckStep(const EditOutcome& outcome, const BandTable& before, const CellBlock& block,
                 int option) {
    for (int other = 0; other < kSampleRateOptions; ++other) {
      for (int band = 1; band <= kAlarmBands; ++band) {
        for (int column = 1; column <= kBandColumns; ++column) {
          if (other == option && IsInside(block, {band, column})) continue;
          const int field = FieldOf(column);
          Require(table_(field, band, other) == before(field, band, other),
                  "only the cells that were meant change");
        }
      }
    }
    Require(outcome.changed == !(table_ == before), "a change is told");
    Require(outcome.message.size() < 400, "in a short message");
    for (const char c : outcome.message) {
      Require(static_cast<unsigned char>(c) >= ' ', "of one line");
    }
    if (!outcome.changed) return;
    steps_.resize(done_ + 1);
    steps_.push_back(table_);
    ++done_;
  }

  void CheckEntered(BandCell cell, const std::string& text, const BandEdits::Context& context) {
    if (!IsBin(cell.column) && !context.scale.Known()) return;
    const std::int32_t value = table_(FieldOf(cell.column), cell.band, context.option);
    const std::string shown = CellText(cell.column, value, context.scale);
    const CheckedEntry again = CheckEntry(cell.column, shown, context.scale, context.decimalMark);
    Require(again.value == value && again.correction.empty(), "what is shown is taken as it is");
    Require(CheckEntry(cell.column, text, context.scale, context.decimalMark).value == value,
            "a text means one value");
  }

  void Undo() {
    int option = 0;
    const EditOutcome outcome = edits_.Undo(option);
    Require(outcome.changed == (done_ > 0), "every step can be taken back");
    if (outcome.changed) --done_;
    CheckOption(option, outcome);
  }

  void Redo() {
    int option = 0;
    const EditOutcome outcome = edits_.Redo(option);
    Require(outcome.changed == (done_ + 1 < steps_.size()), "every step can be done again");
    if (outcome.changed) ++done_;
    CheckOption(option, outcome);
  }

  void CheckOption(int option, const EditOutcome& outcome) {
    Require(option >= 0 && option < kSampleRateOptions, "an option is shown");
    Require(outcome.changed == !outcome.message.empty(), "a step is named");
  }

  void CheckSteps() {
    Require(table_ == steps_[done_], "the table is the step's");
    Require(edits_.History().NextUndo().empty() == (done_ == 0), "steps back are named");
    Require(edits_.History().NextRedo().empty() == (done_ + 1 == steps_.size()),
            "steps ahead are named");
  }

  // Back to the beginning and to the end again.
  void WalkThrough() {
    while (done_ > 0) {
      Undo();
      CheckSteps();
    }
    while (done_ + 1 < steps_.size()) {
      Redo();
      CheckSteps();
    }
  }

  void CheckTable() {
    for (int option = 0; option <= kSampleRateOptions; ++option) {
      for (int band = 0; band <= kAlarmBands + 1; ++band) {
        for (int field = 0; field < 10; ++field) {
          const std::int32_t value = table_(field, band, option);
          const int most = field < 2 ? kLastBin : kHighestCode;
          Require(value >= 0 && value <= most, "a value fits its register");
        }
      }
    }
  }

  void CheckState() {
    const auto nothing = [](int, int, int) { return std::optional<std::int32_t>(); };
    for (int option = 0; option < kSampleRateOptions; ++option) {
      Require(ProblemsOf(table_, option).size() <= 4 * kAlarmBands, "each problem once");
      Require(!StateText(table_, nothing, option).empty() || EditedValues(table_, nothing).empty(),
              "what is not in the sensor is told");
    }
  }

  // Cells hold what lies between the marks: with no quotes nothing is lost and nothing is added.
  static void CheckParsed(const std::string& text) {
    if (text.find('"') != std::string::npos) return;
    std::string joined;
    for (const auto& row : ParseTextBlock(text)) {
      Require(!row.empty(), "a row has a cell");
      for (const std::string& cell : row) {
        Require(cell.find_first_of("\t\r\n") == std::string::npos, "marks part cells");
        joined += cell;
      }
    }
    std::string plain = text;
    std::erase_if(plain, [](char c) { return c == '\t' || c == '\r' || c == '\n'; });
    Require(joined == plain, "every character is in a cell");
  }

  // A block that is copied and pasted over itself, over another option too, stays the same.
  void CheckCopy(const CellBlock& block, const BandEdits::Context& context) {
    if (!context.scale.Known()) return;
    const std::string text =
        BlockText(table_, block, context.option, context.scale, context.decimalMark);
    const TextBlock rows = ParseTextBlock(text);
    Require(rows.size() == static_cast<std::size_t>(block.Bands()), "a row a band");
    for (const auto& row : rows) {
      Require(row.size() == static_cast<std::size_t>(block.Columns()), "a cell a column");
    }
    BandTable pasted;
    BandEdits edits(pasted);
    BandEdits::Context other = context;
    other.option = (context.option + 1) % kSampleRateOptions;
    edits.Paste(block, text, other);
    for (int band = block.first.band; band <= block.last.band; ++band) {
      for (int column = block.first.column; column <= block.last.column; ++column) {
        const int field = FieldOf(column);
        Require(pasted(field, band, other.option) == table_(field, band, context.option),
                "what is copied is pasted");
      }
    }
  }

  Input& input_;
  BandTable table_;
  BandEdits edits_{table_};
  std::vector<BandTable> steps_{BandTable{}};
  std::size_t done_ = 0;  // steps_[done_] is the table at present
};

}  // namespace
}  // namespace kestrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  size = std::min<std::size_t>(size, 4096);
  kestrel::Input input(data, size);
  kestrel::Bench(input).Run();
  return 0;
}
