// The port in use is the one that is held, whoever changed the address: over mock ports.
// SPDX-License-Identifier: MIT
#include "transport/port_choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hardware/two_ports_bench.h"
#include "support/given.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNotInstalled = "The required I/O drivers could not be installed.";
constexpr std::int16_t kNoPort = 0x3BC;

class PortInUse : public TwoPorts {
 protected:
  bool Choose(const char* address) {
    program->messages.Clear();
    PortChoice choice(service, port, program->core.port, program->core.registers, program->files,
                      program->messages);
    return choice.cmdOK_Click(address);
  }
  std::vector<std::string> Texts() { return program->messages.Texts(); }
  std::string Explanation() {
    return program->messages.explanations.empty() ? "" : program->messages.explanations.back();
  }
};

TEST_F(PortInUse, AfterAWrongAddressTheRightOneWorks) {
  StartAt(kNoPort);
  EXPECT_THAT(Texts(), ElementsAre(kNotInstalled));
  EXPECT_EQ(ProductId(), std::nullopt);
  Choose("378");
  EXPECT_THAT(Texts(), IsEmpty());
  EXPECT_TRUE(first.Claimed());
  EXPECT_EQ(ProductId(), 31407);
}

TEST_F(PortInUse, EveryWrongAddressIsToldWithItsReason) {
  StartAt(kFirst);
  for (int i = 0; i < 2; ++i) {
    Choose("3BC");
    EXPECT_THAT(Texts(), ElementsAre(kNotInstalled));
    EXPECT_THAT(Explanation(), HasSubstr("No parallel port has the address 0x3BC"));
    EXPECT_FALSE(first.Claimed()) << "the port that nobody wants any more";
    EXPECT_EQ(ProductId(), std::nullopt);
  }
}

TEST_F(PortInUse, ABusyPortIsToldAndTakenOnceItIsFree) {
  first.claimError = EBUSY;
  StartAt(kFirst);
  Choose("378");
  EXPECT_THAT(Texts(), ElementsAre(kNotInstalled));
  EXPECT_THAT(Explanation(), HasSubstr("/dev/parport0 is in use"));
  first.claimError = 0;
  Choose("378");
  EXPECT_THAT(Texts(), IsEmpty());
  EXPECT_EQ(ProductId(), 31407);
}

TEST_F(PortInUse, AMissingPermissionIsToldAndCured) {
  first.claimError = EPERM;
  StartAt(kFirst);
  EXPECT_THAT(Explanation(), HasSubstr("There is no permission to use /dev/parport0"));
  first.claimError = 0;
  Choose("378");
  EXPECT_EQ(ProductId(), 31407);
}

TEST_F(PortInUse, TheOtherPortTakesThePlaceOfTheFirst) {
  StartAt(kFirst);
  ASSERT_TRUE(first.Claimed());
  Choose("278");
  EXPECT_FALSE(first.Claimed());
  EXPECT_TRUE(second.Claimed());
  const std::size_t written = first.trace.size();
  EXPECT_EQ(ProductId(), 31407);
  EXPECT_EQ(first.trace.size(), written);
  Choose("378");
  EXPECT_TRUE(first.Claimed());
  EXPECT_FALSE(second.Claimed());
}

TEST_F(PortInUse, StartTakesThePortWhoseAddressWasPutInForceElsewhere) {
  StartAt(kFirst);
  Given(PortAddress) = kSecond;
  EXPECT_EQ(ProductId(), std::nullopt);
  program->Capture();
  EXPECT_THAT(Texts(), IsEmpty());
  EXPECT_TRUE(second.Claimed());
  EXPECT_EQ(ProductId(), 31407);
}

TEST_F(PortInUse, StartSaysThatThePortIsNotHeldAndTakesNothing) {
  StartAt(kNoPort);
  program->messages.Clear();
  const RecordArray before = DataX;
  program->Capture();
  EXPECT_THAT(Texts(), ElementsAre(kNotInstalled));
  EXPECT_TRUE(program->Idle());
  EXPECT_EQ(DataX, before);
  EXPECT_TRUE(first.trace.empty());
}

TEST_F(PortInUse, APortThatFailsInTheMiddleEndsTheCaptureAndIsTakenAgainAtTheNext) {
  StartAt(kFirst);
  first.failAccessesFrom = 400;
  const RecordArray before = DataX;
  program->Capture();
  EXPECT_TRUE(program->Idle());
  EXPECT_EQ(DataX, before);
  EXPECT_FALSE(program->core.registers.Reachable());
  EXPECT_THAT(Texts(), ElementsAre("The parallel port 378 was lost during the capture. What is on "
                                   "the screen was read before. Check the port, then press Start "
                                   "again."));
  program->messages.Clear();
  first.failAccessesFrom = 0;
  program->Capture();
  EXPECT_NE(DataX, before);
  EXPECT_THAT(Texts(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
