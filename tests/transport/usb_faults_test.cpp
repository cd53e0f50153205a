// Every request of every adapter operation fails in turn.
// SPDX-License-Identifier: MIT
// Every request of every operation fails in turn.

#include <functional>

#include "support/given.h"
#include "usb_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UsbFaults : public UsbTest {
 protected:
  void SetUp() override { SelectABoard(); }

  void TransferOneFrame() {
    Given(SpiTx)(1) = 0x1C00;
    boards_.answers = {{0x55, 0xAA}};
    usb_.UsbSpiTransfer(1);
  }

  // One message without title, presence gone, the board closed.
  void ExpectLost(const char* message) {
    EXPECT_FALSE(UsbPresent);
    EXPECT_THAT(messages_.Texts(), ElementsAre(message));
    EXPECT_THAT(messages_.Titles(), ElementsAre(""));
    EXPECT_EQ(boards_.Opened(), boards_.Closed());
  }
};

TEST_F(UsbFaults, BoardThatDoesNotOpenForATransfer) {
  boards_.FailAt(1);
  TransferOneFrame();
  ExpectLost("Error Writing SPI");
  EXPECT_THAT(boards_.Sent(), IsEmpty());
}

TEST_F(UsbFaults, BlockThatIsNotAccepted) {
  boards_.FailAt(2);
  Given(SpiRx)(1) = 77;
  TransferOneFrame();
  ExpectLost("Error Writing SPI");
  EXPECT_THAT(boards_.Log(),
              ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3", "send 0D 01 01 1C 00", "close"));
  EXPECT_EQ(SpiRx(1), 77);
}

TEST_F(UsbFaults, BlockThatIsAcceptedInPart) {
  boards_.ShortAt(2);
  TransferOneFrame();
  ExpectLost("Error Writing SPI");
}

TEST_F(UsbFaults, AnswersThatDoNotCome) {
  boards_.FailAt(3);
  Given(SpiRx)(1) = 77;
  TransferOneFrame();
  ExpectLost("Error Reading SPI");
  EXPECT_THAT(boards_.Log(), ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3", "send 0D 01 01 1C 00",
                                         "receive 2", "close"));
  EXPECT_EQ(SpiRx(1), 77);
}

TEST_F(UsbFaults, AnswersThatComeShort) {
  boards_.ShortAt(3);
  Given(SpiRx)(1) = 77;
  TransferOneFrame();
  ExpectLost("Error Reading SPI");
  EXPECT_EQ(SpiRx(1), 77);
}

TEST_F(UsbFaults, SettingsThatAreNotAccepted) {
  struct Row {
    std::function<void()> operation;
    const char* message;
  };
  const Row rows[] = {{[&] { usb_.UsbSetupSpi(25); }, "Error Setting up SPI"},
                      {[&] { usb_.UsbSetSpiBits(120); }, "Error Setting SPI Bits"}};
  for (const Row& row : rows) {
    for (const int k : {1, 2}) {
      SCOPED_TRACE(std::string(row.message) + " " + std::to_string(k));
      messages_.Clear();
      Given(UsbPresent) = true;
      boards_.FailAt(k);
      row.operation();
      ExpectLost(row.message);
    }
    messages_.Clear();
    Given(UsbPresent) = true;
    boards_.ShortAt(2);
    row.operation();
    ExpectLost(row.message);
    boards_.ShortAt(0);
  }
}

TEST_F(UsbFaults, AfterAFaultNothingIsSentUntilABoardIsSelectedAgain) {
  boards_.FailAt(2);
  TransferOneFrame();
  boards_.ClearLog();
  messages_.Clear();
  TransferOneFrame();
  usb_.UsbSetSpiBits(120);
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_THAT(messages_.Texts(), IsEmpty());
  boards_.answers.clear();
  SelectABoard();
  TransferOneFrame();
  EXPECT_EQ(SpiRx(1), 0x55AA);
}

TEST_F(UsbFaults, HandlersThatRunWhileTheMessageShowsFindTheBoardClosedAndGone) {
  bool seen = false;
  messages_.WhileShown([&] {
    seen = true;
    EXPECT_FALSE(UsbPresent);
    EXPECT_EQ(boards_.Opened(), boards_.Closed());
  });
  boards_.FailAt(3);
  TransferOneFrame();
  EXPECT_TRUE(seen);
}

TEST_F(UsbFaults, AVendorOrProductDeliveredInPartIsNotTakenForOne) {
  boards_.CutAt(2, 11);
  usb_.FindAdapters();
  EXPECT_FALSE(AdapterRecords[0].present);
  EXPECT_FALSE(NameFindings[0].described);
  EXPECT_EQ(NameFindings[0].vendor, 0);
}

TEST_F(UsbFaults, AStringDeliveredInPartIsNone) {
  boards_.CutAt(4, 11);
  usb_.FindAdapters();
  EXPECT_TRUE(AdapterRecords[0].present);
  EXPECT_EQ(AdapterRecords[0].string1, "None");
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error getting Board Info"));
}

TEST_F(UsbFaults, AStringWhoseLengthIsNotDeliveredIsNone) {
  boards_.CutAt(3, 0);
  usb_.FindAdapters();
  EXPECT_EQ(AdapterRecords[0].string1, "None");
}

TEST_F(UsbFaults, APacketSizeDeliveredInPartIsNotKnown) {
  boards_.boards[0] = {.packetSizes = {512, 512, 512, 0x0141}};
  boards_.CutAt(9, 77);
  usb_.FindAdapters();
  EXPECT_EQ(AdapterRecords[0].usbVersion, "1.1");
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error getting Board Info"));
}

}  // namespace
}  // namespace kestrel
