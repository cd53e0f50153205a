// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kestrel {

// The spectral alarm bands in the sensor's flash: six for each of the four sample-rate options.
class AlarmBands {
 public:
  // In the order of the registers ALM_F_LOW to ALM_Z_MAG2.
  using Band = std::array<std::uint16_t, 8>;

  // The band that an ALM_PNTR word names: its number 1..6 in the low byte, the option 0..3 in the
  // high byte. None when there is no such band.
  [[nodiscard]] Band* At(std::uint16_t pointer);

  // Every band all zeros.
  void Clear() { bands_ = {}; }

 private:
  static constexpr std::size_t kOptions = 4;
  static constexpr std::size_t kBandsPerOption = 6;

  std::array<std::array<Band, kBandsPerOption>, kOptions> bands_{};
};

}  // namespace kestrel
