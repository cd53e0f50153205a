// Behaviour of averages, holds and differences.
// SPDX-License-Identifier: MIT
#include "analysis/trace_set.h"

#include <gmock/gmock.h>

#include "tones.h"

namespace kestrel::analysis {
namespace {

Spectrum Flat(double peakG) {
  Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  spectrum.peakG.assign(256, peakG);
  spectrum.stepG = 0.001;
  return spectrum;
}

TEST(TraceSet, AnAverageIsOfPower) {
  TraceAverage average(Averaging::Linear, 2);
  EXPECT_FALSE(average.Value());
  EXPECT_FALSE(average.Add(Flat(1)));
  EXPECT_FALSE(average.Complete());
  EXPECT_FALSE(average.Add(Flat(7)));
  EXPECT_DOUBLE_EQ(average.Value()->peakG[9], 5);
  EXPECT_EQ(average.Value()->captures, 2);
  EXPECT_TRUE(average.Complete());
}

TEST(TraceSet, ALinearAverageIsCompleteAndAnExponentialOneGoesOn) {
  TraceAverage linear(Averaging::Linear, 3);
  TraceAverage exponential(Averaging::Exponential, 3);
  for (const double value : {1.0, 2.0, 3.0}) {
    (void)linear.Add(Flat(value));
    (void)exponential.Add(Flat(value));
  }
  EXPECT_DOUBLE_EQ(linear.Value()->peakG[0], exponential.Value()->peakG[0]);
  const double power = (1.0 + 4 + 9) / 3;
  (void)linear.Add(Flat(4));
  (void)exponential.Add(Flat(4));
  EXPECT_DOUBLE_EQ(linear.Value()->peakG[0], std::sqrt(power));
  EXPECT_DOUBLE_EQ(exponential.Value()->peakG[0], std::sqrt(power + 0.5 * (16 - power)));
  EXPECT_EQ(exponential.Value()->captures, 4);
}

TEST(TraceSet, HoldsKeepTheLargestAndTheSmallestOfEachBin) {
  TraceHold largest(Hold::Maximum);
  TraceHold smallest(Hold::Minimum);
  for (const double value : {2.0, 1.0, 3.0}) {
    (void)largest.Add(Flat(value));
    (void)smallest.Add(Flat(value));
  }
  EXPECT_EQ(largest.Value()->peakG[3], 3);
  EXPECT_EQ(smallest.Value()->peakG[3], 1);
  EXPECT_EQ(largest.Value()->captures, 3);
  EXPECT_EQ(largest.Value()->source, SpectrumSource::MaximumHold);
}

TEST(TraceSet, MaximumHoldLiftsNoiseByWhatIsShown) {
  EXPECT_NEAR(NoiseLiftDb(10), 4.7, 0.05);
  EXPECT_NEAR(NoiseLiftDb(100), 7.1, 0.06);
  EXPECT_EQ(NoiseLiftDb(1), 0);
  EXPECT_EQ(NoiseLiftDb(-3), 0);
  std::mt19937_64 random(5);
  double one = 0;
  double held = 0;
  for (int round = 0; round < 20; ++round) {
    TraceHold hold(Hold::Maximum);
    for (int capture = 0; capture < 10; ++capture) {
      std::vector<double> samples(512);
      AddNoise(samples, 1, random);
      const Spectrum spectrum = SpectrumOfSamples(samples, WindowKind::Hanning);
      (void)hold.Add(spectrum);
      for (std::size_t bin = 2; bin < 256; ++bin) one += std::pow(spectrum.peakG[bin], 2) / 10;
    }
    for (std::size_t bin = 2; bin < 256; ++bin) held += std::pow(hold.Value()->peakG[bin], 2);
  }
  EXPECT_NEAR(10 * std::log10(held / one), NoiseLiftDb(10), 0.15);
}

TEST(TraceSet, WhatIsNotCompatibleIsRefusedWithItsReasonAndChangesNothing) {
  Spectrum other = Flat(9);
  TraceAverage average(Averaging::Linear, 5);
  (void)average.Add(Flat(1));
  other.axis = Axis::Y;
  EXPECT_EQ(average.Add(other), "other axis: Y");
  other = SpectrumOfTones({}, WindowKind::Hanning, 2);
  EXPECT_EQ(average.Add(other), "other sample-rate option: 2");
  other = SpectrumOfTones({}, WindowKind::FlatTop);
  EXPECT_EQ(average.Add(other), "other window: Flat top");
  other = Flat(9);
  other.meaning = MagnitudeMeaning::Rms;
  EXPECT_TRUE(average.Add(other));
  other = Flat(9);
  other.peakG.resize(1);
  EXPECT_TRUE(average.Add(other));
  EXPECT_EQ(average.Value()->captures, 1);
  EXPECT_EQ(average.Value()->peakG[3], 1);
}

TEST(TraceSet, AnotherRangeMayBeAveraged) {
  Spectrum other = Flat(7);
  other.range = 2;
  EXPECT_FALSE(WhyNotWith(Flat(1), other));
}

TEST(TraceSet, TracesOfSeveralCapturesAreNotAveragedAgain) {
  TraceHold hold(Hold::Maximum);
  (void)hold.Add(Flat(1));
  TraceAverage average(Averaging::Linear, 5);
  EXPECT_TRUE(average.Add(*hold.Value()));
}

TEST(TraceSet, DifferenceToAReferenceIsInDecibels) {
  const Told<DifferenceCurve> difference = DifferenceDb(Flat(2), Flat(1));
  EXPECT_NEAR(difference->db[10], 6.0206, 1e-4);
  EXPECT_EQ(difference->firstValid, 2U);
  EXPECT_EQ(DifferenceDb(Flat(0), Flat(0))->db[10], 0);
  EXPECT_TRUE(std::isfinite(DifferenceDb(Flat(0), Flat(1))->db[10]));
  const Told<DifferenceCurve> refused =
      DifferenceDb(Flat(2), SpectrumOfTones({}, WindowKind::FlatTop));
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.Why().reason, "The trace has other window: Hanning.");
}

TEST(TraceSet, TransformsOfTimeRecordsMayBeAveragedAndHeld) {
  Spectrum own = Flat(3);
  own.source = SpectrumSource::TimeRecord;
  TraceAverage average(Averaging::Linear, 1);
  EXPECT_FALSE(average.Complete()) << "nothing is in it yet";
  EXPECT_FALSE(average.Add(own));
  EXPECT_TRUE(average.Complete());
  EXPECT_EQ(average.Value()->source, SpectrumSource::Average);
  TraceHold hold(Hold::Minimum);
  EXPECT_FALSE(hold.Add(own));
  EXPECT_EQ(hold.Value()->source, SpectrumSource::MinimumHold);
}

TEST(TraceSet, AHoldRefusesWhatIsNotCompatibleAndStaysAsItWas) {
  TraceHold hold(Hold::Maximum);
  (void)hold.Add(Flat(1));
  Spectrum other = Flat(9);
  other.binWidthHz /= 2;
  EXPECT_EQ(hold.Add(other), "other sample-rate option: 0");
  EXPECT_EQ(hold.Value()->peakG[3], 1);
  EXPECT_EQ(hold.Value()->captures, 1);
}

TEST(TraceSet, TheLaterCaptureGivesTheTimeAndTheCoarserTheStep) {
  TraceHold hold(Hold::Maximum);
  Spectrum first = Flat(1);
  first.stepG = 0.004;
  Spectrum later = Flat(2);
  later.time += std::chrono::seconds(5);
  (void)hold.Add(first);
  (void)hold.Add(later);
  EXPECT_EQ(hold.Value()->time, later.time);
  EXPECT_EQ(hold.Value()->stepG, 0.004);
}

}  // namespace
}  // namespace kestrel::analysis
