// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "platform/linux/absent_hardware.h"

#include <gtest/gtest.h>

#include <array>

namespace kestrel {
namespace {

TEST(AbsentUsbDriver, NoBoardAnswers) {
  AbsentUsbDriver driver;
  EXPECT_EQ(driver.CreateFile("\\\\.\\Ezusb-0", 0x40000000, 2, 3), -1);
  EXPECT_EQ(driver.LastError(), 2);
}

TEST(AbsentUsbDriver, RequestsFailAndMoveNothing) {
  AbsentUsbDriver driver;
  std::array<std::uint8_t, 4> buffer{1, 2, 3, 4};
  std::uint32_t returned = 99;
  EXPECT_FALSE(driver.DeviceIoControl(1, kBulkTransfer, {}, buffer, returned));
  EXPECT_EQ(returned, 0U);
  EXPECT_EQ(buffer, (std::array<std::uint8_t, 4>{1, 2, 3, 4}));
}

TEST(AbsentPortIo, InputsReadHighWhateverIsWritten) {
  AbsentPortIo port;
  port.giveio();
  port.vbOut(0x378, 0);
  EXPECT_EQ(port.vbInp(0x378), 0xFF);
  EXPECT_EQ(port.vbInp(0x379), 0xFF);
}

TEST(AbsentDriverService, NothingIsInstalledAndNothingCanBe) {
  AbsentDriverService service;
  service.WriteRegistryValue("key", "Start", kRegistryNumber, "2");
  EXPECT_EQ(service.ReadRegistryValue("key", "Start"), "");
  EXPECT_NE(service.RunAndWait("temp.bat"), 0);
}

}  // namespace
}  // namespace kestrel
