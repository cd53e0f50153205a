// Behaviour of the sensor's bands.
// SPDX-License-Identifier: MIT
#include "analysis/band_levels.h"

#include <gmock/gmock.h>

#include "tones.h"

namespace kestrel::analysis {
namespace {

// Magnitude words of 0.001 g.
Spectrum Words(std::size_t bin, int word) {
  Spectrum spectrum{.binWidthHz = 10, .window = WindowOf(WindowKind::Hanning)};
  spectrum.peakG.assign(256, 0.0);
  spectrum.stepG = 0.001;
  spectrum.peakG[bin] = word * 0.001;
  return spectrum;
}

SensorBandLevel Judged(const Spectrum& spectrum, const SensorBand& band) {
  return LevelsOf(spectrum, std::vector{band}).front();
}

TEST(BandLevels, AWordMustExceedTheThreshold) {
  const SensorBand band{10, 20, 500, 1000};
  EXPECT_EQ(Judged(Words(15, 500), band).state, BandState::Free);
  EXPECT_EQ(Judged(Words(15, 501), band).state, BandState::Warning);
  EXPECT_EQ(Judged(Words(15, 1000), band).state, BandState::Warning);
  EXPECT_EQ(Judged(Words(15, 1001), band).state, BandState::Fault);
  EXPECT_EQ(Judged(Words(21, 5000), band).state, BandState::Free);
  EXPECT_EQ(Judged(Words(20, 5000), band).state, BandState::Fault);
}

TEST(BandLevels, HeadroomIsInDecibelsToEachThreshold) {
  const SensorBandLevel level = Judged(Words(15, 250), {10, 20, 500, 1000});
  EXPECT_NEAR(*level.toWarningDb, 6.02, 0.005);
  EXPECT_NEAR(*level.toFaultDb, 12.04, 0.005);
  EXPECT_DOUBLE_EQ(level.largestG, 0.25);
  EXPECT_EQ(level.largestHz, 150);
  EXPECT_EQ(level.fromHz, 100);
  EXPECT_EQ(level.toHz, 200);
  EXPECT_DOUBLE_EQ(level.warningG, 0.5);
}

TEST(BandLevels, TextsSayFreeOrBeyond) {
  EXPECT_EQ(TextOf(Judged(Words(15, 250), {10, 20, 500, 1000})), "6.0 dB free");
  EXPECT_EQ(TextOf(Judged(Words(15, 250), {10, 20, 0, 1000})), "12.0 dB free");
  EXPECT_EQ(TextOf(Judged(Words(15, 536), {10, 20, 500, 1000})), "Warning 1, +0.6 dB");
  EXPECT_EQ(TextOf(Judged(Words(15, 501), {10, 20, 500, 1000})), "Warning 1, +0.1 dB");
  EXPECT_EQ(TextOf(Judged(Words(15, 2000), {10, 20, 500, 1000})), "Fault 1, +6.0 dB");
  EXPECT_EQ(TextOf(Judged(Words(15, 2000), {10, 20, 0, 0})), "");
}

TEST(BandLevels, AMissingThresholdHasNoHeadroom) {
  const SensorBandLevel level = Judged(Words(15, 250), {10, 20, 0, 1000});
  EXPECT_FALSE(level.toWarningDb);
  EXPECT_TRUE(level.toFaultDb);
}

TEST(BandLevels, BandsThatAreNoneAreUnused) {
  for (const SensorBand& band : {SensorBand{10, 20, 0, 0}, SensorBand{20, 10, 5, 9},
                                 SensorBand{256, 300, 5, 9}, SensorBand{-1, 20, 5, 9}}) {
    EXPECT_EQ(Judged(Words(15, 5000), band).state, BandState::Unused);
  }
  EXPECT_EQ(Judged(Words(255, 5000), {200, 4000, 5, 9}).toHz, 2550);
  EXPECT_EQ(Judged(Spectrum{}, {0, 20, 5, 9}).state, BandState::Unused);
}

TEST(BandLevels, TheSensorLooksAtOffsetTooAndTheBandSaysSo) {
  EXPECT_TRUE(Judged(Words(0, 5000), {0, 20, 500, 1000}).holdsOffset);
  EXPECT_EQ(Judged(Words(0, 5000), {0, 20, 500, 1000}).state, BandState::Fault);
  EXPECT_FALSE(Judged(Words(15, 5), {2, 20, 500, 1000}).holdsOffset);
}

TEST(BandLevels, SilenceCountsAsHalfAStep) {
  EXPECT_NEAR(*Judged(Words(15, 0), {10, 20, 500, 0}).toWarningDb, 60, 1e-9);
}

TEST(BandLevels, MagnitudesTakenAsRmsAreJudgedByTheSameWords) {
  Spectrum spectrum = Words(15, 500);
  spectrum.meaning = MagnitudeMeaning::Rms;
  spectrum.stepG *= std::numbers::sqrt2;
  spectrum.peakG[15] *= std::numbers::sqrt2;
  spectrum.peakG[0] = 0.501;
  EXPECT_EQ(Judged(spectrum, {10, 20, 500, 1000}).state, BandState::Free);
  EXPECT_EQ(Judged(spectrum, {10, 20, 499, 1000}).state, BandState::Warning);
  EXPECT_EQ(Judged(spectrum, {0, 20, 500, 1000}).state, BandState::Warning);
}

TEST(BandLevels, AreNumberedFromOne) {
  const std::vector<SensorBandLevel> levels =
      LevelsOf(Words(15, 5), std::vector<SensorBand>(6, {10, 20, 5, 9}));
  ASSERT_EQ(levels.size(), 6U);
  EXPECT_EQ(levels[5].number, 6);
}

TEST(BandLevels, WithoutAStepNoWordIsKnownAndNothingIsExceeded) {
  Spectrum spectrum = Words(15, 5000);
  spectrum.stepG = 0;
  const SensorBandLevel level = Judged(spectrum, {10, 20, 500, 1000});
  EXPECT_EQ(level.state, BandState::Free);
  EXPECT_NEAR(*level.toWarningDb, 60, 1e-9) << "to half a step";
}

TEST(BandLevels, ABandOfOneBinIsOne) {
  EXPECT_TRUE(HoldsBins({10, 10, 500, 1000}, 256));
  EXPECT_FALSE(HoldsBins({11, 10, 500, 1000}, 256));
  EXPECT_TRUE(HoldsBins({255, 300, 500, 1000}, 256));
  EXPECT_FALSE(HoldsBins({256, 300, 500, 1000}, 256));
  EXPECT_FALSE(HoldsBins({-1, 10, 500, 1000}, 256));
  EXPECT_EQ(Judged(Words(10, 5000), {10, 10, 500, 1000}).state, BandState::Fault);
}

}  // namespace
}  // namespace kestrel::analysis
