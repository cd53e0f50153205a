// Finding, recognising and selecting a board.
// SPDX-License-Identifier: MIT
// Finding, recognising and selecting a board.

#include "support/given.h"
#include "usb_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UsbSearch : public UsbTest {};

TEST_F(UsbSearch, OpensForWritingSharedForWritingExistingOnly) {
  boards_.boards[2] = {};
  const UsbDriver::Handle handle = usb_.OpenDevice("Ezusb-2");
  EXPECT_EQ(handle, 1);
  EXPECT_THAT(boards_.Log(), ElementsAre("open \\\\.\\Ezusb-2 40000000 2 3"));
  boards_.CloseHandle(handle);
}

TEST_F(UsbSearch, OpeningThatFailsGivesAValueBelowOne) {
  EXPECT_EQ(usb_.OpenDevice("Ezusb-0"), -2);
  boards_.RefuseOpening(5);
  EXPECT_EQ(usb_.OpenDevice("Ezusb-0"), -5);
}

TEST_F(UsbSearch, NoBoardAtAll) {
  Given(SelectedAdapterNumber) = 3;
  Given(UsbPresent) = true;
  usb_.SelectUsbAdapter();
  EXPECT_THAT(boards_.Log(),
              ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3", "open \\\\.\\Ezusb-1 40000000 2 3",
                          "open \\\\.\\Ezusb-2 40000000 2 3", "open \\\\.\\Ezusb-3 40000000 2 3"));
  EXPECT_FALSE(UsbPresent);
  EXPECT_EQ(AdapterCount, 0);
  EXPECT_EQ(SelectedAdapterNumber, -1);
  EXPECT_THAT(messages_.Texts(), ElementsAre("No USB Buffers Found, Please Verify Setup."));
  EXPECT_THAT(messages_.Titles(), ElementsAre(""));
}

TEST_F(UsbSearch, BoardIsAskedForAllItSaysOfItself) {
  boards_.boards[1] = {.strings = {u"AB", u"\u00B5"}, .version = {3, 4}};
  usb_.FindAdapters();
  EXPECT_THAT(
      boards_.Log(),
      ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3", "open \\\\.\\Ezusb-1 40000000 2 3",
                  "device descriptor 147 -> 147", "string 01 00 00 00 00 -> 4",
                  "string 01 00 00 00 00 -> 6", "string 02 00 00 00 00 -> 4",
                  "string 02 00 00 00 00 -> 4", "send 00", "receive 2", "pipes 356 -> 356", "close",
                  "open \\\\.\\Ezusb-2 40000000 2 3", "open \\\\.\\Ezusb-3 40000000 2 3"));
  EXPECT_EQ(AdapterCount, 1);
  const AdapterRecord& record = AdapterRecords[1];
  EXPECT_TRUE(record.present);
  EXPECT_EQ(record.deviceName, "Ezusb-1");
  EXPECT_EQ(record.boardType, "FIFO4");
  EXPECT_EQ(record.string1, "AB");
  EXPECT_EQ(record.string2, "\xC2\xB5");
  EXPECT_FLOAT_EQ(record.firmwareVersion, 3.4F);
  EXPECT_EQ(record.usbVersion, "1.1");
  EXPECT_FALSE(AdapterRecords[0].present);
  EXPECT_EQ(AdapterRecords[0].deviceName, "");
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbSearch, FirmwareVersionIsMajorPlusATenthOfMinor) {
  boards_.boards[0] = {.version = {1, 25}};
  usb_.FindAdapters();
  EXPECT_FLOAT_EQ(AdapterRecords[0].firmwareVersion, 3.5F);
}

TEST_F(UsbSearch, PacketSizeOfPipe3TellsTheUsbVersion) {
  struct Row {
    std::uint16_t size;
    const char* expected;
  };
  for (const Row& row : {Row{8, "1.1"}, Row{64, "1.1"}, Row{65, "2"}, Row{512, "2"}}) {
    boards_.boards[0] = {.packetSizes = {512, 64, 8, row.size}};
    usb_.FindAdapters();
    EXPECT_EQ(AdapterRecords[0].usbVersion, row.expected) << row.size;
  }
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbSearch, ProductsTellTheBoardType) {
  boards_.boards[0] = {.product = 0xEF00};
  boards_.boards[1] = {.product = 0xED03};
  usb_.FindAdapters();
  EXPECT_EQ(AdapterRecords[0].boardType, "MCP");
  EXPECT_EQ(AdapterRecords[1].boardType, "FIFO4");
  EXPECT_EQ(AdapterCount, 2);
}

TEST_F(UsbSearch, OtherVendorsAndProductsAreIgnored) {
  boards_.boards[0] = {.product = 0x1234};
  boards_.boards[1] = {.vendor = 0x175A};
  boards_.boards[2] = {.product = 0x03ED};
  usb_.SelectUsbAdapter();
  EXPECT_EQ(AdapterCount, 0);
  EXPECT_FALSE(UsbPresent);
  EXPECT_EQ(boards_.Closed(), 3);
  for (const AdapterRecord& record : AdapterRecords) {
    EXPECT_FALSE(record.present);
    EXPECT_EQ(record.deviceName, "");
  }
  EXPECT_THAT(messages_.Texts(), ElementsAre("No USB Buffers Found, Please Verify Setup."));
}

