// The SPI port on the pins of the parallel port.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "app/delay.h"
#include "seams/port_io.h"

namespace kestrel {

// Word assembled by the last read, over USB too, no unit (0).
extern const std::int32_t& LptWord;

// A word that came another way.
void KeepLptWord(std::int32_t word);

// The sensor's SPI port wired to the PC's parallel port, driven pin by pin. Every operation does
// nothing (reads give 0) unless InterfaceType is the parallel port. There is no error path.
class ParallelPort {
 public:
  ParallelPort(PortIo& port, SoftwareDelay& delay) : port_(port), delay_(delay) {}

  // Sends one 16-bit frame, high bit first.
  void LptShiftOut(std::int32_t frame);

  // Sends the read command of a byte address (masked with 127 in place) and clocks the answer in.
  std::int32_t LptReadWord(std::int16_t& address);

  // Sends one frame and clocks in the word that the sensor shifts out meanwhile: its answer to the
  // frame before.
  std::int32_t LptExchange(std::int32_t frame);

  // Puts the lines into their idle state.
  void LptPortReset();

  // Whether the program holds the port at PortAddress: what is written elsewhere goes nowhere.
  [[nodiscard]] bool IsHeld();

 private:
  void Out(std::int16_t value);

  PortIo& port_;
  SoftwareDelay& delay_;
};

}  // namespace kestrel
