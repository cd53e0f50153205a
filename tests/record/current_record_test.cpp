// The record at hand, its program-wide names and its listeners.
// SPDX-License-Identifier: MIT
#include "record/current_record.h"

#include <gtest/gtest.h>

#include "record/capture_data.h"

namespace kestrel {
namespace {

class Current : public testing::Test {
 protected:
  Current() { ResetCaptureData(); }
  ~Current() override { ResetCaptureData(); }

  // All points of axis n are `mark` plus n.
  static Record Marked(RecordKind kind, double mark) {
    Record record;
    record.kind = kind;
    for (const Axis axis : kAxes) {
      for (int i = 0; i < 512; ++i) {
        record.Of(axis).raw(i) = mark + static_cast<double>(Index(axis));
        record.Of(axis).data(i) = -record.Of(axis).raw(i);
      }
    }
    return record;
  }

  CurrentRecord current;
};

TEST_F(Current, TheNamesTellOfTheRecordHandedOver) {
  Record record = Marked(RecordKind::Time, 10);
  record.settings.option = 2;
  record.lsbWeight = 0.5;
  record.scaledRange = 3;
  record.conditions = {.supplyV = 3.3F, .temperatureC = 25.5F, .recordCount = 1};
  current.HandOver(record);
  EXPECT_EQ(current.Get(), record);
  EXPECT_EQ(Buff.width, 511);
  EXPECT_EQ(Buff.sampleRateOption, 2);
  EXPECT_EQ(CaptureType, "TimeDomain");
  EXPECT_EQ(RawX(511), 10);
  EXPECT_EQ(RawY(0), 11);
  EXPECT_EQ(RawZ(0), 12);
  EXPECT_EQ(DataX(0), -10);
  EXPECT_EQ(DataY(0), -11);
  EXPECT_EQ(DataZ(511), -12);
  EXPECT_EQ(LsbWeight, 0.5);
  EXPECT_EQ(RangeSetting, 3);
  EXPECT_EQ(CaptSupply, 3.3F);
  EXPECT_EQ(CaptTemp, 25.5F);
}

TEST_F(Current, PointsBeyondAShorterRecordStayThoseOfTheLongerOneBefore) {
  current.HandOver(Marked(RecordKind::Time, 10));
  current.HandOver(Marked(RecordKind::Spectrum, 20));
  EXPECT_EQ(RawX(255), 20);
  EXPECT_EQ(RawX(256), 10);
  EXPECT_EQ(DataZ(511), -12);
  EXPECT_EQ(current.Get().Of(Axis::Y).raw(511), 11);
}

TEST_F(Current, WhatTheNextReadOutFindsChangesNothingOfTheRecord) {
  current.HandOver(Marked(RecordKind::Spectrum, 1));
  const Record record = current.Get();
  NameKind(RecordKind::Time);
  EXPECT_EQ(CaptureType, "TimeDomain");
  EXPECT_EQ(current.Get(), record);
}

TEST_F(Current, AlarmsThatAreReadLaterBelongToTheRecord) {
  current.HandOver(Marked(RecordKind::Spectrum, 1));
  AlarmState alarms;
  alarms.axes[1].status = 0x30;
  alarms.statusKnown = true;
  current.AddAlarms(alarms);
  EXPECT_EQ(current.Get().alarms, alarms);
}

TEST_F(Current, ListenersHearOfEveryChangeForAsLongAsTheyAreKept) {
  int heard = 0;
  auto listener = current.OnChange([&] { ++heard; });
  current.HandOver({});
  EXPECT_EQ(heard, 1);
  current.AddAlarms({});
  EXPECT_EQ(heard, 2);
  listener.reset();
  current.HandOver({});
  EXPECT_EQ(heard, 2);
}

TEST_F(Current, AListenerMayAddAnother) {
  int heard = 0;
  std::vector<CurrentRecord::Listener> kept;
  kept.push_back(current.OnChange([&] {
    for (int i = 0; i < 9; ++i) kept.push_back(current.OnChange([&] { ++heard; }));
  }));
  current.HandOver({});
  EXPECT_EQ(heard, 9);
}

}  // namespace
}  // namespace kestrel
