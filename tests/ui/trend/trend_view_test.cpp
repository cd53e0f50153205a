// The trend view: levels of kept records over time, as they are read, chosen, drawn and explained.
// SPDX-License-Identifier: MIT
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QProgressBar>

#include "record/frequency.h"
#include "ui/trend/trend_bench.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class TrendOfRecords : public TrendBench {};

TEST_F(TrendOfRecords, TheLevelOfEveryRecordStandsOverTime) {
  Put(Made(12));
  OpenTrend(12);
  const auto all = All();
  for (std::size_t i = 0; i < 12; ++i) {
    EXPECT_EQ(Points()[i].id, all[11 - i].id);
    for (const Axis axis : kAxes) {
      EXPECT_EQ(Points()[i].value[Index(axis)], all[11 - i].levels[Index(axis)]->rmsG);
    }
  }
  ASSERT_THAT(Scene().panes, SizeIs(1));
  EXPECT_THAT(Scene().panes[0].traces, SizeIs(3));
  EXPECT_EQ(Scene().panes[0].title, "RMS, g RMS");
  EXPECT_THAT(Line(), HasSubstr("12 records, option 0, Hanning"));
  EXPECT_THAT(Line(), HasSubstr("21 Nov 2025"));
}

TEST_F(TrendOfRecords, AnEmptyArchiveSaysWhatWillBeThere) {
  OpenTrend(0);
  EXPECT_TRUE(Gets([this] { return Scene().hint.find("will stand here") != std::string::npos; }));
  EXPECT_EQ(Notices(), "");
}

TEST_F(TrendOfRecords, WithoutAnArchiveItSaysSo) {
  Open();
  Analyser().ChooseView(study::View::Trend);
  EXPECT_THAT(In<QLabel>("lblNoTrend").text().toStdString(), HasSubstr("--archive"));
  EXPECT_TRUE(In<QLabel>("lblNoTrend").isVisible());
  EXPECT_TRUE(Analyser().Export("/pictures/none.png")) << "an empty picture is one";
}

TEST_F(TrendOfRecords, ANewRecordIsAddedAndViewAndCursorStay) {
  Put(Made(40));
  OpenTrend(40);
  Picture().ShowAcross({Source().Data().Across(Points()[5]), Source().Data().Across(Points()[9])});
  const PlotRange before = Picture().Ranges().across;
  Picture().setFocus();
  PlotKey(Qt::Key_C);
  const ArchiveId at = Cursor();
  ASSERT_NE(at, 0);
  Capture();
  ASSERT_TRUE(Kept());
  // The capture is years later and at another range of values.
  ASSERT_TRUE(Gets([this] { return Source().Data().Count() == 41; })) << Source().Data().Count();
  EXPECT_EQ(Picture().Ranges().across, before);
  EXPECT_EQ(Cursor(), at);
}

TEST_F(TrendOfRecords, WhatBelongsToAnotherTrendIsToldAndCanBeChosen) {
  Put(Made(7));
  Put(Made(3, 7, 1));
  OpenTrend(7);
  EXPECT_THAT(Note(), HasSubstr("7 of option 0, Hanning; 3 of option 1, Hanning are a trend of "
                                "their own"));
  auto& series = In<QComboBox>("cbxTrendSeries");
  ASSERT_EQ(series.count(), 2);
  EXPECT_EQ(series.itemText(1), "option 1, Hanning (3)");
  series.setCurrentIndex(1);
  emit series.activated(1);
  EXPECT_THAT(Points(), SizeIs(3));
  EXPECT_THAT(Line(), HasSubstr("3 records, option 1"));
}

TEST_F(TrendOfRecords, RecordsOfSeveralMachinesAreToldAndFiltered) {
  Put(Made(10));
  OpenTrend(10);
  ASSERT_TRUE(Gets([this] { return In<QComboBox>("cbxTrendMachine").count() == 4; }));
  EXPECT_TRUE(Gets([this] { return Note().find("2 machines") != std::string::npos; }));
  In<QComboBox>("cbxTrendMachine").setCurrentIndex(1);
  EXPECT_TRUE(Has(5)) << "Fan";
  EXPECT_THAT(Note(), IsEmpty());
  In<QLineEdit>("txtTrendText").setText("nothing like it");
  EXPECT_TRUE(Has(0));
  EXPECT_THAT(Scene().hint, HasSubstr("Show all"));
  Click("cmdTrendClear");
  EXPECT_TRUE(Has(10));
}

