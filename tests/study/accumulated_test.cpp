// Averages and holds: when they stop, go on and begin anew.
// SPDX-License-Identifier: MIT
#include "study/accumulated.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "study/sample_records.h"

namespace kestrel::study {
namespace {

constexpr std::size_t kBin = 40;

Measured MeasuredOf(const Sample& sample) {
  return Measure(RecordOf(sample), {});
}

Sample Loud(double peakG, int second = 0) {
  return {.tones = {ToneAtBin(kBin, peakG)}, .second = second};
}

double At(const Accumulated& held, Extra extra, Axis axis = Axis::X) {
  return held.Of(extra, axis)->peakG[kBin];
}

TEST(Accumulated, HoldsNothingBeforeTheFirstCapture) {
  const Accumulated held(4);
  for (const Extra extra : {Extra::LinearAverage, Extra::ExponentialAverage, Extra::MaximumHold,
                            Extra::MinimumHold, Extra::Frozen, Extra::Reference}) {
    EXPECT_EQ(held.Of(extra, Axis::X), nullptr);
  }
}

TEST(Accumulated, ALinearAverageIsOfPowerAndStopsWhenComplete) {
  Accumulated held(2);
  held.Add(MeasuredOf(Loud(1)));
  held.Add(MeasuredOf(Loud(2)));
  const double mean = std::sqrt((1.0 + 4.0) / 2);
  EXPECT_NEAR(At(held, Extra::LinearAverage), mean, 0.001);
  held.Add(MeasuredOf(Loud(10)));
  EXPECT_NEAR(At(held, Extra::LinearAverage), mean, 0.001);
  EXPECT_EQ(held.Of(Extra::LinearAverage, Axis::X)->captures, 2);
}

TEST(Accumulated, AnExponentialAverageGoesOn) {
  Accumulated held(2);
  for (const double peak : {1.0, 2.0, 10.0}) held.Add(MeasuredOf(Loud(peak)));
  const double two = (1.0 + 4.0) / 2;
  EXPECT_NEAR(At(held, Extra::ExponentialAverage), std::sqrt(two + 2.0 / 3 * (100 - two)), 0.002);
  EXPECT_EQ(held.Of(Extra::ExponentialAverage, Axis::X)->captures, 3);
}

TEST(Accumulated, HoldsKeepTheLargestAndTheLeastAndCount) {
  Accumulated held(2);
  for (const double peak : {2.0, 5.0, 1.0, 3.0}) held.Add(MeasuredOf(Loud(peak)));
  EXPECT_NEAR(At(held, Extra::MaximumHold), 5, 0.001);
  EXPECT_NEAR(At(held, Extra::MinimumHold), 1, 0.001);
  EXPECT_NEAR(At(held, Extra::MaximumHold, Axis::Y), 2.5, 0.001);
  EXPECT_EQ(held.Of(Extra::MaximumHold, Axis::X)->captures, 4);
  EXPECT_EQ(held.Of(Extra::MinimumHold, Axis::Z)->captures, 4);
}

TEST(Accumulated, OtherSettingsBeginAnewAndSayWhy) {
  Accumulated held(5);
  held.Add(MeasuredOf(Loud(1)));
  EXPECT_EQ(held.Restarted(), "");
  Sample other = Loud(2);
  other.window = WindowShape::FlatTop;
  held.Add(MeasuredOf(other));
  EXPECT_EQ(held.Restarted(), "other window: Flat top");
  EXPECT_EQ(held.Of(Extra::MaximumHold, Axis::X)->captures, 1);
  held.Add(MeasuredOf(other));
  EXPECT_EQ(held.Restarted(), "other window: Flat top");
  other.option = 2;
  held.Add(MeasuredOf(other));
  EXPECT_EQ(held.Restarted(), "other sample-rate option: 2");
  held.Restart();
  EXPECT_EQ(held.Restarted(), "");
  EXPECT_EQ(held.Of(Extra::MaximumHold, Axis::X), nullptr);
}

TEST(Accumulated, AnotherNumberOfCapturesBeginsAnew) {
  Accumulated held(2);
  held.Add(MeasuredOf(Loud(1)));
  held.AverageOf(2);
  EXPECT_NE(held.Of(Extra::LinearAverage, Axis::X), nullptr);
  held.AverageOf(3);
  EXPECT_EQ(held.Of(Extra::LinearAverage, Axis::X), nullptr);
}

TEST(Accumulated, AnAxisThatCannotBeToldIsLeftOut) {
  Accumulated held(5);
  held.Add(MeasuredOf(Loud(1)));
  held.Add(Measure(Changed(Loud(2),
                           [](Record& record) {
                             record.Of(Axis::X).data(3) = std::numeric_limits<double>::infinity();
                           }),
                   {}));
  EXPECT_EQ(held.Of(Extra::MaximumHold, Axis::X)->captures, 1);
  EXPECT_EQ(held.Of(Extra::MaximumHold, Axis::Y)->captures, 2);
}

TEST(Accumulated, OfNoCaptureCountsAsOfOne) {
  Accumulated held(0);
  for (const double peak : {1.0, 2.0}) held.Add(MeasuredOf(Loud(peak)));
  EXPECT_EQ(held.Of(Extra::LinearAverage, Axis::X)->captures, 1);
  EXPECT_NEAR(At(held, Extra::ExponentialAverage), 2, 0.001);
}

}  // namespace
}  // namespace kestrel::study
