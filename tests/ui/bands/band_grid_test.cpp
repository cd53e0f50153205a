// The grid of the bands: keys, marks, edits, pasting.
// SPDX-License-Identifier: MIT

#include "ui/bands/band_grid_bench.h"

namespace kestrel {
namespace {

TEST_F(BandGridTest, ShowsSixBandsOfEightColumns) {
  const QAbstractItemModel& model = *Grid().model();
  EXPECT_EQ(model.rowCount(), 6);
  EXPECT_EQ(model.columnCount(), 8);
  Words headings;
  for (int i = 0; i < 8; ++i) {
    headings.push_back(model.headerData(i, Qt::Horizontal).toString().toStdString());
  }
  EXPECT_EQ(headings, (Words{"F-low\nbin", "F-high\nbin", "Alarm 1 X\ng", "Alarm 1 Y\ng",
                             "Alarm 1 Z\ng", "Alarm 2 X\ng", "Alarm 2 Y\ng", "Alarm 2 Z\ng"}));
  EXPECT_EQ(model.headerData(5, Qt::Vertical).toString(), "Band 6");
}

TEST_F(BandGridTest, BesideABinStandsItsFrequency) {
  EXPECT_EQ(BinFrequencyText(10, 0), "1,957 Hz");
  EXPECT_EQ(BinFrequencyText(255, 0), "49,899 Hz");
  EXPECT_EQ(BinFrequencyText(255, 1), "6,237 Hz");
  EXPECT_EQ(BinFrequencyText(1, 2), "3.1 Hz");
  EXPECT_EQ(BinFrequencyText(255, 3), "97.46 Hz");
  Enter(1, kFLow, "10");
  EXPECT_EQ(Shown(1, kFLow), "10");
  EXPECT_EQ(Data(1, kFLow, BandGridModel::NoteRole), "1,957 Hz");
  EXPECT_EQ(Data(1, kFLow, Qt::AccessibleTextRole).substr(0, 26), "Band 1, F-low: 10, 1,957 H");
  ShowOption(3);
  Enter(1, kFLow, "10");
  EXPECT_EQ(Data(1, kFLow, BandGridModel::NoteRole), "3.82 Hz");
}

TEST_F(BandGridTest, TheLineEditOfACellHasItsNameAndIndex) {
  for (const int band : {1, 6}) {
    for (const int column : {1, 8}) {
      GoTo(band, column);
      Key(Qt::Key_F2);
      ASSERT_NE(Editor(band, column), nullptr);
      EXPECT_EQ(Editor(band, column)->accessibleName().toStdString(), CellName({band, column}));
      Key(Qt::Key_Escape);
    }
  }
}

TEST_F(BandGridTest, TypingF2AndADoubleClickBeginAnEdit) {
  GoTo(2, kFLow);
  Type("4");
  ASSERT_NE(Editor(2, kFLow), nullptr);
  EXPECT_EQ(Editor(2, kFLow)->text(), "4");
  Key(Qt::Key_Escape);
  Key(Qt::Key_F2);
  ASSERT_NE(Editor(2, kFLow), nullptr);
  EXPECT_EQ(Editor(2, kFLow)->text(), "0");
  Key(Qt::Key_Escape);
  const QPoint place = Grid().visualRect(Grid().model()->index(2, 1)).center();
  QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(Grid().viewport(), Qt::LeftButton, {}, place);
  EXPECT_NE(Editor(3, kFHigh), nullptr);
}

TEST_F(BandGridTest, EscapeLeavesAnEditAndNeverTheWindow) {
  GoTo(2, kFLow);
  Type("44");
  Key(Qt::Key_Escape);
  EXPECT_EQ(Shown(2, kFLow), "0");
  Key(Qt::Key_Escape);
  EXPECT_TRUE(editor_->isVisible());
  EXPECT_EQ(Values(2, 0), Row{});
}

TEST_F(BandGridTest, EnterTakesAnEntryAndMovesDown) {
  GoTo(1, kFLow);
  Type("12");
  Key(Qt::Key_Return);
  EXPECT_EQ(Values(1, 0)[0], 12);
  EXPECT_TRUE(IsAt(Cursor(), 2, kFLow));
  EXPECT_EQ(Editor(2, kFLow), nullptr);
  Key(Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_TRUE(IsAt(Cursor(), 3, kFLow));
  Key(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_TRUE(IsAt(Cursor(), 2, kFLow));
  GoTo(6, kFLow);
  Key(Qt::Key_Return);
  EXPECT_TRUE(IsAt(Cursor(), 1, kFHigh));
}

TEST_F(BandGridTest, TabTakesAnEntryAndMovesRight) {
  GoTo(1, kFLow);
  Type("12");
  Key(Qt::Key_Tab);
  EXPECT_EQ(Values(1, 0)[0], 12);
  EXPECT_TRUE(IsAt(Cursor(), 1, kFHigh));
  Type("20");
  Key(Qt::Key_Backtab);
  EXPECT_EQ(Values(1, 0)[1], 20);
  EXPECT_TRUE(IsAt(Cursor(), 1, kFLow));
  GoTo(1, kAlarm2Z);
  Key(Qt::Key_Tab);
  EXPECT_TRUE(IsAt(Cursor(), 2, kFLow));
}

TEST_F(BandGridTest, TabLeavesTheGridAtItsEnds) {
  GoTo(6, kAlarm2Z);
  Key(Qt::Key_Tab);
  EXPECT_EQ(editor_->focusWidget()->objectName(), "cmdReadAll");
  Key(Qt::Key_Backtab);
  EXPECT_EQ(editor_->focusWidget(), &Grid());
  EXPECT_TRUE(IsAt(Cursor(), 6, kAlarm2Z));
  GoTo(6, kAlarm2Z);
  Type("1");
  Key(Qt::Key_Tab);
  EXPECT_EQ(editor_->focusWidget()->objectName(), "cmdReadAll");
}

TEST_F(BandGridTest, ArrowsMoveAndShiftSelectsABlock) {
  GoTo(1, kFLow);
  Key(Qt::Key_Down);
  Key(Qt::Key_Right);
  EXPECT_TRUE(IsAt(Cursor(), 2, kFHigh));
  Key(Qt::Key_Down, Qt::ShiftModifier);
  Key(Qt::Key_Right, Qt::ShiftModifier);
  const CellBlock block = Grid().Selected();
  EXPECT_EQ(block.first, (BandCell{2, kFHigh}));
  EXPECT_EQ(block.last, (BandCell{3, kAlarm1X}));
}

TEST_F(BandGridTest, TooHighABinBecomes255AndNoNumber0) {
  Enter(2, kFLow, "300");
  EXPECT_EQ(Shown(2, kFLow), "255");
  EXPECT_EQ(Message(), "Band 2, F-low: \"300\" is above 255; 255 taken.");
  Enter(2, kFLow, "abc");
  EXPECT_EQ(Shown(2, kFLow), "0");
  EXPECT_EQ(Message(), "Band 2, F-low: \"abc\" is not a number; 0 taken.");
  Enter(2, kFLow, "-4");
  EXPECT_EQ(Shown(2, kFLow), "0");
  Enter(2, kFLow, "7");
  EXPECT_EQ(Message(), "");
}

TEST_F(BandGridTest, AThresholdIsTypedInGAndKeptAsACode) {
  ASSERT_GT(gRecCtrl->gLsb(), 0);
  Enter(1, kAlarm1X, "0.5");
  EXPECT_EQ(Values(1, 0)[2], std::lround(0.5 / gRecCtrl->gLsb()));
  Enter(1, kAlarm2Z, "1000");
  EXPECT_EQ(Values(1, 0)[7], 65535);
}

TEST_F(BandGridTest, ATextThatWouldBeCorrectedIsMarkedWhileItIsTyped) {
  GoTo(2, kFLow);
  Type("25");
  QLineEdit& editor = *Editor(2, kFLow);
  const QColor calm = editor.palette().color(QPalette::Base);
  EXPECT_EQ(editor.toolTip(), "");
  Type("6");
  EXPECT_EQ(editor.toolTip(), "\"256\" is above 255; 255 taken.");
  EXPECT_EQ(QToolTip::text(), editor.toolTip());
  EXPECT_EQ(editor.accessibleDescription(), editor.toolTip());
  EXPECT_NE(editor.palette().color(QPalette::Base), calm);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(editor.toolTip(), "");
  EXPECT_EQ(editor.palette().color(QPalette::Base), calm);
}

TEST_F(BandGridTest, WhatIsBeingTypedSurvivesARefresh) {
  GoTo(2, kFLow);
  Type("25");
  editor_->Refresh();
  EXPECT_EQ(Editor(2, kFLow)->text(), "25");
}

TEST_F(BandGridTest, CutAndDeleteLeave0) {
  Enter(1, kFLow, "10");
  GoTo(1, kFLow);
  Key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(Clipboard(), "10");
  EXPECT_EQ(Shown(1, kFLow), "0");
  PutOnClipboard("8");
  Select({{1, kFLow}, {6, kFHigh}});
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Shown(6, kFHigh), "8");
  Select({{2, kFLow}, {6, kFHigh}});
  Key(Qt::Key_Delete);
  EXPECT_EQ(Shown(6, kFHigh), "0");
  EXPECT_EQ(Shown(1, kFHigh), "8");
}

TEST_F(BandGridTest, CorrectionsOfAPasteAreListedInTheToolTipOfTheMessage) {
  PutOnClipboard("300\tx");
  GoTo(1, kFLow);
  Key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Message(),
            "2 values pasted, 2 corrected. Band 1, F-low: \"300\" is above 255; 255 taken.");
  EXPECT_TRUE(Get<QLabel>("lblmsg").toolTip().contains("Band 1, F-high: \"x\" is not a number"));
}

TEST_F(BandGridTest, ItsActionsAreInTheContextMenu) {
  Words names;
  for (const QAction* action : Grid().actions()) names.push_back(action->text().toStdString());
  EXPECT_EQ(names, (Words{"Cu&t", "&Copy", "&Paste", "Set to &0", "&Undo", "Re&do"}));
  EXPECT_EQ(Grid().contextMenuPolicy(), Qt::ActionsContextMenu);
}

// Pixels of a part of a cell, 0 to 1 across and down, that stand out from its ground in a picture

// without colours.

TEST_F(BandGridTest, EveryValueHasItsRoomInALargeFont) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPointSizeF(before.pointSizeF() * 1.7);
  QApplication::setFont(large);
  QApplication::processEvents();
  QFont bold = Grid().font();
  bold.setBold(true);
  for (int column = 1; column <= kBandColumns; ++column) {
    const QString widest = IsBin(column)
                               ? QString("! 255 ") + BinFrequencyText(255, 0)
                               : QString::fromStdString(CellText(column, 65535, CurrentScale()));
    EXPECT_GT(Grid().columnWidth(column - 1), QFontMetrics(bold).horizontalAdvance(widest));
  }
  EXPECT_GT(Grid().rowHeight(0), QFontMetrics(bold).height());
  QApplication::setFont(before);
}

}  // namespace
}  // namespace kestrel
