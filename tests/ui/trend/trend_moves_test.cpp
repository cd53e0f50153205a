// Moving in a trend with mouse and keys: cursor, spans, overview, events, and records opened.
// SPDX-License-Identifier: MIT
#include <QClipboard>
#include <QDateTimeEdit>
#include <QDialogButtonBox>

#include "ui/trend/trend_bench.h"

namespace kestrel {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class TrendMoves : public TrendBench {
 protected:
  // Three days of records, half an hour apart, with an alarm and a gap.
  void PutDays() {
    auto records = Made(144);
    for (int i = 0; i < 144; ++i) {
      auto& record = records[static_cast<std::size_t>(i)].record;
      record.time = MadeUpTime(1800 * i + (i >= 100 ? 40'000 : 0));
      if (i >= 60 && i < 64) record.alarms.axes[2].status = WarningOf(3);
      if (i >= 140) record.alarms.axes[2].status = WarningOf(1);
    }
    Put(records);
  }
  void Open(std::size_t point) {
    PlotKey(Qt::Key_Home);
    for (std::size_t i = 0; i < point; ++i) PlotKey(Qt::Key_Right);
    ASSERT_EQ(Cursor(), Points()[point].id);
    PlotKey(Qt::Key_Return);
    ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
  }
  void BackToTrend() {
    Analyser().ChooseView(study::View::Trend);
    Settle();
  }
};

TEST_F(TrendMoves, AClickPutsTheCursorOntoARecordAndAnotherOneOpensIt) {
  Put(Made(10));
  OpenTrend(10);
  QTest::mouseClick(&Picture(), Qt::LeftButton, {}, PlaceOf(4));
  ASSERT_EQ(Cursor(), Points()[4].id);
  EXPECT_EQ(Picture().Cursor().readOut.rows.size(), 3U);
  EXPECT_TRUE(Gets([this] { return In<QToolButton>("cmdTrendOpen").isEnabled(); }));
  EXPECT_EQ(Choice().view, study::View::Trend);
  QTest::mouseClick(&Picture(), Qt::LeftButton, {}, PlaceOf(4));
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
  EXPECT_EQ(Study().Shown()->record->time, MadeUpTime(240));
}

TEST_F(TrendMoves, TheKeyboardAloneFindsAndOpensARecord) {
  Put(Made(30));
  OpenTrend(30);
  WindowKey(Qt::Key_5, Qt::ControlModifier);
  Picture().setFocus();
  PlotKey(Qt::Key_Home);
  EXPECT_EQ(Cursor(), Points()[0].id);
  PlotKey(Qt::Key_Right);
  PlotKey(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(Cursor(), Points()[11].id);
  PlotKey(Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(Cursor(), Points()[10].id);
  PlotKey(Qt::Key_Z, Qt::ShiftModifier);
  PlotKey(Qt::Key_P);
  EXPECT_EQ(Cursor(), Points()[29].id) << "the largest of Z";
  PlotKey(Qt::Key_N);
  EXPECT_EQ(Cursor(), 0);
  PlotKey(Qt::Key_End);
  PlotKey(Qt::Key_Return);
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
  EXPECT_EQ(Study().Shown()->record->time, MadeUpTime(29 * 60));
}

TEST_F(TrendMoves, TheSmallPictureIsOfTheRecordAtTheCursorAndOpensIt) {
  Put(Made(10));
  OpenTrend(10);
  auto& picture = dynamic_cast<RecordPicture&>(In<QAbstractButton>("recordPicture"));
  EXPECT_FALSE(picture.isEnabled());
  PlotKey(Qt::Key_Home);
  ASSERT_TRUE(Gets([&] { return picture.isEnabled(); }));
  ASSERT_FALSE(picture.Scene().panes.empty());
  EXPECT_EQ(picture.Scene().panes[0].traces.size(), 3U);
  EXPECT_THAT(In<QLabel>("lblTrendRecord").text().toStdString(), HasSubstr("21 Nov 2025"));
  QTest::keyClick(&picture, Qt::Key_Space);
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
}

TEST_F(TrendMoves, ARecordIsComparedWithOthers) {
  Put(Made(10));
  OpenTrend(10);
  PlotKey(Qt::Key_Home);
  ASSERT_TRUE(Gets([this] { return In<QToolButton>("cmdTrendCompare").isEnabled(); }));
  Click("cmdTrendCompare");
  EXPECT_TRUE(In<QToolButton>("cmdTrendCompare").isChecked());
  EXPECT_THAT(Said().toStdString(), HasSubstr("stands beside"));
  PlotKey(Qt::Key_End);
  auto& picture = dynamic_cast<RecordPicture&>(In<QAbstractButton>("recordPicture"));
  ASSERT_TRUE(Gets([this] { return In<QLabel>("lblTrendRecord").text().contains("beside"); }));
  EXPECT_GT(picture.Scene().panes.at(0).traces.size(), 3U);
  EXPECT_FALSE(In<QToolButton>("cmdTrendCompare").isChecked());
  Click("cmdTrendOpen");
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
  EXPECT_THAT(Study().Selected(), SizeIs(2));
  EXPECT_EQ(Study().Shown()->record->time, MadeUpTime(540));
  ASSERT_THAT(Study().Others(), SizeIs(1));
  EXPECT_EQ(Study().Others()[0].record->time, MadeUpTime(0));
}

TEST_F(TrendMoves, ARecordThatIsGoneIsSaidSo) {
  Put(Made(10));
  OpenTrend(10);
  const std::vector<std::int64_t> ids{Points()[0].id};
  Archived().Remove(ids);
  PlotKey(Qt::Key_Home);
  EXPECT_TRUE(Gets([this] {
    return In<QLabel>("lblTrendRecord").text() == "This record is not in the archive any more.";
  }));
  EXPECT_FALSE(In<QToolButton>("cmdTrendOpen").isEnabled());
  PlotKey(Qt::Key_Return);
  EXPECT_TRUE(Gets([this] { return Said() == "This record is not in the archive any more."; }));
}

TEST_F(TrendMoves, SpansAreChosenTypedAndGoneBackTo) {
  PutDays();
  OpenTrend(144);
  const double all = Shown();
  Click("cmdTrendDay");
  EXPECT_NEAR(Shown(), 86'400 * 1.02, 1000);
  EXPECT_TRUE(In<QToolButton>("cmdTrendBack").isEnabled());
  PlotKey(Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(Shown(), all);
  Click("cmdTrendForward");
  EXPECT_LT(Shown(), all);
  Click("cmdTrendAll");
  EXPECT_EQ(Shown(), all);
  Click("cmdTrendSpan");
  Asked("askTrendSpan");
  const QDateTime begin = QDateTime::fromSecsSinceEpoch(kMadeUpStart + 3600);
  In<QDateTimeEdit>("dateTrendFrom").setDateTime(begin);
  In<QDateTimeEdit>("dateTrendUntil").setDateTime(begin);
  Accept("askTrendSpan");
  EXPECT_THAT(In<QLabel>("lblSpanWhyNot").text().toStdString(), HasSubstr("later moment"));
  In<QDateTimeEdit>("dateTrendUntil").setDateTime(begin.addSecs(7200));
  Accept("askTrendSpan");
  EXPECT_NEAR(Shown(), 7200, 1);
  EXPECT_THAT(Line(), HasSubstr("5 records"));
}

TEST_F(TrendMoves, ZoomGoesDownToTheSingleRecord) {
  PutDays();
  OpenTrend(144);
  PlotKey(Qt::Key_C);
  for (int i = 0; i < 60; ++i) PlotKey(Qt::Key_Plus);
  EXPECT_LT(Shown(), 1);
  EXPECT_THAT(Line(), HasSubstr("1 record,"));
  EXPECT_TRUE(Picture().Ranges().across.Holds(Picture().Cursor().members[0].x));
  QTest::mouseDClick(&Picture(), Qt::LeftButton, {}, Picture().rect().center());
  EXPECT_TRUE(Picture().ShowsAll());
}

TEST_F(TrendMoves, TheOverviewMovesThePartThatIsShown) {
  PutDays();
  OpenTrend(144);
  auto& overview = dynamic_cast<TrendOverview&>(In<QWidget>("trendOverview"));
  EXPECT_EQ(overview.Shown(), Picture().Ranges().across);
  Click("cmdTrendDay");
  const PlotRange day = Picture().Ranges().across;
  EXPECT_EQ(overview.Shown(), day);
  overview.setFocus();
  QTest::keyClick(&overview, Qt::Key_Left);
  EXPECT_NEAR(Picture().Ranges().across.low, day.low - day.Span() / 10, 1);
  EXPECT_NEAR(Shown(), day.Span(), 1e-6);
  QTest::keyClick(&overview, Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_NEAR(Shown(), day.Span() * 0.9, 1);
  const PlotRange before = Picture().Ranges().across;
  const int middle = overview.height() / 3;
  QTest::mousePress(&overview, Qt::LeftButton, {}, {20, middle});
  QTest::mouseRelease(&overview, Qt::LeftButton, {}, {20, middle});
  EXPECT_LT(Picture().Ranges().across.low, before.low) << "a press beside it brings it there";
  QTest::mouseDClick(&overview, Qt::LeftButton, {}, {20, middle});
  EXPECT_TRUE(Picture().ShowsAll());
}

TEST_F(TrendMoves, EventsLeadToTheirRecords) {
  PutDays();
  OpenTrend(144);
  ASSERT_EQ(Rows("tblTrendEvents").rowCount(), 3);
  EXPECT_EQ(Cell("tblTrendEvents", 0, 1), "Warning 1, Z");
  EXPECT_EQ(Cell("tblTrendEvents", 0, 3), "open");
  EXPECT_EQ(Cell("tblTrendEvents", 1, 1), "No records");
  EXPECT_EQ(Cell("tblTrendEvents", 2, 1), "Warning 3, Z");
  EXPECT_EQ(Cell("tblTrendEvents", 2, 3), "2.0 h");
  auto& table = In<QTableView>("tblTrendEvents");
  table.selectRow(2);
  EXPECT_EQ(Cursor(), Points()[63].id) << "the largest level while it lasted";
  PlotKey(Qt::Key_PageDown);
  EXPECT_EQ(Cursor(), Points()[140].id);
  PlotKey(Qt::Key_PageUp);
  EXPECT_EQ(Cursor(), Points()[60].id);
  PlotKey(Qt::Key_PageUp);
  EXPECT_EQ(Said(), "No alarm begins before.");
  ASSERT_EQ(Scene().lanes.size(), 1U);
  EXPECT_EQ(Scene().lanes[0].spans.size(), 2U);
  table.clearSelection();
  table.setFocus();
  QApplication::clipboard()->clear();
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_THAT(QApplication::clipboard()->text().toStdString(), HasSubstr("Warning 3, Z\t"));
}

TEST_F(TrendMoves, FiguresAreOfWhatIsShown) {
  PutDays();
  OpenTrend(144);
  ASSERT_TRUE(Gets([this] { return Rows("tblTrendFigures").rowCount() == 3; }));
  EXPECT_EQ(Cell("tblTrendFigures", 2, 6), "144");
  Click("cmdTrendDay");
  EXPECT_TRUE(Gets([this] { return Cell("tblTrendFigures", 2, 6) != "144"; }));
}

TEST_F(TrendMoves, TheMenuOpensAndComparesWhatIsPointedAt) {
  Put(Made(10));
  OpenTrend(10);
  QTest::mouseClick(&Picture(), Qt::RightButton, {}, PlaceOf(3));
  ASSERT_TRUE(Gets([this] { return Analyser().findChild<QMenu*>("mnuTrend") != nullptr; }));
  EXPECT_EQ(Cursor(), Points()[3].id);
  In<QAction>("mnuTrendOpen").trigger();
  In<QMenu>("mnuTrend").close();
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
}

TEST_F(TrendMoves, WhatIsShownIsWrittenAsATableAndAsAPicture) {
  PutDays();
  OpenTrend(144);
  Click("cmdTrendDay");
  ASSERT_TRUE(Analyser().Export("/tables/trend.csv"));
  const std::string table = files_.contents["/tables/trend.csv"];
  EXPECT_TRUE(table.starts_with("time (UTC),record,\"RMS X (g RMS)\""));
  const auto lines = std::ranges::count(table, '\n');
  EXPECT_GT(lines, 10);
  EXPECT_LT(lines, 60) << "the day alone";
  ASSERT_TRUE(Analyser().Export("/pictures/trend.png"));
  const QImage picture =
      QImage::fromData(QByteArray::fromStdString(files_.contents["/pictures/trend.png"]), "PNG");
  EXPECT_EQ(picture.text("Title"), "Trend");
  EXPECT_THAT(picture.text("Description").toStdString(), HasSubstr("RMS, "));
  ASSERT_TRUE(Analyser().Export("/pictures/trend.pdf"));
  EXPECT_FALSE(Analyser().Export("/pictures/trend.xls"));
  EXPECT_THAT(Said().toStdString(), HasSubstr("csv"));
  QApplication::clipboard()->clear();
  Picture().setFocus();
  PlotKey(Qt::Key_C, Qt::ControlModifier);
  EXPECT_FALSE(QApplication::clipboard()->image().isNull());
  files_.failure = "no room on the disk";
  EXPECT_FALSE(Analyser().Export("/tables/trend.csv"));
  EXPECT_THAT(Said().toStdString(), HasSubstr("no room on the disk"));
}

TEST_F(TrendMoves, ViewsAndZoomSurviveALookAtARecord) {
  PutDays();
  OpenTrend(144);
  Click("cmdTrendDay");
  const PlotRange before = Picture().Ranges().across;
  PlotKey(Qt::Key_C);
  const ArchiveId at = Cursor();
  PlotKey(Qt::Key_Return);
  ASSERT_TRUE(Gets([this] { return Choice().view == study::View::Spectrum; }));
  BackToTrend();
  ASSERT_TRUE(IsIdle());
  EXPECT_EQ(Picture().Ranges().across, before);
  EXPECT_EQ(Cursor(), at);
}

}  // namespace
}  // namespace kestrel
