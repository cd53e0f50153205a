// The cursor on the main window's plot.
// SPDX-License-Identifier: MIT

#include "ui/main/frm1_cursor_bench.h"

namespace kestrel {
namespace {

TEST_F(Frm1Cursor, ThePointerReadsThePlotOut) {
  Start();
  MovePointer(10, 0.25);
  ExpectReadOuts("10", "1,957 Hz", "0.250");
  MovePointer(0, 1);
  ExpectReadOuts("0", "0 Hz", "1.000");
  MovePointer(255, 0.0004);
  ExpectReadOuts("255", "49,899 Hz", "0.000");
}

TEST_F(Frm1Cursor, ATimeRecordHasNegativeValuesAndNoFrequencyShown) {
  Start();
  Choose("cbxRecMode", 2);
  Press("cmdStart");
  MovePointer(400, -0.75);
  ExpectReadOuts("400", "78,273 Hz", "-0.750");
  EXPECT_TRUE(Find<QLabel>("LblFreq").isHidden());
}

TEST_F(Frm1Cursor, ATimeRecordShowsTheTimeOfTheSampleWhereASpectrumShowsTheFrequency) {
  Start();
  Choose("cbxRecMode", 2);
  Press("cmdStart");
  MovePointer(326, 0);
  EXPECT_EQ(Text("lblCursorTime"), "3.254 ms");
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&Plot());
  EXPECT_EQ(told->text(QAccessible::Name), "Plot, cursor at sample 326, 3.254 ms, 0.000 g");
}

TEST_F(Frm1Cursor, NothingReadOffATimeRecordStaysOverTheSpectrumThatFollows) {
  Start();
  ChooseShortCaptures();
  Choose("cbxRecMode", 2);
  Press("cmdStart");
  MovePointer(326, 0);
  Choose("cbxRecMode", 0);
  Press("cmdStart");
  ExpectReadOuts("", "", "");
  EXPECT_EQ(Text("lblCursorTime"), "");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&Plot())->text(QAccessible::Name),
            "Plot, no cursor");
  MovePointer(326, 0);
  EXPECT_EQ(Text("LblFreq"), "") << "beyond the spectrum";
}

TEST_F(Frm1Cursor, PeaksKeepTheirValueWhenTheRangeChanges) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  const auto peak = [this] { return Find<QLineEdit>("txtPK_1").text(); };
  const QString read = peak();
  ASSERT_GT(read.toDouble(), 0);
  Choose("cbxSignalRange", 0);
  Press("CmdReadStatus");
  EXPECT_EQ(peak(), read);
}

TEST_F(Frm1Cursor, TheFrequencyIsThatOfTheRecordNotOfTheSetting) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  EXPECT_FALSE(Find<QLabel>("LblFreq").isHidden());
  Find<QCheckBox>("ckBW0").click();
  MovePointer(10, 0);
  EXPECT_EQ(Text("LblFreq"), "1,957 Hz");
  Press("cmdStart");
  MovePointer(10, 0);
  EXPECT_EQ(Text("LblFreq"), "245 Hz");
}

TEST_F(Frm1Cursor, KeysGoFromBinToBinOnTheHighestTrace) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  const auto highest = [](int bin) {
    return FixedNumber(std::max({DataX(bin), DataY(bin), DataZ(bin)}, std::less<>()), 3);
  };
  MovePointer(20, 0.5);
  struct Step {
    Qt::Key key;
    int bin;
  };
  const Step steps[] = {{Qt::Key_Right, 21},  {Qt::Key_Right, 22},    {Qt::Key_Left, 21},
                        {Qt::Key_PageUp, 31}, {Qt::Key_PageDown, 21}, {Qt::Key_End, 255},
                        {Qt::Key_Right, 255}, {Qt::Key_Home, 0},      {Qt::Key_Left, 0},
                        {Qt::Key_PageDown, 0}};
  for (const Step& step : steps) {
    Key(step.key);
    EXPECT_EQ(Text("lblCursorX").toInt(), step.bin) << step.key;
    EXPECT_EQ(Text("lblCursorY").toStdString(), highest(step.bin)) << step.key;
  }
}

TEST_F(Frm1Cursor, OtherKeysLeaveTheCursorAlone) {
  Start();
  MovePointer(20, 0.5);
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_A, Qt::Key_Space}) Key(key);
  ExpectReadOuts("20", "3,914 Hz", "0.500");
}

TEST_F(Frm1Cursor, ThePlotIsReachedByTheTabulator) {
  Start();
  EXPECT_TRUE((Plot().focusPolicy() & Qt::TabFocus) != 0);
}

TEST_F(Frm1Cursor, ThePlotTellsItsPeaksAndItsCursorAsAChart) {
  Start();
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(&Plot());
  ASSERT_NE(told, nullptr);
  EXPECT_EQ(told->role(), QAccessible::Chart);
  EXPECT_EQ(told->childCount(), 0) << "the layers over the picture say nothing";
  EXPECT_TRUE(told->text(QAccessible::Description).startsWith("No record yet."));
  ChooseShortCaptures();
  Press("cmdStart");
  EXPECT_TRUE(told->text(QAccessible::Description).startsWith("Spectrum, bins 0 to 255. X: "));
  Find<QCheckBox>("ckXtrace").click();
  EXPECT_TRUE(told->text(QAccessible::Description).startsWith("Spectrum, bins 0 to 255. Y: "));
  MovePointer(10, 0.25);
  EXPECT_EQ(told->text(QAccessible::Name), "Plot, cursor at bin 10, 1,957 Hz, 0.250 g");
}

TEST_F(Frm1Cursor, TheChartsValueIsTheCursorsPlaceAndCanBeSet) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  QAccessibleValueInterface* value =
      QAccessible::queryAccessibleInterface(&Plot())->valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->minimumValue(), 0);
  EXPECT_EQ(value->maximumValue(), 255);
  value->setCurrentValue(116);
  EXPECT_EQ(value->currentValue(), 116);
  EXPECT_EQ(Text("lblCursorX"), "116");
  value->setCurrentValue(999);
  EXPECT_EQ(value->currentValue(), 255);
}

TEST_F(Frm1Cursor, WorksWhileACaptureIsWaitedForAndAsksTheSensorNothing) {
  Start();
  Choose("cbxFFTAvgs", 255);
  QString during;
  int requests = -1;
  During(80, [&] {
    usb_.FailFrom(0);
    MovePointer(100, 0.5);
    Key(Qt::Key_Right);
    during = Text("lblCursorX");
    requests = usb_.Requests();
    Press("cmdStart");
  });
  Press("cmdStart");
  EXPECT_EQ(during, "101");
  EXPECT_EQ(requests, 0);
}

}  // namespace
}  // namespace kestrel
