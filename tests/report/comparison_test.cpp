// Comparisons: differences in dB where they may be told, the reason where not.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numbers>

#include "numeric/runtime_error.h"
#include "record/frequency.h"
#include "report/kept_records.h"
#include "report/report_of.h"

namespace kestrel::report {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Records = std::vector<archive::KeptRecord>;

const Section& SectionOf(const Report& report, const std::string& heading) {
  for (const Section& section : report.sections) {
    if (section.heading == heading) return section;
  }
  throw std::out_of_range("no section " + heading);
}

std::vector<std::pair<int, int>> LineAt(int bin, int word) {
  return {{bin - 1, word / 2}, {bin, word}, {bin + 1, word / 2}};
}

TEST(Comparison, TwiceTheAmplitudeIsSixDecibels) {
  const Report report =
      ComparisonOf(Records{KeptSpectrum(0, LineAt(42, 1200)), KeptSpectrum(60, LineAt(42, 2400))});
  const Table& levels = SectionOf(report, "Levels").tables.at(0);
  ASSERT_EQ(levels.columns.size(), 4U);
  EXPECT_EQ(levels.columns[3].head, "B over A");
  EXPECT_EQ(levels.columns[3].unit, "dB");
  EXPECT_EQ(levels.rows[0][3], "+6.0");
  const Table& peaks = SectionOf(report, "Peaks").tables.at(0);
  ASSERT_EQ(peaks.rows.size(), 1U);
  EXPECT_THAT(peaks.rows[0][3], StartsWith("+6.0"));
  EXPECT_THAT(peaks.rows[0][3], HasSubstr("±"));
}

TEST(Comparison, APeakThatOneRecordLacksHasNoDifference) {
  auto both = LineAt(42, 1200);
  for (const auto& line : LineAt(100, 900)) both.push_back(line);
  const Report report =
      ComparisonOf(Records{KeptSpectrum(0, LineAt(42, 1200)), KeptSpectrum(60, both)});
  const Table& peaks = SectionOf(report, "Peaks").tables.at(0);
  ASSERT_EQ(peaks.rows.size(), 2U);
  EXPECT_EQ(peaks.rows[1][1], "–");
  EXPECT_NE(peaks.rows[1][2], "–");
  EXPECT_EQ(peaks.rows[1][3], "");
}

TEST(Comparison, PeaksFurtherApartThanABinAreTwo) {
  const Report report =
      ComparisonOf(Records{KeptSpectrum(0, LineAt(42, 1200)), KeptSpectrum(60, LineAt(44, 1200))});
  EXPECT_EQ(SectionOf(report, "Peaks").tables.at(0).rows.size(), 2U);
}

TEST(Comparison, RecordsOfOtherOptionsAreShownWithoutDifferenceAndSayWhy) {
  const Report report =
      ComparisonOf(Records{KeptSpectrum(0, LineAt(42, 1200)), KeptSpectrum(60, LineAt(42, 1200), 2),
                           KeptSpectrum(120, LineAt(42, 600))});
  const Section& spectra = SectionOf(report, "Spectra");
  ASSERT_EQ(spectra.paragraphs.size(), 1U);
  EXPECT_THAT(spectra.paragraphs[0], StartsWith("B is shown beside A"));
  EXPECT_THAT(spectra.paragraphs[0], HasSubstr("other sample-rate option: 2"));
  const Table& levels = SectionOf(report, "Levels").tables.at(0);
  EXPECT_EQ(levels.columns.back().head, "C over A");
  EXPECT_EQ(levels.columns.size(), 5U);
  EXPECT_EQ(levels.rows[0].back(), "−6.0");
}

TEST(Comparison, EveryRecordHasItsLetterAndDashInEveryPane) {
  Records records;
  for (int i = 0; i < static_cast<int>(kMostCompared); ++i) {
    records.push_back(KeptSpectrum(60 * i, LineAt(40 + 5 * i, 1200)));
  }
  const Report report = ComparisonOf(records);
  const PlotScene& scene = SectionOf(report, "Spectra").plots.at(0).scene;
  ASSERT_EQ(scene.panes.size(), 3U);
  for (const PlotPane& pane : scene.panes) {
    ASSERT_EQ(pane.traces.size(), kMostCompared);
    for (std::size_t i = 0; i < kMostCompared; ++i) {
      EXPECT_EQ(pane.traces[i].dash, static_cast<int>(i));
      EXPECT_EQ(pane.traces[i].letter, std::string(1, static_cast<char>('A' + i)));
    }
  }
}

TEST(Comparison, TooManyTooFewAndEmptyRecordsAreRefused) {
  const archive::KeptRecord kept = KeptSpectrum(0, LineAt(42, 1200));
  EXPECT_THROW((void)ComparisonOf(Records{kept}), RuntimeError);
  EXPECT_THROW((void)ComparisonOf(Records(kMostCompared + 1, kept)), RuntimeError);
  try {
    (void)ComparisonOf(Records{kept, KeptSpectrum(1, {})});
    FAIL();
  } catch (const RuntimeError& error) {
    EXPECT_THAT(error.what(), HasSubstr("Record B"));
  }
}

TEST(Comparison, SeverityIsOfOnePlaceAlone) {
  Records records;
  for (const int option : {3, 2, 1}) {
    const int bin = static_cast<int>(std::lround(50 / BinWidth(option)));
    records.push_back(
        KeptSpectrum(100 * (4 - option), bin > 3 ? LineAt(bin, 232) : LineAt(100, 4), option));
  }
  const Report report = ComparisonOf(records);
  EXPECT_THAT(SectionOf(report, "Vibration severity").paragraphs.at(0),
              HasSubstr("An estimate, not a certificate"));
  EXPECT_EQ(SectionOf(report, "Vibration severity").tables.at(0).rows.size(), 3U);
  records[1].remarks.machine = "Fan";
  const Report ofTwo = ComparisonOf(records);
  EXPECT_THAT(SectionOf(ofTwo, "Vibration severity").paragraphs.at(0),
              HasSubstr("different places"));
  EXPECT_THAT(SectionOf(ofTwo, "Vibration severity").tables, IsEmpty());
}

TEST(Comparison, NotesAndAlarmsSayWhoseTheyAre) {
  Records records{KeptSpectrum(0, LineAt(42, 1200)), KeptSpectrum(60, LineAt(42, 2400))};
  records[1].remarks.note = "Greased\nand turned";
  records[1].record.alarms.statusKnown = true;
  records[1].record.alarms.axes[2].status = 1 << 9;
  const Report report = ComparisonOf(records);
  EXPECT_THAT(SectionOf(report, "Notes").paragraphs, ElementsAre("B: Greased", "and turned"));
  const Table& alarms = SectionOf(report, "Alarm state").tables.at(0);
  EXPECT_THAT(alarms.rows[0], ElementsAre("A", "not read", "not read", "not read"));
  EXPECT_THAT(alarms.rows[1], ElementsAre("B", "none", "none", "fault in band 3"));
}

}  // namespace
}  // namespace kestrel::report