TEST_F(UsbSearch, FirstBoardPresentIsSelected) {
  boards_.boards[0] = {.product = 0x1234};
  boards_.boards[1] = {.product = 0xEF00, .version = {1, 2}};
  boards_.boards[3] = {};
  usb_.SelectUsbAdapter();
  EXPECT_TRUE(UsbPresent);
  EXPECT_EQ(AdapterCount, 2);
  EXPECT_EQ(SelectedAdapterNumber, 1);
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-1");
  EXPECT_EQ(SelectedAdapter.boardType, "MCP");
  EXPECT_TRUE(SelectedAdapter.present);
  EXPECT_FLOAT_EQ(SelectedAdapter.firmwareVersion, 1.2F);
  EXPECT_TRUE(AdapterRecords[3].present);
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

TEST_F(UsbSearch, AnotherSearchForgetsBoardsThatLeft) {
  boards_.boards[0] = {};
  usb_.SelectUsbAdapter();
  boards_.boards.clear();
  usb_.SelectUsbAdapter();
  EXPECT_EQ(AdapterCount, 0);
  EXPECT_FALSE(AdapterRecords[0].present);
  EXPECT_FALSE(UsbPresent);
}

TEST_F(UsbSearch, AnyRecordCanBeMadeTheSelectedOne) {
  boards_.boards[0] = {};
  boards_.boards[2] = {.product = 0xEF00};
  usb_.FindAdapters();
  EXPECT_FALSE(UsbPresent);
  usb_.SelectAdapter(2);
  EXPECT_TRUE(UsbPresent);
  EXPECT_EQ(SelectedAdapterNumber, 2);
  EXPECT_EQ(SelectedAdapter.deviceName, "Ezusb-2");
}

TEST_F(UsbSearch, IncompleteBoardInformationIsToldAndTheBoardStays) {
  const ScriptedBoard incomplete[] = {{.strings = {}},
                                      {.strings = {u"Maker"}},
                                      {.packetSizes = {64, 64, 64}},
                                      {.packetSizes = {64, 64, 64, 0}},
                                      {.pipesMissing = 1}};
  for (const ScriptedBoard& board : incomplete) {
    messages_.Clear();
    boards_.boards[0] = board;
    usb_.SelectUsbAdapter();
    EXPECT_TRUE(UsbPresent);
    EXPECT_TRUE(AdapterRecords[0].present);
    EXPECT_THAT(messages_.Texts(), ElementsAre("Error getting Board Info"));
    EXPECT_THAT(messages_.Titles(), ElementsAre(""));
  }
}

TEST_F(UsbSearch, WithoutFirstStringTheSecondIsNotAskedForNorTheVersion) {
  boards_.boards[0] = {.strings = {}};
  usb_.FindAdapters();
  EXPECT_THAT(boards_.Log(),
              ElementsAre("open \\\\.\\Ezusb-0 40000000 2 3", "device descriptor 147 -> 147",
                          "string 01 00 00 00 00 -> 4", "pipes 356 -> 356", "close",
                          "open \\\\.\\Ezusb-1 40000000 2 3", "open \\\\.\\Ezusb-2 40000000 2 3",
                          "open \\\\.\\Ezusb-3 40000000 2 3"));
  EXPECT_EQ(AdapterRecords[0].string1, "None");
  EXPECT_EQ(AdapterRecords[0].string2, "None");
}

TEST_F(UsbSearch, BoardInformationNeedsAPresentRecordAndAHandle) {
  AdapterRecord record;
  usb_.GetBoardInfo(1, record);
  record.present = true;
  usb_.GetBoardInfo(0, record);
  usb_.GetBoardInfo(-2, record);
  EXPECT_THAT(boards_.Log(), IsEmpty());
  EXPECT_THAT(messages_.Texts(), IsEmpty());
}

// Requests 1 open, 2 device descriptor, 3 to 6 strings, 7 and 8 version, 9 pipes.
TEST_F(UsbSearch, RequestThatFailsLeavesNoHandleOpen) {
  for (int k = 1; k <= 9; ++k) {
    SCOPED_TRACE(k);
    messages_.Clear();
    boards_.boards[0] = {};
    boards_.answers.clear();
    boards_.FailAt(k);
    usb_.SelectUsbAdapter();
    EXPECT_EQ(boards_.Opened(), boards_.Closed());
    const bool recognised = k > 2;
    EXPECT_EQ(UsbPresent, recognised);
    EXPECT_THAT(messages_.Texts(),
                ElementsAre(recognised ? "Error getting Board Info"
                                       : "No USB Buffers Found, Please Verify Setup."));
    if (!recognised) continue;
    EXPECT_EQ(AdapterRecords[0].string1 == "None", k == 3 || k == 4);
    EXPECT_EQ(AdapterRecords[0].string2 == "None", k <= 6);
    EXPECT_EQ(AdapterRecords[0].firmwareVersion == 0.0F, k <= 8);
  }
}

TEST_F(UsbSearch, VersionThatComesShortIsIncomplete) {
  boards_.boards[0] = {};
  boards_.ShortAt(8);
  usb_.FindAdapters();
  EXPECT_EQ(AdapterRecords[0].firmwareVersion, 0.0F);
  EXPECT_THAT(messages_.Texts(), ElementsAre("Error getting Board Info"));
}

TEST_F(UsbSearch, StringsMayHoldAnyText) {
  boards_.boards[0] = {.strings = {u"", u"\U0001F600\u20AC"}};
  usb_.FindAdapters();
  EXPECT_EQ(AdapterRecords[0].string1, "");
  EXPECT_EQ(AdapterRecords[0].string2, "\xF0\x9F\x98\x80\xE2\x82\xAC");
  boards_.boards[0] = {.strings = {std::u16string(1, char16_t{0xD800}), std::u16string(120, u'x')}};
  usb_.FindAdapters();
  EXPECT_EQ(AdapterRecords[0].string1, "\xEF\xBF\xBD");
  EXPECT_EQ(AdapterRecords[0].string2, std::string(120, 'x'));
}

}  // namespace
}  // namespace kestrel
