// How the alarm bands stand against what the sensor holds.
// SPDX-License-Identifier: MIT
#include "alarms/band_state.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

// A sensor of which the bands of some options are known.
class BandStateTest : public testing::Test {
 protected:
  std::string Text(int option = 0) { return StateText(table, holds, option); }

  BandTable table;
  BandTable sensor;
  int knownOptions = 4;
  SensorValues holds = [this](int field, int band, int option) {
    return option < knownOptions ? std::optional(sensor(field, band, option)) : std::nullopt;
  };
};

TEST_F(BandStateTest, WhatTheSensorHoldsIsTold) {
  EXPECT_EQ(Text(), "The sensor holds these bands.");
  knownOptions = 0;
  EXPECT_EQ(Text(), "What the sensor holds is not known.");
  knownOptions = 3;
  EXPECT_EQ(Text(), "Bands of which it is not known what the sensor holds: 6.");
}

TEST_F(BandStateTest, ValuesTheSensorDoesNotHoldAreCounted) {
  table(kFHighField, 1, 0) = 5;
  EXPECT_EQ(Text(), "Not yet written to the sensor: 1 value.");
  sensor(kFLowField, 6, 2) = 9;
  EXPECT_EQ(Text(), "Not yet written to the sensor: 2 values, 1 at other sample-rate options.");
  EXPECT_EQ(Text(1), "Not yet written to the sensor: 2 values, 2 at other sample-rate options.");
  knownOptions = 2;
  EXPECT_EQ(Text(),
            "Not yet written to the sensor: 1 value. Bands of which it is not known what the "
            "sensor holds: 12.");
}

TEST_F(BandStateTest, OnlyTheFirstProblemsAreSpeltOut) {
  for (int band = 1; band <= 4; ++band)
    table(kFLowField, band, 1) = sensor(kFLowField, band, 1) = 9;
  EXPECT_EQ(Text(0), "The sensor holds these bands.");
  EXPECT_EQ(Text(1),
            "The sensor holds these bands. Band 1: F-low is above F-high, so it covers no bin. "
            "Band 2: F-low is above F-high, so it covers no bin. And 2 more.");
}

TEST_F(BandStateTest, EditedIsWhatAReadingWouldLose) {
  EXPECT_TRUE(EditedValues(table, holds).empty());
  sensor(kFLowField, 1, 0) = 5;
  table(kFHighField, 2, 1) = 7;
  using Places = std::vector<BandPlace>;
  EXPECT_EQ(EditedValues(table, holds), (Places{{kFLowField, 1, 0}, {kFHighField, 2, 1}}));
  knownOptions = 0;
  EXPECT_EQ(EditedValues(table, holds), (Places{{kFHighField, 2, 1}}));
}

TEST(BandMisfits, TheFirstValueThatNoRegisterTakesIsNamed) {
  BandTable table;
  table(kFHighField, 1, 0) = 0xFFFF;
  EXPECT_EQ(MisfitText(table), "");
  table(Alarm2Field(Axis::Z), 6, 3) = -1;
  EXPECT_EQ(MisfitText(table), "option 3, band 6, alarm 2 Z = -1 is not from 0 to 65535");
  table(kFLowField, 3, 2) = 65536;
  EXPECT_EQ(MisfitText(table), "option 2, band 3, F-low = 65536 is not from 0 to 65535");
}

TEST(ChangedBands, PlacesAreThoseWhereTheTablesDiffer) {
  BandTable before;
  BandTable after;
  EXPECT_TRUE(ChangedPlaces(before, after).empty());
  after(kFLowField, 3, 2) = 1;
  before(Alarm1Field(Axis::Y), 6, 3) = 2;
  EXPECT_EQ(ChangedPlaces(before, after),
            (std::vector<BandPlace>{{kFLowField, 3, 2}, {Alarm1Field(Axis::Y), 6, 3}}));
}

}  // namespace
}  // namespace kestrel
