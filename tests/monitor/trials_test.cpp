// A monitor for hours with faults of every kind at random: all that was asked for is accounted for.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "support/monitored_trials.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;

TEST(MonitorTrials, EveryCaptureIsKeptOrItsAbsenceTold) {
  for (const std::uint32_t seed : Seeds(3)) {
    SCOPED_TRACE("KESTREL_SEED=" + std::to_string(seed));
    MonitoredWorld world(kTrialPlan, BearingFault());
    world.glance = 2s;
    MonitoredTrials trials(world, seed);
    world.Start();
    trials.Run(3h, 30s);
    world.Stop();
    const MonitoredAccount account = AccountOf(world);
    EXPECT_EQ(account.kept + account.missed, account.asked) << account.journal;
    EXPECT_TRUE(account.damage.empty());
    EXPECT_EQ(account.doubledAlarm, "");
    EXPECT_TRUE(account.IsWhole()) << account.notRunning << " of " << account.leastNotRunning;
    EXPECT_GE(trials.Faults().size(), 8U);
  }
}

}  // namespace
}  // namespace kestrel
