// What records say about alarms, and which alarms stand after them.
// SPDX-License-Identifier: MIT
#include "monitor/findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "alarms/alarm_words.h"
#include "alarms/band_table.h"
#include "monitor/alarm_book.h"
#include "monitor/incidents.h"
#include "monitor/own_records.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::chrono::system_clock::time_point kTime{std::chrono::seconds{1700000000}};

Record SpectrumWith(double level, int bin = 20) {
  Record record;
  record.kind = RecordKind::Spectrum;
  record.axes[1].raw(bin) = level;
  return record;
}

// Of Y at option 0, bins 10 to 30: warns above 100, alarms above 200.
BandTable Bands() {
  BandTable bands;
  bands(kFLowField, 2, 0) = 10;
  bands(kFHighField, 2, 0) = 30;
  bands(Alarm1Field(Axis::Y), 2, 0) = 100;
  bands(Alarm2Field(Axis::Y), 2, 0) = 200;
  return bands;
}

// Which of warning and fault stand.
std::string Standing(const Findings& findings) {
  std::string text;
  for (const Finding& finding : findings) {
    if (finding.stands) text += finding.key.grade == AlarmGrade::Fault ? 'f' : 'w';
  }
  return text;
}

TEST(ThresholdJudges, OfOneOfOneSayEachRecordByItself) {
  ThresholdJudge judge({.m = 1, .n = 1, .hysteresisDb = 6});
  std::string all;
  for (const double level : {0.0, 100.0, 101.0, 201.0, 99.0}) {
    all += Standing(judge.Judge(SpectrumWith(level), Bands())) + "|";
  }
  EXPECT_EQ(all, "||w|wf||") << "at the limit is not above it";
}

TEST(ThresholdJudges, LookAtTheBandAloneAndTellItsLevel) {
  ThresholdJudge judge({.m = 1, .n = 1});
  for (const int bin : {9, 31})
    EXPECT_EQ(Standing(judge.Judge(SpectrumWith(500, bin), Bands())), "");
  for (const int bin : {10, 30}) {
    EXPECT_EQ(Standing(judge.Judge(SpectrumWith(500, bin), Bands())), "wf") << bin;
  }
  const Findings findings = judge.Judge(SpectrumWith(150), Bands());
  ASSERT_THAT(findings, SizeIs(2));
  EXPECT_GT(*findings[0].level, 0);
  EXPECT_NEAR(*findings[0].limit / *findings[0].level, 100.0 / 150, 1e-9);
  EXPECT_NEAR(*findings[1].limit / *findings[1].level, 200.0 / 150, 1e-9);
  EXPECT_EQ(findings[0].key, (AlarmKey{AlarmKind::Threshold, AlarmGrade::Warning, Axis::Y, 0, 2}));
}

TEST(ThresholdJudges, JudgeNeitherTimeRecordsNorBandsThatAreNone) {
  ThresholdJudge judge({.m = 1, .n = 1});
  Record time = SpectrumWith(500);
  time.kind = RecordKind::Time;
  EXPECT_THAT(judge.Judge(time, Bands()), IsEmpty());
  EXPECT_THAT(judge.Judge(SpectrumWith(500), BandTable{}), IsEmpty());
  BandTable turned = Bands();
  turned(kFLowField, 2, 0) = 31;
  EXPECT_THAT(judge.Judge(SpectrumWith(500), turned), IsEmpty());
  BandTable beyond = Bands();
  beyond(kFHighField, 2, 0) = 256;
  EXPECT_THAT(judge.Judge(SpectrumWith(500), beyond), IsEmpty());
  BandTable last = Bands();
  last(kFHighField, 2, 0) = 255;
  EXPECT_EQ(Standing(judge.Judge(SpectrumWith(500, 255), last)), "wf");
  Record other = SpectrumWith(500);
  other.settings.option = 1;
  EXPECT_THAT(judge.Judge(other, Bands()), IsEmpty()) << "the bands are of option 0";
}

