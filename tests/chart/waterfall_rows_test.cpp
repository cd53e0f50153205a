// The rows of a waterfall and the colours of their heights.
// SPDX-License-Identifier: MIT
#include "chart/waterfall_rows.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "chart/colour_map.h"

namespace kestrel {
namespace {

TEST(WaterfallRows, TheOldestGiveWayToTheNewest) {
  WaterfallRows rows(2, 3);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(rows.Add(10.0 * i, std::vector<double>{1.0 * i, 7}));
  ASSERT_EQ(rows.Count(), 3U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(rows.Time(i), 10.0 * (static_cast<double>(i) + 2));
    EXPECT_EQ(rows.Row(i)[0], static_cast<float>(i + 2));
    EXPECT_EQ(rows.Row(i)[1], 7.0F);
  }
  EXPECT_EQ(rows.Nearest(-5), 0U);
  EXPECT_EQ(rows.Nearest(34), 1U);
  EXPECT_EQ(rows.Nearest(36), 2U);
  EXPECT_EQ(rows.Nearest(900), 2U);
}

TEST(WaterfallRows, WhatDoesNotFitIsRefused) {
  WaterfallRows rows(2, 3);
  EXPECT_TRUE(rows.Add(5, std::vector<double>{1, 2}));
  EXPECT_FALSE(rows.Add(5, std::vector<double>{1, 2}));
  EXPECT_FALSE(rows.Add(4, std::vector<double>{1, 2}));
  EXPECT_FALSE(rows.Add(6, std::vector<double>{1, 2, 3}));
  EXPECT_FALSE(rows.Add(std::nan(""), std::vector<double>{1, 2}));
  EXPECT_EQ(rows.Count(), 1U);
}

TEST(WaterfallRows, TenThousandTakeLessThanSixtyMegabytes) {
  WaterfallRows rows(256, 10000);
  const std::vector<double> values(256, 0.5);
  for (int i = 0; i < 12000; ++i) ASSERT_TRUE(rows.Add(i, values));
  EXPECT_EQ(rows.Count(), 10000U);
  EXPECT_LT(rows.Bytes(), 60'000'000U);
}

double Luminance(std::uint32_t colour) {
  const auto linear = [&](int shift) {
    return std::pow(static_cast<double>(colour >> shift & 0xFFU) / 255, 2.2);
  };
  return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

TEST(ColourMap, LightnessOnlyFallsOnLightPaperAndOnlyRisesOnDark) {
  const ColourMap light = MapForLightPaper();
  const ColourMap dark = MapForDarkPaper();
  EXPECT_EQ(light[0], 0xFFFFFFFFU);
  for (std::size_t i = 1; i < 256; ++i) {
    EXPECT_LE(Luminance(light[i]), Luminance(light[i - 1]) + 1e-3) << i;
    EXPECT_GE(Luminance(dark[i]), Luminance(dark[i - 1]) - 1e-3) << i;
  }
  EXPECT_LT(Luminance(light[255]), 0.02);
  EXPECT_GT(Luminance(dark[255]), 0.9);
}

}  // namespace
}  // namespace kestrel
