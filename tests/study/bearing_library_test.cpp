// Bearings kept as text: nothing is lost, damaged lines are named.
// SPDX-License-Identifier: MIT
#include "study/bearing_library.h"

#include <gmock/gmock.h>

namespace kestrel::study {
namespace {

using ::testing::HasSubstr;

analysis::Bearing Front() {
  analysis::Bearing bearing{.name = "front", .factors = {}, .geometry = {{9, 7.94, 39.04, 12.5}}};
  bearing.factors = *analysis::FactorsOf(*bearing.geometry);
  return bearing;
}

analysis::Bearing Rear() {
  return {.name = "rear, motor side", .factors = {8.33, 11.67, 5.3, 0.1 + 0.2}, .geometry = {}};
}

TEST(BearingLibrary, WhatIsKeptIsReadBackExactly) {
  const BearingLibrary library{Front(), Rear()};
  const ReadBearings read = BearingsFrom(TextOf(library));
  EXPECT_EQ(read.bearings, library);
  EXPECT_TRUE(read.messages.empty());
}

TEST(BearingLibrary, AnEmptyTextIsAnEmptyLibrary) {
  EXPECT_TRUE(BearingsFrom("").bearings.empty());
  EXPECT_TRUE(BearingsFrom("").messages.empty());
  EXPECT_TRUE(BearingsFrom(TextOf({})).bearings.empty());
}

TEST(BearingLibrary, OfADamagedTextWhatCanBeReadIsReadAndTheRestIsNamed) {
  for (const std::string damaged :
       {"front\t1\t2", "x\t0\t2\t3\t0.4", "x\t-3\t2\t3\t0.4", "x\t1e999\t2\t3\t0.4",
        "x\t1.500,5\t2\t3\t0.4", "x\t\t2\t3\t0.4", "x\tabc\t2\t3\t0.4", "x\tnan\t2\t3\t0.4",
        "\t1\t2\t3\t0.4", "x\t1\t2\t3\t1.5", "x\t1\t2\t3\t0.4\t0\t7\t39\t0",
        "x\t1\t2\t3\t0.4\t9.5\t7\t39\t0", "x\t1\t2\t3\t0.4\t9\t40\t39\t0",
        "x\t1\t2\t3\t0.4\t9\t7\t39\t90", "\xff\xfe\x01"}) {
    const ReadBearings read = BearingsFrom(damaged + "\r\n" + TextOf({Rear()}));
    EXPECT_EQ(read.bearings, BearingLibrary{Rear()}) << damaged;
    ASSERT_EQ(read.messages.size(), 1U) << damaged;
    EXPECT_THAT(read.messages[0], HasSubstr("Line 1 is not a bearing"));
  }
}

TEST(BearingLibrary, ANameIsThereOnceAndHoldsNoMarks) {
  BearingLibrary library{Front()};
  analysis::Bearing other = Rear();
  other.name = "front";
  Put(library, other);
  EXPECT_EQ(library, BearingLibrary{other});
  other.name = "a\tb\nc";
  Put(library, other);
  EXPECT_EQ(library.back().name, "a b c");
  EXPECT_EQ(BearingsFrom(TextOf(library)).bearings, library);
  Drop(library, "front");
  Drop(library, "nobody");
  EXPECT_EQ(library.size(), 1U);
}

}  // namespace
}  // namespace kestrel::study
