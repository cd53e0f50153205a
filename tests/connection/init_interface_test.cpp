// Each interface made ready, without the rest of the start.
// SPDX-License-Identifier: MIT
#include "connection/init_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/program_state.h"
#include "support/given.h"
#include "support/recorded_seams.h"
#include "transport/port_driver.h"
#include "transport/usb_adapter.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InterfaceMadeReady : public testing::Test, protected RecordedSeams {
 protected:
  InterfaceMadeReady() { Reset(); }
  ~InterfaceMadeReady() override { Reset(); }

  static void Reset() {
    ResetProgramState();
    ResetAdapterState();
    ResetPortDriver();
  }

  void Make(std::int16_t interfaceType) {
    Given(InterfaceType) = interfaceType;
    InitInterface(core_);
  }

  Core core_{All()};
};

TEST_F(InterfaceMadeReady, StartDefaultsLeavePortAndProductAlone) {
  Given(InterfaceType) = kUsbAdapter;
  Given(PortAddress) = 888;
  Given(ProductNumber) = kProduct31407;
  Given(PortReady) = true;
  Given(StopSpiLoop) = false;
  Given(UsbCsPerWord) = false;
  Given(UsbSpiDelay) = 5;
  Given(UsbSpiBits) = 1;
  Given(UsbSpiSetupValue) = 2;
  SetStartDefaults();
  EXPECT_EQ(InterfaceType, kNoInterface);
  EXPECT_FALSE(PortReady);
  EXPECT_TRUE(StopSpiLoop);
  EXPECT_TRUE(UsbCsPerWord);
  EXPECT_EQ(UsbSpiDelay, 1);
  EXPECT_EQ(UsbSpiBits, 120);
  EXPECT_EQ(UsbSpiSetupValue, 25);
  EXPECT_EQ(PortAddress, 888);
  EXPECT_EQ(ProductNumber, kProduct31407);
}

TEST_F(InterfaceMadeReady, NoneAsksToSelectOneAndTouchesNoHardware) {
  for (const std::int16_t none : {kNoInterface, std::int16_t{7}, std::int16_t{-1}}) {
    messages_.Clear();
    Make(none);
    EXPECT_EQ(InterfaceType, kNoInterface) << none;
    EXPECT_THAT(messages_.Texts(), ElementsAre("Please select an interface before taking data"));
  }
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_THAT(pins_.Log(), IsEmpty());
}

TEST_F(InterfaceMadeReady, AnAdapterGetsTheSettingsThatTheStateHolds) {
  boards_.boards[0] = {};
  Given(UsbSpiBits) = 16;
  Given(UsbSpiSetupValue) = 3;
  Make(kUsbAdapter);
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_TRUE(UsbPresent);
  EXPECT_THAT(boards_.Sent(), ElementsAre("00", "0C 10", "0B 03"));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(InterfaceMadeReady, AnAdapterThatIsNotThereIsNoInterface) {
  Make(kUsbAdapter);
  EXPECT_EQ(InterfaceType, kNoInterface);
  EXPECT_THAT(boards_.Sent(), IsEmpty());
}

TEST_F(InterfaceMadeReady, AParallelPortIsHeldAtItsAddressAndNoAdapterIsAsked) {
  Given(PortAddress) = 888;
  Make(kParallelPort);
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_TRUE(PortReady);
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