TEST_F(TrendOfRecords, ABandOfTheUsersIsAskedForAndWorkedOut) {
  Put(Made(6));
  OpenTrend(6);
  ChooseLevel("mnuTrendPeakOf_other");
  Asked("askTrendBand");
  Write("txtTrendFrom", "9,000");
  Write("txtTrendTo", "8,000");
  Accept("askTrendBand");
  EXPECT_THAT(In<QLabel>("lblPairWhyNot").text().toStdString(), HasSubstr("larger number for To"));
  Write("txtTrendFrom", "8,000");
  Write("txtTrendTo", "8,500");
  Accept("askTrendBand");
  ASSERT_TRUE(Gets([this] { return Scene().panes[0].title == "Peak, 8,000 to 8,500 Hz, g peak"; }));
  const double step = LsbWeightOf(2, RecordKind::Spectrum);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_DOUBLE_EQ(Points()[i].value[2], (700 + 10 * static_cast<double>(i)) * step);
  }
  EXPECT_EQ(In<QToolButton>("cmdTrendLevel").text(), "Level: Peak, 8,000 to 8,500 Hz");
}

TEST_F(TrendOfRecords, APeakNearAFrequencyIsAskedForAndFound) {
  Put(Made(6));
  OpenTrend(6);
  ChooseLevel("mnuTrendNear_other");
  Asked("askTrendNear");
  Write("txtTrendNear", "x");
  Accept("askTrendNear");
  EXPECT_NE(Analyser().findChild<QDialog*>("askTrendNear"), nullptr)
      << "x is not a valid frequency";
  Write("txtTrendNear", "8,220");
  Write("txtTrendWithin", "300");
  Accept("askTrendNear");
  ASSERT_TRUE(
      Gets([this] { return Scene().panes[0].title == "Peak near 8,220 Hz ±300 Hz, g peak"; }));
  EXPECT_THAT(Points(), SizeIs(6));
  EXPECT_GT(Points()[5].value[2], Points()[0].value[2]);
  EXPECT_TRUE(std::isnan(Points()[0].value[0])) << "no peak stands out of X";
}

TEST_F(TrendOfRecords, ALevelThatNoRecordCarriesIsRefusedWithItsReason) {
  Put(Made(4));
  OpenTrend(4);
  View().ChooseLevel({.of = archive::TrendOf::BandRms, .fromHz = 49'000, .toHz = 60'000});
  ASSERT_TRUE(Has(0));
  EXPECT_THAT(Scene().hint, HasSubstr("No record carries \"RMS, 49,000 to 60,000 Hz\""));
  EXPECT_THAT(Scene().hint, HasSubstr("whole band"));
}

TEST_F(TrendOfRecords, RecordsThatCannotCarryTheLevelAreCounted) {
  auto records = Made(5);
  records[2].record.kind = RecordKind::Time;
  Put(records);
  OpenTrend(4);
  View().ChooseLevel({.of = archive::TrendOf::BandRms, .fromHz = 1000, .toHz = 2000});
  ASSERT_TRUE(Gets([this] { return Note().find("left out") != std::string::npos; }));
  EXPECT_EQ(Note(),
            "1 record is left out: a time record has no bands. Records of 2 machines are "
            "in one trend: choose a machine above.");
}

