// Tests of a monitor that follows the sensor's own timer.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "monitor_checks.h"
#include "support/monitored_world.h"
#include "support/sensor_frames.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

TEST(MonitorOfASeries, FetchesRecordsOfTheSensorsOwnTimerAsTheyCome) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 20 s\n[timer]\n");
  world.Start();
  world.Run(405s);
  world.Stop();
  EXPECT_GE(Kept(world), 20);
  EXPECT_LE(Kept(world), 22);
  EXPECT_EQ(MissedOf(Entries(world)), 0);
}

TEST(MonitorOfASeries, GoesOnAfterTheSensorWasAway) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 20 s\n[timer]\n");
  world.Start();
  world.Run(100s);
  PullOutFor(world, 200s);
  world.Run(200s);
  world.Stop();
  EXPECT_EQ(Entries(world, "sensor away").size(), 1U);
  EXPECT_GE(Kept(world), 13);
  EXPECT_NEAR(static_cast<double>(Kept(world) + MissedOf(Entries(world))), 25, 2);
}

TEST(MonitorOfAStoringSensor, FetchesRecordsOfItsFlashAfterAnInterruption) {
  StoringWorld world(20s);
  world.Start();
  world.Run(100s);
  PullOutFor(world, 130s);
  world.Run(100s);
  world.Stop();
  auto archive = world.OpenArchive();
  int stored = 0;
  for (const std::int64_t id : archive.Find({})) {
    stored += archive.Get(id)->record.origin.stored ? 1 : 0;
  }
  EXPECT_GE(stored, 5);
  EXPECT_EQ(MissedOf(Entries(world)), 0);
  EXPECT_NEAR(static_cast<double>(Kept(world)), 16, 1);
}

TEST(MonitorOfAStoringSensor, TellsWhatItsFlashCouldNotHold) {
  StoringWorld world(20s);
  world.Start();
  world.Run(100s);
  PullOutFor(world, 600s);
  world.Run(100s);
  world.Stop();
  const auto lost = Entries(world, "capture lost");
  ASSERT_EQ(lost.size(), 1U);
  EXPECT_EQ(lost[0].text, std::to_string(lost[0].missed) +
                              " records of the sensor's series were replaced before they could be "
                              "fetched.");
  EXPECT_GE(lost[0].missed, 10);
  EXPECT_NEAR(static_cast<double>(Kept(world) + MissedOf(Entries(world))), 40, 2);
}

TEST(MonitorOfASeries, PeriodsAreTheTimersSecondsMinutesOrHours) {
  for (const auto& [every, word] : std::map<std::string, int>{
           {"20 s", 20}, {"255 s", 255}, {"5 min", 0x105}, {"90 min", 0x15A}, {"3 h", 0x203}}) {
    MonitoredWorld world("bench = b\nsensor = s\nevery = " + every + "\n[timer]\n");
    world.Start();
    world.Run(10s);
    EXPECT_EQ(WordAt(world, address::kRecPrd), word) << every;
    EXPECT_TRUE(world.Hardware().Sensor().IsInSeries()) << every;
    world.Stop();
  }
}

}  // namespace
}  // namespace kestrel::monitor
