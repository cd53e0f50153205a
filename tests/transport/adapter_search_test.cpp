// What the search tells of boards and of those that do not open.
// SPDX-License-Identifier: MIT
#include "transport/adapter_search.h"

#include "seams/usb_no_driver.h"

#include "usb_fixture.h"

namespace kestrel {
namespace {

class AdapterSearch : public UsbTest {
 protected:
  std::string Search() {
    usb_.FindAdapters();
    return ExplainSearch();
  }
};

TEST_F(AdapterSearch, NothingAttached) {
  EXPECT_EQ(Search(), "No adapter is attached. Plug the board in, then try again.");
}

TEST_F(AdapterSearch, BoardsAreCounted) {
  boards_.boards[1] = {};
  EXPECT_EQ(Search(), "1 adapter found.");
  boards_.boards[3] = {};
  EXPECT_EQ(Search(), "2 adapters found.");
}

TEST_F(AdapterSearch, WhyABoardDoesNotOpen) {
  boards_.openErrors = {{0, 5}, {1, 32}, {2, 31}, {3, 0}};
  EXPECT_EQ(Search(),
            "No adapter can be used.\n"
            "Ezusb-0: attached, but you have no permission to use it. Ask your administrator for "
            "access to the device, then plug it in again.\n"
            "Ezusb-1: attached, but in use by another program. Close that program, then try "
            "again.\n"
            "Ezusb-2: could not be opened (system error 31). Plug the board in again, then try "
            "again.\n"
            "Ezusb-3: could not be opened. Plug the board in again, then try again.");
}

TEST_F(AdapterSearch, ABoardWithoutADriverIsToldWithTheCure) {
  boards_.openErrors = {{1, kUsbNoDriver}};
  EXPECT_EQ(Search(),
            "No adapter can be used.\n"
            "Ezusb-1: attached, but without a driver that programs can use. On Windows give it the "
            "system's own driver, WinUSB, in the device manager, then try again.");
}

TEST_F(AdapterSearch, DevicesThatAreNotOurBoardsSayWhatTheyAre) {
  boards_.boards[0] = {.product = 0x1234};
  boards_.boards[2] = {.vendor = 0x00AB};
  EXPECT_EQ(Search(),
            "No adapter can be used.\n"
            "Ezusb-0: not a board for this sensor (vendor 5A17, product 1234).\n"
            "Ezusb-2: not a board for this sensor (vendor 00AB, product ED03).");
}

TEST_F(AdapterSearch, ADeviceThatDoesNotDescribeItself) {
  boards_.boards[0] = {};
  boards_.FailAt(2);
  EXPECT_EQ(Search(),
            "No adapter can be used.\n"
            "Ezusb-0: attached, but it does not say what it is. Plug the board in again, then try "
            "again.");
}

TEST_F(AdapterSearch, TroubleWithOneBoardIsToldBesideTheOthers) {
  boards_.boards[0] = {};
  boards_.openErrors = {{1, 32}};
  EXPECT_EQ(Search(),
            "1 adapter found.\n"
            "Ezusb-1: attached, but in use by another program. Close that program, then try "
            "again.");
}

TEST_F(AdapterSearch, FindingsOfAnEarlierSearchAreForgotten) {
  boards_.openErrors = {{0, 5}};
  usb_.FindAdapters();
  boards_.openErrors.clear();
  EXPECT_EQ(Search(), "No adapter is attached. Plug the board in, then try again.");
}

TEST_F(AdapterSearch, RowsShowTheFirmwareWithOneDecimal) {
  boards_.boards[1] = {
      .strings = {u"AB", u"CD"}, .version = {3, 0}, .packetSizes = {64, 64, 64, 512}};
  usb_.FindAdapters();
  const AdapterRow row = RowOf(AdapterRecords[1]);
  EXPECT_EQ(row.name, "Ezusb-1");
  EXPECT_EQ(row.boardType, "FIFO4");
  EXPECT_EQ(row.string1, "AB");
  EXPECT_EQ(row.string2, "CD");
  EXPECT_EQ(row.firmware, "3.0");
  EXPECT_EQ(row.usbVersion, "2");
  const AdapterRow none = RowOf(AdapterRecords[0]);
  EXPECT_EQ(none.name + none.boardType + none.string1 + none.firmware + none.usbVersion, "");
}

}  // namespace
}  // namespace kestrel
