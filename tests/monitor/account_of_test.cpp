// What a monitor that runs tells of itself.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "monitor/account.h"
#include "monitor_checks.h"
#include "support/monitored_world.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::SizeIs;

TEST(AccountOf, IsWhatTheArchiveHoldsAndWhatLasts) {
  MonitoredWorld world(kPlan);
  world.Start();
  EXPECT_EQ(AccountOf(world.Monitor()).doing, Account::Doing::Connecting);
  world.Run(65s);
  world.Settle();
  Account account = AccountOf(world.Monitor());
  EXPECT_TRUE(account.isConnected);
  EXPECT_EQ(account.records, Kept(world));
  EXPECT_EQ(account.unsafe, 0);
  ASSERT_TRUE(account.nextIn);
  EXPECT_LE(*account.nextIn, 10);
  EXPECT_THAT(account.incidents, IsEmpty());
  EXPECT_EQ(ToldBy(LineOf(account)).account->records, account.records);

  world.Hardware().Adapter().Unplug(0);
  world.Run(60s);
  account = AccountOf(world.Monitor());
  EXPECT_FALSE(account.isConnected);
  ASSERT_THAT(account.incidents, SizeIs(1));
  EXPECT_EQ(account.incidents[0].kind, "sensor away");
  EXPECT_FALSE(account.incidents[0].ended);

  world.Hardware().Adapter().Replug(0);
  world.Run(60s);
  EXPECT_THAT(AccountOf(world.Monitor()).incidents, IsEmpty());
  world.AskToEnd();
  EXPECT_FALSE(world.Monitor().Turn());
  EXPECT_EQ(AccountOf(world.Monitor()).doing, Account::Doing::Ending);
  world.GoToTheEnd();
}

TEST(AccountOf, AlarmsThatStandAreThoseThatAreOpenInTheJournal) {
  MonitoredWorld world(kPlan, BearingFault());
  world.Start();
  world.Run(300s);
  world.Settle();
  const Account account = AccountOf(world.Monitor());
  EXPECT_THAT(account.alarms, testing::Not(IsEmpty()));
  world.Stop();
  std::set<archive::Uid> open;
  for (const archive::JournalEntry& entry : Entries(world)) {
    if (!entry.ended && entry.kind == "alarm") open.insert(entry.uid);
  }
  EXPECT_EQ(open.size(), account.alarms.size());
  for (const archive::JournalEntry& alarm : account.alarms) EXPECT_TRUE(open.contains(alarm.uid));
}

// What was judged before the end counts after it: one of two, and the alarm that stands.
TEST(JudgedLevels, OutlastARestart) {
  MonitoredWorld world(
      "bench = b\nsensor = s\nevery = 10 s\n[capture]\nbands = x.csv\n[judge]\nalarm = 2 of 2\n");
  world.bands = {BandsThatYExceeds()};
  world.Start();
  world.Run(5s);
  EXPECT_THAT(world.publisher.alarms, IsEmpty()) << "one level is none";
  world.Stop();
  world.Start();
  world.Run(5s);
  ASSERT_THAT(world.publisher.alarms, SizeIs(1)) << "the one of before is the first of two";
  world.Stop();
  world.Hardware().Sensor().SetScenario(AtRest());
  world.Start();
  world.Run(45s);
  world.Stop();
  ASSERT_THAT(world.publisher.alarms, SizeIs(2));
  EXPECT_EQ(world.publisher.alarms[1].event, publish::AlarmEvent::End);
}

}  // namespace
}  // namespace kestrel::monitor
