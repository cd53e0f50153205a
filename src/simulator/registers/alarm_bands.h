// The sensor's spectral alarm bands, six for each sample-rate option.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kestrel {

// The spectral alarm bands in the sensor's flash: six for each of the four sample-rate options.
class AlarmBands {
 public:
  static constexpr std::size_t kPerOption = 6;

  // In the order of the registers ALM_F_LOW to ALM_Z_MAG2: the first and the last bin, then the
  // thresholds of X, Y and Z for alarm 1 and for alarm 2.
  using Band = std::array<std::uint16_t, 8>;

  // The band that an ALM_PNTR word names: its number 1..6 in the low byte, the option 0..3 in the
  // high byte. None when there is no such band.
  [[nodiscard]] Band* At(std::uint16_t pointer);

  // The bands of option 0..3, number 1 first.
  [[nodiscard]] const std::array<Band, kPerOption>& Of(unsigned option) const {
    return bands_[option];
  }

  // Every band all zeros.
  void Clear() { bands_ = {}; }

 private:
  static constexpr std::size_t kOptions = 4;

  std::array<std::array<Band, kPerOption>, kOptions> bands_{};
};

}  // namespace kestrel
