// Behaviour of velocity over time.
// SPDX-License-Identifier: MIT
#include "analysis/time_velocity.h"

#include <gmock/gmock.h>

#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// mm/s of a tone of 1 g peak at this frequency.
double PeakVelocity(double hz) {
  return 1560.777 / hz;
}

TEST(TimeVelocity, AToneOnOrBetweenBinsReadsItsVelocityInTheMiddleOfTheRecord) {
  for (const double bin : {20.0, 31.4, 77.5, 150.25}) {
    const Told<VelocityRecord> velocity = VelocityOf(SamplesOf({{bin, 1.0, 0.4}}), 2, 16);
    ASSERT_TRUE(velocity);
    ASSERT_EQ(velocity->mmPerS.size(), 512U);
    const double amplitude = PeakVelocity(bin * BinWidth(2));
    for (std::size_t n = 100; n < 412; ++n) {
      // The integral of a cosine is a sine.
      const double turn = bin * static_cast<double>(n) / 512;
      const double truth = amplitude * std::sin(2 * std::numbers::pi * turn + 0.4);
      EXPECT_NEAR(velocity->mmPerS[n], truth, 0.01 * amplitude) << bin << " " << n;
    }
  }
}

TEST(TimeVelocity, OffsetAndTrendVanish) {
  std::vector<double> samples = SamplesOf({{40, 0.5, 0}}, 7.0);
  const double plain = VelocityOf(SamplesOf({{40, 0.5, 0}}), 2, 16)->rms;
  for (std::size_t n = 0; n < samples.size(); ++n) samples[n] += 0.003 * static_cast<double>(n);
  EXPECT_NEAR(VelocityOf(samples, 2, 16)->rms, plain, 1e-6);
}

TEST(TimeVelocity, TheEdgeWeakensByThreeDecibelsAndWhatIsBelowVanishes) {
  const double edge = 40 * BinWidth(2);
  const double at = VelocityOf(SamplesOf({{40, 1.0, 0}}), 2, edge)->rms;
  EXPECT_NEAR(at, PeakVelocity(edge) / 2, 0.02 * at);
  const double below = VelocityOf(SamplesOf({{10, 1.0, 0}}), 2, edge)->rms;
  EXPECT_LT(below, 0.05 * PeakVelocity(10 * BinWidth(2)));
}

TEST(TimeVelocity, FewerThanFivePeriodsAreRefusedWithTheOptionThatWouldDo) {
  const Told<VelocityRecord> velocity = VelocityOf(SamplesOf({{40, 1.0, 0}}), 0, 10);
  ASSERT_FALSE(velocity);
  const Refusal& refusal = velocity.Why();
  EXPECT_EQ(refusal.title, "Velocity from 10.0 Hz cannot be determined from this record");
  EXPECT_EQ(refusal.reason,
            "It is 5.11 ms long. A high-pass at 10.0 Hz needs five periods, 500 ms.");
  EXPECT_EQ(refusal.cureOption, 3);
  ASSERT_EQ(refusal.options.size(), 4U);
  EXPECT_NEAR(refusal.options[0].fromHz, 978.4, 0.05);
  EXPECT_NEAR(refusal.options[3].fromHz, 1.911, 0.001);
  EXPECT_TRUE(refusal.options[0].current);
  EXPECT_FALSE(refusal.options[2].wouldDo);
  EXPECT_TRUE(refusal.options[3].wouldDo);
}

TEST(TimeVelocity, ExactlyFivePeriodsWillDo) {
  for (int option = 0; option < 4; ++option) {
    EXPECT_TRUE(VelocityOf(SamplesOf({}), option, LowestVelocityOf(option)));
    EXPECT_FALSE(VelocityOf(SamplesOf({}), option, 0.999 * LowestVelocityOf(option)));
  }
}

TEST(TimeVelocity, BelowTheSlowestOptionTheCureIsAHigherFrequency) {
  const Told<VelocityRecord> velocity = VelocityOf(SamplesOf({}), 3, 1);
  ASSERT_FALSE(velocity);
  EXPECT_FALSE(velocity.Why().cureOption);
  EXPECT_EQ(velocity.Why().cure, "Start from 1.92 Hz");
}

TEST(TimeVelocity, FrequenciesOptionsAndRecordsThatAreNoneAreRefused) {
  const std::vector<double> samples = SamplesOf({{40, 1.0, 0}});
  for (const double none : {0.0, -10.0, kNan, std::numeric_limits<double>::infinity(), 1e6}) {
    EXPECT_FALSE(VelocityOf(samples, 0, none)) << none;
  }
  EXPECT_FALSE(VelocityOf(samples, 4, 2000));
  EXPECT_FALSE(VelocityOf(samples, -1, 2000));
  EXPECT_FALSE(VelocityOf(std::span(samples).first(1), 0, 2000));
  std::vector<double> broken = samples;
  broken[7] = kNan;
  EXPECT_FALSE(VelocityOf(broken, 0, 2000));
}

TEST(TimeVelocity, SilenceAndFullScaleGiveNumbers) {
  EXPECT_NEAR(VelocityOf(std::vector<double>(512, 0.0), 0, 1000)->rms, 0, 1e-12);
  EXPECT_NEAR(VelocityOf(std::vector<double>(512, 70.0), 0, 1000)->rms, 0, 1e-9);
}

}  // namespace
}  // namespace kestrel::analysis
