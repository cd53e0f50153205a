// Tests of a monitor over a simulated sensor: every capture of the plan is kept, or told as missed.
// SPDX-License-Identifier: MIT
#include "monitor/monitor.h"

#include <gtest/gtest.h>

#include "monitor_checks.h"
#include "support/monitored_world.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;

TEST(Monitor, CapturesByThePlanAndKeepsWithTheNamesOfThePlan) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(595s);
  world.Stop();
  auto archive = world.OpenArchive();
  EXPECT_EQ(archive.Count(), 60);
  const auto kept = archive.Get(archive.Find({}).front());
  ASSERT_TRUE(kept);
  EXPECT_EQ(kept->bench, "Hall 3");
  EXPECT_EQ(kept->remarks.machine, "Pump 7");
  EXPECT_EQ(kept->record.settings.averages, 2);
  EXPECT_TRUE(Entries(world).empty()) << Entries(world).front().text;
  EXPECT_EQ(world.publisher.levels, 60);
  EXPECT_EQ(world.publisher.spectra, 60);
  EXPECT_EQ(world.publisher.status.records, 60);
  EXPECT_EQ(world.publisher.status.state, publish::State::Stopped);
}

TEST(Monitor, StepsTakeTurns) {
  MonitoredWorld world(
      "bench = b\nsensor = s\nevery = 10 s\n[capture]\noption = 1\n[capture]\nmode = time\nrange = "
      "5\n");
  world.Start();
  world.Run(55s);
  world.Stop();
  auto archive = world.OpenArchive();
  ASSERT_EQ(archive.Count(), 6);
  EXPECT_EQ(archive.Find({.kind = RecordKind::Spectrum, .option = 1}).size(), 3U);
  EXPECT_EQ(archive.Find({.kind = RecordKind::Time, .range = 1}).size(), 3U);
}

TEST(Monitor, AnUnpluggedSensorIsOneIncidentWithWhatWasMissed) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(65s);
  world.Hardware().Adapter().Unplug(0);
  world.Run(300s);
  EXPECT_EQ(world.publisher.status.state, publish::State::Trouble);
  EXPECT_EQ(world.publisher.status.incidentsOpen, 1);
  world.Hardware().Adapter().Replug(0);
  world.Run(60s);
  world.Stop();
  const auto away = Entries(world, "sensor away");
  ASSERT_EQ(away.size(), 1U);
  ASSERT_TRUE(away[0].ended);
  EXPECT_NEAR(std::chrono::duration<double>(*away[0].ended - away[0].began).count(), 300, 20);
  EXPECT_GE(away[0].missed, 29);
  EXPECT_LE(away[0].missed, 31);
  ExpectAllAccounted(world);
}

TEST(Monitor, ASensorThatStartedWithOtherSettingsGetsItsOwnBack) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 10 s\n[capture]\nrange = 5\naverages = 7\n");
  world.Start();
  world.Run(35s);
  world.Hardware().Sensor().CutPower();
  world.Hardware().Sensor().RestorePower();
  world.Run(60s);
  world.Stop();
  const auto changed = Entries(world, "settings changed");
  ASSERT_EQ(changed.size(), 1U);
  EXPECT_NE(changed[0].text.find("FFT_AVG"), std::string::npos) << changed[0].text;
  auto archive = world.OpenArchive();
  for (const std::int64_t id : archive.Find({})) {
    EXPECT_EQ(archive.Get(id)->record.settings.averages, 7);
    EXPECT_EQ(archive.Get(id)->record.settings.range, 1);
  }
  ExpectAllAccounted(world);
}

TEST(Monitor, ASensorWithoutPowerBehindAnAdapterIsAway) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  world.Hardware().Sensor().CutPower();
  world.Run(100s);
  world.Hardware().Sensor().RestorePower();
  world.Run(60s);
  world.Stop();
  EXPECT_EQ(Entries(world, "sensor away").size() + Entries(world, "sensor silent").size(), 1U);
  ExpectAllAccounted(world);
}

