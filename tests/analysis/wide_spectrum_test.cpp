// What a wide spectrum tells of its records, and the power that averaged magnitudes take from
// noise. SPDX-License-Identifier: MIT
#include "analysis/wide_spectrum.h"

#include <gmock/gmock.h>

#include "analysis/levels.h"
#include "tones.h"

namespace kestrel::analysis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

Record Taken(int option, int averages = 1, double word = 100) {
  Record record;
  record.settings = SettingsFromWords(option << 14 | 1 << 12 | 3 << 10 | averages, 0);
  record.scaledRange = 3;
  record.lsbWeight = LsbWeightOf(3, RecordKind::Spectrum);
  record.time = std::chrono::system_clock::from_time_t(1'763'750'000 + option);
  for (AxisRecord& axis : record.axes) {
    for (int i = 0; i < 256; ++i) {
      axis.raw(i) = word;
      axis.data(i) = word * record.lsbWeight;
    }
  }
  return record;
}

std::vector<int> OptionsOf(const WideSpectrum& wide) {
  std::vector<int> options;
  for (const Record& record : wide.records) options.push_back(record.settings.option);
  return options;
}

TEST(WideSpectrum, HoldsItsRecordsTheFinestFirstAndSaysWhatIsMissing) {
  const WideSpectrum wide = WideOf({Taken(0), Taken(3), Taken(1)});
  EXPECT_THAT(OptionsOf(wide), ElementsAre(3, 1, 0));
  EXPECT_THAT(wide.missing, ElementsAre(2));
  EXPECT_THAT(WideOf({Taken(0), Taken(3)}, {.wanted = 0b1001}).missing, IsEmpty());
  ASSERT_EQ(wide.axes.size(), 3U);
  EXPECT_EQ(wide.axes[1]->segments.size(), 3U);
}

TEST(WideSpectrum, OfTwoRecordsOfOneOptionTheLaterOneCounts) {
  Record later = Taken(2, 1, 300);
  later.time += std::chrono::seconds(60);
  const WideSpectrum wide = WideOf({later, Taken(2), Taken(3)});
  EXPECT_THAT(OptionsOf(wide), ElementsAre(3, 2));
  EXPECT_EQ(wide.records[1].Of(Axis::X).raw(7), 300);
}

TEST(WideSpectrum, ARecordThatIsNoSpectrumIsRefusedByItsOption) {
  Record time = Taken(1);
  time.kind = RecordKind::Time;
  const WideSpectrum wide = WideOf({Taken(0), time});
  ASSERT_FALSE(wide.axes[0]);
  EXPECT_THAT(wide.axes[0].Why().reason, HasSubstr("option 1 is a time record"));
  EXPECT_FALSE(wide.Steady());
  EXPECT_FALSE(WideOf({}).axes[0]);
}

TEST(WideSpectrum, NamesWhatDisagrees) {
  // The same words are the less density the wider the bins are: 9 dB an option.
  const WideSpectrum wide = WideOf({Taken(3), Taken(2)});
  EXPECT_FALSE(wide.Steady());
  ASSERT_EQ(wide.Disagreements().size(), 3U);
  EXPECT_THAT(wide.Disagreements()[0], HasSubstr("X, options 3 and 2: "));
  EXPECT_TRUE(WideOf({Taken(3), Taken(2)}, {.limitDb = 10}).Steady());
}

TEST(WideSpectrum, ItsCurveIsTheDensityOrTheMagnitudeInAQuantity) {
  const WideSpectrum wide = WideOf({Taken(3, 255), Taken(2, 255)});
  const Joined& joined = *wide.axes[0];
  const WideCurve density = CurveOf(joined, {.quantity = Quantity::Density});
  const WideCurve velocity =
      CurveOf(joined, {.quantity = Quantity::Velocity, .amplitude = Amplitude::Rms});
  ASSERT_EQ(density.values.size(), joined.points.size());
  EXPECT_EQ(density.unit, "g²/Hz");
  EXPECT_EQ(velocity.unit, "mm/s RMS");
  for (std::size_t i = 0; i < joined.points.size(); ++i) {
    const JoinedPoint& point = joined.points[i];
    EXPECT_EQ(density.values[i], point.density);
    EXPECT_NEAR(velocity.values[i], kVelocityOfG * point.peakG / std::sqrt(2.0) / point.hz, 1e-12);
    EXPECT_NEAR(velocity.values[i] / velocity.steps[i], 100, 1e-9);
  }
  EXPECT_THAT(NoiseNotice(joined), HasSubstr("1.0 dB"));
  EXPECT_EQ(NoiseNotice(*WideOf({Taken(3)}).axes[0]), "");
}

// Magnitudes of noise with lines, averaged as the sensor does.
Spectrum Averaged(int averages, const std::vector<Tone>& tones, double noiseG, unsigned seed = 4) {
  std::mt19937_64 random(seed);
  Spectrum mean;
  for (int i = 0; i < averages; ++i) {
    std::vector<double> samples = SamplesOf(tones);
    AddNoise(samples, noiseG, random);
    Spectrum one = SpectrumOfSamples(samples, WindowKind::Hanning);
    if (i == 0) mean = one;
    for (std::size_t bin = 0; i > 0 && bin < one.Bins(); ++bin) mean.peakG[bin] += one.peakG[bin];
  }
  for (double& value : mean.peakG) value /= averages;
  mean.averages = averages;
  return mean;
}

TEST(PowerOfNoise, IsGivenBackWhateverTheNumberOfAverages) {
  for (const int averages : {1, 2, 8, 255}) {
    double power = 0;
    const int spectra = 2000 / averages + 1;
    for (int i = 0; i < spectra; ++i) {
      const auto seed = static_cast<unsigned>(i);
      const Spectrum given = WithPowerOfNoise(Averaged(averages, {}, 0.1, seed));
      power += PowerBetween(given, given.FrequencyOf(20), given.FrequencyOf(230)) / spectra;
    }
    // White over all 256 bins.
    EXPECT_NEAR(10 * std::log10(power / (0.01 * 210 / 256)), 0, 0.1) << averages;
  }
}

TEST(PowerOfNoise, LinesGetNoMoreThanTheShareOfTheNoiseBesideThem) {
  const Spectrum read = Averaged(255, {{60.0, 1.0, 0.2}, {140.5, 0.3, 0.7}}, 0.02);
  const Spectrum given = WithPowerOfNoise(read);
  EXPECT_NEAR(given.peakG[60], read.peakG[60], 1e-4);
  EXPECT_NEAR(given.peakG[140], read.peakG[140], 1e-4);
  EXPECT_NEAR(20 * std::log10(given.peakG[100] / read.peakG[100]),
              -NoiseOfAveragedMagnitudesDb(255), 1e-6);
}

TEST(PowerOfNoise, OneAverageIsLeftAsItIs) {
  const Spectrum read = Averaged(1, {{60.0, 1.0, 0.2}}, 0.02);
  EXPECT_EQ(WithPowerOfNoise(read), read);
}

TEST(WideSpectrum, OnlyTheNeighboursThatDisagreeAreNamed) {
  const WideSpectrum wide = WideOf({Taken(3, 1, 283), Taken(2, 1, 800), Taken(1)});
  ASSERT_EQ(wide.axes[0]->overlaps.size(), 2U);
  ASSERT_EQ(wide.Disagreements().size(), 3U);
  EXPECT_THAT(wide.Disagreements()[1], HasSubstr("Y, options 2 and 1: "));
}

TEST(WideSpectrum, AnAxisThatHoldsNoNumberIsRefusedAndTheOthersAreJudged) {
  Record broken = Taken(3);
  broken.Of(Axis::Y).raw(9) = std::numeric_limits<double>::quiet_NaN();
  broken.Of(Axis::Y).data(9) = std::numeric_limits<double>::quiet_NaN();
  const WideSpectrum wide = WideOf({broken, Taken(2)});
  EXPECT_FALSE(wide.axes[1]);
  EXPECT_FALSE(wide.Steady());
  ASSERT_EQ(wide.Disagreements().size(), 2U);
  EXPECT_THAT(wide.Disagreements()[1], HasSubstr("Z, options 3 and 2: "));
}

}  // namespace
}  // namespace kestrel::analysis
