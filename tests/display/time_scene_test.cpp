// The scene of a time record, and the samples it shows.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/time_velocity.h"
#include "display/scene.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const Sample kTime{.tones = {ToneAtBin(20, 1)}, .kind = RecordKind::Time};
const StudyChoice kOverTime{.view = View::Time};

TEST(TimeScene, HasTheSamplesOfTheAxesOverMilliseconds) {
  for (int option = 0; option < 4; ++option) {
    Sample sample = kTime;
    sample.option = option;
    sample.tones = {ToneAtBin(20, 1, option)};
    const PlotScene scene = SceneOf(StudyOf(kOverTime, {sample}));
    EXPECT_EQ(scene.across.title, "Time, ms");
    EXPECT_EQ(scene.across.factor, 1000);
    EXPECT_DOUBLE_EQ(scene.across.whole.high, 512 / SampleFrequency(option));
    ASSERT_EQ(scene.panes.size(), 1U);
    EXPECT_EQ(scene.panes[0].title, "Acceleration, g");
    ASSERT_EQ(scene.panes[0].traces.size(), 3U);
    const auto& y = scene.panes[0].traces[1].y;
    ASSERT_EQ(y.size(), 512U);
    EXPECT_NEAR(*std::max_element(y.begin(), y.end()), 0.5, 0.01);
    EXPECT_DOUBLE_EQ(scene.panes[0].traces[0].x[10], 10 / SampleFrequency(option));
  }
}

TEST(TimeScene, StackedPanesHoldAnAxisEach) {
  StudyChoice choice = kOverTime;
  choice.stacked = true;
  choice.shown = {true, false, true};
  const PlotScene scene = SceneOf(StudyOf(choice, {kTime}));
  ASSERT_EQ(scene.panes.size(), 2U);
  EXPECT_EQ(scene.panes[1].traces.at(0).name, "Z");
}

TEST(TimeScene, VelocitySaysFromWhere) {
  StudyChoice choice = kOverTime;
  choice.timeQuantity = TimeQuantity::Velocity;
  const Study study = StudyOf(choice, {kTime});
  const PlotScene scene = SceneOf(study);
  EXPECT_EQ(scene.panes.at(0).title, "Velocity from 979 Hz, mm/s");
  EXPECT_EQ(scene.panes.at(0).unit, "mm/s");
  const auto& y = scene.panes[0].traces.at(0).y;
  const double wanted = analysis::kVelocityOfG / (20 * BinWidth(0));
  // The ends feel that the record begins and stops.
  EXPECT_NEAR(*std::max_element(y.begin() + 128, y.end() - 128), wanted, 0.02 * wanted);
}

TEST(TimeScene, VelocityFromTooLowIsRefusedWithTheOptionThatWouldDo) {
  StudyChoice choice = kOverTime;
  choice.timeQuantity = TimeQuantity::Velocity;
  choice.timeFromHz = 10;
  const Study study = StudyOf(choice, {kTime});
  ASSERT_TRUE(study.Refused());
  EXPECT_EQ(study.Refused()->cureOption, 3);
  EXPECT_TRUE(SceneOf(study).panes.empty());
  EXPECT_EQ(SceneOf(study).head, "Time record");
  Sample slow = kTime;
  slow.option = 3;
  EXPECT_FALSE(StudyOf(choice, {slow}).Refused());
}

TEST(TimeScene, ASpectrumHasNoSamples) {
  const Study study = StudyOf(kOverTime, {{}});
  ASSERT_TRUE(study.Refused());
  EXPECT_EQ(study.Refused()->title, "A spectrum has lost its time");
  EXPECT_EQ(study.Refused()->cure, "Capture in the mode Manual Time");
  EXPECT_TRUE(SceneOf(study).panes.empty());
}

Sample TimeAt(int second, int option = 0) {
  Sample sample = kTime;
  sample.second = second;
  sample.option = option;
  sample.noiseDensityG = 1e-4;
  return sample;
}