TEST(Monitor, AnotherAdapterIsNoted) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  world.Hardware().Adapter().Unplug(0);
  world.Run(20s);
  world.Hardware().Adapter().RemoveBoard(0);
  BoardDescription other;
  other.string2 = u"Board 17";
  world.Hardware().Adapter().SetBoard(1, other);
  world.Hardware().Sensor().CutPower();
  world.Hardware().Sensor().RestorePower();
  world.Run(60s);
  world.Stop();
  const auto replaced = Entries(world, "adapter replaced");
  ASSERT_EQ(replaced.size(), 1U) << testing::PrintToString(world.said);
  EXPECT_NE(replaced[0].text.find("Ezusb-1"), std::string::npos) << replaced[0].text;
  ExpectAllAccounted(world);
}

TEST(Monitor, AClockThatWasSetAndAMachineThatSleptAreNoted) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  world.clock.Set(-3600s);
  world.Run(60s);
  world.clock.Sleep(600s);
  world.Run(60s);
  world.Stop();
  const auto stepped = Entries(world, "clock stepped");
  ASSERT_EQ(stepped.size(), 1U);
  EXPECT_EQ(stepped[0].text, "The clock was set back by 3600 s.");
  EXPECT_EQ(stepped[0].missed, 0);
  const auto slept = Entries(world, "machine asleep");
  ASSERT_EQ(slept.size(), 1U);
  EXPECT_NEAR(static_cast<double>(slept[0].missed), 60, 1);
  ExpectAllAccounted(world);
}

TEST(Monitor, RecordsWaitOnThisDiskWhileTheArchiveIsAway) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  *world.archiveFault = static_cast<int>(database::Fault::Lost);
  world.Run(300s);
  EXPECT_LE(Kept(world), 5);
  *world.archiveFault = -1;
  world.Run(60s);
  world.Stop();
  EXPECT_GE(Entries(world, "archive away").size(), 1U);
  EXPECT_EQ(MissedOf(Entries(world)), 0);
  ExpectAllAccounted(world);
}

TEST(Monitor, WhereNothingTakesRecordsTheyWaitInMemoryUpToABound) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  *world.archiveFault = static_cast<int>(database::Fault::Full);
  *world.diskFault = static_cast<int>(database::Fault::Full);
  world.Run(4000s);
  EXPECT_EQ(world.Monitor().State().unsafe, kMostUnsafe);
  *world.archiveFault = -1;
  *world.diskFault = -1;
  world.Run(60s);
  world.Stop();
  const auto full = Entries(world, "disk full");
  ASSERT_EQ(full.size(), 1U);
  EXPECT_GT(full[0].missed, 100);
  ExpectAllAccounted(world);
}

TEST(Monitor, ASecondRunSaysThatTheFirstHadEndedAndWhatWasMissed) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(95s);
  world.Stop();
  world.clock.WaitUntil(world.clock.Monotonic() + 600s);
  world.Start();
  world.Run(95s);
  world.Settle();
  world.Kill();
  world.Start();
  world.Run(25s);
  world.Stop();
  const auto away = Entries(world, "not running");
  ASSERT_EQ(away.size(), 2U);
  EXPECT_EQ(away[0].text, "The monitor was stopped and started again.");
  EXPECT_NEAR(static_cast<double>(away[0].missed), 60, 1);
  EXPECT_EQ(away[1].text, "The monitor ended without notice and was started again.");
  EXPECT_LE(away[1].missed, 1);
}

// A capture of a minute and a quarter.
constexpr const char* kSlowPlan =
    "bench = b\nsensor = s\nevery = 10 min\n[capture]\noption = 3\naverages = 28\n";

TEST(Monitor, ACaptureThatIsSoonDoneIsWaitedForAtTheEnd) {
  MonitoredWorld world(kSlowPlan);
  world.Start();
  world.clock.After(72s, [&] { world.AskToEnd(); });
  world.GoToTheEnd();
  EXPECT_EQ(world.OpenArchive().Count(), 1);
  EXPECT_TRUE(Entries(world).empty());
}

