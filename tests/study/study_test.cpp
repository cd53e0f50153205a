// A study over records: what is shown, held, frozen, taken as reference, selected and refused.
// SPDX-License-Identifier: MIT
#include "study/study.h"

#include <gtest/gtest.h>

#include <limits>

#include "study/sample_records.h"

namespace kestrel::study {
namespace {

const Sample kTone{.tones = {ToneAtBin(40.3, 1)}};

Sample AtSecond(int second) {
  Sample sample = kTone;
  sample.second = second;
  return sample;
}

std::vector<Sample> Several(int count) {
  std::vector<Sample> samples;
  for (int i = 1; i <= count; ++i) samples.push_back(AtSecond(i));
  return samples;
}

int SecondShown(const Study& study) {
  return study.Shown()->record->conditions.recordCount;
}

TEST(Study, ShowsNothingBeforeTheFirstRecord) {
  const Study study(SampleClock);
  EXPECT_EQ(study.Shown(), nullptr);
  EXPECT_EQ(study.SpectrumOf(Axis::X), nullptr);
  EXPECT_FALSE(study.Refused());
  EXPECT_FALSE(study.TimeCurveOf(Axis::X));
}

TEST(Study, ARecordThatWasNeverTakenIsNone) {
  Study study(SampleClock);
  study.Take(nullptr);
  study.Take(std::make_shared<const Record>());
  EXPECT_EQ(study.Shown(), nullptr);
  EXPECT_TRUE(study.Records().Entries().empty());
}

TEST(Study, ShowsEachRecordAsItComes) {
  Study study = StudyOf({}, Several(2));
  EXPECT_EQ(SecondShown(study), 2);
  EXPECT_EQ(study.Records().Entries().size(), 2U);
  EXPECT_EQ(study.Rows().Rows(), 2U);
  study.Take(RecordOf(AtSecond(3)));
  EXPECT_EQ(SecondShown(study), 3);
}

TEST(Study, ARecordToldAgainWithItsAlarmsIsNoSecondCapture) {
  Study study = StudyOf({}, Several(2));
  study.Take(Changed(AtSecond(2), [](Record& record) { record.alarms.axes[0].status = 5; }));
  EXPECT_EQ(study.Records().Entries().size(), 2U);
  EXPECT_EQ(study.Rows().Rows(), 2U);
  EXPECT_EQ(study.Accumulation().Of(Extra::MaximumHold, Axis::X)->captures, 2);
  EXPECT_EQ(study.Shown()->record->alarms.axes[0].status, 5);
  EXPECT_EQ(study.Records().Entries().front().record->alarms.axes[0].status, 5);
}

TEST(Study, ARecordScaledAnewIsNoSecondCaptureAndReadsTheSame) {
  Study study = StudyOf({}, Several(1));
  const auto before = study.SpectrumOf(Axis::X)->spectrum.peakG;
  study.Take(std::make_shared<const Record>(Rescaled(TakenOf(AtSecond(1)), 0)));
  EXPECT_EQ(study.Records().Entries().size(), 1U);
  EXPECT_EQ(study.SpectrumOf(Axis::X)->spectrum.peakG, before);
}

TEST(Study, WhatAStoppedCaptureLeftIsShownButIsNoCapture) {
  Study study = StudyOf({}, Several(1));
  study.Take(Changed(AtSecond(2), [](Record& record) {
    record.origin.stopped = true;
    record.origin.countBefore = record.conditions.recordCount;
  }));
  EXPECT_EQ(SecondShown(study), 2);
  EXPECT_EQ(study.Rows().Rows(), 1U);
  EXPECT_EQ(study.Accumulation().Of(Extra::LinearAverage, Axis::X)->captures, 1);
}

TEST(Study, HeldStaysWhileRecordsCome) {
  Study study = StudyOf({}, Several(1));
  study.Hold(true);
  study.Take(RecordOf(AtSecond(2)));
  EXPECT_EQ(SecondShown(study), 1);
  EXPECT_EQ(study.Records().Entries().size(), 2U);
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  EXPECT_EQ(SecondShown(study), 1);
  study.Hold(false);
  EXPECT_EQ(SecondShown(study), 2);
  EXPECT_EQ(study.SpectrumOf(Axis::X)->curve->unit, "mm/s peak");
}

TEST(Study, HoldingBeforeTheFirstRecordShowsItOnceReleased) {
  Study study(SampleClock);
  study.Hold(true);
  study.Take(RecordOf(AtSecond(1)));
  EXPECT_EQ(study.Shown(), nullptr);
  study.Hold(false);
  EXPECT_EQ(SecondShown(study), 1);
}

TEST(Study, FrozenAndReferenceStayAndFollowTheChoice) {
  Study study = StudyOf({}, Several(1));
  study.Freeze();
  study.TakeReference();
  study.Take(RecordOf(AtSecond(2)));
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.amplitude = analysis::Amplitude::PeakToPeak; });
  for (const Measured* kept : {study.Frozen(), study.Reference()}) {
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(kept->record->conditions.recordCount, 1);
    EXPECT_EQ(kept->Of(Axis::Y)->curve->unit, "g peak to peak");
  }
  EXPECT_TRUE(study.Choice().Has(Extra::Frozen));
  EXPECT_TRUE(study.Choice().Has(Extra::Reference));
}

