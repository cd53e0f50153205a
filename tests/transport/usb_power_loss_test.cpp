// A board that was without power gets its settings again before anything is transferred.
// SPDX-License-Identifier: MIT
#include "usb_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UsbPowerLoss : public UsbTest {
 protected:
  void SetUp() override {
    boards_.pluggings[0] = 7;
    boards_.answersZeros = true;
    SelectABoard();
    usb_.UsbSetSpiBits(120);
    usb_.UsbSetupSpi(25);
    boards_.ClearLog();
  }
};

TEST_F(UsbPowerLoss, WhileThePowerHoldsNothingIsSetAgain) {
  EXPECT_TRUE(usb_.UsbSpiTransfer(1));
  EXPECT_TRUE(usb_.UsbSpiTransfer(1));
  EXPECT_EQ(boards_.Sent().size(), 2U);
}

TEST_F(UsbPowerLoss, ThePulledBoardIsSetAgainOnceBeforeTheNextTransfer) {
  boards_.pluggings[0] = 8;
  EXPECT_TRUE(usb_.UsbSpiTransfer(1));
  EXPECT_TRUE(usb_.UsbSpiTransfer(1));
  EXPECT_THAT(boards_.Sent(), ElementsAre("0C 78", "0B 19", "0D 01 01 00 00", "0D 01 01 00 00"));
  EXPECT_EQ(SelectedAdapterNumber, 0);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbPowerLoss, ItGetsTheSettingsThatWereMadeLast) {
  usb_.UsbSetupSpi(40);
  usb_.UsbSetSpiBits(9);
  boards_.ClearLog();
  boards_.pluggings[0] = 8;
  usb_.UsbSpiTransfer(1);
  EXPECT_THAT(boards_.Sent(), ElementsAre("0C 09", "0B 28", "0D 01 01 00 00"));
}

TEST_F(UsbPowerLoss, ASettingMadeSinceIsNotMadeTwice) {
  boards_.pluggings[0] = 8;
  usb_.UsbSetupSpi(40);
  boards_.ClearLog();
  usb_.UsbSpiTransfer(1);
  EXPECT_THAT(boards_.Sent(), ElementsAre("0C 78", "0D 01 01 00 00"));
}

TEST_F(UsbPowerLoss, ASettingThatTheBoardRefusesLosesItWithOneMessage) {
  boards_.pluggings[0] = 8;
  boards_.FailAt(3);  // opening and the board's type come first
  EXPECT_FALSE(usb_.UsbSpiTransfer(1));
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error Setting SPI Bits"));
  EXPECT_FALSE(UsbPresent);
}

TEST_F(UsbPowerLoss, ABoardOfAnotherKindInItsPlaceIsNotSpokenTo) {
  boards_.pluggings[0] = 8;
  boards_.boards[0].product = 0xEF00;
  const Outcome outcome = usb_.UsbSpiTransfer(1);
  ASSERT_FALSE(outcome);
  EXPECT_EQ(outcome.Why().what, "Error Writing SPI");
  EXPECT_EQ(outcome.Why().where, "Ezusb-0");
  EXPECT_THAT(boards_.Sent(), IsEmpty());
  EXPECT_FALSE(UsbPresent);
}

}  // namespace
}  // namespace kestrel