TEST(Monitor, ACaptureThatLastsLongIsAbandonedAtTheEndAndTold) {
  MonitoredWorld world(kSlowPlan);
  world.Start();
  const auto start = world.clock.Boot();
  world.clock.After(20s, [&] { world.AskToEnd(); });
  world.GoToTheEnd();
  EXPECT_LT(world.clock.Boot() - start, 40s);
  EXPECT_EQ(world.OpenArchive().Count(), 0);
  const auto lost = Entries(world, "capture lost");
  ASSERT_EQ(lost.size(), 1U);
  EXPECT_EQ(lost[0].missed, 1);
  EXPECT_EQ(lost[0].text, "The capture under way was abandoned at the end.");
  EXPECT_EQ(Entries(world).size(), 1U);
}

TEST(Monitor, ACaptureThatNeverEndsIsGivenUpAndTheNextOneIsTaken) {
  MonitoredWorld world(kSlowPlan);
  world.Start();
  // It starts anew within its capture, and knows nothing of it.
  world.clock.After(20s, [&] {
    world.Hardware().Sensor().CutPower();
    world.Hardware().Sensor().RestorePower();
  });
  world.Run(15min);
  world.Stop();
  EXPECT_EQ(world.OpenArchive().Count(), 1);
  const auto silent = Entries(world, "sensor silent");
  ASSERT_EQ(silent.size(), 1U);
  EXPECT_EQ(silent[0].missed, 1);
  EXPECT_TRUE(silent[0].ended);
  EXPECT_NE(silent[0].text.find("not done after three times its length"), std::string::npos)
      << silent[0].text;
}

TEST(Monitor, TheJournalWaitsOnThisDiskWhileTheArchiveIsAway) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(25s);
  *world.archiveFault = static_cast<int>(database::Fault::Lost);
  PullOutFor(world, 60s);
  world.Run(60s);
  world.Settle();
  world.Kill();
  EXPECT_TRUE(Entries(world).empty());
  *world.archiveFault = -1;
  world.Start();
  world.Run(30s);
  world.Stop();
  const auto away = Entries(world, "sensor away");
  ASSERT_EQ(away.size(), 1U);
  EXPECT_TRUE(away[0].ended);
  EXPECT_GE(away[0].missed, 5);
  EXPECT_EQ(Entries(world, "archive away").size(), 1U);
  EXPECT_EQ(Entries(world, "not running").size(), 1U);
}

TEST(Monitor, NamesThatLookLikeStatementsAreNames) {
  const std::string name = "'); drop table journal; -- \"$1\" \\ ";
  MonitoredWorld world("bench = " + name + "x\nsensor = " + name +
                       "y\nnote = " + std::string(1999, '\'') + "\nevery = 10 s\n[capture]\n");
  world.Start();
  world.Run(25s);
  world.Hardware().Adapter().Unplug(0);
  world.Run(25s);
  world.Stop();
  const auto entries = Entries(world);
  ASSERT_GE(entries.size(), 1U);
  EXPECT_EQ(entries[0].bench, name + "x");
  auto archive = world.OpenArchive();
  EXPECT_EQ(archive.List(archive.Find({})).front().remarks.note, std::string(1999, '\''));
}

TEST(Monitor, ALateCaptureIsTheSensorsLengthNotAGap) {
  MonitoredWorld world("bench = b\nsensor = s\nevery = 10 s\n[capture]\n");
  world.Start();
  world.Run(15s);
  world.clock.WaitUntil(world.clock.Monotonic() + 45s);  // the computer had no time
  world.Run(30s);
  world.Stop();
  const auto late = Entries(world, "late");
  ASSERT_EQ(late.size(), 1U);
  EXPECT_TRUE(late[0].ended);
  ExpectAllAccounted(world);
}

}  // namespace
}  // namespace kestrel::monitor
