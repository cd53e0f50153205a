// Reading the board's settings, and noticing that it is gone.
// SPDX-License-Identifier: MIT
// Reading the board's settings, and noticing that it is gone.

#include "support/given.h"
#include "usb_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kOpen = "open \\\\.\\Ezusb-0 40000000 2 3";

class UsbPresence : public UsbTest {
 protected:
  void SetUp() override {
    SelectABoard();
    Given(StopSpiLoop) = false;
  }
};

TEST_F(UsbPresence, SettingsAreTheTwoBytesThatCommand1Answers) {
  boards_.answers = {{0x78, 0x19}};
  const auto settings = usb_.UsbReadSettings();
  ASSERT_TRUE(settings.has_value());
  EXPECT_THAT(*settings, ElementsAre(0x78, 0x19));
  EXPECT_THAT(boards_.Log(), ElementsAre(kOpen, "send 01", "receive 2", "close"));
}

TEST_F(UsbPresence, SettingsThatCannotBeReadLoseTheBoardWithOneMessage) {
  struct Row {
    int failAt;
    const char* message;
  };
  for (const Row& row :
       {Row{1, "Error Writing SPI"}, Row{2, "Error Writing SPI"}, Row{3, "Error Reading SPI"}}) {
    messages_.Clear();
    Given(UsbPresent) = true;
    Given(StopSpiLoop) = false;
    boards_.FailAt(row.failAt);
    EXPECT_FALSE(usb_.UsbReadSettings().has_value());
    EXPECT_THAT(messages_.Texts(), ElementsAre(row.message)) << row.failAt;
    EXPECT_FALSE(UsbPresent);
    EXPECT_TRUE(StopSpiLoop);
    EXPECT_EQ(boards_.Opened(), boards_.Closed());
  }
  boards_.ClearLog();
  EXPECT_FALSE(usb_.UsbReadSettings().has_value());
  EXPECT_THAT(boards_.Log(), IsEmpty());
}

TEST_F(UsbPresence, LookingForTheBoardDoesNotTouchIt) {
  EXPECT_FALSE(usb_.FindLost());
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_TRUE(UsbPresent);
  EXPECT_FALSE(StopSpiLoop);
}

TEST_F(UsbPresence, AnotherProgramsUseOfTheBoardIsNoLoss) {
  boards_.RefuseOpening(kUsbBusyElsewhere);
  EXPECT_FALSE(usb_.FindLost());
  EXPECT_TRUE(UsbPresent);
}

TEST_F(UsbPresence, ABoardThatIsGoneIsFoundLostOnceWithoutAMessage) {
  boards_.boards.clear();
  EXPECT_TRUE(usb_.FindLost());
  EXPECT_FALSE(UsbPresent);
  EXPECT_TRUE(StopSpiLoop);
  boards_.ClearLog();
  EXPECT_FALSE(usb_.FindLost());
  EXPECT_THAT(boards_.Log(), IsEmpty()) << "what is lost is not asked for again";
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbPresence, EveryFailedRequestEndsTheLoop) {
  boards_.FailAt(1);
  usb_.UsbSpiTransfer(1);
  EXPECT_TRUE(StopSpiLoop);
  Given(UsbPresent) = true;
  Given(StopSpiLoop) = false;
  boards_.FailAt(1);
  usb_.UsbSetSpiBits(1);
  EXPECT_TRUE(StopSpiLoop);
}

TEST_F(UsbPresence, ResetForgetsTheFindings) {
  usb_.FindAdapters();
  ASSERT_TRUE(NameFindings[0].described);
  ResetAdapterState();
  EXPECT_FALSE(NameFindings[0].opened);
  EXPECT_FALSE(NameFindings[0].described);
  EXPECT_EQ(NameFindings[1].openError, 0);
}

}  // namespace
}  // namespace kestrel
