// Finding the band that an ALM_PNTR word names.
// SPDX-License-Identifier: MIT
#include "simulator/registers/alarm_bands.h"

namespace kestrel {

AlarmBands::Band* AlarmBands::At(std::uint16_t pointer) {
  const std::size_t number = pointer & 0xFFU;
  const std::size_t option = pointer >> 8U;
  if (number < 1 || number > kPerOption || option >= kOptions) return nullptr;
  return &bands_[option][number - 1];
}

}  // namespace kestrel
