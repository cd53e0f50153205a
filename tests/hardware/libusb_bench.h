// The adapter driver on a mock bus, asked as the transport asks it.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "hardware/mock_usb_bus.h"
#include "platform/libusb/libusb_driver.h"
#include "simulator/sensor/simulated_sensor.h"
#include "support/fake_clock.h"

namespace kestrel {

using Bytes = std::vector<std::uint8_t>;
inline constexpr std::chrono::milliseconds kShortLimit{400};

inline MockBoardPlan Board(int bus, const std::string& ports, int address, std::uint16_t product) {
  MockBoardPlan plan{.bus = bus, .ports = ports, .address = address};
  plan.description.product = product;
  return plan;
}

// The driver on a mock bus, asked as the transport asks it.
class LibusbBench : public testing::Test {
 protected:
  UsbDriver::Handle Open(int n) {
    return driver.CreateFile("\\\\.\\Ezusb-" + std::to_string(n), 0x40000000, 2, 3);
  }

  // What the driver says went wrong; 0 when the request succeeded.
  std::int32_t OpenError(int n) {
    const UsbDriver::Handle handle = Open(n);
    if (handle < 1) return driver.LastError();
    driver.CloseHandle(handle);
    return 0;
  }

  std::int32_t Bulk(UsbDriver::Handle handle, std::uint8_t pipe, Bytes& buffer,
                    std::uint32_t code = kBulkTransfer) {
    const Bytes input = {pipe, 0, 0, 0};
    return driver.DeviceIoControl(handle, code, input, buffer, moved) ? 0 : driver.LastError();
  }
  std::int32_t Send(UsbDriver::Handle handle, Bytes block) { return Bulk(handle, 0, block); }

  // The firmware's version, which command 0 asks for; empty when that fails.
  Bytes Version(UsbDriver::Handle handle) {
    Bytes answer(2);
    if (Send(handle, {0}) != 0 || Bulk(handle, 1, answer) != 0) return {};
    return answer;
  }

  int ProductOf(int n) {
    const UsbDriver::Handle handle = Open(n);
    if (handle < 1) return -1;
    Bytes buffer(147);
    EXPECT_TRUE(driver.DeviceIoControl(handle, kGetDeviceDescriptor, buffer, buffer, moved));
    driver.CloseHandle(handle);
    return buffer[10] + 256 * buffer[11];
  }

  Bytes PipeInformation(UsbDriver::Handle handle) {
    Bytes buffer(356);
    EXPECT_TRUE(driver.DeviceIoControl(handle, kGetPipeInformation, buffer, buffer, moved));
    return buffer;
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockUsbBus bus{sensor};
  LibusbDriver driver{kShortLimit};
  std::uint32_t moved = 0;
};

}  // namespace kestrel
