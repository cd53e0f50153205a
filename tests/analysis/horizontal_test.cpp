// Behaviour of horizontal axes.
// SPDX-License-Identifier: MIT
#include "analysis/horizontal.h"

#include <gmock/gmock.h>

#include <limits>

namespace kestrel::analysis {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Horizontal, OneFrequencyInEveryUnit) {
  EXPECT_DOUBLE_EQ(FromHertz({HorizontalUnit::Hertz, 10, 1500.0}, 50), 50);
  EXPECT_DOUBLE_EQ(FromHertz({HorizontalUnit::Bin, 10, 1500.0}, 50), 5);
  EXPECT_DOUBLE_EQ(FromHertz({HorizontalUnit::Cpm, 10, 1500.0}, 50), 3000);
  EXPECT_DOUBLE_EQ(FromHertz({HorizontalUnit::Order, 10, 1500.0}, 50), 2);
}

TEST(Horizontal, ThereAndBackIsTheSameFrequency) {
  for (const HorizontalUnit unit :
       {HorizontalUnit::Bin, HorizontalUnit::Hertz, HorizontalUnit::Cpm, HorizontalUnit::Order}) {
    const Horizontal axis{unit, 195.68, 59214.0};
    EXPECT_DOUBLE_EQ(ToHertz(axis, FromHertz(axis, 22698.2)), 22698.2);
  }
}

TEST(Horizontal, TitlesSayWhatTheAxisIs) {
  EXPECT_EQ(TitleOf({HorizontalUnit::Hertz}), "Frequency, Hz");
  EXPECT_EQ(TitleOf({HorizontalUnit::Cpm}), "Frequency, CPM");
  EXPECT_EQ(TitleOf({HorizontalUnit::Order, 0, 59214.0}), "Order of 59,214.0 rpm");
  EXPECT_EQ(TitleOf({HorizontalUnit::Order, 0, kNan}), "Order");
  EXPECT_EQ(TitleOf({HorizontalUnit::Order, 0, std::nullopt}), "Order");
  EXPECT_EQ(TitleOf({HorizontalUnit::Bin}), "Bin");
  EXPECT_EQ(UnitOf({HorizontalUnit::Order}), "×");
  EXPECT_EQ(UnitOf({HorizontalUnit::Bin}), "bin");
  EXPECT_EQ(UnitOf({HorizontalUnit::Cpm}), "CPM");
  EXPECT_EQ(UnitOf({HorizontalUnit::Hertz}), "Hz");
}

TEST(Horizontal, SpeedsThatAreNoneAreRefusedWithTheCure) {
  for (const double rpm : {0.0, -50.0, kNan, kInfinity, 1.1e7}) {
    EXPECT_FALSE(IsSpeed(rpm)) << rpm;
    EXPECT_TRUE(WhyNot({HorizontalUnit::Order, 10, rpm})) << rpm;
    EXPECT_EQ(FromHertz({HorizontalUnit::Order, 10, rpm}, 50), 50) << rpm;
  }
  const std::optional<Refusal> refusal = WhyNot({HorizontalUnit::Order, 10, std::nullopt});
  ASSERT_TRUE(refusal);
  EXPECT_THAT(refusal->cure, testing::HasSubstr("take it from a peak"));
  EXPECT_FALSE(WhyNot({HorizontalUnit::Order, 10, 0.5}));
}

TEST(Horizontal, BinsNeedACommonWidth) {
  EXPECT_TRUE(WhyNot({HorizontalUnit::Bin, 0}));
  EXPECT_TRUE(WhyNot({HorizontalUnit::Bin, kNan}));
  EXPECT_FALSE(WhyNot({HorizontalUnit::Bin, 24.4}));
  EXPECT_FALSE(WhyNot({HorizontalUnit::Cpm, 0}));
}

}  // namespace
}  // namespace kestrel::analysis