TEST(Study, WithoutARecordThereIsNothingToFreeze) {
  Study study(SampleClock);
  study.Freeze();
  study.TakeReference();
  EXPECT_EQ(study.Frozen(), nullptr);
  EXPECT_EQ(study.Reference(), nullptr);
  EXPECT_TRUE(study.Choice().extras.empty());
}

TEST(Study, SelectedRecordsAreShownInTheirOrder) {
  Study study = StudyOf({}, Several(4));
  study.Select({2, 4, 2, 3});
  EXPECT_EQ(SecondShown(study), 2);
  ASSERT_EQ(study.Others().size(), 2U);
  EXPECT_EQ(study.Others()[0].record->conditions.recordCount, 4);
  EXPECT_EQ(study.Selected(), (std::vector<RecordId>{2, 4, 3}));
  EXPECT_FALSE(study.IsLive());
  study.Take(RecordOf(AtSecond(5)));
  EXPECT_EQ(SecondShown(study), 2);
  study.Select({});
  EXPECT_EQ(SecondShown(study), 5);
  EXPECT_TRUE(study.Others().empty());
}

TEST(Study, SelectingWhatIsNotThereAnyMoreIsLive) {
  Study study = StudyOf({}, Several(2));
  study.Select({77, -1, 0});
  EXPECT_TRUE(study.IsLive());
  EXPECT_EQ(SecondShown(study), 2);
  study.Select({77, 1});
  EXPECT_EQ(SecondShown(study), 1);
}

TEST(Study, SelectedRecordsStayWhenTheShelfDropsThem) {
  Study study = StudyOf({}, Several(2));
  study.Select({1, 2});
  const RecordPointer other = RecordOf(AtSecond(3));
  for (std::size_t i = 0; i < kShelfRecords; ++i) {
    Record next = *other;
    next.time += std::chrono::seconds(i);
    study.Take(std::make_shared<const Record>(std::move(next)));
  }
  ASSERT_EQ(study.Records().Find(1), nullptr);
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Displacement; });
  EXPECT_EQ(SecondShown(study), 1);
  EXPECT_EQ(study.Others().size(), 1U);
  EXPECT_EQ(study.SpectrumOf(Axis::X)->curve->unit, "\u00B5m peak");
}

