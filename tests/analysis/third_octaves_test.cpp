// Behaviour of third-octave bands.
// SPDX-License-Identifier: MIT
#include "analysis/third_octaves.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "tones.h"

namespace kestrel::analysis {
namespace {

const ThirdOctave& Band(const std::vector<ThirdOctave>& bands, double nominalHz) {
  return *std::ranges::min_element(bands, std::less{}, [&](const ThirdOctave& band) {
    return std::fabs(band.nominalHz - nominalHz);
  });
}

TEST(ThirdOctaves, AToneIsInItsBand) {
  const Spectrum spectrum = SpectrumOfTones({{8000 / BinWidth(0), 0.4, 0}}, WindowKind::Hanning);
  const std::vector<ThirdOctave> bands = ThirdOctavesOf({&spectrum, 1});
  EXPECT_NEAR(Band(bands, 8000).rmsG, 0.4 / std::sqrt(2.0), 1e-4);
  EXPECT_LT(Band(bands, 16000).rmsG, 1e-4);
}

TEST(ThirdOctaves, CentresAndEdgesAreThoseOfTheBaseTenSystem) {
  const Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  const std::vector<ThirdOctave> bands = ThirdOctavesOf({&spectrum, 1});
  const ThirdOctave& band = Band(bands, 12500);
  EXPECT_EQ(band.number, 11);
  EXPECT_DOUBLE_EQ(band.nominalHz, 12500);
  EXPECT_NEAR(band.centreHz, 12589.25, 0.01);
  EXPECT_NEAR(band.fromHz, 11220.18, 0.01);
  EXPECT_NEAR(band.toHz, 14125.38, 0.01);
}

TEST(ThirdOctaves, BandsWithFewerThanThreeBinsOrBeyondTheRecordAreLeftOut) {
  const Spectrum spectrum = SpectrumOfTones({}, WindowKind::Hanning);
  const std::vector<ThirdOctave> bands = ThirdOctavesOf({&spectrum, 1});
  EXPECT_DOUBLE_EQ(bands.front().nominalHz, 3150);
  EXPECT_DOUBLE_EQ(bands.back().nominalHz, 40000);
}

TEST(ThirdOctaves, OfSeveralCapturesTheFinestIsTaken) {
  std::vector<Spectrum> captures;
  for (int option = 0; option < 4; ++option) {
    captures.push_back(SpectrumOfTones({}, WindowKind::Hanning, option));
  }
  const std::vector<ThirdOctave> bands = ThirdOctavesOf(captures);
  EXPECT_DOUBLE_EQ(bands.front().nominalHz, 5);
  EXPECT_EQ(Band(bands, 63).option, 3);
  EXPECT_EQ(Band(bands, 500).option, 2);
  EXPECT_EQ(Band(bands, 4000).option, 1);
  EXPECT_EQ(Band(bands, 8000).option, 0);
  std::ranges::reverse(captures);
  EXPECT_EQ(Band(ThirdOctavesOf(captures), 500).option, 2) << "whatever their order";
  for (std::size_t i = 1; i < bands.size(); ++i) {
    EXPECT_EQ(bands[i].number, bands[i - 1].number + 1);
  }
}

TEST(ThirdOctaves, UnknownWindowsHoldsAndEmptySpectraHaveNone) {
  std::vector<Spectrum> captures(4, SpectrumOfTones({}, WindowKind::Hanning));
  captures[0].window = WindowOfCode(3);
  captures[1].source = SpectrumSource::MaximumHold;
  captures[2] = Spectrum{};
  captures[3].source = SpectrumSource::MinimumHold;
  EXPECT_TRUE(ThirdOctavesOf(captures).empty());
  EXPECT_TRUE(ThirdOctavesOf({}).empty());
}

}  // namespace
}  // namespace kestrel::analysis