TEST_F(TrendOfRecords, ReadingTellsHowFarItIsAndCanBeCancelled) {
  Put(Made(6000));
  OpenTrend(6000);
  View().ChooseLevel({.of = archive::TrendOf::BandPeak, .fromHz = 1000, .toHz = 9000});
  ASSERT_TRUE(Gets([this] { return In<QProgressBar>("barTrendProgress").value() > 0; }));
  EXPECT_TRUE(In<QWidget>("trendProgress").isVisible());
  EXPECT_EQ(In<QProgressBar>("barTrendProgress").maximum(), 6000);
  EXPECT_EQ(Scene().panes[0].title, "RMS, g RMS") << "what is shown is still of the level before";
  Click("cmdTrendCancel");
  EXPECT_FALSE(Source().IsReading());
  EXPECT_FALSE(In<QWidget>("trendProgress").isVisible());
  EXPECT_EQ(In<QToolButton>("cmdTrendLevel").text(), "Level: RMS");
  QTest::qWait(300);
  EXPECT_EQ(Scene().panes[0].title, "RMS, g RMS");
  EXPECT_THAT(Points(), SizeIs(6000));
}

TEST_F(TrendOfRecords, ThresholdsAreTypedCheckedAndDrawn) {
  Put(Made(6));
  OpenTrend(6);
  Click("cmdTrendSetLimits");
  Asked("askTrendLimits");
  Write("txtTrendWarning", "0.3");
  Write("txtTrendFault", "0.2");
  Accept("askTrendLimits");
  EXPECT_THAT(In<QLabel>("lblPairWhyNot").text().toStdString(), HasSubstr("above its warning"));
  Write("txtTrendFault", "0.5");
  Accept("askTrendLimits");
  ASSERT_THAT(Scene().panes[0].limits, SizeIs(2));
  EXPECT_EQ(Scene().panes[0].limits[0].name, "warning 0.3000 g");
  EXPECT_FALSE(Scene().panes[0].limits[0].isFault);
  PlotKey(Qt::Key_B);
  EXPECT_THAT(Scene().panes[0].limits, IsEmpty());
  EXPECT_FALSE(In<QToolButton>("cmdTrendLimits").isChecked());
  View().ChooseLevel({.of = archive::TrendOf::Temperature});
  ASSERT_TRUE(Gets([this] { return Scene().panes[0].title == "Temperature, °C"; }));
  PlotKey(Qt::Key_B);
  EXPECT_THAT(Scene().panes[0].limits, IsEmpty()) << "they were thresholds in g";
}

TEST_F(TrendOfRecords, TheSensorsBandsAreOfferedWithTheirThresholds) {
  Put(Made(6));
  OpenTrend(6);
  study::SensorBands bands{};
  bands[2][2] = {.lowBin = 40, .highBin = 44, .warning = 720, .fault = 900};
  Model().SetSensorBands({{0, bands}});
  Model().Change([](study::StudyChoice& choice) { choice.focus = Axis::Z; });
  ChooseLevel("mnuTrendPeakOf_0_3");
  ASSERT_TRUE(Gets([this] { return Scene().panes[0].title == "Band 3 peak, g peak"; }));
  const double step = LsbWeightOf(2, RecordKind::Spectrum);
  ASSERT_THAT(Scene().panes[0].limits, SizeIs(2));
  EXPECT_DOUBLE_EQ(Scene().panes[0].limits[0].value, 720 * step);
  EXPECT_DOUBLE_EQ(Points()[5].value[2], 750 * step);
  PlotKey(Qt::Key_End);
  EXPECT_EQ(Picture().Cursor().readOut.rows.back().name, "Z over warning");
}

TEST_F(TrendOfRecords, TemperatureStandsInAPlotBelow) {
  Put(Made(6));
  OpenTrend(6);
  Click("cmdTrendTemperature");
  ASSERT_THAT(Scene().panes, SizeIs(2));
  EXPECT_EQ(Scene().panes[1].title, "Temperature, °C");
  EXPECT_THAT(Scene().panes[1].traces.at(0).y, SizeIs(6));
  EXPECT_NEAR(Scene().panes[1].traces[0].y[5], 20.5, 1e-5);
  Click("cmdTrendTemperature");
  EXPECT_THAT(Scene().panes, SizeIs(1));
}

