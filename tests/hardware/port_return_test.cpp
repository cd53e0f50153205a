// A parallel port that is lost and looked for without a message: over mock ports.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "acquisition/sensor_return.h"
#include "hardware/two_ports_bench.h"

namespace kestrel {
namespace {

using testing::IsEmpty;

class LostPort : public TwoPorts {
 protected:
  LostPort() {
    StartAt(kFirst);
    back.emplace(program->core);
    back->NoteRoad();
  }
  // The driver refuses the next access, and to be claimed again.
  void Lose() {
    first.claimError = EBUSY;
    first.failAccessesFrom = 1;
    EXPECT_EQ(ProductId(), std::nullopt);
    ASSERT_FALSE(program->core.registers.Reachable());
  }
  void Mend() {
    first.claimError = 0;
    first.failAccessesFrom = 0;
  }

  std::optional<SensorReturn> back;
};

TEST_F(LostPort, ThatIsHeldIsNotLookedFor) {
  ASSERT_EQ(ProductId(), 31407);
  const int claims = first.claims;
  EXPECT_TRUE(back->Look());
  EXPECT_EQ(first.claims, claims);
}

TEST_F(LostPort, IsNotThereWhileSomebodyElseHasItAndNothingIsTold) {
  Lose();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(back->Look());
  EXPECT_FALSE(first.Claimed());
  EXPECT_EQ(ProductId(), std::nullopt) << "no number without a port";
  EXPECT_THAT(program->messages.Texts(), IsEmpty());
}

TEST_F(LostPort, IsTheInterfaceAgainOnceItIsFree) {
  Lose();
  ASSERT_FALSE(back->Look());
  program->core.registers.Use(kNoInterface);  // somebody searched in vain
  Mend();
  EXPECT_TRUE(back->Look());
  EXPECT_TRUE(back->SameRoad());
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_TRUE(first.Claimed());
  EXPECT_EQ(ProductId(), 31407);
  EXPECT_THAT(program->messages.Texts(), IsEmpty());
}

TEST_F(LostPort, LeavesTheOtherPortAlone) {
  Lose();
  const int requests = second.requests;
  ASSERT_FALSE(back->Look());
  Mend();
  ASSERT_TRUE(back->Look());
  EXPECT_FALSE(second.Claimed());
  EXPECT_EQ(second.requests, requests);
}

}  // namespace
}  // namespace kestrel
