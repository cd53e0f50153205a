// Levels of bands against the sensor's comparison and the program's own levels.
// SPDX-License-Identifier: MIT
#include "baseline/levels.h"

#include "analysis/levels.h"
#include "made_records.h"
#include "record/frequency.h"

namespace kestrel::baseline {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const double kStep = StepG({.option = 0, .window = 1, .range = 3});

Spectra SpectraOf(const std::vector<archive::NewRecord>& records) {
  Spectra spectra(records.size());
  for (std::size_t i = 0; i < records.size(); ++i) {
    std::vector<Word> words;
    for (const AxisRecord& axis : records[i].record.axes) {
      for (const double word : axis.raw.First(256)) words.push_back(static_cast<Word>(word));
    }
    spectra.Set(i, words);
  }
  return spectra;
}

std::vector<archive::NewRecord> RandomSpectra(int count, int window = 1) {
  std::mt19937 random(11);
  std::vector<archive::NewRecord> records;
  for (int i = 0; i < count; ++i) {
    records.push_back(MadeSpectrum(i, [&](Axis, int) { return static_cast<int>(random() % 1000); },
                                   {.option = 2, .window = window, .range = 3}));
  }
  return records;
}

TEST(BaselineLevels, ThePeakOfABandAlarmsExactlyWhereTheSensorsComparisonDoes) {
  const auto records = RandomSpectra(40);
  const Spectra spectra = SpectraOf(records);
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    Band band{.lowBin = static_cast<int>(random() % 256),
              .highBin = static_cast<int>(random() % 300)};
    if (!band.IsUsed()) continue;
    const CellLevels levels = LevelsOf(spectra, 30, band, Axis::Y, LevelKind::BandPeak, 1);
    const std::size_t i = random() % 40;
    const double level = i < 30 ? levels.good[i] : levels.bad[i - 30];
    const auto spectrum = analysis::SpectrumOf(records[i].record, Axis::Y, {.ownRange = true});
    for (const int threshold : {static_cast<int>(level) - 1, static_cast<int>(level)}) {
      band.warning[1] = threshold;
      const auto sensor = analysis::LevelsOf(*spectrum, std::vector{band.Of(Axis::Y)});
      EXPECT_EQ(sensor[0].state == analysis::BandState::Warning,
                analysis::Exceeds(level, threshold));
      EXPECT_EQ(sensor[0].state == analysis::BandState::Warning, threshold < level);
    }
  }
}

TEST(BaselineLevels, TheRmsOfABandIsThatOfItsWholeBinsThatHoldVibration) {
  for (const int window : {0, 1, 2}) {
    const auto records = RandomSpectra(3, window);
    const Spectra spectra = SpectraOf(records);
    const double width = BinWidth(2);
    for (const auto& [low, high] : {std::pair{0, 255}, {7, 7}, {3, 40}, {200, 280}}) {
      const CellLevels levels = LevelsOf(spectra, 3, {.lowBin = low, .highBin = high}, Axis::Z,
                                         LevelKind::BandRms, window);
      for (std::size_t i = 0; i < 3; ++i) {
        const auto spectrum = analysis::SpectrumOf(records[i].record, Axis::Z, {.ownRange = true});
        const auto wanted =
            analysis::LevelBetween(*spectrum, (low - 0.5) * width, (high + 0.5) * width);
        EXPECT_NEAR(levels.good[i] * spectrum->stepG, wanted->rmsG, 1e-9 * wanted->rmsG);
      }
    }
  }
}

