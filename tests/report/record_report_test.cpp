// The report of one record: what it tells, in the texts of the analyser's tables, and what it
// refuses. SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numbers>
#include <set>

#include "display/tables.h"
#include "numeric/number_texts.h"
#include "record/record_line.h"
#include "report/kept_records.h"
#include "report/report_of.h"

namespace kestrel::report {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::vector<std::pair<int, int>> kLines{{41, 600}, {42, 1200}, {43, 600},
                                              {83, 150}, {84, 300},  {85, 150}};

const Section& SectionOf(const Report& report, const std::string& heading) {
  for (const Section& section : report.sections) {
    if (section.heading == heading) return section;
  }
  throw std::out_of_range("no section " + heading);
}

bool HasSection(const Report& report, const std::string& heading) {
  return std::ranges::any_of(report.sections,
                             [&](const Section& section) { return section.heading == heading; });
}

std::string FactOf(const Section& section, const std::string& name) {
  for (const Fact& fact : section.facts) {
    if (fact.name == name) return fact.value;
  }
  return "";
}

TEST(RecordReport, SaysWhatWhereWhenAndWithWhichSettings) {
  archive::KeptRecord kept = KeptSpectrum(6, kLines);
  kept.remarks.rpm = 1480;
  kept.remarks.tags = {"new bearing", "reference"};
  const Report report = ReportOf(kept);
  EXPECT_EQ(report.title, "Pump 1, Drive end");
  EXPECT_EQ(report.line, "Spectrum, taken 2025-11-21 18:33:26 UTC");
  EXPECT_EQ(report.time, kept.record.time);
  const Section& what = SectionOf(report, "What was measured");
  EXPECT_EQ(FactOf(what, "Machine"), "Pump 1");
  EXPECT_EQ(FactOf(what, "Orientation"), "X radial, Z axial");
  EXPECT_EQ(FactOf(what, "Shaft speed"), "1480 rpm");
  EXPECT_EQ(FactOf(what, "Tags"), "new bearing and reference");
  const Section& how = SectionOf(report, "How it was measured");
  EXPECT_EQ(FactOf(how, "Signal range"), "0 to 20 g");
  EXPECT_EQ(FactOf(how, "FFT window"), "Hanning");
  EXPECT_EQ(FactOf(how, "Averages"), "8");
  EXPECT_THAT(FactOf(how, "Resolution"), HasSubstr(StepText(kept.record)));
  EXPECT_EQ(FactOf(how, "Archive number"), "7");
}

TEST(RecordReport, WhatNobodyNotedIsSaidToBeMissing) {
  archive::KeptRecord kept = KeptSpectrum(0, kLines);
  kept.remarks = {};
  kept.id = 0;
  const Report report = ReportOf(kept);
  EXPECT_EQ(report.title, "Vibration record");
  EXPECT_EQ(FactOf(SectionOf(report, "What was measured"), "Machine"), "not noted");
  EXPECT_EQ(FactOf(SectionOf(report, "What was measured"), "Tags"), "");
  EXPECT_EQ(FactOf(SectionOf(report, "How it was measured"), "Archive number"), "");
  EXPECT_FALSE(HasSection(report, "Note"));
}

// The same record in a study, as the analyser shows it.
study::Study Shown(const archive::KeptRecord& kept) {
  study::Study study = study::StudyWithSeconds();
  study.Take(std::make_shared<const Record>(kept.record));
  return study;
}

TEST(RecordReport, PeaksAreTheTextsOfTheAnalysersTable) {
  const archive::KeptRecord kept = KeptSpectrum(0, kLines);
  const study::PeakTable expected = study::PeaksOf(Shown(kept));
  ASSERT_EQ(expected.rows.size(), 6U);
  const Report report = ReportOf(kept);
  const Table& table = SectionOf(report, "Peaks").tables.at(0);
  ASSERT_EQ(table.rows.size(), 6U);
  EXPECT_EQ(table.columns[1].unit, "Hz");
  EXPECT_EQ(table.columns[3].unit, "g peak");
  for (std::size_t i = 0; i < expected.rows.size(); ++i) {
    const study::PeakRow& row = expected.rows[i];
    EXPECT_THAT(table.rows[i], ElementsAre(std::string(1, Letter(row.axis)), row.frequency,
                                           row.frequencyBound, row.value, row.valueBound));
  }
}

TEST(RecordReport, WithASpeedPeaksHaveOrders) {
  archive::KeptRecord kept = KeptSpectrum(0, kLines);
  kept.remarks.rpm = 60'000;
  const Report report = ReportOf(kept);
  const Table& table = SectionOf(report, "Peaks").tables.at(0);
  ASSERT_EQ(table.columns.size(), 6U);
  EXPECT_EQ(table.columns[5].head, "Order");
  EXPECT_THAT(table.rows[0][5], HasSubstr("8.2"));  // 42 bins of 195.7 Hz, at 1,000 turns a second
}

TEST(RecordReport, OfManyPeaksTheLargestAreShownAndTheirNumberIsSaid) {
  ReportChoice choice;
  choice.peaks = 2;
  const Report report = ReportOf(KeptSpectrum(0, kLines), choice);
  EXPECT_EQ(SectionOf(report, "Peaks").tables.at(0).rows.size(), 2U);
  EXPECT_THAT(SectionOf(report, "Peaks").paragraphs, ElementsAre("The 2 largest of 6 peaks."));
}

TEST(RecordReport, LevelsAreTheTextsOfTheAnalysersTable) {
  const archive::KeptRecord kept = KeptSpectrum(0, kLines);
  const study::LevelTable expected = study::LevelsOf(Shown(kept));
  const Report report = ReportOf(kept);
  const Section& levels = SectionOf(report, "Levels");
  ASSERT_EQ(levels.tables.at(0).rows.size(), expected.rows.size());
  EXPECT_EQ(levels.tables[0].caption, expected.summary);
  EXPECT_EQ(levels.tables[0].rows[0][0], expected.rows[0].name);
  EXPECT_EQ(levels.tables[0].rows[0][1], expected.rows[0].values[0]);
  EXPECT_THAT(levels.remarks.at(0), HasSubstr("averages magnitudes, not power"));
}

TEST(RecordReport, ThePlotHasAPaneForEachAxisWithItsLetter) {
  const Report report = ReportOf(KeptSpectrum(0, kLines));
  const Section& section = SectionOf(report, "Spectrum");
  ASSERT_EQ(section.plots.size(), 1U);
  EXPECT_EQ(section.plots[0].name, "spectrum");
  ASSERT_EQ(section.plots[0].scene.panes.size(), 3U);
  for (const PlotPane& pane : section.plots[0].scene.panes) {
    ASSERT_EQ(pane.traces.size(), 1U);
    EXPECT_FALSE(pane.traces[0].isFilled);
    EXPECT_EQ(pane.traces[0].dash, 0);
  }
  EXPECT_EQ(section.plots[0].scene.panes[2].traces[0].letter, "Z");
}

TEST(RecordReport, AxesInOnePaneHaveEachADashOfItsOwn) {
  ReportChoice choice;
  choice.study.stacked = false;
  const Report report = ReportOf(KeptSpectrum(0, kLines), choice);
  const auto& traces = SectionOf(report, "Spectrum").plots.at(0).scene.panes.at(0).traces;
  ASSERT_EQ(traces.size(), 3U);
  std::set<int> dashes;
  std::set<std::string> letters;
  for (const SceneTrace& trace : traces) {
    dashes.insert(trace.dash);
    letters.insert(trace.letter);
  }
  EXPECT_EQ(dashes.size(), 3U);
  EXPECT_EQ(letters, (std::set<std::string>{"X", "Y", "Z"}));
}

TEST(RecordReport, ATimeRecordHasItsSamplesAndItsSpectrum) {
  archive::KeptRecord kept = KeptSpectrum(0, {});
  kept.record.kind = RecordKind::Time;
  kept.record.lsbWeight = LsbWeightOf(2, RecordKind::Time);
  for (const Axis axis : kAxes) {
    for (int i = 0; i < 512; ++i) {
      const double word = std::round(1000 * std::sin(2 * std::numbers::pi * 40 * i / 512));
      kept.record.Of(axis).raw(i) = word;
      kept.record.Of(axis).data(i) = word * kept.record.lsbWeight;
    }
  }
  const Report report = ReportOf(kept);
  const Section& plots = SectionOf(report, "Time record and spectrum");
  ASSERT_EQ(plots.plots.size(), 2U);
  EXPECT_EQ(plots.plots[0].name, "time");
  EXPECT_EQ(plots.plots[1].name, "spectrum");
  EXPECT_THAT(plots.plots[1].caption, HasSubstr("worked out by the program"));
  const Section& levels = SectionOf(report, "Levels");
  ASSERT_EQ(levels.tables.size(), 2U);
  EXPECT_EQ(levels.tables[0].caption, "Of the samples");
  EXPECT_THAT(SectionOf(report, "Alarm state").paragraphs, Contains(HasSubstr("judges spectra")));
  EXPECT_EQ(FactOf(SectionOf(report, "How it was measured"), "FFT window"), "");
}

TEST(RecordReport, AQuantityThatCannotBeToldIsRefusedWithItsCure) {
  ReportChoice choice;
  choice.study.quantity = {.quantity = analysis::Quantity::Density,
                           .amplitude = analysis::Amplitude::Rms};
  archive::KeptRecord kept = KeptSpectrum(0, kLines);
  kept.record.settings.window = 3;  // none of the sensor's
  const Report report = ReportOf(kept, choice);
  const Section& plot = SectionOf(report, "Spectrum");
  study::Study study = Shown(kept);
  study.Choose(choice.study);
  ASSERT_TRUE(study.Refused());
  EXPECT_TRUE(plot.plots.empty());
  EXPECT_THAT(plot.paragraphs, Contains(analysis::AsLine(*study.Refused())));
  EXPECT_FALSE(SectionOf(report, "Peaks").paragraphs.empty());
}

TEST(RecordReport, SeverityIsRefusedWithTheCapturesThatAreMissing) {
  const Report report = ReportOf(KeptSpectrum(0, kLines));
  EXPECT_THAT(SectionOf(report, "Vibration severity").paragraphs.at(0),
              AllOf(HasSubstr("No zone"), HasSubstr("Capture at options 3, 2 and 1")));
}

TEST(RecordReport, AlarmsAreToldByAxisAndBand) {
  archive::KeptRecord kept = KeptSpectrum(0, kLines);
  kept.record.alarms.statusKnown = kept.record.alarms.peaksKnown = true;
  kept.record.alarms.axes[2].status = 1 << 9 | 1 << 4 | 3;  // fault of band 3, warning of band 1
  kept.record.alarms.axes[2].peak = 1200;
  kept.record.alarms.axes[2].peakBin = 42;
  kept.record.alarms.gPerPeakLsb = kept.record.lsbWeight;
  const Report report = ReportOf(kept);
  const Table& table = SectionOf(report, "Alarm state").tables.at(0);
  EXPECT_THAT(table.rows[0], Contains("no alarm").Times(6));
  EXPECT_EQ(table.rows[2][1], "warning");
  EXPECT_EQ(table.rows[2][3], "fault");
  EXPECT_EQ(table.rows[2][7], analysis::SignificantText(1200 * kept.record.lsbWeight));
  kept.record.alarms = {};
  const Report unread = ReportOf(kept);
  EXPECT_THAT(SectionOf(unread, "Alarm state").paragraphs, Contains(HasSubstr("was not read")));
}

TEST(RecordReport, BandsThatAreKnownStandBesideTheAlarms) {
  ReportChoice choice;
  study::SensorBands bands{};
  bands[0][0] = {.lowBin = 30, .highBin = 50, .warning = 900, .fault = 2000};
  choice.bands[0] = bands;
  const Report report = ReportOf(KeptSpectrum(0, kLines), choice);
  const Section& alarms = SectionOf(report, "Alarm state");
  ASSERT_EQ(alarms.tables.size(), 1U);
  EXPECT_EQ(alarms.tables[0].caption, "Alarm bands of axis X");
  EXPECT_THAT(alarms.tables[0].rows[0][3], HasSubstr("Warning"));
}

TEST(RecordReport, WhatMakesTheNumbersDoubtfulStandsAtTheTop) {
  archive::KeptRecord kept = KeptSpectrum(0, kLines);
  kept.record.origin.stopped = true;
  const Report report = ReportOf(kept);
  EXPECT_THAT(SectionOf(report, "What was measured").paragraphs.at(0), HasSubstr("Attention: "));
}

TEST(RecordReport, ARecordOfBlankWordsHasNoPeaksAndSaysWhy) {
  const Report report = ReportOf(KeptSpectrum(0, {}));
  EXPECT_FALSE(HasSection(report, "Peaks"));
  EXPECT_FALSE(HasSection(report, "Levels"));
  EXPECT_THAT(SectionOf(report, "What was measured").paragraphs, Contains(HasSubstr("Attention")));
}

TEST(RecordReport, NotesKeepTheirLettersAndLoseTheirControlCharacters) {
  archive::KeptRecord kept = KeptSpectrum(0, kLines);
  kept.remarks.note = "First \U0001D6E5 line\r\n\n\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D\ttab\x01\nlast";
  kept.remarks.machine = "Pump\n'; DROP TABLE record; --";
  const Report report = ReportOf(kept);
  EXPECT_THAT(SectionOf(report, "Note").paragraphs,
              ElementsAre("First \U0001D6E5 line", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D tab", "last"));
  EXPECT_EQ(FactOf(SectionOf(report, "What was measured"), "Machine"),
            "Pump '; DROP TABLE record; --");
  EXPECT_THAT(report.title, Not(HasSubstr("\n")));
}

}  // namespace
}  // namespace kestrel::report
