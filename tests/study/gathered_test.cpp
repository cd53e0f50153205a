// Records of an archive in a study: beside the live one, and gathered to averages and waterfalls.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "study/sample_records.h"
#include "study/study.h"

namespace kestrel::study {
namespace {

Sample AtSecond(int second, int option = 0) {
  Sample sample{.tones = {ToneAtBin(40.3, 1)}};
  sample.second = second;
  sample.option = option;
  return sample;
}

int SecondShown(const Study& study) {
  return study.Shown()->record->conditions.recordCount;
}

TEST(Gathered, WhatIsBroughtDoesNotBecomeTheLiveRecord) {
  Study study = StudyOf({}, {AtSecond(9)});
  const RecordId id = study.Bring(RecordOf(AtSecond(3)));
  EXPECT_EQ(SecondShown(study), 9);
  EXPECT_EQ(study.Live()->conditions.recordCount, 9);
  EXPECT_EQ(study.Rows().Rows(), 1U);
  study.Select({id});
  EXPECT_EQ(SecondShown(study), 3);
}

TEST(Gathered, TheSameRecordIsBroughtOnce) {
  Study study = StudyOf({}, {AtSecond(9)});
  const RecordId id = study.Bring(RecordOf(AtSecond(3)));
  EXPECT_EQ(study.Bring(RecordOf(AtSecond(3))), id);
  EXPECT_EQ(study.Bring(RecordOf(AtSecond(9))), 1);
  EXPECT_EQ(study.Records().Entries().size(), 2U);
}

TEST(Gathered, TheLiveRecordsAlarmsReachItWhenOthersWereBroughtAfterIt) {
  Study study = StudyOf({}, {AtSecond(9)});
  const RecordId id = study.Bring(RecordOf(AtSecond(3)));
  study.Take(Changed(AtSecond(9), [](Record& record) { record.alarms.axes[0].status = 5; }));
  EXPECT_EQ(study.Records().Find(1)->alarms.axes[0].status, 5);
  EXPECT_EQ(study.Records().Find(id)->alarms.axes[0].status, 0);
}

TEST(Gathered, AveragesAndRowsAreOfTheGatheredRecordsAlone) {
  Study study = StudyOf({}, {AtSecond(8), AtSecond(9)});
  const std::vector<RecordId> ids{study.Bring(RecordOf(AtSecond(5))),
                                  study.Bring(RecordOf(AtSecond(3))),
                                  study.Bring(RecordOf(AtSecond(4)))};
  const int version = study.RowsVersion();
  EXPECT_EQ(study.Gather(ids), "");
  EXPECT_EQ(SecondShown(study), 5) << "the newest";
  ASSERT_EQ(study.Rows().Rows(), 3U);
  EXPECT_LT(study.Rows().TimeOf(0), study.Rows().TimeOf(1));
  EXPECT_NE(study.RowsVersion(), version);
  EXPECT_EQ(study.Accumulation().Of(Extra::LinearAverage, Axis::X)->captures, 3);
  study.Take(RecordOf(AtSecond(10)));
  EXPECT_EQ(study.Rows().Rows(), 3U) << "captures that come go elsewhere";
  EXPECT_EQ(study.Accumulation().Of(Extra::LinearAverage, Axis::X)->captures, 3);
  study.Select({});
  EXPECT_EQ(study.Rows().Rows(), 3U) << "those of the session";
  EXPECT_EQ(study.Accumulation().Of(Extra::MaximumHold, Axis::X)->captures,
            study.Accumulation().Of(Extra::LinearAverage, Axis::X)->captures);
  EXPECT_FALSE(study.IsGathered());
}

TEST(Gathered, WhatDoesNotFitTheNewestIsLeftOutAndSaid) {
  Study study = StudyOf({}, {});
  const std::string why =
      study.Gather({study.Bring(RecordOf(AtSecond(3, 2))), study.Bring(RecordOf(AtSecond(4))),
                    study.Bring(RecordOf(AtSecond(5)))});
  EXPECT_EQ(why, "other sample-rate option: 2");
  EXPECT_EQ(study.Accumulation().Of(Extra::LinearAverage, Axis::X)->captures, 2);
}

TEST(Gathered, AnotherMeaningOfMagnitudesMeasuresTheGatheredAgain) {
  Study study = StudyOf({}, {});
  study.Gather({study.Bring(RecordOf(AtSecond(3))), study.Bring(RecordOf(AtSecond(4)))});
  const double before = study.Accumulation().Of(Extra::LinearAverage, Axis::X)->peakG[40];
  StudyChoice choice = study.Choice();
  choice.meaning = analysis::MagnitudeMeaning::Rms;
  study.Choose(choice);
  const auto* average = study.Accumulation().Of(Extra::LinearAverage, Axis::X);
  ASSERT_NE(average, nullptr);
  EXPECT_EQ(average->captures, 2);
  EXPECT_NE(average->peakG[40], before);
}

TEST(Gathered, NothingThereIsNothingGathered) {
  Study study = StudyOf({}, {AtSecond(9)});
  EXPECT_EQ(study.Gather({77}), "");
  EXPECT_FALSE(study.IsGathered());
  EXPECT_EQ(SecondShown(study), 9);
}

TEST(Gathered, TheNewestIsShownInWhateverOrderTheyAreAskedFor) {
  Study study(SampleClock);
  const RecordId old = study.Bring(RecordOf(AtSecond(1)));
  const RecordId newest = study.Bring(RecordOf(AtSecond(9)));
  const RecordId middle = study.Bring(RecordOf(AtSecond(5)));
  for (const std::vector<RecordId>& ids :
       {std::vector{old, newest, middle}, {newest, middle, old}, {middle, old, newest}}) {
    EXPECT_EQ(study.Gather(ids), "");
    EXPECT_EQ(SecondShown(study), 9);
    EXPECT_EQ(study.Rows().TimeOf(0), SampleTime(1)) << "the oldest row first";
    EXPECT_EQ(study.Rows().TimeOf(2), SampleTime(9));
  }
}

TEST(Gathered, ARecordWithoutASpectrumIsLeftOutOfAverages) {
  Study study(SampleClock);
  const RecordId first = study.Bring(Changed(AtSecond(1), [](Record& record) {
    record.Of(Axis::Z).data(40) = std::numeric_limits<double>::infinity();
  }));
  const RecordId second = study.Bring(RecordOf(AtSecond(2)));
  EXPECT_EQ(study.Gather({first, second}), "no spectrum");
  EXPECT_EQ(study.Accumulation().Of(Extra::MaximumHold, Axis::X)->captures, 1);
}

}  // namespace
}  // namespace kestrel::study
