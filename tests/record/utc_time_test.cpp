// The text of a moment against dates known otherwise.
// SPDX-License-Identifier: MIT
#include "record/utc_time.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::system_clock;

system_clock::time_point After1970(seconds time, milliseconds more = {}) {
  return system_clock::time_point{time + more};
}

TEST(UtcTime, AMomentIsANumberOfSecondsWithTheirPartsBefore1970Too) {
  EXPECT_EQ(SecondsOf(After1970(seconds{1710404813}, milliseconds{500})), 1710404813.5);
  EXPECT_EQ(SecondsOf(After1970(seconds{-1}, milliseconds{250})), -0.75);
}

TEST(UtcTime, FieldsHaveTheirFullWidth) {
  EXPECT_EQ(UtcText(After1970(seconds{0})), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(UtcText(After1970(seconds{1710404813}, milliseconds{7})), "2024-03-14T08:26:53.007Z");
}

TEST(UtcTime, LeapDaysAndTheEndOfAYearAreRight) {
  EXPECT_EQ(UtcText(After1970(seconds{951782399})), "2000-02-28T23:59:59.000Z");
  EXPECT_EQ(UtcText(After1970(seconds{951782400})), "2000-02-29T00:00:00.000Z");
  EXPECT_EQ(UtcText(After1970(seconds{4102444799}, milliseconds{999})), "2099-12-31T23:59:59.999Z");
}

TEST(UtcTime, WhatIsLessThanAMillisecondIsDroppedBefore1970Too) {
  EXPECT_EQ(UtcText(After1970(seconds{1}) + std::chrono::microseconds{1999}),
            "1970-01-01T00:00:01.001Z");
  EXPECT_EQ(UtcText(After1970(seconds{0}) - std::chrono::microseconds{1}),
            "1969-12-31T23:59:59.999Z");
}

TEST(UtcFrom, ReadsWhatUtcTextWrites) {
  const auto moment =
      std::chrono::system_clock::from_time_t(1'763'750'123) + std::chrono::milliseconds(45);
  EXPECT_EQ(UtcFrom(UtcText(moment)), moment);
}

TEST(UtcFrom, ReadsShorterTexts) {
  const auto midnight = UtcFrom("2024-02-29");
  ASSERT_TRUE(midnight);
  EXPECT_EQ(UtcText(*midnight), "2024-02-29T00:00:00.000Z");
  EXPECT_EQ(UtcFrom("2024-02-29T08:05"), *midnight + std::chrono::minutes(8 * 60 + 5));
  EXPECT_EQ(UtcFrom("2024-02-29 08:05:07.5Z"),
            *midnight + std::chrono::minutes(8 * 60 + 5) + std::chrono::milliseconds(7500));
}

TEST(UtcFrom, TakesNothingElse) {
  for (const char* text : {"",
                           "x",
                           "2024",
                           "2024-02",
                           "2023-02-29",
                           "2024-13-01",
                           "2024-2-9",
                           "2024-02-29T",
                           "2024-02-29T24:00",
                           "2024-02-29T08:60",
                           "2024-02-29T8:05",
                           "2024-02-29T08:05x",
                           "2024-02-29T08:05:61",
                           "+024-02-29",
                           "9999-12-31",
                           "1677-12-31",
                           "2024-02-29T08",
                           "2024-02-29T08:0",
                           "2024-02-29_08:05",
                           "2024-02-29T08:05:07.5x",
                           "2024-02-29T08:05ZZ"}) {
    EXPECT_FALSE(UtcFrom(text)) << text;
  }
}

TEST(UtcFrom, TakesTheFirstAndTheLastMomentOfADayAndOfItsYears) {
  for (const char* text :
       {"1678-01-01T00:00:00.000Z", "2261-12-31T23:59:59.999Z", "2024-02-29T23:59:59.000Z"}) {
    const auto moment = UtcFrom(text);
    ASSERT_TRUE(moment) << text;
    EXPECT_EQ(UtcText(*moment), text);
  }
}

TEST(UtcFrom, PartsOfASecondGoDownToTheNanosecond) {
  const auto second = UtcFrom("2024-02-29T08:05:07");
  ASSERT_TRUE(second);
  EXPECT_EQ(UtcFrom("2024-02-29T08:05:07.123456789Z"),
            *second + std::chrono::nanoseconds(123456789));
  EXPECT_EQ(UtcFrom("2024-02-29T08:05:07.000000001"), *second + std::chrono::nanoseconds(1));
  EXPECT_FALSE(UtcFrom("2024-02-29T08:05:07.1234567890"))
      << "a tenth digit is finer than any clock";
}

}  // namespace
}  // namespace kestrel
