// How numbers show: digits, exponents, groups, hexadecimal.
// SPDX-License-Identifier: MIT
#include "numeric/number_format.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace kestrel {
namespace {

TEST(GeneralNumber, DoubleHasAtMost15SignificantDigits) {
  struct Row {
    double value;
    const char* expected;
  };
  const Row rows[] = {{0.0, "0"},
                      {-0.0, "0"},
                      {1.0, "1"},
                      {-1.0, "-1"},
                      {0.1, "0.1"},
                      {0.1 + 0.2, "0.3"},
                      {1.0 / 3.0, "0.333333333333333"},
                      {2.0 / 3.0, "0.666666666666667"},
                      {100.0, "100"},
                      {624.53, "624.53"},
                      {123456789012345.0, "123456789012345"},
                      {999999999999999.0, "999999999999999"},
                      {1234567890123456.0, "1.23456789012346E+15"},
                      {1e15, "1E+15"},
                      {-2.5e20, "-2.5E+20"},
                      {1e100, "1E+100"},
                      {0.0001, "0.0001"},
                      {0.00001, "1E-05"},
                      {0.00012345, "0.00012345"},
                      {-1.25e-7, "-1.25E-07"}};
  for (const Row& row : rows) EXPECT_EQ(GeneralNumber(row.value), row.expected);
}

TEST(GeneralNumber, SingleHasAtMost7SignificantDigits) {
  struct Row {
    float value;
    const char* expected;
  };
  const Row rows[] = {{0.0F, "0"},
                      {-0.0F, "0"},
                      {0.1F, "0.1"},
                      {0.5F, "0.5"},
                      {3.3F, "3.3"},
                      {624.53F, "624.53"},
                      {1.0F / 3.0F, "0.3333333"},
                      {0.001220703F, "0.001220703"},
                      {9999999.0F, "9999999"},
                      {1e7F, "1E+07"},
                      {12345678.0F, "1.234568E+07"},
                      {0.0001F, "0.0001"},
                      {0.00001F, "1E-05"},
                      {-0.47F, "-0.47"}};
  for (const Row& row : rows) EXPECT_EQ(GeneralNumber(row.value), row.expected);
}

TEST(GeneralNumber, WholeNumbersShowInFull) {
  EXPECT_EQ(GeneralNumber(std::int32_t{0}), "0");
  EXPECT_EQ(GeneralNumber(std::int32_t{-32768}), "-32768");
  EXPECT_EQ(GeneralNumber(std::int32_t{2147483647}), "2147483647");
}

TEST(FixedNumber, HalvesGoAwayFromZero) {
  struct Row {
    double value;
    int decimals;
    const char* expected;
  };
  const Row rows[] = {{1.005, 2, "1.01"},
                      {-1.005, 2, "-1.01"},
                      {2.5, 0, "3"},
                      {-2.5, 0, "-3"},
                      {0.5, 0, "1"},
                      {0.4999, 0, "0"},
                      {3.5, 0, "4"},
                      {0.0005, 3, "0.001"},
                      {2.675, 2, "2.68"},
                      {0.00049999, 3, "0.000"},
                      {9.9996, 3, "10.000"},
                      {99.95, 1, "100.0"},
                      {0.95, 0, "1"},
                      {0.05, 0, "0"},
                      {1234.5678, 3, "1234.568"},
                      {1e20, 1, "100000000000000000000.0"}};
  for (const Row& row : rows) {
    EXPECT_EQ(FixedNumber(row.value, row.decimals), row.expected) << row.value;
  }
}

TEST(FixedNumber, DecimalsArePadded) {
  EXPECT_EQ(FixedNumber(0, 3), "0.000");
  EXPECT_EQ(FixedNumber(7, 2), "7.00");
  EXPECT_EQ(FixedNumber(-7, 0), "-7");
  EXPECT_EQ(FixedNumber(0.00001, 5), "0.00001");
}

TEST(FixedNumber, ZeroCarriesNoSign) {
  EXPECT_EQ(FixedNumber(-0.0004, 3), "0.000");
  EXPECT_EQ(FixedNumber(-0.0, 3), "0.000");
  EXPECT_EQ(FixedNumber(-0.4, 0), "0");
  EXPECT_EQ(FixedNumber(-0.0005, 3), "-0.001");
}

TEST(FixedNumber, WhatIsNotFiniteShowsAsText) {
  EXPECT_EQ(FixedNumber(std::numeric_limits<double>::infinity(), 2), "INF");
  EXPECT_EQ(FixedNumber(-std::numeric_limits<double>::infinity(), 2), "-INF");
}

TEST(OneToFourDecimals, OneAlwaysShowsAndZerosAfterItDoNot) {
  struct Row {
    double value;
    const char* expected;
  };
  const Row rows[] = {{3.3, "3.3"},        {25, "25.0"},        {624.53, "624.53"},
                      {0, "0.0"},          {0.00004, "0.0"},    {0.00005, "0.0001"},
                      {-0.00004, "0.0"},   {-12.5, "-12.5"},    {1.23456, "1.2346"},
                      {1.20004, "1.2"},    {99.99996, "100.0"}, {10, "10.0"},
                      {3.29999995, "3.3"}, {1.0204, "1.0204"},  {0.1 + 0.2, "0.3"}};
  for (const Row& row : rows) EXPECT_EQ(OneToFourDecimals(row.value), row.expected);
}

TEST(GroupedWholeNumber, EveryThreeDigitsAreSeparated) {
  struct Row {
    double value;
    const char* expected;
  };
  const Row rows[] = {{1957, "1,957"},
                      {49899, "49,899"},
                      {97, "97"},
                      {0, "0"},
                      {999, "999"},
                      {999.5, "1,000"},
                      {1000000, "1,000,000"},
                      {123456789, "123,456,789"},
                      {-999, "-999"},
                      {-1234, "-1,234"},
                      {-0.3, "0"},
                      {97.84, "98"},
                      {1956.835, "1,957"},
                      {100189.9 / 2, "50,095"}};
  for (const Row& row : rows) EXPECT_EQ(GroupedWholeNumber(row.value), row.expected);
}

TEST(Hex, CapitalsWithoutPadding) {
  EXPECT_EQ(Hex(std::int32_t{0}), "0");
  EXPECT_EQ(Hex(std::int32_t{10}), "A");
  EXPECT_EQ(Hex(std::int32_t{0x1C}), "1C");
  EXPECT_EQ(Hex(std::int32_t{0xBF08}), "BF08");
  EXPECT_EQ(Hex(std::int32_t{0x7FFFFFFF}), "7FFFFFFF");
}

TEST(Hex, NegativeNumbersShowAsTwosComplementOfTheirWidth) {
  EXPECT_EQ(Hex(std::int32_t{-1}), "FFFFFFFF");
  EXPECT_EQ(Hex(std::int32_t{-32768}), "FFFF8000");
  EXPECT_EQ(Hex(std::int16_t{-1}), "FFFF");
  EXPECT_EQ(Hex(std::int16_t{-32768}), "8000");
  EXPECT_EQ(Hex(std::int16_t{255}), "FF");
}

}  // namespace
}  // namespace kestrel
