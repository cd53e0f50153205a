// The program at a bench with two mock parallel ports, the sensor at either.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "hardware/mock_parallel_port.h"
#include "hardware/program_bench.h"
#include "platform/linux/ppdev_port.h"
#include "platform/linux/ppdev_service.h"
#include "support/absent_hardware.h"
#include "support/parport_settings.h"

namespace kestrel {

class TwoPorts : public testing::Test {
 protected:
  static constexpr std::int16_t kFirst = 0x378;
  static constexpr std::int16_t kSecond = 0x278;

  TwoPorts() {
    settings.Add(0, kFirst);
    settings.Add(1, kSecond);
  }

  // The program, started with the parallel port at this address.
  Program& StartAt(std::int16_t address) {
    program.emplace(Hardware{&usb, &port, &service}, clock, kParallelPort, address);
    return *program;
  }
  std::optional<std::int32_t> ProductId() {
    const auto reading = program->core.registers.Read(row::PROD_ID);
    return reading ? std::optional(reading->value) : std::nullopt;
  }

  FakeClock clock;
  SimulatedSensor sensor{clock, RunningMachine()};
  MockTestbed testbed;
  MockParallelPort first{testbed, 0, sensor};
  MockParallelPort second{testbed, 1, sensor};
  ParportSettings settings;
  PpdevPort port{[] { return PortAddress; },
                 {.folders = {.devices = "/dev", .settings = settings.Folder()}}};
  PpdevService service{port};
  AbsentUsbDriver usb;
  std::optional<Program> program;
};

}  // namespace kestrel
