// A board chosen, set up and remembered.
// SPDX-License-Identifier: MIT
#include "transport/adapter_choice.h"
#include "support/given.h"

#include "support/memory_files.h"
#include "usb_fixture.h"
#include "usb_registers.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AdapterChoice : public UsbTest {
 protected:
  AdapterChoice() {
    Given(ProductNumber) = 31407;
    boards_.boards[0] = {};
    boards_.boards[2] = {.product = 0xEF00};
    usb_.FindAdapters();
    boards_.ClearLog();
    Given(StopSpiLoop) = false;
  }

  bool Choose(int index) { return ChooseAdapter(usb_, registers_.access, files_, index); }
  std::string Config() { return files_.contents[files_.WorkingFolder() / "CommPort.cfg"]; }

  MemoryFiles files_;
  UsbRegisters registers_{usb_};
};

TEST_F(AdapterChoice, TheRecordIsCopiedAndTheBoardGetsItsSetupThenItsBits) {
  Given(UsbSpiSetupValue) = 7;
  Given(UsbSpiBits) = 9;
  EXPECT_TRUE(Choose(2));
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-2");
  EXPECT_EQ(SelectedAdapter.boardType, "MCP");
  EXPECT_EQ(SelectedAdapterNumber, 2);
  EXPECT_TRUE(UsbPresent);
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_THAT(boards_.Log(),
              ElementsAre("open \\\\.\\Ezusb-2 40000000 2 3", "send 0B 07", "close",
                          "open \\\\.\\Ezusb-2 40000000 2 3", "send 0C 09", "close"));
  EXPECT_EQ(Config(), "Interface = 2\nPort Address = 0\nProductNumber = 31407\n");
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(AdapterChoice, AnotherIndexLeavesNoBoardAndEndsTheLoop) {
  for (const int index : {-1, 4, 255, 1}) {  // 1 is a name without a board
    ASSERT_TRUE(Choose(0));
    Given(StopSpiLoop) = false;
    boards_.ClearLog();
    EXPECT_FALSE(Choose(index)) << index;
    EXPECT_FALSE(UsbPresent);
    EXPECT_TRUE(StopSpiLoop);
    EXPECT_EQ(SelectedAdapterNumber, -1);
    EXPECT_THAT(boards_.Log(), IsEmpty());
  }
}

TEST_F(AdapterChoice, ABoardThatRefusesASettingIsNotMadeTheInterface) {
  struct Row {
    int failAt;
    const char* message;
    std::size_t sent;
  };
  registers_.access.Use(kParallelPort);
  for (const Row& row :
       {Row{1, "Error Setting up SPI", 0}, Row{2, "Error Setting up SPI", 1},
        Row{3, "Error Setting SPI Bits", 1}, Row{4, "Error Setting SPI Bits", 2}}) {
    messages_.Clear();
    boards_.ClearLog();
    Given(StopSpiLoop) = false;
    boards_.FailAt(row.failAt);
    EXPECT_FALSE(Choose(0)) << row.failAt;
    EXPECT_THAT(messages_.Texts(), ElementsAre(row.message));
    EXPECT_EQ(boards_.Sent().size(), row.sent);
    EXPECT_FALSE(UsbPresent);
    EXPECT_TRUE(StopSpiLoop);
    EXPECT_EQ(InterfaceType, kParallelPort);
    EXPECT_TRUE(files_.contents.empty());
  }
}

TEST_F(AdapterChoice, ChoosingAgainPrefersTheBoardThatWasSelected) {
  ASSERT_TRUE(Choose(2));
  Given(UsbPresent) = false;
  EXPECT_TRUE(ChooseAdapterAgain(usb_, registers_.access, files_));
  EXPECT_EQ(SelectedAdapterNumber, 2);
  EXPECT_TRUE(UsbPresent);
}

TEST_F(AdapterChoice, ChoosingAgainTakesTheFirstBoardWhereThatOneIsGone) {
  ASSERT_TRUE(Choose(2));
  boards_.boards.erase(2);
  boards_.boards[3] = {};
  EXPECT_TRUE(ChooseAdapterAgain(usb_, registers_.access, files_));
  EXPECT_EQ(SelectedAdapterNumber, 0);
}

TEST_F(AdapterChoice, ChoosingAgainInVainShowsNothingAndCanBeRepeated) {
  ASSERT_TRUE(Choose(2));
  boards_.boards.clear();
  EXPECT_FALSE(ChooseAdapterAgain(usb_, registers_.access, files_));
  EXPECT_FALSE(ChooseAdapterAgain(usb_, registers_.access, files_));
  EXPECT_THAT(messages_.Texts(), IsEmpty());
  EXPECT_FALSE(UsbPresent);
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  boards_.boards[0] = {};
  boards_.boards[2] = {};
  EXPECT_TRUE(ChooseAdapterAgain(usb_, registers_.access, files_));
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-2") << "the one before the vain searches";
}

TEST_F(AdapterChoice, ChoosingAgainAfterTheInterfaceFellAwayMakesItUsbAgain) {
  ASSERT_TRUE(Choose(0));
  Given(UsbPresent) = false;
  registers_.access.Use(kNoInterface);
  EXPECT_TRUE(ChooseAdapterAgain(usb_, registers_.access, files_));
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_TRUE(registers_.access.Reachable());
}

}  // namespace
}  // namespace kestrel
