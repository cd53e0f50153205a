// Behaviour of the quantities.
// SPDX-License-Identifier: MIT
#include "analysis/quantity.h"

#include <gmock/gmock.h>

#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

Spectrum OneG(int option = 0, WindowKind window = WindowKind::Hanning) {
  Spectrum spectrum{.binWidthHz = BinWidth(option), .window = WindowOf(window), .option = option};
  spectrum.peakG.assign(256, 1.0);
  spectrum.stepG = 0.001;
  return spectrum;
}

double At(const Spectrum& spectrum, QuantityChoice choice, double hz) {
  return ValueIn(spectrum, choice, 1.0, hz);
}

TEST(Quantity, OneGIsWhatThePublishedConstantsSay) {
  const Spectrum one = OneG();
  EXPECT_DOUBLE_EQ(At(one, {Quantity::Acceleration, Amplitude::Rms}, 100), 1 / std::sqrt(2.0));
  EXPECT_DOUBLE_EQ(At(one, {Quantity::Acceleration, Amplitude::PeakToPeak}, 100), 2);
  EXPECT_NEAR(At(one, {Quantity::Velocity, Amplitude::Rms}, 100), 15.60777 / std::sqrt(2.0), 1e-5);
  EXPECT_NEAR(At(one, {Quantity::Displacement, Amplitude::PeakToPeak}, 100), 49.6811, 1e-4);
  EXPECT_NEAR(At(one, {Quantity::Level}, 100), -3.0103, 1e-4);
  EXPECT_NEAR(LevelOf(1, LevelReference::MicrometrePerSecondSquared), 139.83, 0.005);
  EXPECT_NEAR(At(one, {Quantity::Density}, 100), 0.5 / (1.5 * BinWidth(0)), 1e-12);
}

TEST(Quantity, TheMeanHasNoRmsAndNoVelocity) {
  const Spectrum one = OneG();
  EXPECT_EQ(At(one, {Quantity::Acceleration, Amplitude::Rms}, 0), 1);
  EXPECT_EQ(At(one, {Quantity::Acceleration, Amplitude::PeakToPeak}, 0), 1);
  EXPECT_EQ(At(one, {Quantity::Velocity}, 0), 0);
  EXPECT_EQ(At(one, {Quantity::Level}, 0), 0);
}

TEST(Quantity, EveryAxisSaysWhatItIs) {
  EXPECT_EQ(TitleOf({}), "Acceleration, g peak");
  EXPECT_EQ(TitleOf({Quantity::Velocity, Amplitude::Rms}), "Velocity, mm/s RMS");
  EXPECT_EQ(TitleOf({Quantity::Displacement, Amplitude::PeakToPeak}),
            "Displacement, µm peak to peak");
  EXPECT_EQ(TitleOf({Quantity::Density, Amplitude::Peak}), "Acceleration density, g²/Hz");
  EXPECT_EQ(TitleOf({Quantity::Level}), "Level, dB re 1 g RMS");
  EXPECT_EQ(TitleOf({Quantity::Level, Amplitude::Peak, LevelReference::MicrometrePerSecondSquared}),
            "Level, dB re 1 µm/s² RMS");
}

TEST(Quantity, VelocityStartsAtTheThirdBinOrTheLowestFrequencyWhicheverIsHigher) {
  EXPECT_EQ(InQuantity(OneG(), {.quantity = Quantity::Velocity})->firstValid, 3U);
  EXPECT_EQ(InQuantity(OneG(0, WindowKind::FlatTop), {.quantity = Quantity::Velocity})->firstValid,
            5U);
  EXPECT_EQ(InQuantity(OneG(), {.quantity = Quantity::Velocity, .lowestHz = 10})->firstValid, 3U);
  EXPECT_EQ(InQuantity(OneG(), {.quantity = Quantity::Velocity, .lowestHz = 1000})->firstValid, 6U);
  EXPECT_EQ(InQuantity(OneG(), {.quantity = Quantity::Acceleration})->firstValid, 2U);
  for (const double none : {kNan, kInfinity, -5.0}) {
    EXPECT_EQ(InQuantity(OneG(), {.quantity = Quantity::Velocity, .lowestHz = none})->firstValid,
              3U);
  }
}

TEST(Quantity, TheFloorIsOneStepOfTheMagnitudeWord) {
  const Told<QuantityCurve> velocity = InQuantity(OneG(), {Quantity::Velocity, Amplitude::Rms});
  const double hz = 10 * BinWidth(0);
  EXPECT_NEAR(velocity->floor[10], 1560.777 * 0.001 / std::sqrt(2.0) / hz, 1e-9);
}

TEST(Quantity, DensityOfAHeldTraceIsRefused) {
  Spectrum held = OneG();
  held.source = SpectrumSource::MaximumHold;
  const Told<QuantityCurve> density = InQuantity(held, {.quantity = Quantity::Density});
  ASSERT_FALSE(density);
  EXPECT_EQ(density.Why().cure, "Take an average instead");
  held.source = SpectrumSource::MinimumHold;
  EXPECT_FALSE(InQuantity(held, {.quantity = Quantity::Density}));
  held.source = SpectrumSource::Average;
  EXPECT_TRUE(InQuantity(held, {.quantity = Quantity::Density}));
}

TEST(Quantity, DensityOfAnUnknownWindowIsRefused) {
  Spectrum spectrum = OneG();
  spectrum.window = WindowOfCode(3);
  EXPECT_FALSE(InQuantity(spectrum, {.quantity = Quantity::Density}));
  EXPECT_TRUE(InQuantity(spectrum, {.quantity = Quantity::Velocity}));
}

