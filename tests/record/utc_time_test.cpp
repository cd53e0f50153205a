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

}  // namespace
}  // namespace kestrel
