// What the record registers mean: periods, rates, durations.
// SPDX-License-Identifier: MIT
#include "simulator/signal/capture_settings.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

using namespace std::chrono_literals;

std::chrono::nanoseconds PeriodOf(std::uint16_t recPrd) {
  return CaptureSettings::Latch(0, 1, recPrd).period;
}

TEST(CaptureSettings, PeriodIsACountOfSecondsMinutesOrHours) {
  EXPECT_EQ(PeriodOf(0x0000), 0s);
  EXPECT_EQ(PeriodOf(0x0007), 7s);
  EXPECT_EQ(PeriodOf(0x010A), 10min);
  EXPECT_EQ(PeriodOf(0x02FF), 255h);
}

TEST(CaptureSettings, UnitCodeLeftOverCountsAsHours) {
  EXPECT_EQ(PeriodOf(0x0302), 2h);
}

TEST(CaptureSettings, UpperBitsOfThePeriodDoNotCount) {
  EXPECT_EQ(PeriodOf(0xFC07), 7s);
}

TEST(CaptureSettings, OnlyTimerModeRepeats) {
  for (std::uint16_t mode = 0; mode < 4; ++mode) {
    EXPECT_EQ(CaptureSettings::Latch(mode, 1, 0).repeats, mode == 1) << mode;
  }
}

TEST(CaptureSettings, IntervalIsThePeriodButNotShorterThanTheCapture) {
  CaptureSettings settings{.averages = 1};
  EXPECT_EQ(settings.Interval(), settings.Duration());
  settings.period = settings.Duration() - 1ns;
  EXPECT_EQ(settings.Interval(), settings.Duration());
  settings.period = 1s;
  EXPECT_EQ(settings.Interval(), 1s);
}

TEST(CaptureSettings, SeriesCompletesOneCaptureAnInterval) {
  const CaptureSettings settings{.averages = 1, .period = 1s};
  const auto duration = settings.Duration();
  EXPECT_EQ(settings.CompletedIn(0s), 0U);
  EXPECT_EQ(settings.CompletedIn(duration - 1ns), 0U);
  EXPECT_EQ(settings.CompletedIn(duration), 1U);
  EXPECT_EQ(settings.CompletedIn(1s + duration - 1ns), 1U);
  EXPECT_EQ(settings.CompletedIn(1s + duration), 2U);
  EXPECT_EQ(settings.CompletedIn(24h + duration), 86401U);
}

}  // namespace
}  // namespace kestrel
