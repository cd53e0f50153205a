// Tests of what a monitor judges: alarms begin once and end once, over restarts and refusals.
// SPDX-License-Identifier: MIT
#include "monitor/monitor.h"

#include <gtest/gtest.h>

#include <map>

#include "archive/wide_sets.h"
#include "monitor_checks.h"
#include "support/monitored_world.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

// Begins and ends by turns, each alarm by itself.
void ExpectPairs(const std::vector<publish::Alarm>& alarms) {
  std::map<std::string, int> standing;
  for (const publish::Alarm& alarm : alarms) {
    const std::string name = std::to_string(static_cast<int>(alarm.kind)) +
                             std::to_string(static_cast<int>(alarm.grade)) + Letter(alarm.axis) +
                             std::to_string(alarm.number.value_or(0));
    int& stands = standing[name];
    stands += alarm.event == publish::AlarmEvent::Begin ? 1 : -1;
    EXPECT_TRUE(stands == 0 || stands == 1) << name;
  }
}

TEST(Monitor, TheSensorsAlarmsBeginOnceAndStandOverARestart) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 10 s\n[capture]\n", BearingFault());
  world.Start();
  world.Run(100s);
  EXPECT_EQ(world.publisher.alarms.size(), 2U);
  world.Kill();
  world.Start();
  world.Run(100s);
  world.Stop();
  ASSERT_EQ(world.publisher.alarms.size(), 2U);
  EXPECT_EQ(world.publisher.alarms[0].grade, publish::AlarmGrade::Warning);
  EXPECT_EQ(world.publisher.alarms[1].grade, publish::AlarmGrade::Fault);
  EXPECT_EQ(world.publisher.alarms[1].axis, Axis::Z);
  EXPECT_EQ(world.publisher.alarms[1].number, 3);
  EXPECT_EQ(Entries(world, "alarm").size(), 2U);
}

TEST(Monitor, AnAlarmThatThePublisherDoesNotTakeIsToldAgain) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 10 s\n[capture]\n", BearingFault());
  world.publisher.isFull = true;
  world.Start();
  world.Run(100s);
  EXPECT_TRUE(world.publisher.alarms.empty());
  world.Kill();
  world.publisher.isFull = false;
  world.Start();
  world.Run(20s);
  world.Stop();
  EXPECT_EQ(world.publisher.alarms.size(), 2U);
  ExpectPairs(world.publisher.alarms);
}

TEST(Monitor, LevelsAreJudgedByTheBandsOfThePlan) {
  MonitoredWorld world(
      "bench = b\nsensor = s\nevery = 10 s\n[capture]\nbands = x.csv\n[judge]\nalarm = 2 of 3\n");
  world.bands = {BandsThatYExceeds()};
  world.Start();
  world.Run(45s);
  ASSERT_EQ(world.publisher.alarms.size(), 1U);
  EXPECT_EQ(world.publisher.alarms[0].kind, publish::AlarmKind::Threshold);
  EXPECT_EQ(world.publisher.alarms[0].axis, Axis::Y);
  EXPECT_EQ(world.publisher.alarms[0].number, 2);
  EXPECT_GT(world.publisher.alarms[0].level, world.publisher.alarms[0].limit);
  world.Hardware().Sensor().SetScenario(AtRest());
  world.Run(45s);
  world.Stop();
  ASSERT_EQ(world.publisher.alarms.size(), 2U);
  EXPECT_EQ(world.publisher.alarms[1].event, publish::AlarmEvent::End);
}

TEST(Monitor, AWideSpectrumIsKeptAsOneAndItsSeverityJudged) {
  MonitoredWorld world(
      "bench = b\nsensor = s\nevery = 60 s\n[wide]\naverages = 1\nrange = 5\n[judge]\n"
      "severity = 0.0001 0.0002 0.0003\n");
  world.Start();
  world.Run(90s);
  world.Stop();
  auto archive = world.OpenArchive();
  const auto sets = archive::FindWideSets(archive, {});
  ASSERT_EQ(sets.size(), 2U);
  EXPECT_TRUE(archive::GetWideSet(archive, sets[0])->IsWhole());
  EXPECT_EQ(world.publisher.alarms.size(), 6U);
  EXPECT_EQ(world.publisher.alarms[0].kind, publish::AlarmKind::Severity);
  EXPECT_EQ(world.publisher.alarms[0].unit, "mm/s");
}

}  // namespace
}  // namespace kestrel::monitor
