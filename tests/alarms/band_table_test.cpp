// Places of the band table kept apart and checked.
// SPDX-License-Identifier: MIT
#include "alarms/band_table.h"

#include <gtest/gtest.h>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

TEST(BandTableTest, KeepsEveryFieldOfEveryBandOfEveryOptionApart) {
  BandTable table;
  std::int32_t next = 0;
  for (int option = 0; option < 5; ++option) {
    for (int band = 0; band < 8; ++band) {
      for (int field = 0; field < 10; ++field) table(field, band, option) = ++next;
    }
  }
  next = 0;
  for (int option = 0; option < 5; ++option) {
    for (int band = 0; band < 8; ++band) {
      for (int field = 0; field < 10; ++field) EXPECT_EQ(table(field, band, option), ++next);
    }
  }
}

TEST(BandTableTest, RefusesWhatDoesNotExist) {
  BandTable table;
  EXPECT_THROW(table(10, 1, 0), RuntimeError);
  EXPECT_THROW(table(-1, 1, 0), RuntimeError);
  EXPECT_THROW(table(0, 8, 0), RuntimeError);
  EXPECT_THROW(table(0, -1, 0), RuntimeError);
  EXPECT_THROW(table(0, 1, 5), RuntimeError);
  EXPECT_THROW(table(0, 1, -1), RuntimeError);
}

TEST(BandTableTest, TheThresholdsOfAnAxisHaveTheirFields) {
  EXPECT_EQ(Alarm1Field(Axis::X), 3);
  EXPECT_EQ(Alarm1Field(Axis::Z), 5);
  EXPECT_EQ(Alarm2Field(Axis::X), 7);
  EXPECT_EQ(Alarm2Field(Axis::Z), 9);
}

}  // namespace
}  // namespace kestrel
