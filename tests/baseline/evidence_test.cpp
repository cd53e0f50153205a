// What the evidence says, as a report, text and CSV.
// SPDX-License-Identifier: MIT
#include "baseline/evidence.h"

#include <random>

#include "baseline/texts.h"
#include "made_records.h"

namespace kestrel::baseline {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class Evidence : public testing::Test {
 protected:
  Evidence() {
    std::mt19937 random(2);
    for (int i = 0; i < 80; ++i) {
      const bool good = i < 70;
      (void)made.Keep(MadeSpectrum(i,
                                   [&](Axis axis, int bin) {
                                     const int noise = 100 + static_cast<int>(random() % 40);
                                     return !good && axis == Axis::Z && bin == 20 ? 400 : noise;
                                   }),
                      {good ? "good" : "bad"}, "Pump, \"3\"");
    }
    (void)made.Keep(MadeSpectrum(90, Flat(5), {.option = 0, .window = 1, .range = 2}), {"good"});
  }
  Workbench Bench(const Bands& bands, LevelKind kind = LevelKind::BandPeak,
                  const Judgement& judgement = {}) {
    const std::vector<Part> parts{
        {.verdict = Verdict::Good, .filter = {.tag = "good"}},
        {.verdict = Verdict::Bad, .name = "outer race", .filter = {.tag = "bad"}}};
    Loaded loaded = Load(made.archive, SetsOf(made.archive, parts));
    return {std::move(loaded.sets),
            std::make_shared<Spectra>(std::move(loaded.spectra)),
            bands,
            kind,
            {},
            judgement};
  }
  static Bands TwoBands() {
    Bands bands;
    bands[0] = {.lowBin = 3, .highBin = 40, .warning = {200, 200, 0}, .fault = {300, 300, 0}};
    bands[2] = {.lowBin = 0, .highBin = 9, .warning = {}, .fault = {}};
    return bands;
  }
  const EvidenceOrigin origin{"Kestrel 0.1.0", "archive.db", MinuteOf(100)};
  MadeArchive made;
};

TEST_F(Evidence, NamesSetsRuleThresholdsAndReplay) {
  const Workbench bench = Bench(TwoBands());
  const report::Report report = EvidenceOf(bench, origin);
  EXPECT_EQ(report.line, "Option 0, 70 records known to be good, 10 known to be bad");
  EXPECT_EQ(report.time, origin.time);
  ASSERT_THAT(report.sections, SizeIs(5));
  for (const report::Section& section : report.sections) {
    for (const report::Table& table : section.tables) {
      for (const auto& row : table.rows) EXPECT_EQ(row.size(), table.columns.size());
    }
  }
  const auto& records = report.sections[0].tables;
  EXPECT_THAT(records[0].rows[0],
              ElementsAre("known good", "", "70", "all 70", SpanText(MinuteOf(0), MinuteOf(69)),
                          "Pump, \"3\", drive end"));
  EXPECT_EQ(records[0].rows[1][1], "outer race");
  EXPECT_THAT(records[1].rows[0],
              ElementsAre("Range 0 to 20 g", "cannot be compared with 0 to 70 g", "1"));
  const report::Section& thresholds = report.sections[2];
  ASSERT_THAT(thresholds.tables[0].rows, SizeIs(6)) << "bands that are not in use have no rows";
  const auto& first = thresholds.tables[0].rows[0];
  const CellState& cell = bench.At({1, Axis::X});
  EXPECT_THAT(std::vector(first.begin(), first.begin() + 4),
              ElementsAre("1", "X", "3 to 40", "587 to 7,827"));
  EXPECT_EQ(first[7], std::to_string(static_cast<int>(cell.warning)));
  EXPECT_EQ(thresholds.tables[0].rows[2][4], "") << "no warning now";
  EXPECT_THAT(
      thresholds.remarks,
      ElementsAre("Band 2: The band is not in use.",
                  "Band 3: reaches into the bins that hold offset, no vibration; the sensor "
                  "looks there too.",
                  "Band 4: The band is not in use.", "Band 5: The band is not in use.",
                  "Band 6: The band is not in use."));
  EXPECT_THAT(report.sections[3].facts[1].value, HasSubstr("0 of 10, 0.0 % (0.0 to 30.8 %)"));
  EXPECT_EQ(report.sections[3].tables[0].rows[2][5], "10");
  EXPECT_THAT(report.sections[4].tables[0].rows, SizeIs(12));
}

TEST_F(Evidence, OfAnRmsHasNoCodes) {
  const report::Report report =
      EvidenceOf(Bench(TwoBands(), LevelKind::BandRms, {.m = 2, .n = 3}), origin);
  for (const report::Column& column : report.sections[2].tables[0].columns) {
    EXPECT_NE(column.head, "Code");
  }
  EXPECT_THAT(report.sections[1].facts[2].value, HasSubstr("does not compare"));
  EXPECT_THAT(report.sections[3].remarks[1], HasSubstr("true bounds are wider"));
}

TEST_F(Evidence, RemarksTellWhatWasMovedAndWhatNeverAlarms) {
  Workbench bench = Bench(TwoBands());
  bench.SetThreshold({1, Axis::Y}, Alarm::Fault, 65535);
  EXPECT_THAT(RemarksOn(bench),
              testing::IsSupersetOf({"Band 1, Y: moved off the rule's proposal.",
                                     "Band 1, Y: a threshold of the largest code, 65,535, never "
                                     "alarms."}));
}

TEST_F(Evidence, OfThePresentThresholdsSaysThatTheyAre) {
  Workbench bench = Bench(TwoBands());
  bench.UsePresent();
  EXPECT_EQ(EvidenceOf(bench, origin).sections[1].facts[0].value, "those present");
  for (const std::string& remark : RemarksOn(bench)) EXPECT_THAT(remark, Not(HasSubstr("moved")));
}

TEST_F(Evidence, AsTextHasEveryCellInItsColumn) {
  const report::Report report{
      .title = "T",
      .line = "L",
      .sections = {
          {.heading = "\u03c3",
           .tables = {{.columns = {{.head = "Name"}, {.head = "V", .unit = "g", .isNumber = true}},
                       .rows = {{"a\u00b2", "10"}, {"long name", "7"}, {"short"}}}}}}};
  EXPECT_EQ(EvidenceText(report),
            "T\nL\n\n\u03c3\n-\nName       V, g\na\u00b2           10\nlong name     7\nshort\n\n");
}

TEST_F(Evidence, AsCsvIsReadBackWhateverTheTextsHold) {
  const std::string csv = EvidenceCsv(EvidenceOf(Bench(TwoBands()), origin));
  EXPECT_THAT(csv, HasSubstr("\r\nknown good,,70,all 70,"));
  EXPECT_THAT(csv, HasSubstr(",\"Pump, \"\"3\"\", drive end\"\r\n"));
  EXPECT_THAT(csv, Not(HasSubstr("\n\n")));
  EXPECT_EQ(std::ranges::count(csv, '\n'), std::ranges::count(csv, '\r'));
}

TEST_F(Evidence, WithoutRecordsSaysSo) {
  const report::Report report = EvidenceOf({}, {});
  EXPECT_EQ(report.line, "Option 0, 0 records known to be good, 0 known to be bad");
  EXPECT_EQ(report.sections[3].facts[0].value, "none of 0");
  EXPECT_THAT(EvidenceText(report), Not(IsEmpty()));
}

TEST(BaselineTexts, TellCountsAndBandsAsAReaderWants) {
  EXPECT_EQ(CountText({5, 132}), "5 of 132, 3.8 % (1.2 to 8.6 %)");
  EXPECT_EQ(HertzRangeText({.lowBin = 3, .highBin = 7}, 0), "587 to 1,370");
  EXPECT_EQ(HertzRangeText({.lowBin = 3, .highBin = 7}, 3), "1.1 to 2.7");
  EXPECT_TRUE(ReachesOffset({.lowBin = 1, .highBin = 9}, 1));
  EXPECT_FALSE(ReachesOffset({.lowBin = 2, .highBin = 9}, 1));
}

}  // namespace
}  // namespace kestrel::baseline