TEST(BaselineLevels, ManyLevelsAreSortedAsFewAre) {
  std::mt19937 random(9);
  Spectra spectra(12'000);
  for (std::size_t i = 0; i < spectra.Count(); ++i) {
    const std::vector<Word> words(Spectra::kWords, static_cast<Word>(random() % 65536));
    spectra.Set(i, words);
  }
  const CellLevels levels =
      LevelsOf(spectra, 6000, {.lowBin = 4, .highBin = 4}, Axis::X, LevelKind::BandPeak, 1);
  for (auto [all, sorted] :
       {std::pair{levels.good, levels.sortedGood}, {levels.bad, levels.sortedBad}}) {
    EXPECT_FALSE(std::ranges::is_sorted(all));
    std::ranges::sort(all);
    EXPECT_EQ(all, sorted);
  }
}

TEST(BaselineLevels, BandsThatHoldNothingAreRefusedInWords) {
  const Spectra spectra = SpectraOf(RandomSpectra(2));
  const auto why = [&](const Band& band, LevelKind kind, int window) {
    const CellLevels levels = LevelsOf(spectra, 2, band, Axis::X, kind, window);
    EXPECT_THAT(levels.good, IsEmpty());
    return levels.refusal;
  };
  EXPECT_EQ(why({}, LevelKind::BandPeak, 1), "The band is not in use.");
  EXPECT_EQ(why({.lowBin = 9, .highBin = 8}, LevelKind::BandPeak, 1), "The band covers no bin.");
  EXPECT_EQ(why({.lowBin = 256, .highBin = 300}, LevelKind::BandPeak, 1),
            "The band covers no bin.");
  EXPECT_EQ(why({.lowBin = 0, .highBin = 1}, LevelKind::BandRms, 1),
            "The band holds offset alone, no vibration.");
  EXPECT_EQ(why({.lowBin = 0, .highBin = 9}, LevelKind::BandRms, 3),
            "The window is unknown, and with it what the RMS of a band is.");
}

TEST(BaselineLevels, DecibelsGoBackAndForthAndSilenceIsHalfAStep) {
  EXPECT_DOUBLE_EQ(DbOf(1000, 0.001), 0);
  EXPECT_DOUBLE_EQ(StepsOf(DbOf(777, kStep), kStep), 777);
  EXPECT_DOUBLE_EQ(DbOf(0, 0.001), 20 * std::log10(0.0005));
}

TEST(BaselineLevels, ADistributionHasMeanScatterEndsAndSilentRecords) {
  const std::vector<double> steps{0, 10, 100, 1000};
  const auto distribution = DistributionOf(steps, 1);
  EXPECT_EQ(distribution->records, 4U);
  EXPECT_EQ(distribution->silent, 1U);
  EXPECT_NEAR(distribution->meanDb, (20 + 40 + 60 + 20 * std::log10(0.5)) / 4, 1e-12);
  EXPECT_DOUBLE_EQ(distribution->largestDb, 60);
  EXPECT_FALSE(DistributionOf({}, 1));
  EXPECT_EQ(DistributionOf(std::vector{7.0}, 1)->sigmaDb, 0);
}

TEST(BaselineLevels, AHistogramCountsEachLevelOnce) {
  const std::vector<double> steps{1, 1, 2, 4, 10};  // 0, 0, 6.02, 12.04, 20 dB
  EXPECT_THAT(HistogramOf(steps, 1, 0, 20, 5).counts, ElementsAre(2, 1, 1, 1));
  EXPECT_THAT(HistogramOf(steps, 1, 1, 19, 9).counts, ElementsAre(1, 1));
  EXPECT_THAT(HistogramOf(steps, 1, 20, 0, 5).counts, IsEmpty());
  EXPECT_THAT(HistogramOf(steps, 1, 0, 20, 0).counts, IsEmpty());
  EXPECT_THAT(HistogramOf(steps, 1, 0, 20, 1e-6).counts, IsEmpty());
  EXPECT_THAT(HistogramOf({}, 1, 0, 10, 5).counts, Each(0));
  EXPECT_DOUBLE_EQ(ClassWidth(0, 2), 0.1);
  EXPECT_DOUBLE_EQ(ClassWidth(0, 0), 0.05);
  EXPECT_DOUBLE_EQ(ClassWidth(-30, 0), 2);
}

}  // namespace
}  // namespace kestrel::baseline
