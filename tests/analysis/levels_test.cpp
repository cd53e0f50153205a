// Behaviour of levels.
// SPDX-License-Identifier: MIT
#include "analysis/levels.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Levels, ASineReadsItsRmsInEveryWindowOnAndBetweenBins) {
  for (const WindowKind window : kWindows) {
    for (const double bin : {60.0, 60.3, 60.5}) {
      const Told<BandLevel> level = OverallLevel(SpectrumOfTones({{bin, 2.0, 0.3}}, window));
      ASSERT_TRUE(level);
      EXPECT_NEAR(20 * std::log10(level->rmsG / std::sqrt(2.0)), 0, 0.03)
          << WindowOf(window).name << " " << bin;
    }
  }
}

TEST(Levels, NoiseReadsItsRmsInEveryWindow) {
  std::mt19937_64 random(2);
  for (const WindowKind window : kWindows) {
    double power = 0;
    for (int round = 0; round < 200; ++round) {
      std::vector<double> samples(512);
      AddNoise(samples, 0.5, random);
      power += std::pow(OverallLevel(SpectrumOfSamples(samples, window))->rmsG, 2) / 200;
    }
    const double share = (256 - static_cast<double>(WindowOf(window).lobe)) / 256;
    EXPECT_NEAR(std::sqrt(power / share), 0.5, 0.01) << WindowOf(window).name;
  }
}

TEST(Levels, BinsAtTheEdgesOfABandCountByTheirShare) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Rectangular);
  spectrum.peakG.assign(256, std::sqrt(2.0));
  const double width = spectrum.binWidthHz;
  EXPECT_NEAR(LevelBetween(spectrum, 10 * width, 14.25 * width)->rmsG, std::sqrt(4.25), 1e-9);
  EXPECT_NEAR(LevelBetween(spectrum, 10.1 * width, 10.2 * width)->rmsG, std::sqrt(0.1), 1e-9);
}

TEST(Levels, NeighbouringBandsAddUpToTheWhole) {
  std::mt19937_64 random(4);
  std::vector<double> samples(512);
  AddNoise(samples, 1, random);
  const Spectrum spectrum = SpectrumOfSamples(samples, WindowKind::FlatTop);
  double sum = 0;
  double from = 0;
  for (const double to : {1234.5, 9876.0, 9999.0, 31234.0, 60000.0}) {
    sum += PowerBetween(spectrum, from, to);
    from = to;
  }
  EXPECT_NEAR(sum, std::pow(OverallLevel(spectrum)->rmsG, 2), 1e-12);
}

TEST(Levels, TheLargestBinAndItsFrequencyStandBesideTheRms) {
  const Spectrum spectrum = SpectrumOfTones({{60, 2.0, 0}, {100, 3.0, 0}}, WindowKind::Hanning);
  const double width = spectrum.binWidthHz;
  const Told<BandLevel> level = LevelBetween(spectrum, 50 * width, 70 * width);
  EXPECT_NEAR(level->peakG, 2, 1e-9);
  EXPECT_DOUBLE_EQ(level->peakHz, 60 * width);
  EXPECT_TRUE(level->whole);
}

TEST(Levels, ABandThatReachesBeyondTheRecordSaysSo) {
  const Spectrum spectrum = SpectrumOfTones({{60, 2.0, 0}}, WindowKind::Hanning);
  const Told<BandLevel> level = LevelBetween(spectrum, 10, 20000);
  ASSERT_TRUE(level);
  EXPECT_FALSE(level->whole);
  EXPECT_DOUBLE_EQ(level->fromHz, 1.5 * spectrum.binWidthHz);
}

TEST(Levels, BandsThatAreNoneOrOutsideAreRefusedWithTheOption) {
  const Spectrum spectrum = SpectrumOfTones({{60, 2.0, 0}}, WindowKind::Hanning);
  const Told<BandLevel> low = LevelBetween(spectrum, 10, 20);
  ASSERT_FALSE(low);
  EXPECT_EQ(low.Why().cureOption, 2);
  EXPECT_FALSE(LevelBetween(spectrum, 2000, 1000));
  EXPECT_FALSE(LevelBetween(spectrum, 2000, 2000));
  EXPECT_FALSE(LevelBetween(spectrum, kNan, 2000));
  EXPECT_FALSE(LevelBetween(spectrum, 1000, kNan));
  EXPECT_FALSE(LevelBetween(spectrum, 90000, 99000));
  EXPECT_FALSE(OverallLevel(Spectrum{}));
}

