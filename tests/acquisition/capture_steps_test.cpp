// How long a capture can last at most.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_steps.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

using namespace std::chrono_literals;

TEST(TheLongestCapture, IsThreeTimesItsSamplesAndTimeToWakeUp) {
  // 8 averages of 512 samples at 195.68 samples a second: 20.93 s.
  const auto slow = LongestCapture(3, 8);
  EXPECT_GT(slow, 30s + 3 * 20900ms);
  EXPECT_LT(slow, 30s + 3 * 20960ms);
  EXPECT_LT(LongestCapture(0, 1), 31s);
}

TEST(TheLongestCapture, IsFiniteForCodesThatAreNone) {
  EXPECT_EQ(LongestCapture(-1, 0), LongestCapture(0, 1));
  EXPECT_EQ(LongestCapture(15, 1), LongestCapture(3, 1));
}

}  // namespace
}  // namespace kestrel
