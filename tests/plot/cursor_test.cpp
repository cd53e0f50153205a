// The cursor's place, frequency and values.
// SPDX-License-Identifier: MIT
#include "plot/cursor.h"

#include "device/rec_info.h"
#include "support/change_record.h"
#include "support/fake_cursor_view.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

class Cursor : public RegisterBench {
 protected:
  Cursor() {
    Record record;
    record.kind = RecordKind::Time;  // all points
    for (int i = 0; i < 512; ++i) {
      record.Of(Axis::X).data(i) = i;
      record.Of(Axis::Y).data(i) = 1000 - i;
      record.Of(Axis::Z).data(i) = -1;
    }
    core.record.HandOver(record);
    RecordOf(RecordKind::Spectrum);
    listener = core.record.OnChange([this] { cursor.RecordChanged(); });
  }

  void RecordOf(RecordKind kind, int option = 0) {
    ChangeRecord(core.record, [=](Record& record) {
      record.kind = kind;
      record.settings.option = static_cast<std::int16_t>(option);
    });
  }

  void Press(CursorStep step, int times = 1) {
    for (int i = 0; i < times; ++i) cursor.Step(step);
  }

  CurrentRecord::Listener listener;
  FakeCursorView view;
  PlotCursor cursor{core.record, view};
};

TEST_F(Cursor, FrequenciesOfEachOption) {
  struct Row {
    int option;
    double x;
    const char* frequency;
  };
  const Row rows[] = {{0, 0, "0 Hz"},     {0, 10, "1,957 Hz"},  {0, 255, "49,899 Hz"},
                      {1, 10, "245 Hz"},  {1, 255, "6,237 Hz"}, {2, 100, "306 Hz"},
                      {2, 255, "780 Hz"}, {3, 100, "38 Hz"},    {3, 255, "97 Hz"}};
  for (const Row& row : rows) {
    RecordOf(RecordKind::Spectrum, row.option);
    cursor.pic1_MouseMove(row.x, 0);
    EXPECT_EQ(view.x, std::to_string(static_cast<int>(row.x)));
    EXPECT_EQ(view.frequency, row.frequency) << "option " << row.option << ", bin " << row.x;
  }
}

TEST_F(Cursor, TheBinIsRoundedAndItsFrequencyIsThatOfTheWholeBin) {
  struct Row {
    double x;
    const char* text;
    const char* frequency;
  };
  const Row rows[] = {{9.51, "10", "1,957 Hz"},  {10.49, "10", "1,957 Hz"},
                      {10.51, "11", "2,153 Hz"}, {-0.4, "0", "0 Hz"},
                      {0.49, "0", "0 Hz"},       {254.6, "255", "49,899 Hz"}};
  for (const Row& row : rows) {
    cursor.pic1_MouseMove(row.x, 0);
    EXPECT_EQ(view.x, row.text) << row.x;
    EXPECT_EQ(view.frequency, row.frequency) << row.x;
  }
}

TEST_F(Cursor, ValuesHaveThreeDecimals) {
  struct Row {
    double y;
    const char* text;
  };
  const Row rows[] = {{0.0004, "0.000"},   {-0.0004, "0.000"},  {-1.25, "-1.250"},
                      {0.0006, "0.001"},   {-0.0006, "-0.001"}, {1, "1.000"},
                      {99.9999, "100.000"}};
  for (const Row& row : rows) {
    cursor.pic1_MouseMove(3, row.y);
    EXPECT_EQ(view.y, row.text) << row.y;
  }
}

TEST_F(Cursor, TheCrossHairIsWhereThePointerIs) {
  cursor.pic1_MouseMove(10.3, -0.7);
  EXPECT_EQ(view.crossHair, std::pair(10.3, -0.7));
}

TEST_F(Cursor, TheFrequencyIsFilledForTimeRecordsToo) {
  RecordOf(RecordKind::Time);
  cursor.pic1_MouseMove(400, 0);
  EXPECT_EQ(view.x, "400");
  EXPECT_EQ(view.frequency, "78,273 Hz");
}

TEST_F(Cursor, ATimeRecordTellsTheTimeOfTheSample) {
  RecordOf(RecordKind::Time);
  cursor.pic1_MouseMove(400, 0);
  EXPECT_EQ(view.time, "3.992 ms");
  RecordOf(RecordKind::Time, 3);
  cursor.GoTo(511);
  EXPECT_EQ(view.time, "2611.361 ms");
  RecordOf(RecordKind::Spectrum);
  cursor.pic1_MouseMove(100, 0);
  EXPECT_EQ(view.time, "");
}