TEST_F(TrendOfRecords, AxesAreThoseOfTheOtherViews) {
  Put(Made(6));
  OpenTrend(6);
  PlotKey(Qt::Key_X);
  EXPECT_THAT(Scene().panes[0].traces, SizeIs(2));
  EXPECT_FALSE(Choice().shown[0]);
  Click("cmdTrendX");
  EXPECT_THAT(Scene().panes[0].traces, SizeIs(3));
  PlotKey(Qt::Key_Y, Qt::ShiftModifier);
  EXPECT_EQ(View().Choice().focus, Axis::Y);
  PlotKey(Qt::Key_G);
  EXPECT_EQ(Scene().panes[0].up, AxisKind::Logarithmic);
  In<QToolButton>("optTrendDb").click();
  EXPECT_EQ(Scene().panes[0].title, "RMS, dB re 1 g RMS");
}

TEST_F(TrendOfRecords, ADamagedArchiveIsSaidInWordsAndTheProgramGoesOn) {
  const std::string place = folder_.Write("broken.db", "SQLite format 3 it is not").string();
  StartKeeping(place);
  Trigger("mnuAnalyser");
  Analyser().ChooseView(study::View::Trend);
  ASSERT_TRUE(Gets([&] { return !Notices().empty(); }));
  EXPECT_THAT(Notices(), HasSubstr(place));
  EXPECT_THAT(Scene().hint, HasSubstr("cannot be read"));
  Capture();
  EXPECT_NE(Study().Live(), nullptr);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(TrendOfRecords, AnArchiveThatIsAwayForAWhileIsSaidAndReadAgain) {
  Put(Made(6));
  OpenTrend(6);
  database_.Connect()->Run("alter table record rename to hidden");
  View().ChooseLevel({.of = archive::TrendOf::Peak});
  ASSERT_TRUE(Gets([this] { return In<QWidget>("trendNotices").isVisible(); }));
  EXPECT_THAT(Points(), SizeIs(6)) << "what was read stays to be seen";
  EXPECT_EQ(Scene().panes[0].title, "RMS, g RMS");
  database_.Connect()->Run("alter table hidden rename to record");
  View().ChooseLevel({.of = archive::TrendOf::Peak});
  EXPECT_TRUE(Gets([this] { return Scene().panes[0].title == "Peak, g peak"; }));
  EXPECT_TRUE(Gets([this] { return !In<QWidget>("trendNotices").isVisible(); }));
}

TEST_F(TrendOfRecords, RecordsDeletedElsewhereAreGoneWhenItIsShownAgain) {
  Put(Made(8));
  OpenTrend(8);
  Analyser().ChooseView(study::View::Library);
  const std::vector<std::int64_t> ids{Points()[2].id, Points()[3].id};
  Archived().Delete(ids, std::chrono::system_clock::now());
  Analyser().ChooseView(study::View::Trend);
  EXPECT_TRUE(Has(6));
}

TEST_F(TrendOfRecords, WhatIsChosenOutlivesTheWindow) {
  Put(Made(6));
  OpenTrend(6);
  View().ChooseLevel({.of = archive::TrendOf::BandPeak, .fromHz = 8000, .toHz = 8500});
  ASSERT_TRUE(Gets([this] { return Scene().panes[0].title.starts_with("Peak, 8,000"); }));
  PlotKey(Qt::Key_G);
  Click("cmdTrendTemperature");
  windows_.reset();
  OpenTrend();
  EXPECT_EQ(Choice().view, study::View::Trend);
  ASSERT_TRUE(Has(6));
  EXPECT_EQ(View().Choice().level.fromHz, 8000);
  EXPECT_EQ(Scene().panes[0].up, AxisKind::Logarithmic);
  EXPECT_THAT(Scene().panes, SizeIs(2));
}

TEST_F(TrendOfRecords, TheWindowClosesAtAnyMoment) {
  Put(Made(3000));
  for (int passes = 0; passes < 40; passes += 4) {
    OpenTrend();
    View().ChooseLevel({.of = archive::TrendOf::BandRms, .fromHz = 1000, .toHz = 9000});
    for (int i = 0; i < passes; ++i) {
      QApplication::processEvents();
      if (i == 20) PlotKey(Qt::Key_C);
    }
    if (passes % 8 == 0) QTest::qWait(passes * 3);
    Window().close();
    windows_.reset();
  }
  EXPECT_EQ(Archived().Count(), 3000);
}

}  // namespace
}  // namespace kestrel
