// Which captures are computed after a pause.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/catch_up.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

namespace kestrel {
namespace {

// Goes through a pause in which `due` captures came due; calls `took` with the number of each that
// is computed, from 0.
template <typename Took>
void CatchUp(Traces traces, unsigned blocks, std::uint64_t due, Took took) {
  std::uint64_t passed = 0;
  while (due > 0) {
    const std::uint64_t omitted = OmissibleCaptures(traces, blocks, due, passed);
    ASSERT_LT(omitted, due);
    took(passed + omitted);
    passed += omitted + 1;
    due -= omitted + 1;
  }
}

std::uint64_t Computed(Traces traces, unsigned blocks, std::uint64_t due) {
  std::uint64_t count = 0;
  CatchUp(traces, blocks, due, [&](std::uint64_t /*number*/) { ++count; });
  return count;
}

TEST(CatchUp, WithoutTracesOnlyTheNewestRecordIsComputed) {
  EXPECT_EQ(Computed(Traces::OfTheNewest, 1, 1), 1U);
  EXPECT_EQ(Computed(Traces::OfTheNewest, 1, 1000000000), 1U);
}

TEST(CatchUp, OfALatestRunTheLastSixteenAreComputed) {
  EXPECT_EQ(Computed(Traces::OfALatestRun, 255, 15), 15U);
  std::uint64_t first = 0;
  std::uint64_t count = 0;
  CatchUp(Traces::OfALatestRun, 255, 1000000, [&](std::uint64_t number) {
    if (count++ == 0) first = number;
  });
  EXPECT_EQ(first, 1000000U - 16U);
  EXPECT_EQ(count, 16U);
}

TEST(CatchUp, RecordsThatAreEachStoredAreAllComputed) {
  EXPECT_EQ(Computed(Traces::OfEveryRecord, 255, 100000), 100000U);
}

TEST(CatchUp, RecordsThatMayRaiseAnAlarmAreAllComputedUpToTheExactBlocks) {
  for (const unsigned blocks : {1U, 8U, 100U}) {
    const std::uint64_t exact = kExactBlocks / blocks;
    EXPECT_EQ(Computed(Traces::OfAnyRecord, blocks, exact), exact) << blocks;
  }
  EXPECT_EQ(Computed(Traces::OfAnyRecord, 255, 32), 32U) << "and two whole runs in any case";
}

TEST(CatchUp, ThenTheyAreTakenInProportionToTheTimeThatHasPassed) {
  std::uint64_t last = 0;
  CatchUp(Traces::OfAnyRecord, 8, 1000000, [&](std::uint64_t number) {
    EXPECT_LE(number - last, 1 + last / (kExactBlocks / 8) + 1) << number;
    last = number;
  });
}

TEST(CatchUp, NewestRecordIsAlwaysComputedAndAWholeRunBeforeIt) {
  for (const std::uint64_t due : {1U, 2U, 16U, 17U, 300U, 4000U, 1000003U}) {
    std::uint64_t expected = due - std::min<std::uint64_t>(due, 16);
    CatchUp(Traces::OfAnyRecord, 8, due, [&](std::uint64_t number) {
      if (number < due - std::min<std::uint64_t>(due, 16)) return;
      EXPECT_EQ(number, expected++);
    });
    EXPECT_EQ(expected, due);
  }
}

TEST(CatchUp, AYearCostsLessThanThirtyTimesTheExactBlocks) {
  struct {
    unsigned blocks;
    std::uint64_t due;  // as many captures as a year holds
  } constexpr kYears[] = {{1, 700000000}, {8, 87000000}, {255, 2700000}};
  for (const auto& year : kYears) {
    const std::uint64_t blocks = year.blocks * Computed(Traces::OfAnyRecord, year.blocks, year.due);
    EXPECT_LT(blocks, 30U * kExactBlocks) << year.blocks;
  }
}

}  // namespace
}  // namespace kestrel
