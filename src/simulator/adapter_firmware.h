// The program in the adapter's microcontroller.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "simulator/sensor/simulated_sensor.h"

namespace kestrel {

// The program in the adapter's microcontroller: takes command blocks, keeps the answer until it is
// fetched, and clocks frames through the sensor.
class AdapterFirmware {
 public:
  AdapterFirmware(SimulatedSensor& sensor, std::uint8_t major, std::uint8_t minor)
      : sensor_(&sensor), major_(major), minor_(minor) {}

  // Returns false, having done nothing, when the block is not exactly a known command, or is a
  // transfer before both settings were made since power-up.
  [[nodiscard]] bool Accept(std::span<const std::uint8_t> block);

  // Moves what is pending into `out`, as far as it fits, and returns the number of bytes.
  [[nodiscard]] std::size_t Fetch(std::span<std::uint8_t> out);

 private:
  [[nodiscard]] bool Transfer(std::span<const std::uint8_t> block);

  SimulatedSensor* sensor_;
  std::uint8_t major_;
  std::uint8_t minor_;
  std::uint8_t spiBits_ = 0;  // 0 until set
  std::uint8_t spiSetup_ = 0;
  std::vector<std::uint8_t> answer_;
};

}  // namespace kestrel
