// Ticks at round numbers, whatever the interval.
// SPDX-License-Identifier: MIT
#include "chart/plot_ticks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace kestrel {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

MATCHER(Near, "") {
  return std::abs(std::get<0>(arg) - std::get<1>(arg)) <= 1e-12;
}

TEST(NiceStep, IsOneTwoOrFiveTimesAPowerOfTen) {
  EXPECT_DOUBLE_EQ(NiceStep(10, 10), 1);
  EXPECT_DOUBLE_EQ(NiceStep(10, 5), 2);
  EXPECT_DOUBLE_EQ(NiceStep(25, 5), 5);
  EXPECT_DOUBLE_EQ(NiceStep(90, 10), 10);
  EXPECT_DOUBLE_EQ(NiceStep(0.02, 10), 0.002);
  EXPECT_DOUBLE_EQ(NiceStep(1e-9, 2), 5e-10);
}

TEST(NiceStep, IsZeroWithoutASpan) {
  EXPECT_EQ(NiceStep(0, 5), 0);
  EXPECT_EQ(NiceStep(-1, 5), 0);
  EXPECT_EQ(NiceStep(kInfinity, 5), 0);
  EXPECT_EQ(NiceStep(std::nan(""), 5), 0);
}

TEST(NiceTicks, LieOnMultiplesWithinTheInterval) {
  EXPECT_THAT(NiceTicks(0, 10, 5), ElementsAre(0, 2, 4, 6, 8, 10));
  EXPECT_THAT(NiceTicks(-3, 7, 5), ElementsAre(-2, 0, 2, 4, 6));
  EXPECT_THAT(NiceTicks(0, 0.3, 3), Pointwise(Near(), std::vector<double>{0, 0.1, 0.2, 0.3}));
}

TEST(NiceTicks, AscendWhicheverWayRoundTheIntervalIs) {
  EXPECT_EQ(NiceTicks(7, -3, 5), NiceTicks(-3, 7, 5));
}

TEST(NiceTicks, ZeroHasNoSign) {
  const std::vector<double> ticks = NiceTicks(-1, 7, 4);
  ASSERT_THAT(ticks, ElementsAre(0, 2, 4, 6));
  EXPECT_FALSE(std::signbit(ticks.front()));
}

TEST(NiceTicks, AreAboutAsManyAsWished) {
  for (const double span : {0.02, 0.7, 1.0, 3.3, 25.0, 99.0, 4096.0}) {
    for (const int wished : {1, 3, 5, 10, 16}) {
      const auto parts = static_cast<double>(NiceTicks(0, span, wished).size()) - 1;
      EXPECT_GE(parts, std::floor(wished / 1.6)) << span << " in " << wished;
      EXPECT_LE(parts, wished * 1.6) << span << " in " << wished;
    }
  }
}

TEST(NiceTicks, AnEmptyOrEndlessIntervalHasNone) {
  EXPECT_THAT(NiceTicks(3, 3, 5), IsEmpty());
  EXPECT_THAT(NiceTicks(0, kInfinity, 5), IsEmpty());
  EXPECT_THAT(NiceTicks(std::nan(""), 1, 5), IsEmpty());
  EXPECT_THAT(NiceTicks(-1e308, 1e308, 5), IsEmpty());
  EXPECT_THAT(NiceTicks(1e20, std::nextafter(1e20, 2e20), 5), IsEmpty());
}

TEST(NiceTicks, AWishBelowOneCountsAsOne) {
  EXPECT_EQ(NiceTicks(0, 10, 0), NiceTicks(0, 10, 1));
}

TEST(HalvedTicks, AlwaysContainBothEndsAndTheMiddle) {
  for (const double scale : {100.0, 50.0, 25.0, 10.0, 2.0, 1.0, 0.5, 0.25, 0.1, 0.02, 7.0, 5.0}) {
    for (const double bottom : {0.0, -scale}) {
      for (const int wished : {1, 2, 4, 7, 10}) {
        const std::vector<double> ticks = HalvedTicks(bottom, scale, wished);
        SCOPED_TRACE(std::to_string(bottom) + " to " + std::to_string(scale));
        ASSERT_EQ(ticks.size() % 2, 1U);
        EXPECT_THAT(ticks.front(), DoubleNear(bottom, 1e-12));
        EXPECT_THAT(ticks[ticks.size() / 2], DoubleNear((bottom + scale) / 2, 1e-12));
        EXPECT_THAT(ticks.back(), DoubleNear(scale, 1e-12));
        EXPECT_LE(ticks.size(), static_cast<std::size_t>(std::max(wished, 2)) + 1);
      }
    }
  }
}

TEST(HalvedTicks, DivideEveryScaleOfAFullHeightPlot) {
  for (const double scale : {100.0, 50.0, 25.0, 10.0, 2.0, 1.0, 0.5, 0.25, 0.1, 0.02}) {
    EXPECT_GE(HalvedTicks(0, scale, 10).size(), 9U) << scale;
    EXPECT_GE(HalvedTicks(-scale, scale, 10).size(), 9U) << scale;
  }
}

TEST(HalvedTicks, AreReadable) {
  EXPECT_THAT(HalvedTicks(0, 25, 10),
              ElementsAre(0, 2.5, 5, 7.5, 10, 12.5, 15, 17.5, 20, 22.5, 25));
  EXPECT_THAT(HalvedTicks(-2, 2, 10), ElementsAre(-2, -1.5, -1, -0.5, 0, 0.5, 1, 1.5, 2));
  EXPECT_THAT(HalvedTicks(0, 10, 4), ElementsAre(0, 2.5, 5, 7.5, 10));
  EXPECT_THAT(HalvedTicks(0, 7, 10), ElementsAre(0, 3.5, 7));
  EXPECT_THAT(HalvedTicks(0.5, 10.5, 10), ElementsAre(0.5, 5.5, 10.5));
}

TEST(HalvedTicks, AnEmptyIntervalHasNone) {
  EXPECT_THAT(HalvedTicks(0, 0, 10), IsEmpty());
  EXPECT_THAT(HalvedTicks(0, std::nan(""), 10), IsEmpty());
}

TEST(BinTicks, ArePowersOfTwoApartUpToTheLastBin) {
  EXPECT_THAT(BinTicks(255, 8), ElementsAre(0, 32, 64, 96, 128, 160, 192, 224, 255));
  EXPECT_THAT(BinTicks(511, 8), ElementsAre(0, 64, 128, 192, 256, 320, 384, 448, 511));
  EXPECT_THAT(BinTicks(255, 5), ElementsAre(0, 64, 128, 192, 255));
  EXPECT_THAT(BinTicks(255, 1), ElementsAre(0, 255));
}

TEST(BinTicks, AMultipleTooNearToTheEndGivesWay) {
  EXPECT_THAT(BinTicks(257, 5), ElementsAre(0, 64, 128, 192, 257));
  EXPECT_THAT(BinTicks(300, 5), ElementsAre(0, 64, 128, 192, 256, 300));
  EXPECT_THAT(BinTicks(320, 5), ElementsAre(0, 64, 128, 192, 256, 320));
}

TEST(BinTicks, NoBinsHaveNone) {
  EXPECT_THAT(BinTicks(0, 8), IsEmpty());
  EXPECT_THAT(BinTicks(-1, 8), IsEmpty());
}

}  // namespace
}  // namespace kestrel
