// Ticks of a plot: round numbers, room between them, and how they are written.
// SPDX-License-Identifier: MIT
#include "chart/axis_ticks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace kestrel {
namespace {

std::string Labels(const std::vector<AxisTick>& ticks) {
  std::string text;
  for (const AxisTick& tick : ticks) text += (text.empty() ? "" : " ") + tick.label;
  return text;
}

TEST(AxisTicks, AreMultiplesOfOneTwoOrFive) {
  EXPECT_EQ(Labels(AxisTicks({0, 50000}, AxisKind::Linear, 700, 60)),
            "0 5,000 10,000 15,000 20,000 25,000 30,000 35,000 40,000 45,000 50,000");
  EXPECT_EQ(Labels(AxisTicks({-1.2, 1.2}, AxisKind::Linear, 140, 40)), "\u22121 0 1");
  EXPECT_EQ(Labels(AxisTicks({0, 0.8}, AxisKind::Linear, 120, 24)), "0 0.2 0.4 0.6 0.8");
}

TEST(AxisTicks, ALogarithmicAxisHasOneTwoFiveAsLongAsThereIsRoom) {
  EXPECT_EQ(Labels(AxisTicks({0.001, 2}, AxisKind::Logarithmic, 400, 24)),
            "0.001 0.002 0.005 0.01 0.02 0.05 0.1 0.2 0.5 1 2");
  EXPECT_EQ(Labels(AxisTicks({0.002, 2}, AxisKind::Logarithmic, 120, 24)), "0.01 0.1 1");
  EXPECT_EQ(Labels(AxisTicks({1e-9, 1e-5}, AxisKind::Logarithmic, 200, 24)),
            "10\u207B\u2079 10\u207B\u2078 10\u207B\u2077 10\u207B\u2076 10\u207B\u2075");
}

TEST(AxisTicks, WithinADecadeALogarithmicAxisHasTicksToo) {
  const auto ticks = AxisTicks({2.1, 4.2}, AxisKind::Logarithmic, 400, 60);
  EXPECT_GE(ticks.size(), 3U);
}

TEST(AxisTicks, AreNeverNearerThanAsked) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> power(-9, 9);
  for (int round = 0; round < 2000; ++round) {
    double low = std::pow(10, power(random));
    double high = std::pow(10, power(random));
    if (low > high) std::swap(low, high);
    for (const auto kind : {AxisKind::Linear, AxisKind::Logarithmic}) {
      const PlotRange range{low, high};
      if (!IsShowable(range, kind)) continue;
      const AxisMap map(range, kind, 0, 600);
      const auto ticks = AxisTicks(range, kind, 600, 60);
      EXPECT_FALSE(ticks.empty() && high / low > 20) << low << " " << high;
      for (std::size_t i = 0; i < ticks.size(); ++i) {
        EXPECT_GT(map.ToPixel(ticks[i].value), -0.001);
        EXPECT_LT(map.ToPixel(ticks[i].value), 600.001);
        if (i == 0) continue;
        EXPECT_GE(map.ToPixel(ticks[i].value) - map.ToPixel(ticks[i - 1].value), 60 - 1e-6)
            << low << " " << high << " " << static_cast<int>(kind);
        EXPECT_NE(ticks[i].label, ticks[i - 1].label) << low << " " << high;
      }
    }
  }
}

TEST(AxisTicks, ARangeThatCannotBeShownHasNone) {
  EXPECT_TRUE(AxisTicks({1, 1}, AxisKind::Linear, 100, 24).empty());
  EXPECT_TRUE(AxisTicks({-1, 1}, AxisKind::Logarithmic, 100, 24).empty());
  EXPECT_TRUE(AxisTicks({0, 1}, AxisKind::Linear, 0, 24).empty());
}

TEST(NumberText, HasCommasAMinusSignAndItsDecimals) {
  EXPECT_EQ(NumberText(22698.24, 1), "22,698.2");
  EXPECT_EQ(NumberText(-1234567, 0), "\u22121,234,567");
  EXPECT_EQ(NumberText(-0.04, 1), "0.0");
  EXPECT_EQ(NumberText(999.96, 1), "1,000.0");
}

TEST(SignificantText, KeepsSoManyDigits) {
  EXPECT_EQ(SignificantText(0.58133, 3), "0.581");
  EXPECT_EQ(SignificantText(12.345, 3), "12.3");
  EXPECT_EQ(SignificantText(22698.2, 3), "22,698");
  EXPECT_EQ(SignificantText(-2.5e-7, 3), "\u22122.50\u00D710\u207B\u2077");
  EXPECT_EQ(SignificantText(0, 3), "0");
}

}  // namespace
}  // namespace kestrel
