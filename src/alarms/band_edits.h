// The user's changes of the alarm bands, each one step of their history.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "alarms/band_cells.h"
#include "alarms/band_history.h"

namespace kestrel {

// Values that another part of the program proposes for the table, thresholds as codes of `range`.
struct BandProposal {
  struct Value {
    BandPlace place;
    std::int32_t value = 0;
    bool operator==(const Value&) const = default;
  };
  std::string what;  // names the step: "thresholds of the workbench"
  int option = 0;    // that is shown afterwards
  std::int32_t range = kRangeNotKnown;
  std::vector<Value> values;
  bool operator==(const BandProposal&) const = default;
};

// How an edit ended.
struct EditOutcome {
  bool changed = false;
  std::string message;  // one line; "" when everything was taken as it was typed
  std::string details;  // all corrections, one a line, where the message has room for one only
};

// The user's changes of the band table, each one step of the history.
class BandEdits {
 public:
  explicit BandEdits(BandTable& table) : table_(table), history_(table) {}

  // Option whose bands are edited, range, and the decimal mark of the user's spreadsheet.
  struct Context {
    int option = 0;
    BandScale scale;
    char decimalMark = '.';
    std::int32_t range = kRangeNotKnown;  // that thresholds are given for
  };

  // A text was typed into a cell.
  EditOutcome Enter(BandCell cell, const std::string& text, const Context& context);
  // Sets the cells of a block to 0.
  EditOutcome Zero(const CellBlock& block, const Context& context);
  // Pastes text from the clipboard. A text that fits the block several times fills it; any other
  // begins in its first cell, and what lies beyond the grid is left out. An empty cell of the text
  // leaves its target as it is.
  EditOutcome Paste(const CellBlock& block, const std::string& text, const Context& context);
  // A band's edges or a threshold were dragged on the plot. `alarm` is 1 or 2.
  EditOutcome SetEdges(int band, int fLow, int fHigh, const Context& context);
  EditOutcome SetLevel(int band, int alarm, Axis axis, double g, const Context& context);

  // One step; what is proposed as it stands already is no change.
  EditOutcome Take(const BandProposal& proposal);

  // Recalculates the codes of all thresholds that were given for another range, so that they keep
  // their g values in the range of the context.
  EditOutcome KeepInG(const Context& context);

  // Takes back or does again one step. `option` becomes one whose bands change by it.
  EditOutcome Undo(int& option);
  EditOutcome Redo(int& option);

  // Steps that others made: transfers and files.
  [[nodiscard]] BandHistory& History() { return history_; }
  [[nodiscard]] const BandHistory& History() const { return history_; }

 private:
  void Store(BandCell cell, std::int32_t value, int option) {
    table_(FieldOf(cell.column), cell.band, option) = value;
  }
  bool Keep(const std::string& what, const Context& context) {
    return history_.Keep(what, context.range);
  }
  EditOutcome Turn(bool (BandHistory::*turn)(), const std::string& message, int& option);

  BandTable& table_;
  BandHistory history_;
};

}  // namespace kestrel
