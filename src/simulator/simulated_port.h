// A parallel port with the simulated sensor's SPI lines on its pins.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "seams/port_io.h"
#include "simulator/sensor/simulated_sensor.h"

namespace kestrel {

// A parallel port with the sensor's SPI lines on its pins: data register bit 0 selects the sensor,
// bit 1 is its clock, bit 2 its data input, inverted; bit 6 of the status register is its data
// output, inverted. The sensor shifts out when the clock bit rises and samples when it falls.
class SimulatedPort : public PortIo {
 public:
  static constexpr std::int16_t kFirstPort = 0x378;

  explicit SimulatedPort(SimulatedSensor& sensor, std::int16_t base = kFirstPort)
      : sensor_(sensor), base_(base) {}

  void giveio() override { accessGranted_ = true; }

  // Whether giveio was called; accesses work without it, as on systems that do not guard ports.
  [[nodiscard]] bool AccessGranted() const { return accessGranted_; }

  void vbOut(std::int16_t port, std::int16_t value) override;

  // The data register reads back what was written; addresses outside the port read 0xFF.
  [[nodiscard]] std::int16_t vbInp(std::int16_t port) override;

 private:
  void Select();
  void Release();
  void ShiftOut();
  void SampleIn(bool bit);

  SimulatedSensor& sensor_;
  std::int16_t base_;
  bool accessGranted_ = false;
  unsigned data_ = 0;  // data register

  // The frame under way.
  unsigned clocks_ = 0;
  unsigned received_ = 0;
  unsigned toSend_ = 0;
  bool line_ = false;  // level of the sensor's data output
};

}  // namespace kestrel
