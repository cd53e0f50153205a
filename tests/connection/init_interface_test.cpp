// Each interface made ready, without the rest of the start.
// SPDX-License-Identifier: MIT
#include "connection/init_interface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/program_state.h"
#include "support/fixed_locale.h"
#include "support/map_driver_service.h"
#include "support/memory_files.h"
#include "support/recording_boards.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/recording_port.h"
#include "support/scripted_loop.h"
#include "transport/usb_adapter.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InterfaceMadeReady : public testing::Test {
 protected:
  InterfaceMadeReady() { Reset(); }
  ~InterfaceMadeReady() override { Reset(); }

  static void Reset() {
    ResetProgramState();
    ResetAdapterState();
  }

  void Make(std::int16_t interfaceType) {
    InterfaceType = interfaceType;
    InitInterface(core_);
  }

  RecordingPort pins_;
  PortClock clock_{pins_};
  ScriptedLoop loop_{clock_};
  RecordingPointer pointer_;
  RecordingMessages messages_;
  MemoryFiles files_;
  FixedLocale locale_;
  RecordingBoards boards_;
  MapDriverService service_;
  Core core_{Seams{.clock = clock_,
                   .loop = loop_,
                   .pointer = pointer_,
                   .messages = messages_,
                   .files = files_,
                   .locale = locale_,
                   .usb = boards_,
                   .port = pins_,
                   .driverService = service_}};
};

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
  UsbSpiBits = 16;
  UsbSpiSetupValue = 3;
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
  PortAddress = 888;
  Make(kParallelPort);
  EXPECT_EQ(InterfaceType, kParallelPort);
  EXPECT_TRUE(PortReady);
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

}  // namespace
}  // namespace kestrel