TEST(ThresholdJudges, JudgeABandFromTheFirstLineToTheLast) {
  ThresholdJudge judge({.m = 1, .n = 1});
  BandTable bands = Bands();
  bands(kFLowField, 2, 0) = 0;
  bands(kFHighField, 2, 0) = 255;
  EXPECT_EQ(Standing(judge.Judge(SpectrumWith(101, 0), bands)), "w");
  EXPECT_EQ(Standing(judge.Judge(SpectrumWith(101, 255), bands)), "w");
  bands(kFHighField, 2, 0) = 256;
  EXPECT_EQ(Standing(judge.Judge(SpectrumWith(101), bands)), "");
  bands(kFLowField, 2, 0) = bands(kFHighField, 2, 0) = 20;
  EXPECT_EQ(Standing(judge.Judge(SpectrumWith(101), bands)), "w") << "one line wide";
}

TEST(ThresholdJudges, OfTwoOfThreeBeginAndEndWithTheSecond) {
  ThresholdJudge judge({.m = 2, .n = 3, .hysteresisDb = 6});  // released below 50.1
  std::string all;
  for (const double level : {101.0, 60.0, 101.0, 60.0, 60.0, 40.0, 60.0, 40.0, 60.0}) {
    all += Standing(judge.Judge(SpectrumWith(level), Bands())) + "|";
  }
  EXPECT_EQ(all, "||w|w|w|w|w|||");
}

TEST(ThresholdJudges, GoOnAfterARestartWithWhatTheyRemember) {
  ThresholdJudge judge({.m = 2, .n = 3, .hysteresisDb = 6});
  for (int i = 0; i < 2; ++i) (void)judge.Judge(SpectrumWith(150), Bands());
  ThresholdJudge next({.m = 2, .n = 3, .hysteresisDb = 6});
  next.Restore(judge.Text());
  EXPECT_EQ(next.Text(), judge.Text());
  EXPECT_EQ(Standing(next.Judge(SpectrumWith(60), Bands())), "w") << "it stood";
  next.Restart();
  EXPECT_EQ(next.Text(), "");
  EXPECT_EQ(Standing(next.Judge(SpectrumWith(150), Bands())), "") << "one of two";
}

TEST(ThresholdJudges, LeaveDamagedLinesOut) {
  ThresholdJudge judge({});
  judge.Restore("\nnonsense 1 aab\n1.0.Y.0.2 1 axb\n1.0.Y.0.9 1 aa\n1.0.Y.0.2 1 aab\n1.0.X.0.1\n");
  EXPECT_EQ(judge.Text(), "1.0.Y.0.2 1 aab\n");
}

TEST(AlarmKeys, AreTextsAndBack) {
  for (const AlarmKind kind : {AlarmKind::Band, AlarmKind::Threshold, AlarmKind::Severity}) {
    for (const AlarmGrade grade : {AlarmGrade::Warning, AlarmGrade::Fault}) {
      const AlarmKey key{kind, grade, Axis::Z, 3, 6};
      EXPECT_EQ(KeyFrom(KeyText(key)), key) << KeyText(key);
    }
  }
  for (const char* text :
       {"", "0.0.X.0", "3.0.X.0.0", "0.2.X.0.0", "0.0.W.0.0", "0.0.X.4.0", "0.0.X.0.7"}) {
    EXPECT_EQ(KeyFrom(text), std::nullopt) << text;
  }
  EXPECT_EQ(NameOf({AlarmKind::Band, AlarmGrade::Fault, Axis::Z, 0, 3}),
            "Fault 3, Z, option 0, of the sensor");
  EXPECT_EQ(NameOf({AlarmKind::Threshold, AlarmGrade::Warning, Axis::X, 2, 1}),
            "Warning 1, X, option 2, of the plan's bands");
  EXPECT_EQ(NameOf({AlarmKind::Severity, AlarmGrade::Warning, Axis::Y, 0, 0}),
            "Warning, Y, severity");
}

