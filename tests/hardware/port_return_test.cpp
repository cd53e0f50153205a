// A parallel port that is lost and looked for without a message: over mock ports.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "acquisition/sensor_return.h"
#include "hardware/mock_parallel_port.h"
#include "hardware/program_bench.h"
#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "support/absent_hardware.h"
#include "support/parport_settings.h"

namespace kestrel {
namespace {

using testing::IsEmpty;

constexpr std::int16_t kFirst = 0x378;
constexpr std::int16_t kSecond = 0x278;

class LostPort : public testing::Test {
 protected:
  LostPort() {
    settings.Add(0, kFirst);
    settings.Add(1, kSecond);
    program.emplace(Hardware{&usb, &port, &service}, clock, kParallelPort, kFirst);
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
  std::optional<std::int32_t> ProductId() {
    const auto reading = program->core.registers.Read(row::PROD_ID);
    return reading ? std::optional(reading->value) : std::nullopt;
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockTestbed testbed;
  MockParallelPort first{testbed, 0, sensor};
  MockParallelPort second{testbed, 1, sensor};
  ParportSettings settings;
  PpdevPort port{[] { return PortAddress; },
                 {.folders = {.devices = "/dev", .settings = settings.Folder()}}};
  PpdevService service{port};
  AbsentUsbDriver usb;
  std::optional<Program> program;
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
