// Behaviour of spectra made from records.
// SPDX-License-Identifier: MIT
#include "analysis/spectrum.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

Record SpectrumRecord(int window = 1) {
  Record record;
  record.settings.option = 2;
  record.settings.window = static_cast<std::int16_t>(window);
  record.settings.range = record.scaledRange = 1;
  record.settings.averages = 8;
  record.lsbWeight = LsbWeightOf(1, RecordKind::Spectrum);
  for (int bin = 0; bin < 256; ++bin) {
    record.Of(Axis::Y).raw(bin) = 100 + bin;
    record.Of(Axis::Y).data(bin) = (100 + bin) * record.lsbWeight;
  }
  return record;
}

Record TimeRecordOf(const std::vector<double>& samples) {
  Record record;
  record.kind = RecordKind::Time;
  record.lsbWeight = LsbWeightOf(0, RecordKind::Time);
  for (int n = 0; n < 512; ++n) {
    record.Of(Axis::X).data(n) = samples[static_cast<std::size_t>(n)];
  }
  return record;
}

TEST(Spectrum, TakesMagnitudesAsPeakOfASine) {
  const Told<Spectrum> spectrum = SpectrumOf(SpectrumRecord(), Axis::Y);
  ASSERT_TRUE(spectrum);
  EXPECT_EQ(spectrum->Bins(), 256U);
  EXPECT_DOUBLE_EQ(spectrum->peakG[7], 107 * 0.0000763);
  EXPECT_DOUBLE_EQ(spectrum->stepG, 0.0000763);
  EXPECT_EQ(spectrum->window.kind, WindowKind::Hanning);
  EXPECT_DOUBLE_EQ(spectrum->binWidthHz, 100189.9 / 64 / 512);
  EXPECT_EQ(spectrum->averages, 8);
  EXPECT_EQ(spectrum->axis, Axis::Y);
}

TEST(Spectrum, TakenAsRmsAllButTheMeanGrowByTheRootOfTwo) {
  const Told<Spectrum> spectrum =
      SpectrumOf(SpectrumRecord(), Axis::Y, {.meaning = MagnitudeMeaning::Rms});
  ASSERT_TRUE(spectrum);
  EXPECT_DOUBLE_EQ(spectrum->peakG[0], 100 * 0.0000763);
  EXPECT_DOUBLE_EQ(spectrum->peakG[1], 101 * 0.0000763 * std::numbers::sqrt2);
  EXPECT_DOUBLE_EQ(spectrum->stepG, 0.0000763 * std::numbers::sqrt2);
}

TEST(Spectrum, ScalesByTheRecordsOwnRangeWhenAsked) {
  Record record = SpectrumRecord();
  record.settings.range = 3;
  EXPECT_TRUE(ScaledForOtherRange(record));
  EXPECT_DOUBLE_EQ(SpectrumOf(record, Axis::Y)->peakG[7], 107 * 0.0000763);
  const Told<Spectrum> own = SpectrumOf(record, Axis::Y, {.ownRange = true});
  EXPECT_DOUBLE_EQ(own->peakG[7], 107 * 0.0011921);
  EXPECT_EQ(own->range, 3);
  EXPECT_DOUBLE_EQ(own->stepG, 0.0011921);
}

TEST(Spectrum, OfATimeRecordShowsAToneOnABinAtItsAmplitudeInEveryWindow) {
  const Record record = TimeRecordOf(SamplesOf({{.bin = 40, .peakG = 0.25}}, 0.1));
  for (const WindowKind window : kWindows) {
    const Told<Spectrum> spectrum = SpectrumOf(record, Axis::X, {.timeWindow = window});
    ASSERT_TRUE(spectrum);
    EXPECT_EQ(spectrum->Bins(), 256U);
    EXPECT_NEAR(spectrum->peakG[40], 0.25, 1e-12);
    EXPECT_NEAR(spectrum->peakG[0], 0.1, 1e-12);
    EXPECT_EQ(spectrum->source, SpectrumSource::TimeRecord);
  }
}

TEST(Spectrum, RoundingOfSamplesLeavesTheMagnitudeThatItsStepTells) {
  std::mt19937_64 random(1);
  const double step = LsbWeightOf(0, RecordKind::Time);
  std::uniform_real_distribution<double> rounding(-step / 2, step / 2);
  std::vector<double> samples(512);
  double power = 0;
  double told = 0;
  for (int round = 0; round < 50; ++round) {
    for (double& sample : samples) sample = rounding(random);
    const Told<Spectrum> spectrum = SpectrumOf(TimeRecordOf(samples), Axis::X);
    told = spectrum->stepG;
    for (std::size_t bin = 2; bin < 256; ++bin) power += std::pow(spectrum->peakG[bin], 2);
  }
  EXPECT_NEAR(std::sqrt(power / 50 / 254), told, 0.02 * told);
}

TEST(Spectrum, RefusesSettingsThatAreNoneAndValuesThatAreNoNumbers) {
  Record record = SpectrumRecord();
  record.settings.option = 4;
  EXPECT_FALSE(SpectrumOf(record, Axis::Y));
  record = SpectrumRecord();
  record.settings.range = -1;
  EXPECT_THAT(AsLine(SpectrumOf(record, Axis::Y).Why()),
              testing::HasSubstr("Its range is not one of the sensor's. Capture again."));
  record = SpectrumRecord();
  record.Of(Axis::Y).data(3) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(SpectrumOf(record, Axis::Y));
  EXPECT_TRUE(SpectrumOf(record, Axis::Z));
  EXPECT_FALSE(
      SpectrumOf(TimeRecordOf(SamplesOf({})), Axis::X, {.timeWindow = WindowKind::Unknown}));
}

TEST(Spectrum, OfWindowCodeThreeIsShownWithTheWidestLobe) {
  const Told<Spectrum> spectrum = SpectrumOf(SpectrumRecord(3), Axis::Y);
  ASSERT_TRUE(spectrum);
  EXPECT_FALSE(spectrum->window.Known());
  EXPECT_EQ(spectrum->FirstVibration(), 5U);
}

TEST(Spectrum, NegativeMagnitudesOfABrokenRecordCountByTheirSize) {
  Record record = SpectrumRecord();
  record.Of(Axis::Y).data(9) = -0.5;
  EXPECT_DOUBLE_EQ(SpectrumOf(record, Axis::Y)->peakG[9], 0.5);
}

TEST(Spectrum, ATransformNeedsAllSamplesAndAWindow) {
  EXPECT_TRUE(Transform(std::vector<double>(1, 1.0), WindowOf(WindowKind::Hanning)).empty());
  EXPECT_TRUE(Transform(std::vector<double>(512, 1.0), Window{}).empty());
  EXPECT_THAT(Transform(std::vector<double>(512, 0.0), WindowOf(WindowKind::Hanning)),
              testing::Each(0.0));
}

TEST(Spectrum, AnEmptyOneHasNoWidthAndNoBins) {
  const Spectrum empty;
  EXPECT_EQ(empty.TopHz(), 0);
  EXPECT_EQ(empty.FirstVibration(), 0U);
  EXPECT_EQ(empty.BinOf(100), 0);
}

TEST(Spectrum, ARangeThatIsNoneHasNoStepOfItsOwn) {
  Record record = SpectrumRecord();
  record.settings.range = 7;
  EXPECT_EQ(StepOf(record, true), 0);
  EXPECT_EQ(StepOf(record, false), record.lsbWeight);
}

}  // namespace
}  // namespace kestrel::analysis
