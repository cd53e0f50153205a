// The fields of an ALM_CTRL word.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kestrel {

// An ALM_CTRL word.
class AlarmControl {
 public:
  constexpr explicit AlarmControl(std::uint16_t word) : word_(word) {}

  [[nodiscard]] constexpr bool AxisOn(std::size_t axis) const { return Bit(axis); }
  [[nodiscard]] constexpr bool SystemOn() const { return Bit(3); }
  [[nodiscard]] constexpr bool AnyOn() const { return (word_ & 0xFU) != 0; }

  // The system alarm.
  [[nodiscard]] constexpr bool WatchesTemperature() const { return Bit(4); }  // else the supply
  [[nodiscard]] constexpr bool AlarmsWhenGreater() const { return Bit(5); }   // else when less

  [[nodiscard]] constexpr bool PartsLines() const { return Bit(6); }  // alarm 1, 2 on DIO1, DIO2
  [[nodiscard]] constexpr bool Latches() const { return Bit(7); }

  // How many records in a row an alarm is held back, 0..15.
  [[nodiscard]] constexpr unsigned ResponseDelay() const { return (word_ >> 8U) & 0xFU; }

 private:
  [[nodiscard]] constexpr bool Bit(std::size_t bit) const { return ((word_ >> bit) & 1U) != 0; }

  std::uint16_t word_;
};

}  // namespace kestrel
