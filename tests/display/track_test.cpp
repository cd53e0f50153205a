// Curves as cursors read them, and how values and places are written.
// SPDX-License-Identifier: MIT
#include "display/track.h"

#include <gtest/gtest.h>

#include <cmath>

#include "display/scene.h"
#include "study/sample_records.h"

namespace kestrel::study {
namespace {

TEST(Track, IsEmptyWhereThereIsNothingToRead) {
  EXPECT_TRUE(Track{}.Empty());
  EXPECT_TRUE(TrackOf(Study(SampleClock), Axis::X).Empty());
  const Study spectrumOverTime = StudyOf({.view = View::Time}, {{}});
  EXPECT_TRUE(TrackOf(spectrumOverTime, Axis::X).Empty());
  const Study noReference = StudyOf({.difference = true}, {{}});
  EXPECT_TRUE(TrackOf(noReference, Axis::X).Empty());
}

TEST(Track, KnowsWhatItsValuesAre) {
  StudyChoice choice;
  for (const auto quantity : {analysis::Quantity::Acceleration, analysis::Quantity::Level,
                              analysis::Quantity::Density, analysis::Quantity::Velocity}) {
    choice.quantity.quantity = quantity;
    const Track track = TrackOf(StudyOf(choice, {{}}), Axis::Y);
    EXPECT_FALSE(track.Empty());
    EXPECT_EQ(track.decibel, quantity == analysis::Quantity::Level);
    EXPECT_EQ(track.power, quantity == analysis::Quantity::Density);
    EXPECT_EQ(track.firstVibration, 2U);
    EXPECT_EQ(track.firstValid, quantity == analysis::Quantity::Velocity ? 3U : 2U);
  }
}

TEST(Track, TellsAValueOnlyFromOneStepOn) {
  const double step = LsbWeightOf(2, RecordKind::Spectrum);
  Study study(SampleClock);
  study.Take(Changed({}, [](Record& record) {
    record.Of(Axis::X).raw(50) = 1;
    record.Of(Axis::X).raw(51) = 2;
    record = Rescaled(record, record.settings.range);
  }));
  const Track track = TrackOf(study, Axis::X);
  const double bin = BinWidth(0);
  EXPECT_FALSE(track.ToldAt(49 * bin));
  EXPECT_DOUBLE_EQ(track.ToldAt(50 * bin).value_or(0), step);
  EXPECT_NEAR(track.ToldAt(50.5 * bin).value_or(0), 1.5 * step, 1e-12);
  EXPECT_EQ(TextAt(track, 50 * bin), "0.000305 g");
  EXPECT_EQ(TextAt(track, 49.4 * bin), "below 0.00031 g");
}

TEST(Track, ADifferenceHasNoValueWhereEitherIsBelowOneStep) {
  Study study = StudyOf({}, {{.tones = {ToneAtBin(40, 1)}}});
  study.TakeReference();
  study.Take(RecordOf({.tones = {ToneAtBin(80, 1)}, .second = 1}));
  const Track track = DifferenceOf(study, Axis::X);
  EXPECT_TRUE(std::isnan(track.values[40]));
  EXPECT_TRUE(std::isnan(track.values[80]));
  EXPECT_TRUE(std::isnan(track.values[120]));
}

TEST(Track, PlacesHaveTheDigitsThatTheirStepTells) {
  EXPECT_EQ(TimePlaceText(0.00512345, 9.98e-6), "5.123 ms");
  EXPECT_EQ(TimePlaceText(1.2345678, 0.00511), "1,234.6 ms");
  EXPECT_EQ(FrequencyPlaceText({.binWidthHz = 195.7}, 22698.24), "22,698.2 Hz");
  EXPECT_EQ(FrequencyPlaceText({.binWidthHz = 0.382}, 22.6982), "22.70 Hz");
  EXPECT_EQ(FrequencyPlaceText({.unit = analysis::HorizontalUnit::Bin, .binWidthHz = 10}, 123.4),
            "12.3 bin");
  EXPECT_EQ(FrequencyPlaceText({}, 12), "12.0 Hz");
}

TEST(Track, AmplitudesAreWrittenAsTheirQuantityIs) {
  EXPECT_EQ(AmplitudeText({}, 0.45432), "0.454");
  EXPECT_EQ(AmplitudeText({.quantity = analysis::Quantity::Level}, -123.456), "\u2212123.5");
}

}  // namespace
}  // namespace kestrel::study