TEST(SensorsFindings, AreOfSpectraWhoseAlarmsWereRead) {
  Record record = SpectrumWith(1);
  EXPECT_THAT(FoundBySensor(record), IsEmpty()) << "nobody read them";
  record.alarms.statusKnown = true;
  record.settings.option = 2;
  record.alarms.axes[2].status = 1 << FaultBit(3);
  record.alarms.axes[2].peak = 10;
  record.alarms.gPerPeakLsb = 0.5;
  const auto standing = [&] {
    Findings all = FoundBySensor(record);
    EXPECT_THAT(all, SizeIs(36));
    std::erase_if(all, [](const Finding& finding) { return !finding.stands; });
    return all;
  };
  ASSERT_THAT(standing(), SizeIs(1));
  EXPECT_EQ(standing()[0].key, (AlarmKey{AlarmKind::Band, AlarmGrade::Fault, Axis::Z, 2, 3}));
  EXPECT_EQ(standing()[0].level, std::nullopt);
  record.alarms.peaksKnown = true;
  EXPECT_EQ(standing()[0].level, 5.0);
  record.kind = RecordKind::Time;
  EXPECT_THAT(FoundBySensor(record), IsEmpty());
}

TEST(SeveritiesFindings, AreNoneWhereNobodyAsksOrNothingIsCovered) {
  EXPECT_THAT(FoundBySeverity({}, {}), IsEmpty());
  EXPECT_THAT(FoundBySeverity({}, {.severity = analysis::ZoneLimits{}}), IsEmpty());
}

constexpr AlarmKey kThreshold{AlarmKind::Threshold, AlarmGrade::Fault, Axis::Y, 1, 2};
constexpr AlarmKey kSeverity{AlarmKind::Severity, AlarmGrade::Warning, Axis::X, 0, 0};

TEST(AlarmBooks, TellABeginAndAnEndOnceEach) {
  AlarmBook book({"b", "s"});
  const Findings stands{{.key = kThreshold, .stands = true, .level = 1.5, .limit = 1.25}};
  const Findings gone{{.key = kThreshold, .stands = false, .level = 0.5, .limit = 1.25}};
  EXPECT_THAT(book.Take(gone, kTime, {}), IsEmpty());
  const auto begun = book.Take(stands, kTime, {});
  ASSERT_THAT(begun, SizeIs(1));
  EXPECT_EQ(begun[0].alarm.event, publish::AlarmEvent::Begin);
  EXPECT_EQ(begun[0].alarm.option, 1);
  EXPECT_EQ(begun[0].alarm.number, 2);
  EXPECT_EQ(begun[0].entry.text, "Fault 2, Y, option 1, of the plan's bands: 1.50 g, limit 1.25 g");
  EXPECT_EQ(begun[0].entry.ended, std::nullopt);
  EXPECT_THAT(book.Take(stands, kTime + 1s, {}), IsEmpty());
  EXPECT_EQ(book.Standing(), 1);
  EXPECT_THAT(book.Entries(), SizeIs(1));
  const auto ended = book.Take(gone, kTime - 1s, {});
  ASSERT_THAT(ended, SizeIs(1));
  EXPECT_EQ(ended[0].alarm.event, publish::AlarmEvent::End);
  EXPECT_EQ(ended[0].entry.uid, begun[0].entry.uid);
  EXPECT_EQ(ended[0].entry.ended, kTime) << "never before its beginning";
  EXPECT_EQ(book.Standing(), 0);
}

TEST(AlarmBooks, EndWhatNobodyJudgesAnyMore) {
  AlarmBook book({"b", "s"});
  (void)book.Take({{.key = kThreshold, .stands = true}, {.key = kSeverity, .stands = true}}, kTime,
                  {});
  EXPECT_THAT(book.EndWhere([](const AlarmKey&) { return false; }, kTime), IsEmpty());
  const auto ended = book.EndWhere(
      [](const AlarmKey& key) { return key.kind == AlarmKind::Severity; }, kTime + 5s);
  ASSERT_THAT(ended, SizeIs(1));
  EXPECT_EQ(ended[0].alarm.event, publish::AlarmEvent::End);
  EXPECT_EQ(ended[0].alarm.option, std::nullopt);
  EXPECT_EQ(ended[0].alarm.uid, "");
  EXPECT_EQ(ended[0].alarm.level, std::nullopt);
  EXPECT_EQ(ended[0].entry.ended, kTime + 5s);
  EXPECT_EQ(ended[0].entry.text, "Warning, X, severity; no longer judged");
  EXPECT_EQ(book.Standing(), 1);
}

