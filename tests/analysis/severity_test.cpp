// Behaviour of the severity estimate.
// SPDX-License-Identifier: MIT
#include "analysis/severity.h"

#include <gmock/gmock.h>

#include <limits>

#include "tones.h"

namespace kestrel::analysis {
namespace {

Joined Machine(std::vector<int> options, double hz, double mmPerS,
               WindowKind window = WindowKind::Hanning) {
  std::vector<Spectrum> captures;
  for (const int option : options) {
    const double bin = hz / BinWidth(option);
    std::vector<Tone> tones;
    if (bin < 256) tones.push_back({bin, mmPerS * std::sqrt(2.0) * hz / 1560.777, 0.3});
    captures.push_back(SpectrumOfTones(tones, window, option));
  }
  return *Join(captures);
}

const ZoneLimits kLimits{"group 2, rigid", 1.4, 2.8, 4.5};

TEST(Severity, AToneWithinTheBandReadsItsVelocity) {
  for (const double hz : {25.0, 49.3, 120.0, 400.0}) {
    const Told<SeverityEstimate> estimate = EstimateSeverity(Machine({3, 2, 1}, hz, 2.0), kLimits);
    ASSERT_TRUE(estimate) << hz;
    EXPECT_NEAR(estimate->mmPerS, 2.0, 0.05) << hz;
    EXPECT_EQ(Letter(estimate->zone), 'B');
    EXPECT_FALSE(estimate->uncertain) << hz;
  }
}

TEST(Severity, TheEdgesPassHalfThePower) {
  EXPECT_NEAR(SeverityPass(10), 0.5, 1e-6);
  EXPECT_NEAR(SeverityPass(1000), 0.5, 1e-6);
  EXPECT_NEAR(SeverityPass(100), 1, 1e-5);
  EXPECT_NEAR(SeverityPass(5), 1.0 / 65, 1e-6);
  EXPECT_EQ(SeverityPass(0), 0);
}

TEST(Severity, WithoutAllCapturesThereIsNoZoneButWhatIsMissing) {
  const Told<SeverityEstimate> estimate = EstimateSeverity(Machine({0}, 5000, 1.0), kLimits);
  ASSERT_FALSE(estimate);
  EXPECT_EQ(estimate.Why().title, "No zone: the band is not covered");
  EXPECT_EQ(estimate.Why().reason,
            "At hand: option 0, from 588 Hz to 49.8 kHz. Missing: 3, 2 and 1.");
  EXPECT_EQ(estimate.Why().cure, "Capture at options 3, 2 and 1");
  EXPECT_EQ(EstimateSeverity(Machine({2, 1}, 50, 1.0), kLimits).Why().cure, "Capture at option 3");
  EXPECT_EQ(EstimateSeverity(Machine({3, 2}, 50, 1.0), kLimits).Why().cure, "Capture at option 0");
}

TEST(Severity, OptionsThreeTwoAndOneCoverTheBandInEveryWindow) {
  for (const WindowKind window : kWindows) {
    EXPECT_TRUE(EstimateSeverity(Machine({3, 2, 1}, 50, 1.0, window), kLimits));
    EXPECT_TRUE(EstimateSeverity(Machine({3, 2, 1, 0}, 50, 1.0, window), kLimits));
    EXPECT_FALSE(EstimateSeverity(Machine({2, 1, 0}, 50, 1.0, window), kLimits));
  }
}

TEST(Severity, AHoleBetweenTwoCapturesIsNoticed) {
  const Told<SeverityEstimate> estimate =
      EstimateSeverity(Machine({3, 2, 0}, 50, 1.0, WindowKind::FlatTop), kLimits);
  ASSERT_FALSE(estimate);
  EXPECT_EQ(estimate.Why().cure, "Capture at option 1");
}

TEST(Severity, CapturesThatDisagreeMakeItUncertain) {
  Joined joined = Machine({3, 2, 1}, 50, 1.0);
  joined.overlaps[0].unsteady = true;
  EXPECT_TRUE(EstimateSeverity(joined, kLimits)->uncertain);
}

TEST(Severity, TablesRiseAndNameTheirSource) {
  const std::vector<SeverityTable> tables = SeverityTables();
  ASSERT_EQ(tables.size(), 2U);
  EXPECT_EQ(tables[0].rows[2], kLimits);
  EXPECT_EQ(tables[1].rows[3], (ZoneLimits{"class IV", 2.8, 7.1, 18}));
  for (const SeverityTable& table : tables) {
    EXPECT_FALSE(table.source.empty());
    EXPECT_EQ(table.rows.size(), 4U);
    for (const ZoneLimits& row : table.rows) EXPECT_TRUE(AreLimits(row)) << row.name;
  }
}

TEST(Severity, LimitsThatDoNotRiseAreNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const ZoneLimits& limits :
       {ZoneLimits{"", 0, 1, 2}, ZoneLimits{"", 2, 1, 3}, ZoneLimits{"", 1, 2, nan},
        ZoneLimits{"", 1, 2, std::numeric_limits<double>::infinity()}}) {
    EXPECT_FALSE(AreLimits(limits));
    EXPECT_FALSE(EstimateSeverity(Machine({3, 2, 1}, 50, 1.0), limits));
  }
  EXPECT_FALSE(EstimateSeverity(Joined{}, kLimits));
}

TEST(Severity, AZoneEndsWithItsLimit) {
  EXPECT_EQ(ZoneOf(0, kLimits), Zone::A);
  EXPECT_EQ(ZoneOf(1.4, kLimits), Zone::A);
  EXPECT_EQ(ZoneOf(1.41, kLimits), Zone::B);
  EXPECT_EQ(ZoneOf(4.5, kLimits), Zone::C);
  EXPECT_EQ(Letter(ZoneOf(4.6, kLimits)), 'D');
}

}  // namespace
}  // namespace kestrel::analysis