TEST(Study, ChoosingAnewReadsAsARecordTakenSo) {
  StudyChoice wanted;
  wanted.quantity.quantity = analysis::Quantity::Density;
  wanted.meaning = analysis::MagnitudeMeaning::Rms;
  wanted.timeWindow = analysis::WindowKind::FlatTop;
  wanted.peaks.atMost = 3;
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    Sample sample = kTone;
    sample.kind = kind;
    sample.noiseDensityG = 1e-4;
    Study changed = StudyOf({}, {sample});
    changed.Choose(wanted);
    const Study fresh = StudyOf(wanted, {sample});
    for (const Axis axis : kAxes) {
      EXPECT_EQ(changed.SpectrumOf(axis)->spectrum, fresh.SpectrumOf(axis)->spectrum);
      EXPECT_EQ(changed.SpectrumOf(axis)->curve->values, fresh.SpectrumOf(axis)->curve->values);
      EXPECT_EQ(changed.SpectrumOf(axis)->peaks.size(), fresh.SpectrumOf(axis)->peaks.size());
    }
  }
}

TEST(Study, AnotherMeaningBeginsTheAverageAnewAndSaysWhy) {
  Study study = StudyOf({}, Several(3));
  Choose(study, [](StudyChoice& choice) { choice.meaning = analysis::MagnitudeMeaning::Rms; });
  EXPECT_EQ(study.Accumulation().Of(Extra::LinearAverage, Axis::X), nullptr);
  EXPECT_EQ(study.Accumulation().Restarted(), "magnitudes taken for another quantity");
}

TEST(Study, TheTransformsWindowMattersToTheAverageOfTimeRecordsAlone) {
  const auto other = [](StudyChoice& choice) { choice.timeWindow = analysis::WindowKind::FlatTop; };
  Study spectra = StudyOf({}, Several(3));
  Choose(spectra, other);
  EXPECT_NE(spectra.Accumulation().Of(Extra::LinearAverage, Axis::X), nullptr);
  Sample time = kTone;
  time.kind = RecordKind::Time;
  Study times = StudyOf({}, {time});
  Choose(times, other);
  EXPECT_EQ(times.Accumulation().Of(Extra::LinearAverage, Axis::X), nullptr);
  EXPECT_EQ(times.Accumulation().Restarted(), "other window: Flat top");
}

TEST(Study, CodesThatAreNoneAreRefused) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    Sample sample = kTone;
    sample.kind = kind;
    Study study(SampleClock);
    study.Take(Changed(sample, [](Record& record) { record.settings.range = 9; }));
    ASSERT_TRUE(study.Refused());
    EXPECT_EQ(study.Refused()->reason, "Its range is not one of the sensor's.");
    EXPECT_EQ(study.SpectrumOf(Axis::X), nullptr);
    study.Take(Changed(sample, [](Record& record) { record.settings.option = -1; }));
    ASSERT_TRUE(study.Refused());
    EXPECT_EQ(study.Refused()->reason, "Its sample-rate option is not one of 0 to 3.");
    Choose(study, [](StudyChoice& choice) { choice.view = View::Time; });
    ASSERT_TRUE(study.Refused());
    EXPECT_FALSE(study.Refused()->cure.empty());
  }
}

TEST(Study, ValuesThatAreNoNumbersAreRefusedOnTheirAxisAlone) {
  Study study(SampleClock);
  study.Take(Changed(kTone, [](Record& record) {
    record.Of(Axis::X).data(17) = std::numeric_limits<double>::quiet_NaN();
  }));
  ASSERT_TRUE(study.Refused());
  EXPECT_EQ(study.Refused()->reason, "It holds values that are not numbers.");
  Choose(study, [](StudyChoice& choice) { choice.focus = Axis::Z; });
  EXPECT_FALSE(study.Refused());
}

TEST(Study, AnUnknownWindowHasAccelerationButNoDensity) {
  Study study(SampleClock);
  study.Take(Changed(kTone, [](Record& record) { record.settings.window = 3; }));
  EXPECT_FALSE(study.Refused());
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Density; });
  ASSERT_TRUE(study.Refused());
  EXPECT_EQ(study.Refused()->cure, "Capture with Hanning");
}

TEST(Study, BandsAreThoseOfTheirOptionAndAxis) {
  Study study(SampleClock);
  EXPECT_EQ(study.BandsOf(0, Axis::X), nullptr);
  SensorBands bands;
  bands[Index(Axis::Y)][2] = {.lowBin = 5, .highBin = 9, .warning = 100, .fault = 200};
  study.SetSensorBands(1, bands);
  EXPECT_EQ(study.BandsOf(0, Axis::Y), nullptr);
  ASSERT_NE(study.BandsOf(1, Axis::Y), nullptr);
  EXPECT_EQ((*study.BandsOf(1, Axis::Y))[2].highBin, 9);
}

