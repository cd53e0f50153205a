// Tests of a monitor whose sensor, archive or disk does not do what it is asked for.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "monitor_checks.h"
#include "support/monitored_world.h"
#include "support/sensor_frames.h"

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Monitor, SettingsThatOthersChangedArePutBackAndToldTheFirstFiveByName) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(25s);
  Write(world, address::kFftAvg, 0x0707);
  Write(world, address::kXNull, 11);
  Write(world, address::kYNull, 12);
  Write(world, address::kZNull, 13);
  Write(world, address::kRecPrd, 0x0109);
  Write(world, address::kDioCtrl, 0x0005);
  world.Run(30s);
  world.Stop();
  const auto changed = Entries(world, "settings changed");
  ASSERT_THAT(changed, SizeIs(1));
  EXPECT_EQ(std::ranges::count(changed[0].text, ';'), 5) << changed[0].text;
  EXPECT_THAT(changed[0].text, HasSubstr("X_NULL"));
  EXPECT_THAT(changed[0].text, HasSubstr(" more."));
  EXPECT_EQ(WordAt(world, address::kZNull), 0);
  ExpectAllAccounted(world);
}

TEST(Monitor, ASensorThatDoesNotTakeItsSettingsIsSilentAndNothingOfItIsKept) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(25s);
  world.Usb().OnBlock([&](auto /*block*/) { Write(world, address::kFftAvg, 0x0909); });
  world.Run(60s);
  world.Usb().OnBlock({});
  world.Run(30s);
  world.Stop();
  const auto silent = Entries(world, "sensor silent");
  ASSERT_THAT(silent, SizeIs(1));
  EXPECT_THAT(silent[0].text, HasSubstr("The sensor does not take its settings: FFT_AVG"));
  EXPECT_TRUE(silent[0].ended);
  auto archive = world.OpenArchive();
  for (const std::int64_t id : archive.Find({})) {
    EXPECT_EQ(archive.Get(id)->record.settings.averages, 2);
  }
  ExpectAllAccounted(world);
}

TEST(Monitor, ASensorThatNeverTookThePlansSettingsIsSilent) {
  MonitoredWorld world(kPlan);
  world.Usb().OnBlock([&](auto /*block*/) { Write(world, address::kFftAvg, 0x0909); });
  world.Start();
  world.Run(35s);
  EXPECT_EQ(Kept(world), 0);
  world.Usb().OnBlock({});
  world.Run(30s);
  world.Stop();
  const auto silent = Entries(world, "sensor silent");
  ASSERT_THAT(silent, SizeIs(1));
  EXPECT_EQ(silent[0].text, "The sensor does not take the settings of the plan.");
  ExpectAllAccounted(world);
}

TEST(Monitor, AClockThatWasSetForwardMissesNothing) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  world.clock.Set(7200s);
  world.Run(30s);
  world.Stop();
  const auto stepped = Entries(world, "clock stepped");
  ASSERT_THAT(stepped, SizeIs(1));
  EXPECT_EQ(stepped[0].text, "The clock was set forward by 7200 s.");
  ExpectAllAccounted(world);
}

TEST(Monitor, ARecordThatTheArchiveRefusesIsToldAsMissedWithTheReason) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  world.Settle();
  *world.archiveFault = static_cast<int>(database::Fault::Constraint);
  world.Run(20s);
  world.Settle();
  *world.archiveFault = -1;
  world.Run(30s);
  world.Stop();
  const auto refused = Entries(world, "record refused");
  ASSERT_THAT(refused, testing::Not(IsEmpty()));
  EXPECT_EQ(refused[0].text, "A record cannot be archived: it fails.");
  EXPECT_EQ(MissedOf(refused), 2);
  ExpectAllAccounted(world);
}

TEST(Monitor, RecordsThatNothingTakesAtTheEndAreToldAtTheNextStart) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(35s);
  world.Settle();
  *world.archiveFault = static_cast<int>(database::Fault::Full);
  *world.diskFault = static_cast<int>(database::Fault::Full);
  world.Run(30s);
  world.AskToEnd();
  world.GoToTheEnd();
  EXPECT_EQ(world.said.back(), "The journal's last entries could not be kept: it fails.");
  *world.archiveFault = -1;
  *world.diskFault = -1;
  world.Start();
  world.Run(15s);
  world.Stop();
  EXPECT_EQ(Kept(world) + MissedOf(Entries(world)), world.Asked());
}

TEST(Monitor, AJournalThatTheArchiveDoesNotTakeAtTheEndIsBroughtAtTheNextStart) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(25s);
  world.Settle();
  *world.archiveFault = static_cast<int>(database::Fault::Lost);
  world.clock.Set(7200s);
  world.Run(15s);
  world.AskToEnd();
  world.GoToTheEnd();
  EXPECT_THAT(world.said.back(), EndsWith("are brought to the archive at the next start."));
  EXPECT_THAT(Entries(world, "clock stepped"), IsEmpty());
  *world.archiveFault = -1;
  world.Start();
  world.Run(15s);
  world.Stop();
  EXPECT_THAT(Entries(world, "clock stepped"), SizeIs(1));
}

TEST(Monitor, NobodyNeedsToListen) {
  MonitoredWorld world(kPlan, BearingFault());
  world.isPublished = false;
  world.Start();
  world.Run(95s);
  world.Stop();
  EXPECT_EQ(world.publisher.status.records, 0);
  EXPECT_EQ(Kept(world), 10);
}

TEST(Monitor, ABrokerThatIsAwayForTenSecondsIsAnIncident) {
  MonitoredWorld world(kPlan);
  world.Start();
  world.Run(15s);
  world.publisher.isConnected = false;
  world.Run(5s);
  EXPECT_THAT(world.Monitor().OpenIncidents(), IsEmpty());
  world.Run(20s);
  ASSERT_THAT(world.Monitor().OpenIncidents(), SizeIs(1));
  EXPECT_EQ(world.Monitor().OpenIncidents()[0].text, "The broker cannot be reached.");
  world.publisher.isConnected = true;
  world.Run(5s);
  world.Stop();
  EXPECT_TRUE(Entries(world, "broker away").at(0).ended);
  EXPECT_EQ(std::ranges::count(world.said, "broker away: The broker cannot be reached."), 1);
}

}  // namespace
}  // namespace kestrel::monitor
