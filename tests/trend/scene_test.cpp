// A trend as a picture, in words and as a table.
// SPDX-License-Identifier: MIT
#include "trend/scene.h"

#include "made_up_levels.h"
#include "record/frequency.h"

namespace kestrel::trend {
namespace {

using archive::TrendOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Data Minutes() {
  return DataOf({SeriesOf(
      {{0, 0.4}, {60, 0.5}, {120, 0.6}, {180, 0.7}, {3600, 0.8, 1 << 8}, {3660, 1.0, 1 << 8}})});
}

std::array<analysis::SensorBand, 6> BandsWith(int warning, int fault) {
  std::array<analysis::SensorBand, 6> bands{};
  bands[2] = {40, 44, warning, fault};
  return bands;
}

Choice OfBand3() {
  Choice choice;
  choice.level = {.of = TrendOf::BandPeak, .fromHz = 100, .toHz = 200, .name = "Band 3", .band = 3};
  return choice;
}

TEST(TrendScene, GapsBreakTheTracesAndAreNamed) {
  const Data data = Minutes();
  const PlotScene scene = SceneOf(data, {}, {}, kUtc);
  ASSERT_EQ(scene.panes.size(), 1U);
  ASSERT_EQ(scene.panes[0].traces.size(), 3U);
  const SceneTrace& z = scene.panes[0].traces[2];
  EXPECT_TRUE(z.isFocus);
  ASSERT_EQ(z.x.size(), 7U);
  EXPECT_THAT(z.x, ElementsAre(0, 60, 120, 180, 1890, 3600, 3660));
  EXPECT_TRUE(std::isnan(z.y[4]));
  ASSERT_EQ(scene.gaps.size(), 1U);
  EXPECT_EQ(scene.gaps[0].from, 180);
  EXPECT_EQ(scene.gaps[0].to, 3600);
  EXPECT_EQ(scene.gaps[0].reason, "no records, 57 min");
  EXPECT_TRUE(scene.across.calendar);
  EXPECT_LT(scene.across.whole.low, 0);
  EXPECT_GT(scene.across.whole.high, 3660);
}

TEST(TrendScene, AlarmsAreALaneWithFaultsOverWarnings) {
  const Data data = DataOf({SeriesOf({{0, 1, 1 << 9}, {60, 1, 1 << 8}, {120, 1}})});
  const PlotScene scene = SceneOf(data, {}, {}, kUtc);
  ASSERT_EQ(scene.lanes.size(), 1U);
  ASSERT_EQ(scene.lanes[0].spans.size(), 2U);
  EXPECT_EQ(scene.lanes[0].spans[0].state, BandState::Warning);
  EXPECT_EQ(scene.lanes[0].spans[0].from, 60);
  EXPECT_EQ(scene.lanes[0].spans[0].to, 120);
  EXPECT_EQ(scene.lanes[0].spans[1].state, BandState::Fault);
}

TEST(TrendScene, OnlyAxesThatAreWantedAreDrawn) {
  Choice choice;
  choice.shown = {true, false, true};
  const PlotScene scene = SceneOf(Minutes(), choice, {}, kUtc);
  ASSERT_EQ(scene.panes[0].traces.size(), 2U);
  EXPECT_EQ(scene.panes[0].traces[0].name, "X");
  EXPECT_EQ(scene.panes[0].traces[1].name, "Z");
}

TEST(TrendScene, DecibelsAreOfTheLevelAndOfItsThresholds) {
  Choice choice;
  choice.up = AxisKind::Decibel;
  const PlotScene scene = SceneOf(Minutes(), choice, {.warning = 0.1, .fault = 1}, kUtc);
  EXPECT_NEAR(scene.panes[0].traces[2].y[5], 20 * std::log10(0.8), 1e-12);
  ASSERT_EQ(scene.panes[0].limits.size(), 2U);
  EXPECT_NEAR(scene.panes[0].limits[0].value, -20, 1e-12);
  EXPECT_EQ(scene.panes[0].limits[0].name, "warning \u221220.0 dB");
  EXPECT_TRUE(scene.panes[0].limits[1].isFault);
  EXPECT_EQ(scene.panes[0].title, "RMS, dB re 1 g RMS");
}

TEST(TrendScene, ThresholdsFarBeyondTheValuesDoNotFlattenThem) {
  const Limits limits{.warning = 1.5, .fault = 50};
  const auto range = SceneOf(Minutes(), {}, limits, kUtc).panes[0].range;
  ASSERT_TRUE(range);
  EXPECT_GE(range->high, 1.5);
  EXPECT_LT(range->high, 5);
}

TEST(TrendScene, TheSensorsThresholdsAreThoseOfItsBandAtTheRangeOfTheNewest) {
  const Data data = Minutes();
  const auto bands = BandsWith(100, 200);
  const Limits limits = LimitsOf(data, OfBand3(), &bands);
  const double step = LsbWeightOf(2, RecordKind::Spectrum);
  ASSERT_TRUE(limits.warning);
  EXPECT_DOUBLE_EQ(*limits.warning, 100 * step);
  EXPECT_DOUBLE_EQ(*limits.fault, 200 * step);
}

TEST(TrendScene, ThresholdsOfTheUsersGoFirstAndForeignOnesDoNotApply) {
  const Data data = Minutes();
  const auto bands = BandsWith(100, 0);
  Choice choice = OfBand3();
  EXPECT_FALSE(LimitsOf(data, choice, &bands).fault);
  choice.limits.warning = 0.5;
  EXPECT_EQ(LimitsOf(data, choice, &bands).warning, 0.5);
  choice.limits = {};
  choice.level.option = 1;
  EXPECT_FALSE(LimitsOf(data, choice, &bands).warning) << "of another option";
  choice = OfBand3();
  choice.level.of = TrendOf::BandRms;
  EXPECT_FALSE(LimitsOf(data, choice, &bands).warning) << "the sensor judges the largest bin";
  EXPECT_FALSE(LimitsOf(data, OfBand3(), nullptr).warning);
}

TEST(TrendScene, TemperatureHasAPlotOfItsOwnBelow) {
  Data data = Minutes();
  data.temperature.series.push_back(SeriesOf({{0, 96}, {60, 97}}));
  Choice choice;
  choice.hasTemperature = true;
  const PlotScene scene = SceneOf(data, choice, {}, kUtc);
  ASSERT_EQ(scene.panes.size(), 2U);
  EXPECT_EQ(scene.panes[1].title, "Temperature, °C");
  EXPECT_THAT(scene.panes[1].traces.at(0).y, ElementsAre(24, 24.25));
  EXPECT_GT(scene.panes[1].range->low, 20) << "not from zero";
}

TEST(TrendScene, ConditionsAreOneTraceThatBelongsToNoAxis) {
  Choice choice;
  choice.level.of = TrendOf::Supply;
  const PlotScene scene = SceneOf(Minutes(), choice, {}, kUtc);
  ASSERT_EQ(scene.panes[0].traces.size(), 1U);
  EXPECT_EQ(scene.panes[0].traces[0].ink, PlotInk::Other);
  EXPECT_EQ(scene.panes[0].title, "Supply, V");
}

TEST(TrendCursor, TellsTheMomentTheLevelsAndHowFarFromTheThreshold) {
  Choice choice = OfBand3();
  const SceneCursor cursor = CursorAt(Minutes(), choice, {.warning = 0.5, .fault = 2}, 5, kUtc);
  ASSERT_EQ(cursor.members.size(), 1U);
  EXPECT_EQ(cursor.members[0].x, 3660);
  EXPECT_EQ(cursor.members[0].y, 1.0);
  EXPECT_EQ(cursor.readOut.title, "21 Nov 2025, 19:34:20");
  ASSERT_EQ(cursor.readOut.rows.size(), 4U);
  EXPECT_EQ(cursor.readOut.rows[2].value, "1.000 g");
  EXPECT_EQ(cursor.readOut.rows[3].name, "Z over warning");
  EXPECT_EQ(cursor.readOut.rows[3].value, "6.0 dB");
  EXPECT_EQ(cursor.spoken,
            "21 Nov 2025, 19:34:20; X 0.2500 g; Y 0.5000 g; Z 1.000 g; Z over warning 6.0 dB");
  EXPECT_EQ(
      CursorAt(Minutes(), choice, {.warning = 0.5, .fault = 0.8}, 5, kUtc).readOut.rows.back().name,
      "Z over fault");
  EXPECT_EQ(CursorAt(Minutes(), choice, {.warning = 2}, 5, kUtc).readOut.rows.back().name,
            "Z below warning");
}

TEST(TrendData, TheNearestRecordIsFound) {
  const Data data = Minutes();
  EXPECT_EQ(data.Nearest(-1e9), 0U);
  EXPECT_EQ(data.Nearest(89), 1U);
  EXPECT_EQ(data.Nearest(91), 2U);
  EXPECT_EQ(data.Nearest(1e9), 5U);
  EXPECT_EQ(data.Find(4), 3U);
  EXPECT_FALSE(data.Find(99));
  EXPECT_FALSE(Data().Nearest(0));
}

TEST(TrendData, RecordsThatComeLaterAreAddedAndThoseKnownBetterReplaced) {
  Data data = DataOf({SeriesOf({{0, 1}, {60, 2}, {120, 3}})});
  data.levels.refused = {7};
  EXPECT_EQ(data.Count(), 4);
  archive::Levels more;
  more.series.push_back(SeriesOf({{120, 3, 1 << 8}, {180, 4}}));
  more.series[0].points[0].id = 3;
  more.series[0].points[1].id = 8;
  more.series.push_back(SeriesOf({{240, 1}}));
  more.series[1].option = 2;
  more.series[1].points[0].id = 9;
  more.refused = {7, 10};
  data.Add(more, {});
  EXPECT_EQ(data.Count(), 7);
  ASSERT_EQ(data.Shown().size(), 4U);
  EXPECT_EQ(data.Shown()[2].alarms[2], 1 << 8);
  EXPECT_EQ(data.Shown()[3].id, 8);
  ASSERT_EQ(data.events.size(), 1U) << "worked out anew";
  EXPECT_EQ(data.levels.series.size(), 2U);
  EXPECT_EQ(data.Newest(), MomentAt(240));
}

TEST(TrendLine, SaysWhatIsSeen) {
  const Data data = Minutes();
  EXPECT_EQ(LineOf(data, OfBand3(), {-1e9, 1e9}, kUtc),
            "band 3 peak, 21 Nov 2025, 18:33:20 to 21 Nov 2025, 19:34:20, 6 records, option 0, "
            "Hanning");
  EXPECT_THAT(LineOf(data, {}, {100, 130}, kUtc), HasSubstr(", 1 record, option 0"));
  EXPECT_THAT(LineOf(data, {}, {100, 130}, kUtc), testing::StartsWith("RMS, 21 Nov 2025, 18:35"));
  EXPECT_EQ(LineOf({}, {}, {0, 1}, kUtc), "");
}

TEST(TrendTable, HoldsWhatIsShownExactly) {
  const Data data = DataOf({SeriesOf({{0, 0.1}, {60, 1.0 / 3, 1 << 8}, {120, 5}})});
  Choice choice;
  choice.shown = {false, false, true};
  EXPECT_EQ(CsvOf(data, choice, {0, 100}),
            "time (UTC),record,\"RMS Z (g RMS)\",alarm\r\n"
            "2025-11-21T18:33:20.000Z,1,0.1,no\r\n"
            "2025-11-21T18:34:20.000Z,2,0.3333333333333333,yes\r\n");
}

TEST(TrendLevels, AreNamedInWords) {
  EXPECT_EQ(TitleOf({.of = TrendOf::Rms}), "RMS");
  EXPECT_EQ(TitleOf({.of = TrendOf::BandRms, .fromHz = 100, .toHz = 2000}), "RMS, 100 to 2,000 Hz");
  EXPECT_EQ(TitleOf({.of = TrendOf::BandPeak, .name = "Band 3"}), "Band 3 peak");
  EXPECT_EQ(TitleOf({.of = TrendOf::PeakNear, .nearHz = 1234.5, .withinHz = 5}),
            "Peak near 1,234.5 Hz ±5 Hz");
  EXPECT_EQ(AxisTitleOf({.of = TrendOf::Temperature}, AxisKind::Linear), "Temperature, °C");
}

TEST(TrendSeries, OthersAreToldWithTheirCounts) {
  archive::LevelSeries other = SeriesOf({{0}, {1}});
  other.option = 1;
  Data data = DataOf({SeriesOf({{0}, {1}, {2}}), other});
  EXPECT_EQ(Apart(data.levels, 0, {}),
            "3 of option 0, Hanning; 2 of option 1, Hanning are a trend of their own");
  other.points.pop_back();
  other.kind = RecordKind::Time;
  data = DataOf({SeriesOf({{0}, {1}, {2}}), other});
  EXPECT_EQ(Apart(data.levels, 0, {}),
            "3 of option 0, Hanning; 1 of time records, option 1 is a trend of its own");
  EXPECT_THAT(Apart(DataOf({other}).levels, 0, {}), IsEmpty());
}

TEST(TrendWhyNone, NamesTheReasonAndTheCure) {
  archive::Levels levels;
  EXPECT_THAT(WhyNone(levels, {}, false), HasSubstr("will stand here"));
  EXPECT_THAT(WhyNone(levels, {}, true), HasSubstr("Show all"));
  levels.refused = {1, 2, 3, 4};
  levels.refusal = "a time record has no bands";
  EXPECT_EQ(WhyNone(levels, {.of = TrendOf::BandRms, .name = "Band 3"}, false),
            "No record carries \"Band 3 RMS\": a time record has no bands. Choose another level.");
}

}  // namespace
}  // namespace kestrel::trend
