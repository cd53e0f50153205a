// What is watched of a wait follows how late sleepers come back.
// SPDX-License-Identifier: MIT
#include "platform/watch_margin.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

using namespace std::chrono_literals;

TEST(WatchMargin, BeginsWithAllThatAnIdleComputerNeeds) {
  EXPECT_EQ(WatchMargin().Watched(), 80us);
}

TEST(WatchMargin, SinksBitByBitToWhatIsNeededWithAReserve) {
  WatchMargin margin;
  auto before = margin.Watched();
  for (int i = 0; i < 100; ++i) {
    margin.Note(12us);
    EXPECT_LE(margin.Watched(), before);
    EXPECT_GE(margin.Watched(), before - before / 10);
    before = margin.Watched();
  }
  EXPECT_EQ(margin.Watched(), 17us);
}

TEST(WatchMargin, RisesAtOnceAndNoHigherThanItBegan) {
  WatchMargin margin;
  for (int i = 0; i < 100; ++i) margin.Note(0us);
  EXPECT_EQ(margin.Watched(), 10us);
  margin.Note(40us);
  EXPECT_EQ(margin.Watched(), 45us);
  margin.Note(300us);
  EXPECT_EQ(margin.Watched(), 80us);
}

TEST(WatchMargin, ASleeperThatLostItsTurnTeachesNothing) {
  WatchMargin margin;
  for (int i = 0; i < 100; ++i) margin.Note(0us);
  margin.Note(3ms);
  EXPECT_EQ(margin.Watched(), 10us);
}

}  // namespace
}  // namespace kestrel
