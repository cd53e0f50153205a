// Behaviour of the texts of numbers.
// SPDX-License-Identifier: MIT
#include "numeric/number_texts.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NumberTexts, DigitsFollowTheBound) {
  EXPECT_EQ(WithBound(22698.2487, 0.87), (BoundedText{"22,698.2", "±0.9"}));
  EXPECT_EQ(WithBound(985.4, 2.6), (BoundedText{"985.4", "±2.6"}));
  EXPECT_EQ(WithBound(985.4, 3.2), (BoundedText{"985", "±4"}));
  EXPECT_EQ(WithBound(20723.4, 12.4), (BoundedText{"20,723", "±13"}));
  EXPECT_EQ(WithBound(1974.27, 1.13), (BoundedText{"1,974.3", "±1.2"}));
  EXPECT_EQ(WithBound(22698.2, 98), (BoundedText{"22,700", "±100"}));
  EXPECT_EQ(WithBound(-0.01234, 0.00031), (BoundedText{"\u22120.0123", "±0.0004"}));
}

TEST(NumberTexts, ABoundIsNeverRoundedDown) {
  for (double bound = 0.00013; bound < 900; bound *= 1.037) {
    EXPECT_GE(DigitsOfBound(bound).bound, bound * (1 - 1e-9)) << bound;
    EXPECT_LE(DigitsOfBound(bound).bound, bound * 1.34) << bound;
  }
}

TEST(NumberTexts, ANumberToGoOnWithHasADigitMoreThanItsText) {
  EXPECT_EQ(RoundedByBound(22698.2487, 0.87), (BoundedNumber{22698.25, 0.88}));
  EXPECT_EQ(RoundedByBound(985.4444, 3.2), (BoundedNumber{985.4, 3.3}));
  EXPECT_EQ(RoundedByBound(20723.44, 12.4), (BoundedNumber{20723.4, 13}));
  EXPECT_EQ(RoundedByBound(22698.2, 980), (BoundedNumber{22700, 990}));
  EXPECT_EQ(RoundedByBound(-0.012345, 0.00031), (BoundedNumber{-0.01235, 0.00032}));
}

TEST(NumberTexts, TheBoundOfARoundedNumberHoldsWhatTheUnroundedOneHeld) {
  double value = 1234.56789;
  for (double bound = 0.00013; bound < 900; bound *= 1.037) {
    const BoundedNumber rounded = RoundedByBound(value, bound);
    EXPECT_LE(rounded.value - rounded.bound, (value - bound) * (1 + 1e-12)) << bound;
    EXPECT_GE(rounded.value + rounded.bound, (value + bound) * (1 - 1e-12)) << bound;
    EXPECT_LE(rounded.bound, bound * 1.17) << bound;
    value = value * 1.01 + 0.003;
  }
}

TEST(NumberTexts, ANumberWithoutABoundKeepsSixDigits) {
  EXPECT_EQ(RoundedByBound(49.99999, 0), (BoundedNumber{50, 0}));
  EXPECT_EQ(RoundedByBound(1.23456789, kInfinity), (BoundedNumber{1.23457, 0}));
  EXPECT_TRUE(std::isnan(RoundedByBound(kNan, 1).value));
  EXPECT_EQ(RoundedTo(0.00123456789, 3), 0.00123);
  EXPECT_EQ(RoundedTo(987654.0, 3), 988000);
  EXPECT_EQ(RoundedTo(0, 3), 0);
}

TEST(NumberTexts, ABoundOfNineAndMoreCarriesIntoTheNextDigit) {
  EXPECT_EQ(WithBound(100.25, 0.96), (BoundedText{"100.3", "±1.0"}));
  EXPECT_EQ(WithBound(100.25, 0.299), (BoundedText{"100.3", "±0.3"}));
}

TEST(NumberTexts, WithoutABoundThereAreSixDigitsAndNoSign) {
  EXPECT_EQ(WithBound(50.0, 0), (BoundedText{"50.0000", ""}));
  EXPECT_EQ(WithBound(50.0, kNan), (BoundedText{"50.0000", ""}));
  EXPECT_EQ(WithBound(kNan, 1), (BoundedText{kNoNumber, ""}));
}

TEST(NumberTexts, ThousandsAreGroupedAndTheMinusIsATrueOne) {
  EXPECT_EQ(NumberText(-1234567.89, 1), "\u22121,234,567.9");
  EXPECT_EQ(NumberText(999.5, 0), "1,000");
  EXPECT_EQ(NumberText(-0.04, 1), "0.0");
  EXPECT_EQ(NumberText(12345, -2), "12,300");
}

TEST(NumberTexts, SignificantDigitsAreCountedAfterRounding) {
  EXPECT_EQ(SignificantText(0.61925), "0.619");
  EXPECT_EQ(SignificantText(9.996), "10.0");
  EXPECT_EQ(SignificantText(12345), "12,300");
  EXPECT_EQ(SignificantText(0), "0");
  EXPECT_EQ(SignificantText(1.53e-8, 2), "1.5×10\u207B\u2078");
  EXPECT_EQ(SignificantText(9.99e-9, 2), "1.0×10\u207B\u2078");
}

TEST(NumberTexts, WhatIsNoNumberIsADash) {
  for (const double value : {kNan, kInfinity, -kInfinity}) {
    EXPECT_EQ(NumberText(value, 2), kNoNumber);
    EXPECT_EQ(SignificantText(value), kNoNumber);
    EXPECT_EQ(SignedDecibelText(value), kNoNumber);
  }
}

TEST(NumberTexts, LimitsErrToTheSafeSide) {
  EXPECT_DOUBLE_EQ(RoundedUp(978.4), 979);
  EXPECT_DOUBLE_EQ(RoundedDown(978.4), 978);
  EXPECT_DOUBLE_EQ(RoundedUp(0.3), 0.3);
  EXPECT_DOUBLE_EQ(RoundedDown(49899.26), 49800);
  EXPECT_DOUBLE_EQ(RoundedUp(0), 0);
}

TEST(NumberTexts, FrequenciesTimesAndDecibelsCarryTheirUnitOrSign) {
  EXPECT_EQ(HertzText(587.05), "587 Hz");
  EXPECT_EQ(HertzText(49899.3), "49.9 kHz");
  EXPECT_EQ(SecondsText(0.005110), "5.11 ms");
  EXPECT_EQ(SecondsText(2.6165), "2.62 s");
  EXPECT_EQ(SignedDecibelText(4.31), "+4.3");
  EXPECT_EQ(SignedDecibelText(-0.62), "\u22120.6");
  EXPECT_EQ(SignedDecibelText(0.04), "0.0");
}

}  // namespace
}  // namespace kestrel::analysis
