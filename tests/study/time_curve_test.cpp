// The samples of a time record as accelerations and velocities, and what is refused.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "analysis/time_velocity.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

using testing::HasSubstr;

const Sample kShaking{.tones = {ToneAtBin(64, 2)}, .kind = RecordKind::Time};

Study InVelocity(double fromHz) {
  StudyChoice choice;
  choice.view = View::Time;
  choice.timeQuantity = TimeQuantity::Velocity;
  choice.timeFromHz = fromHz;
  return StudyOf(choice, {kShaking});
}

TEST(TimeCurve, HoldsTheSamplesInGAtTheirOwnRange) {
  const Record record = TakenOf(kShaking);
  const auto curve = SamplesOf(record, Axis::X);
  ASSERT_TRUE(curve);
  ASSERT_EQ(curve->values.size(), 512U);
  EXPECT_EQ(curve->stepS, 1 / SampleFrequency(0));
  EXPECT_EQ(curve->fromHz, 0);
  for (int i = 0; i < 512; ++i) {
    ASSERT_EQ(curve->values[static_cast<std::size_t>(i)],
              record.Of(Axis::X).raw(i) * LsbWeightOf(2, RecordKind::Time));
  }
  EXPECT_EQ(SamplesOf(Rescaled(record, 0), Axis::X)->values, curve->values);
}

TEST(TimeCurve, OfWhatHoldsNoSamplesIsRefused) {
  Record record = TakenOf(kShaking);
  const auto why = [&record] {
    const auto curve = SamplesOf(record, Axis::Y);
    return curve ? "" : curve.Why().reason;
  };
  for (const std::int16_t code : {std::int16_t{-1}, std::int16_t{4}}) {
    record.settings.option = code;
    EXPECT_EQ(why(), "Its sample-rate option is not one of 0 to 3.");
    record.settings.option = 0;
    record.settings.range = code;
    EXPECT_EQ(why(), "Its range is not one of the sensor's.");
    record.settings.range = 2;
  }
  record.settings.option = record.settings.range = 3;
  EXPECT_EQ(why(), "");
  record = TakenOf(kShaking);
  record.Of(Axis::Y).data(511) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(why(), "It holds values that are not numbers.");
  EXPECT_TRUE(SamplesOf(record, Axis::X));
  record.kind = RecordKind::Spectrum;
  EXPECT_THAT(why(), HasSubstr("samples cannot be determined from them"));
}

TEST(TimeCurve, VelocityBeginsAtTheLowestFrequencyOrTheOneThatIsChosen) {
  for (const double fromHz : {0.0, 2000.0}) {
    const Study study = InVelocity(fromHz);
    EXPECT_FALSE(study.Refused());
    const auto curve = study.TimeCurveOf(Axis::X);
    ASSERT_TRUE(curve);
    EXPECT_EQ(curve->fromHz, fromHz > 0 ? fromHz : analysis::LowestVelocityOf(0));
    EXPECT_EQ(curve->stepS, 1 / SampleFrequency(0));
    double square = 0;
    for (std::size_t i = 128; i < 384; ++i) square += std::pow(curve->values[i], 2) / 256;
    const double wanted = analysis::kVelocityOfG * 2 / (64 * BinWidth(0)) / std::sqrt(2.0);
    EXPECT_NEAR(std::sqrt(square), wanted, 0.02 * wanted);
  }
}

TEST(TimeCurve, VelocityFromBelowWhatTheRecordHoldsIsRefused) {
  const Study study = InVelocity(10);
  ASSERT_TRUE(study.Refused());
  EXPECT_THAT(study.Refused()->title, HasSubstr("Velocity from 10.0 Hz cannot be determined"));
  EXPECT_FALSE(study.TimeCurveOf(Axis::Z));
}

TEST(TimeCurve, AccelerationIsThatOfTheSamples) {
  const Study study = StudyOf({.view = View::Time}, {kShaking});
  EXPECT_EQ(study.TimeCurveOf(Axis::Z)->values, SamplesOf(TakenOf(kShaking), Axis::Z)->values);
  EXPECT_FALSE(study.TimeCurveOf(*RecordOf({}), Axis::X)) << "a spectrum has none";
}

}  // namespace
}  // namespace kestrel::study
