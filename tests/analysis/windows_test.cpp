// Behaviour of the window functions.
// SPDX-License-Identifier: MIT
#include "analysis/windows.h"

#include <gmock/gmock.h>

namespace kestrel::analysis {
namespace {

TEST(Windows, NoiseBandwidthsGainsAndLobesAreThePublishedOnes) {
  const Window rectangular = WindowOf(WindowKind::Rectangular);
  const Window hanning = WindowOf(WindowKind::Hanning);
  const Window flatTop = WindowOf(WindowKind::FlatTop);
  EXPECT_DOUBLE_EQ(rectangular.noiseBandwidth, 1.0);
  EXPECT_DOUBLE_EQ(hanning.noiseBandwidth, 1.5);
  EXPECT_NEAR(flatTop.noiseBandwidth, 3.7702, 5e-5);
  EXPECT_DOUBLE_EQ(hanning.gain, 0.5);
  EXPECT_NEAR(flatTop.gain, 0.21558, 5e-6);
  EXPECT_EQ(rectangular.lobe, 1U);
  EXPECT_EQ(hanning.lobe, 2U);
  EXPECT_EQ(flatTop.lobe, 5U);
}

TEST(Windows, WorstScallopIsThePublishedOne) {
  EXPECT_NEAR(WindowOf(WindowKind::Rectangular).scallopDb, 3.92, 0.005);
  EXPECT_NEAR(WindowOf(WindowKind::Hanning).scallopDb, 1.42, 0.005);
  EXPECT_NEAR(WindowOf(WindowKind::FlatTop).scallopDb, 0.010, 0.0005);
}

TEST(Windows, CodeThreeIsNoWindowAndTheWidestLobeIsAssumed) {
  EXPECT_EQ(WindowOfCode(0).kind, WindowKind::Rectangular);
  EXPECT_EQ(WindowOfCode(1).kind, WindowKind::Hanning);
  EXPECT_EQ(WindowOfCode(2).kind, WindowKind::FlatTop);
  EXPECT_EQ(LobeShape(WindowOfCode(3), 0), 0) << "nobody knows its lobe";
  for (const int code : {-1, 3, 4, 1000}) {
    EXPECT_FALSE(WindowOfCode(code).Known());
    EXPECT_EQ(FirstVibrationBin(WindowOfCode(code)), 5U);
  }
}

TEST(Windows, ALineShowsHalfOfItselfInTheNextBinOfHanningAndNothingBeyondTheLobe) {
  const Window hanning = WindowOf(WindowKind::Hanning);
  EXPECT_DOUBLE_EQ(LobeShape(hanning, 0), 1);
  EXPECT_NEAR(LobeShape(hanning, -1), 0.5, 1e-12);
  EXPECT_NEAR(LobeShape(hanning, 2), 0, 1e-12);
  EXPECT_NEAR(LobeShape(WindowOf(WindowKind::FlatTop), 5), 0, 1e-12);
  EXPECT_NEAR(LobeShape(WindowOf(WindowKind::Rectangular), 0.5), 0.6366, 1e-4);
}

TEST(Windows, SamplesArePeriodicAndTheirMeanIsTheGain) {
  const Window flatTop = WindowOf(WindowKind::FlatTop);
  const std::vector<double> samples = WindowSamples(flatTop, 512);
  double sum = 0;
  for (const double sample : samples) sum += sample;
  EXPECT_NEAR(sum / 512, flatTop.gain, 1e-12);
  EXPECT_NEAR(samples[1], samples[511], 1e-12);
  EXPECT_NEAR(samples[256], 1.0, 1e-6);
}

TEST(Windows, OtherCoefficientsGiveAnotherBandwidth) {
  const Window other = FlatTopOf({1.0, 1.93, 1.29, 0.388, 0.028});
  EXPECT_NEAR(other.noiseBandwidth, 3.77, 0.01);
  EXPECT_FALSE(FlatTopOf({0.0, 1.0}).Known());
}

TEST(Windows, IntegrationStartsAtTheThirdBinOrBeyondTheLobe) {
  EXPECT_EQ(FirstIntegrableBin(WindowOf(WindowKind::Rectangular)), 3U);
  EXPECT_EQ(FirstIntegrableBin(WindowOf(WindowKind::Hanning)), 3U);
  EXPECT_EQ(FirstIntegrableBin(WindowOf(WindowKind::FlatTop)), 5U);
}

}  // namespace
}  // namespace kestrel::analysis
