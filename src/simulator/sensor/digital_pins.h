// The sensor's digital lines DIO1 and DIO2.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kestrel {

// The sensor's two digital lines, DIO1 and DIO2. What they are follows from DIO_CTRL and GPIO_CTRL,
// what they show from the sensor's state at the moment.
class DigitalPins {
 public:
  static constexpr int kLines = 2;

  // What the lines depend on.
  struct Sensor {
    std::uint16_t dioCtrl = 0;
    std::uint16_t gpioCtrl = 0;  // as written: the output levels in bits 8 and 9
    std::uint16_t status = 0;
    bool partsAlarms = false;  // line 1 shows alarm 1 only, line 2 alarm 2 only
    bool busy = false;
  };

  // Level of line 1 or 2: what the sensor puts out, or what is driven from outside on an input.
  [[nodiscard]] bool Level(int line, const Sensor& sensor) const;

  // Drives a line from outside (low at the start); an output does not care. Returns whether that
  // is an edge to the active level of a capture trigger.
  [[nodiscard]] bool Drive(int line, bool high, std::uint16_t dioCtrl);

  // The level driven from outside.
  [[nodiscard]] bool Driven(int line) const { return driven_.at(Index(line)); }

  // GPIO_CTRL as it reads: with the pins' levels in the level bits of general-purpose inputs.
  [[nodiscard]] std::uint16_t ReadGpioCtrl(std::uint16_t dioCtrl, std::uint16_t gpioCtrl) const;

 private:
  [[nodiscard]] static std::size_t Index(int line) { return static_cast<std::size_t>(line - 1); }

  std::array<bool, kLines> driven_{};
};

}  // namespace kestrel
