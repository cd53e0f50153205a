// Edits of the band table, each one step.
// SPDX-License-Identifier: MIT
#include "alarms/band_edits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace kestrel {
namespace {

using Row = std::vector<std::int32_t>;

constexpr double kLsb = 0.0003052;

class BandEditsTest : public testing::Test {
 protected:
  EditOutcome Enter(int band, int column, const std::string& text) {
    return edits.Enter({band, column}, text, context);
  }
  EditOutcome Paste(CellBlock block, const std::string& text) {
    return edits.Paste(block, text, context);
  }
  // All columns of a band.
  Row Values(int band) {
    Row row;
    for (const int field : kBandFields) row.push_back(table(field, band, context.option));
    return row;
  }

  BandTable table;
  BandEdits edits{table};
  BandEdits::Context context{
      .option = 2, .scale = {.gLsb = kLsb, .gMax = kLsb * 65535}, .decimalMark = '.'};
};

TEST_F(BandEditsTest, AnEntryIsStoredInItsFieldOfTheOptionShown) {
  for (int column = 1; column <= kBandColumns; ++column) {
    const EditOutcome outcome =
        Enter(3, column,
              IsBin(column) ? std::to_string(column) : CellText(column, column, context.scale));
    EXPECT_TRUE(outcome.changed);
    EXPECT_EQ(outcome.message, "");
  }
  EXPECT_EQ(Values(3), (Row{1, 2, 3, 4, 5, 6, 7, 8}));
  BandTable expected;
  for (int column = 1; column <= kBandColumns; ++column) expected(FieldOf(column), 3, 2) = column;
  EXPECT_EQ(table, expected);
}

TEST_F(BandEditsTest, ACorrectedEntryNamesItsCellAndWhy) {
  const EditOutcome outcome = Enter(2, 1, "300");
  EXPECT_EQ(outcome.message, "Band 2, F-low: \"300\" is above 255; 255 taken.");
  EXPECT_EQ(Values(2).front(), 255);
  const EditOutcome again = Enter(2, 1, "400");
  EXPECT_FALSE(again.changed);
  EXPECT_EQ(again.message, "Band 2, F-low: \"400\" is above 255; 255 taken.");
}

TEST_F(BandEditsTest, WithoutARangeThresholdsAreRefusedWithTheReason) {
  table(Alarm1Field(Axis::X), 1, 2) = 77;
  edits.History().Restart();
  context.scale = {};
  EXPECT_EQ(Enter(1, 3, "1").message, kNoRange);
  EXPECT_EQ(edits.SetLevel(1, 1, Axis::X, 1, context).message, kNoRange);
  const EditOutcome zero = edits.Zero({{1, 1}, {1, 8}}, context);
  EXPECT_NE(zero.message.find(kNoRange), std::string::npos);
  const EditOutcome paste = Paste({{1, 2}, {1, 2}}, "9\t1");
  EXPECT_NE(paste.message.find(kNoRange), std::string::npos);
  EXPECT_EQ(Values(1), (Row{0, 9, 77, 0, 0, 0, 0, 0}));
}

TEST_F(BandEditsTest, ABlockOfTextIsPastedFromTheFirstCellOn) {
  const EditOutcome outcome = Paste({{2, 1}, {2, 1}}, "10\t20\t0.3052\r\n30\t40\t0.6104\r\n");
  EXPECT_EQ(outcome.message, "6 values pasted.");
  EXPECT_EQ(Values(2), (Row{10, 20, 1000, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Values(3), (Row{30, 40, 2000, 0, 0, 0, 0, 0}));
  edits.History().Undo();
  EXPECT_EQ(table, BandTable{}) << "one step";
}

TEST_F(BandEditsTest, ASingleValueFillsTheBlock) {
  EXPECT_EQ(Paste({{1, 1}, {6, 2}}, "7").message, "12 values pasted.");
  for (int band = 1; band <= kAlarmBands; ++band) {
    EXPECT_EQ(Values(band), (Row{7, 7, 0, 0, 0, 0, 0, 0}));
  }
}

TEST_F(BandEditsTest, ATextThatFitsSeveralTimesFillsTheBlock) {
  Paste({{1, 1}, {4, 2}}, "1\t2\n3\t4");
  EXPECT_EQ(Values(1).front(), 1);
  EXPECT_EQ(Values(2)[1], 4);
  EXPECT_EQ(Values(3).front(), 1);
  EXPECT_EQ(Values(4)[1], 4);
}

TEST_F(BandEditsTest, WhatLiesBeyondTheGridIsLeftOutAndTold) {
  const EditOutcome outcome = Paste({{6, 8}, {6, 8}}, "0.3052\t1\n2\t3\n4\t5");
  EXPECT_EQ(outcome.message, "1 value pasted. 5 values beyond the grid left out.");
  EXPECT_EQ(Values(6), (Row{0, 0, 0, 0, 0, 0, 0, 1000}));
}

TEST_F(BandEditsTest, EmptyCellsOfTheTextLeaveTheirTargets) {
  Enter(1, 1, "5");
  Enter(2, 2, "6");
  EXPECT_EQ(Paste({{1, 1}, {1, 1}}, "\t9\n8").message, "2 values pasted.");
  EXPECT_EQ(Values(1)[0], 5);
  EXPECT_EQ(Values(1)[1], 9);
  EXPECT_EQ(Values(2)[0], 8);
  EXPECT_EQ(Values(2)[1], 6);
}

TEST_F(BandEditsTest, CorrectionsOfAPasteAreCountedAndListed) {
  const EditOutcome outcome = Paste({{1, 1}, {1, 1}}, "300\tabc\t1");
  EXPECT_EQ(outcome.message,
            "3 values pasted, 2 corrected. Band 1, F-low: \"300\" is above 255; 255 taken.");
  EXPECT_EQ(outcome.details,
            "Band 1, F-low: \"300\" is above 255; 255 taken.\n"
            "Band 1, F-high: \"abc\" is not a number; 0 taken.");
}

TEST_F(BandEditsTest, AnEmptyClipboardChangesNothing) {
  EXPECT_FALSE(Paste({{1, 1}, {6, 8}}, "").changed);
}

TEST_F(BandEditsTest, ABlockIsSetTo0InOneStep) {
  Paste({{1, 1}, {6, 2}}, "7");
  const BandTable before = table;
  EXPECT_EQ(edits.Zero({{2, 1}, {3, 2}}, context).message, "4 values set to 0.");
  EXPECT_EQ(Values(1).front(), 7);
  EXPECT_EQ(Values(2), Row(8, 0));
  EXPECT_EQ(Values(3), Row(8, 0));
  int option = 2;
  edits.Undo(option);
  EXPECT_EQ(table, before);
}

TEST_F(BandEditsTest, DraggedEdgesAreOneStepAndStayInTheSpectrum) {
  EXPECT_EQ(edits.SetEdges(4, 40, 52, context).message,
            "Band 4: F-low 40, F-high 52 taken from the plot.");
  EXPECT_EQ(Values(4), (Row{40, 52, 0, 0, 0, 0, 0, 0}));
  edits.SetEdges(4, -3, 300, context);
  EXPECT_EQ(Values(4), (Row{0, 255, 0, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(edits.SetEdges(4, 0, 255, context).changed);
  int option = 2;
  edits.Undo(option);
  EXPECT_EQ(Values(4), (Row{40, 52, 0, 0, 0, 0, 0, 0}));
}

TEST_F(BandEditsTest, ADraggedLevelBecomesACodeOfItsAxisAndAlarm) {
  EXPECT_EQ(edits.SetLevel(5, 2, Axis::Y, 0.3052, context).message,
            "Band 5, alarm 2 Y: 0.3052 g taken from the plot.");
  EXPECT_EQ(Values(5), (Row{0, 0, 0, 0, 0, 0, 1000, 0}));
  edits.SetLevel(5, 1, Axis::X, 1000, context);
  edits.SetLevel(5, 1, Axis::Z, -1, context);
  edits.SetLevel(5, 2, Axis::Y, std::numeric_limits<double>::quiet_NaN(), context);
  EXPECT_EQ(Values(5), (Row{0, 0, 65535, 0, 0, 0, 0, 0}));
}

TEST_F(BandEditsTest, UndoAndRedoLeadToTheOptionThatChanges) {
  Enter(1, 1, "5");
  context.option = 0;
  Enter(1, 2, "6");
  int option = 3;
  EXPECT_EQ(edits.Undo(option).message, "Undone: entry of Band 1, F-high.");
  EXPECT_EQ(option, 0);
  EXPECT_EQ(edits.Undo(option).message, "Undone: entry of Band 1, F-low.");
  EXPECT_EQ(option, 2);
  EXPECT_FALSE(edits.Undo(option).changed);
  EXPECT_EQ(edits.Redo(option).message, "Done again: entry of Band 1, F-low.");
  EXPECT_EQ(option, 2);
}

TEST_F(BandEditsTest, AStepThatChangesTheOptionShownStaysThere) {
  table(0, 1, 0) = 1;
  table(0, 1, 3) = 1;
  edits.History().Keep("load");
  int option = 3;
  edits.Undo(option);
  EXPECT_EQ(option, 3);
}

TEST_F(BandEditsTest, AChangeNobodyKeptIsTakenBackFirst) {
  Enter(1, 1, "5");
  table(1, 1, 2) = 9;
  int option = 2;
  edits.Undo(option);
  EXPECT_EQ(Values(1), (Row{5, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(BandEditsTest, AProposalIsOneStepAndItsThresholdsAreGivenForItsRange) {
  Enter(1, 4, "0.1");
  const BandTable before = table;
  const BandPlace low{kFLowField, 3, 2};
  const BandPlace warning{Alarm1Field(Axis::Z), 3, 2};
  const BandPlace same{FieldOf(4), 1, 2};
  const BandProposal proposal{.what = "a proposal",
                              .option = 2,
                              .range = 3,
                              .values = {{low, 40}, {warning, 555}, {same, ValueAt(table, same)}}};
  const EditOutcome outcome = edits.Take(proposal);
  EXPECT_TRUE(outcome.changed);
  EXPECT_EQ(outcome.message, "2 values taken over: a proposal. Undo takes them back.");
  EXPECT_EQ(ValueAt(table, low), 40);
  EXPECT_EQ(ValueAt(table, warning), 555);
  EXPECT_EQ(ValueAt(edits.History().Ranges(), warning), 3);
  EXPECT_EQ(ValueAt(edits.History().Ranges(), same), 3) << "the same code, said for this range";
  EXPECT_EQ(edits.History().NextUndo(), "a proposal");
  EXPECT_FALSE(edits.Take(proposal).changed);
  int option = 2;
  edits.Undo(option);
  EXPECT_EQ(table, before);
}

}  // namespace
}  // namespace kestrel