TEST(AlarmBooks, GoOnAfterARestartWithTheEntriesThatLast) {
  AlarmBook book({"b", "s"});
  (void)book.Take({{.key = kThreshold, .stands = true}, {.key = kSeverity, .stands = true}}, kTime,
                  {});
  AlarmBook next({"b", "s"});
  next.Restore("nonsense 12\n" + book.Text(), {book.Entries()[0]});
  EXPECT_EQ(next.Standing(), 1) << "an alarm without its entry is left out";
  next.Restore(book.Text(), book.Entries());
  EXPECT_EQ(next.Text(), book.Text());
  EXPECT_THAT(next.Take({{.key = kSeverity, .stands = true}}, kTime, {}), IsEmpty());
}

TEST(AlarmLines, AreReadAsTheyWereWritten) {
  publish::Alarm alarm{.id = "x-begin",
                       .of = {"b", "s"},
                       .kind = AlarmKind::Threshold,
                       .grade = AlarmGrade::Fault,
                       .axis = Axis::Y,
                       .option = 1,
                       .number = 2,
                       .time = kTime,
                       .uid = "ab",
                       .level = 1.0 / 3,
                       .limit = 0.25,
                       .unit = "g"};
  EXPECT_EQ(AlarmFrom(LineOf(alarm), alarm.of), alarm);
  const publish::Alarm bare{.id = "y-end",
                            .of = {"b", "s"},
                            .event = publish::AlarmEvent::End,
                            .kind = AlarmKind::Severity,
                            .time = kTime};
  EXPECT_EQ(AlarmFrom(LineOf(bare), bare.of), bare);
}

TEST(AlarmLines, ThatAreDamagedAreNone) {
  const std::string good = LineOf({.id = "x", .unit = "g"});
  ASSERT_TRUE(AlarmFrom(good, {}));
  for (std::size_t word = 0; word < 8; ++word) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < word; ++i) at = good.find(' ', at) + 1;
    EXPECT_EQ(AlarmFrom(good.substr(0, at), {}), std::nullopt) << "it ends before word " << word;
  }
  EXPECT_EQ(AlarmFrom("x between 0.0.X.0.0 1 - - - g", {}), std::nullopt);
  EXPECT_EQ(AlarmFrom("x begin 0.0.X.9.0 1 - - - g", {}), std::nullopt);
  EXPECT_EQ(AlarmFrom("x begin 0.0.X.0.0 soon - - - g", {}), std::nullopt);
}

TEST(OwnRecords, MissedCapturesAreThoseBetween) {
  EXPECT_EQ(MissedBetween(kTime, kTime, 10s), 0);
  EXPECT_EQ(MissedBetween(kTime, kTime - 50s, 10s), 0);
  EXPECT_EQ(MissedBetween(kTime, kTime + 10s, 10s), 0);
  EXPECT_EQ(MissedBetween(kTime, kTime + 10s + 1us, 10s), 1);
  EXPECT_EQ(MissedBetween(kTime, kTime + 30s, 10s), 2);
  EXPECT_EQ(MissedBetween(kTime, kTime + 30s, 0s), 0) << "no period";
}

TEST(OwnRecords, AnAlarmIsJudgedWhereAStepHasItsOptionAndItsBands) {
  Plan plan;
  plan.steps = {{.kind = StepKind::Spectrum, .option = 1}};
  AlarmKey band{AlarmKind::Band, AlarmGrade::Warning, Axis::X, 1, 1};
  AlarmKey threshold{AlarmKind::Threshold, AlarmGrade::Warning, Axis::X, 1, 1};
  EXPECT_TRUE(IsJudged(plan, band));
  EXPECT_FALSE(IsJudged(plan, threshold)) << "without bands of its own";
  plan.steps[0].bands = "file";
  EXPECT_TRUE(IsJudged(plan, threshold));
  band.option = threshold.option = 2;
  EXPECT_FALSE(IsJudged(plan, band));
  EXPECT_FALSE(IsJudged(plan, threshold));
  plan.steps[0].kind = StepKind::Wide;
  EXPECT_TRUE(IsJudged(plan, band)) << "all options";
  EXPECT_TRUE(IsJudged(plan, threshold));
  EXPECT_FALSE(IsJudged(plan, kSeverity));
  plan.judging.severity = analysis::ZoneLimits{};
  EXPECT_TRUE(IsJudged(plan, kSeverity));
  plan.steps[0].kind = StepKind::Spectrum;
  EXPECT_FALSE(IsJudged(plan, kSeverity)) << "only wide spectra are";
  plan.steps[0].kind = StepKind::TimeRecord;
  band.option = 1;
  EXPECT_FALSE(IsJudged(plan, band));
}