TEST(TimeScene, TheReferenceAndAFrozenCopyStandBesideTheLiveTraces) {
  StudyChoice choice = kOverTime;
  choice.shown = {true, false, false};
  Study study = StudyOf(choice, {TimeAt(1)});
  study.TakeReference();
  study.Freeze();
  study.Take(RecordOf(TimeAt(2)));
  const PlotPane pane = SceneOf(study).panes.at(0);
  ASSERT_EQ(pane.traces.size(), 3U);
  EXPECT_EQ(pane.traces[1].name, "Frozen X");
  EXPECT_EQ(pane.traces[1].style, TraceStyle::Held);
  EXPECT_EQ(pane.traces[1].ink, PlotInk::X);
  EXPECT_EQ(pane.traces[2].name, "Reference X");
  EXPECT_EQ(pane.traces[2].style, TraceStyle::Reference);
  EXPECT_EQ(pane.traces[2].ink, PlotInk::Other);
  EXPECT_EQ(pane.traces[1].y, pane.traces[2].y);
  EXPECT_NE(pane.traces[1].y, pane.traces[0].y) << "the samples of before";
  EXPECT_EQ(pane.traces[1].x, pane.traces[0].x);
}

TEST(TimeScene, WhatStandsBesideIsInTheSameQuantity) {
  StudyChoice choice = kOverTime;
  choice.timeQuantity = TimeQuantity::Velocity;
  Study study = StudyOf(choice, {TimeAt(1)});
  study.TakeReference();
  const PlotPane pane = SceneOf(study).panes.at(0);
  ASSERT_EQ(pane.traces.size(), 6U);
  EXPECT_EQ(pane.traces[1].name, "Reference X");
  EXPECT_EQ(pane.traces[1].y, pane.traces[0].y);
}

TEST(TimeScene, AReferenceWithoutSamplesIsSaidOnce) {
  Study study = StudyOf(kOverTime, {{}});
  study.TakeReference();
  study.Take(RecordOf(TimeAt(2)));
  const PlotScene scene = SceneOf(study);
  EXPECT_EQ(scene.panes.at(0).traces.size(), 3U);
  EXPECT_EQ(
      scene.note,
      "Reference is not drawn. The sensor delivered magnitudes; samples cannot be determined from "
      "them. Capture in the mode Manual Time.");
}

TEST(TimeScene, UpToFiveOtherRecordsAreTracesOfTheFocusAndMoreACrowd) {
  std::vector<Sample> samples;
  for (int second = 1; second <= 7; ++second) samples.push_back(TimeAt(second));
  samples.push_back(TimeAt(8, 1));
  Study study = StudyOf(kOverTime, samples);
  study.Select({1, 2, 8});
  PlotPane pane = SceneOf(study).panes.at(0);
  ASSERT_EQ(pane.traces.size(), 5U);
  EXPECT_EQ(pane.traces[1].name, "at 2 s X");
  EXPECT_EQ(pane.traces[1].style, TraceStyle::Reference);
  EXPECT_DOUBLE_EQ(pane.traces[2].x[10], 10 / SampleFrequency(1)) << "by its own rate";
  EXPECT_FALSE(pane.crowd);
  study.Select({1, 2, 3, 4, 5, 6, 7, 8});
  pane = SceneOf(study).panes.at(0);
  EXPECT_EQ(pane.traces.size(), 3U);
  ASSERT_TRUE(pane.crowd);
  EXPECT_EQ(pane.crowd->y.size(), 6U);
  EXPECT_EQ(pane.crowd->ink, PlotInk::X);
  EXPECT_EQ(pane.crowd->name, "6 records, least to largest, median; 1 of other rates left out");
}

TEST(TimeScene, SamplesAreScaledByTheRecordsOwnRange) {
  const Record wrong = Rescaled(TakenOf(kTime), 0);
  const auto told = SamplesOf(wrong, Axis::X);
  ASSERT_TRUE(told);
  EXPECT_NEAR(*std::max_element(told->values.begin(), told->values.end()), 1, 0.01);
}

TEST(TimeScene, WhatIsNoSampleIsRefused) {
  Record record = TakenOf(kTime);
  record.settings.range = 4;
  EXPECT_EQ(SamplesOf(record, Axis::X).Why().reason, "Its range is not one of the sensor's.");
  record = TakenOf(kTime);
  record.settings.option = 4;
  EXPECT_EQ(SamplesOf(record, Axis::X).Why().reason,
            "Its sample-rate option is not one of 0 to 3.");
  record = TakenOf(kTime);
  record.Of(Axis::Y).data(511) = std::numeric_limits<double>::infinity();
  EXPECT_EQ(SamplesOf(record, Axis::Y).Why().reason, "It holds values that are not numbers.");
  EXPECT_TRUE(SamplesOf(record, Axis::X));
}

}  // namespace
}  // namespace kestrel::study