TEST(Study, MoreThatIsKnownOfTheLiveRecordReachesItWhereverItIsShown) {
  Study study = StudyOf({}, Several(2));
  study.Amend(nullptr);
  study = StudyOf({}, Several(2));
  const RecordId live = study.Records().Entries().front().id;
  const RecordId first = study.Records().Entries().back().id;
  study.Freeze();
  study.Select({first, live});
  study.Amend(Changed(AtSecond(2), [](Record& record) { record.alarms.axes[0].status = 5; }));
  EXPECT_EQ(study.Others().at(0).record->alarms.axes[0].status, 5);
  EXPECT_EQ(study.Frozen()->record->alarms.axes[0].status, 5);
  EXPECT_EQ(study.Shown()->record->alarms.axes[0].status, 0) << "another record";
  EXPECT_EQ(study.Live()->alarms.axes[0].status, 5);
}

TEST(Study, BeforeTheFirstRecordThereIsNothingToAmendOrToSelect) {
  Study study(SampleClock);
  study.Amend(RecordOf(AtSecond(1)));
  EXPECT_EQ(study.Live(), nullptr);
  study.Select({1, 2});
  EXPECT_EQ(study.Shown(), nullptr);
  EXPECT_TRUE(study.IsLive());
}

TEST(Study, ReleasingWhatIsSelectedLeavesItShown) {
  Study study = StudyOf({}, Several(2));
  study.Select({study.Records().Entries().back().id});
  study.Hold(true);
  study.Take(RecordOf(AtSecond(3)));
  study.Hold(false);
  EXPECT_EQ(SecondShown(study), 1);
  study.Hold(false);
  EXPECT_EQ(SecondShown(study), 1);
}

TEST(Study, ChoosingAnewLeavesAnAxisThatIsRefusedRefused) {
  Study study(SampleClock);
  study.Take(Changed(kTone, [](Record& record) {
    record.Of(Axis::X).data(17) = std::numeric_limits<double>::quiet_NaN();
  }));
  const std::size_t peaks = study.SpectrumOf(Axis::Y)->peaks.size();
  ASSERT_GT(peaks, 0U);
  Choose(study,
         [](StudyChoice& choice) { choice.quantity.quantity = analysis::Quantity::Velocity; });
  EXPECT_EQ(study.SpectrumOf(Axis::X), nullptr);
  EXPECT_EQ(study.SpectrumOf(Axis::Y)->curve->unit, "mm/s peak");
  EXPECT_EQ(study.SpectrumOf(Axis::Y)->peaks.size(), peaks);
  Choose(study, [](StudyChoice& choice) { choice.peaks.atMost = 0; });
  EXPECT_TRUE(study.SpectrumOf(Axis::Y)->peaks.empty());
  EXPECT_EQ(study.SpectrumOf(Axis::Y)->curve->unit, "mm/s peak");
}

TEST(Study, AnotherWindowOfTransformsLeavesSpectraOfTheSensorAsTheyAre) {
  Study study = StudyOf({}, Several(1));
  const analysis::Spectrum before = study.SpectrumOf(Axis::X)->spectrum;
  Choose(study, [](StudyChoice& choice) { choice.timeWindow = analysis::WindowKind::FlatTop; });
  EXPECT_EQ(study.SpectrumOf(Axis::X)->spectrum, before);
}

TEST(Study, FrequenciesAreAboveNothingAndWithinWhatASpectrumHolds) {
  for (const double hz : {0.001, 50.0, 50'000.0}) EXPECT_TRUE(IsFrequency(hz)) << hz;
  for (const double hz : {0.0, -1.0, 50'000.1, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_FALSE(IsFrequency(hz)) << hz;
  }
}

}  // namespace
}  // namespace kestrel::study