TEST_F(Cursor, ReadOutsAreClearedWhenTheRecordChanges) {
  RecordOf(RecordKind::Time);
  cursor.pic1_MouseMove(326, 0.5);
  EXPECT_EQ(view.frequency, "63,793 Hz");
  RecordOf(RecordKind::Spectrum);
  EXPECT_EQ(view.x + view.frequency + view.time + view.y, "");
}

TEST_F(Cursor, BeyondTheRecordThereIsNoFrequencyAndNoTime) {
  for (const double x : {-1.0, 256.0, 326.0, 5000.0}) {
    cursor.pic1_MouseMove(x, 0.5);
    EXPECT_EQ(view.frequency, "") << x;
  }
  RecordOf(RecordKind::Time);
  for (const double x : {-1.0, 512.0}) {
    cursor.pic1_MouseMove(x, 0.5);
    EXPECT_EQ(view.frequency + view.time, "") << x;
  }
}

// With a button held down the pointer is followed beyond the plot.
TEST_F(Cursor, BeyondThePlotTheKeysGoOnFromItsEdge) {
  cursor.pic1_MouseMove(-7.2, 0);
  EXPECT_EQ(view.x, "-7");
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.x, "1");
  cursor.pic1_MouseMove(5000, 0);
  EXPECT_EQ(view.x, "5000");
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.x, "255");
}

TEST_F(Cursor, KeysMoveByOneAndByTen) {
  cursor.pic1_MouseMove(100.4, 0.5);
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.x, "101");
  Press(CursorStep::BinBack, 2);
  EXPECT_EQ(view.x, "99");
  Press(CursorStep::PageForward, 2);
  EXPECT_EQ(view.x, "119");
  Press(CursorStep::PageBack);
  EXPECT_EQ(view.x, "109");
  EXPECT_EQ(view.frequency, "21,329 Hz");
}

TEST_F(Cursor, KeysStayWithinTheRecord) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    RecordOf(kind);
    const int width = core.record.Get().Width();
    SCOPED_TRACE(width);
    Press(CursorStep::Last);
    EXPECT_EQ(view.x, std::to_string(width));
    Press(CursorStep::BinForward);
    EXPECT_EQ(view.x, std::to_string(width));
    Press(CursorStep::BinBack, 3);
    Press(CursorStep::PageForward);
    EXPECT_EQ(view.x, std::to_string(width));
    Press(CursorStep::First);
    EXPECT_EQ(view.x, "0");
    Press(CursorStep::BinBack);
    EXPECT_EQ(view.x, "0");
    Press(CursorStep::BinForward, 3);
    Press(CursorStep::PageBack);
    EXPECT_EQ(view.x, "0");
  }
}

TEST_F(Cursor, AShorterRecordTakesTheCursorToItsEnd) {
  RecordOf(RecordKind::Time);
  Press(CursorStep::Last);
  RecordOf(RecordKind::Spectrum);
  Press(CursorStep::BinBack);
  EXPECT_EQ(view.x, "255");
}

TEST_F(Cursor, KeysGoToTheHighestOfTheTickedTraces) {
  cursor.pic1_MouseMove(9, 0.5);
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.y, "990.000");
  EXPECT_EQ(view.crossHair, std::pair(10.0, 990.0));
  view.ticked = {true, false, true};
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.y, "11.000");
  EXPECT_EQ(view.crossHair, std::pair(11.0, 11.0));
  view.ticked = {false, false, true};
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.y, "-1.000");
  view.ticked = {false, false, false};
  Press(CursorStep::BinForward);
  EXPECT_EQ(view.y, "0.000");
}

// What the sensor holds now is not what is on the screen.
TEST_F(Cursor, ALaterLookAtTheRecordInformationChangesNoFrequency) {
  RecordOf(RecordKind::Spectrum, 3);
  sensor.Set(address::kRecInfo, 0x4000);
  gRecInfo->ReadRec_Info();
  cursor.pic1_MouseMove(255, 0);
  EXPECT_EQ(view.frequency, "97 Hz");
}

TEST_F(Cursor, GoesToABinOrTheNearestThatTheRecordHas) {
  cursor.GoTo(100);
  EXPECT_EQ(view.x, "100");
  EXPECT_EQ(view.y, "900.000");
  cursor.GoTo(400);
  EXPECT_EQ(view.x, "255");
  cursor.GoTo(-3);
  EXPECT_EQ(view.x, "0");
}

}  // namespace
}  // namespace kestrel