TEST(Levels, OfHoldsAndUnknownWindowsAreRefused) {
  Spectrum spectrum = SpectrumOfTones({{60, 2.0, 0}}, WindowKind::Hanning);
  for (const SpectrumSource hold : {SpectrumSource::MaximumHold, SpectrumSource::MinimumHold}) {
    spectrum.source = hold;
    const Told<BandLevel> level = OverallLevel(spectrum);
    ASSERT_FALSE(level);
    EXPECT_EQ(level.Why().cure, "Take an average instead");
  }
  spectrum.source = SpectrumSource::Sensor;
  spectrum.window = WindowOfCode(3);
  EXPECT_FALSE(OverallLevel(spectrum));
  EXPECT_EQ(PowerBetween(spectrum, 0, 50000), 0);
}

TEST(Levels, ASineHasACrestOfTheRootOfTwoAndAKurtosisOfOneAndAHalf) {
  const std::optional<TimeLevels> levels = LevelsOf(SamplesOf({{64, 2.0, 0}}, 9.0));
  EXPECT_NEAR(levels->meanG, 9, 1e-12);
  EXPECT_NEAR(levels->rmsG, std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(*levels->crest, std::sqrt(2.0), 1e-9);
  EXPECT_NEAR(*levels->kurtosis, 1.5, 1e-9);
}

TEST(Levels, NineteenOfTwentyRecordsOfNoiseLieInTheStatisticalBands) {
  std::mt19937_64 random(6);
  int crest = 0;
  int kurtosis = 0;
  for (int round = 0; round < 2000; ++round) {
    std::vector<double> samples(512);
    AddNoise(samples, 1, random);
    const std::optional<TimeLevels> levels = LevelsOf(samples);
    crest += kCrestOfNoise.Holds(*levels->crest) ? 1 : 0;
    kurtosis += kKurtosisOfNoise.Holds(*levels->kurtosis) ? 1 : 0;
  }
  EXPECT_NEAR(crest / 2000.0, 0.95, 0.02);
  EXPECT_NEAR(kurtosis / 2000.0, 0.95, 0.02);
}

TEST(Levels, WhatDoesNotMoveHasNoShape) {
  for (const double constant : {0.0, 1.1, -70.0}) {
    const std::optional<TimeLevels> levels = LevelsOf(std::vector<double>(512, constant));
    ASSERT_TRUE(levels);
    EXPECT_FALSE(levels->crest) << constant;
    EXPECT_FALSE(levels->kurtosis) << constant;
  }
  EXPECT_FALSE(LevelsOf(std::vector<double>(1, 5.0))->crest);
  EXPECT_FALSE(LevelsOf(std::vector<double>{}));
  EXPECT_FALSE(LevelsOf(std::vector<double>{1, kNan}));
}

TEST(Levels, TheMedianOfSeveralRecordsLeavesOneShockOut) {
  const std::vector<TimeLevels> records{
      {0, 1, 3, 3.0, 3.1}, {0, 9, 90, 9.0, 40.0}, {0, 2, 5, 3.2, 2.9}, {0, 0, 0, {}, {}}};
  const std::optional<TimeLevels> median = MedianOf(std::span(records).first(3));
  EXPECT_EQ(median->rmsG, 2);
  EXPECT_EQ(median->crest, 3.2);
  EXPECT_EQ(MedianOf(records)->kurtosis, 3.1);
  EXPECT_EQ(MedianOf(records)->rmsG, 1.5);
  EXPECT_FALSE(MedianOf({}));
  EXPECT_FALSE(MedianOf(std::span(records).last(1))->crest);
}

TEST(Levels, TheSumOfSquaresOfASpectrumIsThePowerOfItsTimeRecord) {
  std::mt19937_64 random(8);
  for (int round = 0; round < 100; ++round) {
    std::vector<double> samples = SamplesOf({{40.3, 0.5, 1}, {41.0, 0.2, 2}}, 3.0);
    AddNoise(samples, 0.3, random);
    const std::optional<SelfTest> exact = TestSelf(samples, WindowOf(WindowKind::Rectangular));
    EXPECT_NEAR(exact->differenceDb, 0, 1e-9);
  }
  double worst = 0;
  for (int round = 0; round < 100; ++round) {
    std::vector<double> samples(512);
    AddNoise(samples, 0.3, random);
    const double db = TestSelf(samples, WindowOf(WindowKind::Hanning))->differenceDb;
    worst = std::max(worst, std::fabs(db));
  }
  EXPECT_LT(worst, 1.5);
  EXPECT_GT(worst, 0.01);
  EXPECT_EQ(TestSelf(std::vector<double>(512, 1.0), WindowOf(WindowKind::Hanning))->differenceDb,
            0);
  EXPECT_FALSE(TestSelf(std::vector<double>(100, 1.0), WindowOf(WindowKind::Hanning)));
  EXPECT_FALSE(TestSelf(std::vector<double>(512, 1.0), Window{}));
}

TEST(Levels, AveragedMagnitudesOfNoiseReadAsLowAsTold) {
  std::mt19937_64 random(7);
  for (const int transforms : {1, 2, 8, 64}) {
    double power = 0;
    double wanted = 0;
    for (int record = 0; record < 40; ++record) {
      std::vector<double> mean(257);
      for (int each = 0; each < transforms; ++each) {
        std::vector<double> samples(512);
        AddNoise(samples, 0.1, random);
        const auto bins = Transform(samples, WindowOf(WindowKind::Hanning));
        for (std::size_t k = 0; k < mean.size(); ++k) mean[k] += bins[k] / transforms;
      }
      for (std::size_t k = 2; k < 256; ++k) power += mean[k] * mean[k] / 2 / 1.5;
      wanted += 0.1 * 0.1 * 254 / 256;
    }
    EXPECT_NEAR(10 * std::log10(power / wanted), NoiseOfAveragedMagnitudesDb(transforms), 0.1)
        << transforms;
  }
  EXPECT_EQ(NoiseOfAveragedMagnitudesDb(1), 0);
  EXPECT_EQ(NoiseOfAveragedMagnitudesDb(0), 0);
}

TEST(Levels, WhatAveragingTakesFromNoiseIsSaidWhereThereIsAveraging) {
  EXPECT_EQ(AveragesNotice(0), "");
  EXPECT_EQ(AveragesNotice(1), "");
  EXPECT_EQ(AveragesNotice(8),
            "The sensor averages magnitudes, not power. Noise reads 0.9 dB low, lines as they "
            "are.");
  EXPECT_NEAR(NoiseOfAveragedMagnitudesDb(1), 0, 1e-12);
  EXPECT_NEAR(NoiseOfAveragedMagnitudesDb(0), 0, 1e-12);
  EXPECT_NEAR(NoiseOfAveragedMagnitudesDb(2), 10 * std::log10(0.5 + 3.14159265 / 8), 1e-6);
}

TEST(Levels, ARecordThatHoldsWhatIsNoNumberIsNotTested) {
  std::vector<double> samples(512, 1.0);
  samples[300] = kNan;
  EXPECT_FALSE(TestSelf(samples, WindowOf(WindowKind::Hanning)));
}

TEST(Levels, ABandThatReachesOverTheTopSaysSo) {
  const Spectrum spectrum = SpectrumOfTones({{60, 2.0, 0}}, WindowKind::Hanning);
  const Told<BandLevel> level = LevelBetween(spectrum, 10000, 60000);
  ASSERT_TRUE(level);
  EXPECT_FALSE(level->whole);
  EXPECT_DOUBLE_EQ(level->toHz, 255.5 * spectrum.binWidthHz);
}

}  // namespace
}  // namespace kestrel::analysis