TEST(OwnRecords, TheSameWordsHaveTheSameNameAndOthersAnother) {
  const Record one = SpectrumWith(5);
  EXPECT_EQ(UidOfWords(one), UidOfWords(SpectrumWith(5)));
  EXPECT_NE(UidOfWords(one), UidOfWords(SpectrumWith(6)));
  EXPECT_NE(UidOfWords(one), UidOfWords(SpectrumWith(5, 21)));
  Record other = one;
  other.settings.recInfo += 1;
  EXPECT_NE(UidOfWords(one), UidOfWords(other));
}

TEST(OwnRecords, TheNameOfWordsIsTheSameInEveryVersion) {
  EXPECT_EQ(archive::TextOf(UidOfWords(SpectrumWith(5))), "63f5e884031eb62ca84e801f1b78342e");
}

TEST(OneLines, HoldNoLineEndsAndNoControlCharacters) {
  EXPECT_EQ(OneLine("one\r\ntwo\nthree"), "one two three");
  EXPECT_EQ(OneLine("a\tb\x7F\x1F"), "a?b??");
  EXPECT_EQ(OneLine("pr\xC3\xBC"
                    "fen"),
            "pr\xC3\xBC"
            "fen");
  EXPECT_EQ(OneLine(std::string(5000, 'x')).size(), 2000U);
}

TEST(IncidentLists, TellEachOnceWithWhatWasMissed) {
  std::vector<archive::JournalEntry> put;
  Incidents incidents({"b", "s"},
                      [&](const archive::JournalEntry& entry) { put.push_back(entry); });
  const Now begin{kTime, 100s};
  incidents.Missed(Incident::SensorAway, 3);
  incidents.End(Incident::SensorAway, begin);
  EXPECT_THAT(put, IsEmpty()) << "none lasts";
  incidents.Begin(Incident::SensorAway, "gone", begin);
  incidents.Begin(Incident::SensorAway, "gone again", begin);
  ASSERT_THAT(put, SizeIs(1));
  EXPECT_EQ(put[0].text, "gone");
  incidents.Missed(Incident::SensorAway, 0);
  incidents.Missed(Incident::SensorAway, 4);
  EXPECT_EQ(put.back().missed, 4);
  EXPECT_EQ(incidents.Open(), 1);
  EXPECT_TRUE(incidents.IsOpen(Incident::SensorAway));
  EXPECT_FALSE(incidents.IsOpen(Incident::DiskFull));
  // The time of day was set back; it lasted 50 s all the same.
  incidents.End(Incident::SensorAway, {kTime - 3600s, 150s});
  EXPECT_EQ(put.back().ended, kTime + 50s);
  incidents.Once(Incident::Late, "late", kTime, kTime + 1s, 2);
  EXPECT_EQ(incidents.AllMissed(), 6);
  EXPECT_EQ(incidents.Open(), 0);
}

TEST(IncidentLists, GoOnWithWhatLastedAndLeaveOtherEntriesAlone) {
  std::vector<archive::JournalEntry> put;
  Incidents incidents({"b", "s"},
                      [&](const archive::JournalEntry& entry) { put.push_back(entry); });
  const std::vector<archive::JournalEntry> open{
      {.kind = WordOf(Incident::DiskFull), .began = kTime},
      {.kind = kAlarmWord, .began = kTime},
      {.kind = WordOf(Incident::BrokerAway), .began = kTime, .ended = kTime}};
  incidents.Restore(open);
  EXPECT_EQ(incidents.Open(), 1);
  ASSERT_TRUE(incidents.IsOpen(Incident::DiskFull));
  incidents.End(Incident::DiskFull, {kTime - 10s, 5s});
  EXPECT_EQ(put.back().ended, kTime) << "not before it began";
}

}  // namespace
}  // namespace kestrel::monitor
