// The functions of the COMMAND register: which bit starts which.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kestrel {

// In the order of the bits, from 0 on.
enum class CommandBit {
  Autonull,
  PowerDown,
  SelfTest,
  FactoryReset,
  ClearStatus,
  FlashTest,
  FlashUpdate,
  SoftwareReset,
  ClearRecords,
  ClearAlarmBands,
  ResetBufferPointer,
  RecordStartStop,
  SaveAlarmBand,
  RetrieveRecord,
  RetrieveAlarmBand,
  ClearNulls,
};

// The word that starts one function.
[[nodiscard]] constexpr std::int32_t CommandWord(CommandBit bit) {
  return 1 << static_cast<int>(bit);
}

}  // namespace kestrel