TEST(Quantity, VelocityFromTenHertzNamesTheOptionThatWouldDo) {
  const std::optional<Refusal> refusal =
      WhyNotBetween(OneG(), {.quantity = Quantity::Velocity}, 10, 90);
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->title,
            "Velocity from 10.0 Hz to 90.0 Hz cannot be determined from this record");
  EXPECT_EQ(refusal->reason, "It begins at 588 Hz and ends at 49.8 kHz.");
  EXPECT_NEAR(refusal->has, 587.05, 0.01);
  EXPECT_EQ(refusal->needs, 10);
  EXPECT_EQ(refusal->cureOption, 2);
  EXPECT_EQ(refusal->cure, "Capture at option 2");
  ASSERT_EQ(refusal->options.size(), 4U);
  EXPECT_TRUE(refusal->options[0].current);
  EXPECT_TRUE(refusal->options[3].wouldDo);
  EXPECT_FALSE(refusal->options[1].wouldDo);
}

TEST(Quantity, ABandThatNoOptionCoversIsRefusedWithTheWideSpectrumAsCure) {
  const std::optional<Refusal> refusal =
      WhyNotBetween(OneG(1), {.quantity = Quantity::Velocity}, 10, 1000);
  ASSERT_TRUE(refusal);
  EXPECT_FALSE(refusal->cureOption);
  EXPECT_EQ(refusal->cure, "Take one spectrum over all sample-rate options");
}

TEST(Quantity, BandsThatAreNoneAreRefusedAndCoveredOnesAreNot) {
  const QuantityChoice velocity{.quantity = Quantity::Velocity};
  for (const double none : {kNan, kInfinity, -1.0}) {
    EXPECT_TRUE(WhyNotBetween(OneG(), velocity, none, 100));
    EXPECT_TRUE(WhyNotBetween(OneG(), velocity, 100, none));
  }
  EXPECT_TRUE(WhyNotBetween(OneG(), velocity, 2000, 1000));
  EXPECT_FALSE(WhyNotBetween(OneG(), velocity, 1000, 2000));
  EXPECT_TRUE(WhyNotBetween(Spectrum{}, velocity, 1000, 2000));
}

TEST(Quantity, ALowestFrequencyBeyondTheRecordIsRefused) {
  const Told<QuantityCurve> curve =
      InQuantity(OneG(3), {.quantity = Quantity::Displacement, .lowestHz = 500});
  ASSERT_FALSE(curve);
  EXPECT_EQ(curve.Why().title, "Displacement from 500 Hz cannot be determined from this record");
  EXPECT_EQ(curve.Why().cureOption, 1);
  EXPECT_FALSE(InQuantity(OneG(0), {.quantity = Quantity::Velocity, .lowestHz = 1e9}));
}

TEST(Quantity, NothingIsALevelOfHalfAStepAndEveryValueIsFinite) {
  Spectrum silent = OneG();
  silent.peakG.assign(256, 0.0);
  const Told<QuantityCurve> level = InQuantity(silent, {.quantity = Quantity::Level});
  EXPECT_NEAR(level->values[9], 20 * std::log10(0.0005 / std::sqrt(2.0)), 1e-9);
  silent.stepG = 0;
  for (const Quantity each : {Quantity::Acceleration, Quantity::Level, Quantity::Density,
                              Quantity::Velocity, Quantity::Displacement}) {
    const Told<QuantityCurve> curve = InQuantity(silent, {.quantity = each});
    for (const double value : curve->values) EXPECT_TRUE(std::isfinite(value));
  }
}

TEST(Quantity, ASpectrumOfOnePointIsReadWithoutAValidBin) {
  Spectrum one = OneG();
  one.peakG.resize(1);
  EXPECT_EQ(InQuantity(one, {})->firstValid, 1U);
  EXPECT_FALSE(InQuantity(one, {.quantity = Quantity::Velocity}));
}

TEST(Quantity, ShortUnitsNameNoKind) {
  EXPECT_EQ(ShortUnitOf({Quantity::Acceleration, Amplitude::Rms}), "g");
  EXPECT_EQ(ShortUnitOf({Quantity::Level}), "dB");
  EXPECT_EQ(ShortUnitOf({Quantity::Density}), "g\u00B2/Hz");
  EXPECT_EQ(ShortUnitOf({Quantity::Velocity}), "mm/s");
  EXPECT_EQ(ShortUnitOf({Quantity::Displacement}), "\u00B5m");
}

TEST(Quantity, ASpectrumWithoutAWidthHasNoDensity) {
  Spectrum spectrum = OneG();
  spectrum.binWidthHz = 0;
  EXPECT_EQ(At(spectrum, {Quantity::Density}, 100), 0);
}

TEST(Quantity, HoldsBelowOneHertzToo) {
  const Spectrum slow = OneG(3);
  EXPECT_NEAR(At(slow, {Quantity::Velocity}, 0.5), 1560.777 / 0.5, 1e-3);
  EXPECT_NEAR(At(slow, {Quantity::Displacement, Amplitude::PeakToPeak}, 0.5), 496811 / 0.25, 5);
  EXPECT_NEAR(At(slow, {Quantity::Acceleration, Amplitude::Rms}, 0.5), 1 / std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(At(slow, {Quantity::Level}, 0.5), -3.0103, 1e-4);
  EXPECT_NEAR(At(slow, {Quantity::Level}, 0), 0, 1e-12) << "the mean is no sine";
}

}  // namespace
}  // namespace kestrel::analysis
