// Adapter and port of the simulated bench reach the same sensor.
// SPDX-License-Identifier: MIT
#include "simulator/simulated_hardware.h"

#include <gtest/gtest.h>

#include <array>

#include "support/fake_clock.h"

namespace kestrel {
namespace {

TEST(SimulatedHardware, AdapterAndPortReachTheSameSensor) {
  FakeClock clock;
  SimulatedHardware hardware(clock);
  const auto device = hardware.Adapter().CreateFile("\\\\.\\Ezusb-0", 0x40000000, 2, 3);
  std::array<std::uint8_t, 7> block = {14, 1, 2, 0x8E, 0x2A, 0x0E, 0x00};
  const std::array<std::uint8_t, 4> pipe0 = {};
  std::uint32_t moved = 0;
  for (std::array<std::uint8_t, 2> setting : {std::array<std::uint8_t, 2>{12, 120}, {11, 25}}) {
    ASSERT_TRUE(hardware.Adapter().DeviceIoControl(device, kBulkTransfer, pipe0, setting, moved));
  }
  ASSERT_TRUE(hardware.Adapter().DeviceIoControl(device, kBulkTransfer, pipe0, block, moved));

  // The answer to the read that the adapter sent comes out at the port.
  unsigned word = 0;
  hardware.Port().vbOut(0x378, 5);
  for (int bit = 0; bit < 16; ++bit) {
    hardware.Port().vbOut(0x378, 7);
    word = word << 1U | ((hardware.Port().vbInp(0x379) & 0x40) == 0 ? 1U : 0U);
    hardware.Port().vbOut(0x378, 5);
  }
  EXPECT_EQ(word, 0x2AU);
}

TEST(SimulatedHardware, DriverServiceIsInstalledAndNeedsNothingRun) {
  FakeClock clock;
  SimulatedHardware hardware(clock);
  SimulatedDriverService& service = hardware.Service();
  const std::string key = "SYSTEM\\CurrentControlSet\\Services\\giveio";
  EXPECT_EQ(service.ReadRegistryValue(key, "Start"), "2");
  EXPECT_EQ(service.ReadRegistryValue(key, "Type"), "");
  EXPECT_EQ(service.ReadRegistryValue("SOFTWARE", "Start"), "");
  EXPECT_EQ(service.Changes(), 0);

  service.WriteRegistryValue(key, "Start", kRegistryNumber, "3");
  EXPECT_EQ(service.ReadRegistryValue(key, "Start"), "3");
  EXPECT_LT(service.RunAndWait("installer"), 0);
  service.WriteBatchFile(service.ProgramFolder() + "\\install.bat", "installer");
  EXPECT_EQ(service.Changes(), 3);
}

}  // namespace
}  // namespace kestrel
