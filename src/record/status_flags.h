// Names and texts of the STATUS bits.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "record/record.h"

namespace kestrel {

inline constexpr std::size_t kStatusFlags = 15;  // STATUS bits 0..14

// A STATUS bit by name, and what it reads when it is set: "FAIL" for an error, "SET" for an event.
struct StatusFlag {
  const char* name;
  const char* whenSet;
};

// Of STATUS. After a capture of the program's own the flag of a failed transfer means nothing.
inline constexpr std::int32_t kSpiFailureFlag = 1 << 3;
inline constexpr std::int32_t kDataReadyFlag = 1 << 7;

inline constexpr const char* kStatusFlagClear = "OK";

// By bit; bit 15 means nothing.
inline constexpr std::array<StatusFlag, kStatusFlags> kStatusFlagTable{
    {{"Supply < 3.150 V", "FAIL"},
     {"Supply > 3.625 V", "FAIL"},
     {"Flash Update Failure", "FAIL"},
     {"SPI Comm Failure", "FAIL"},
     {"Recording Esc. Flag", "FAIL"},
     {"Self-test Diagnostic", "FAIL"},
     {"Flash Memory Failure", "FAIL"},
     {"Data Ready", "SET"},
     {"X axis Alarm 1", "SET"},
     {"Y axis Alarm 1", "SET"},
     {"Z axis Alarm 1", "SET"},
     {"X axis Alarm 2", "SET"},
     {"Y axis Alarm 2", "SET"},
     {"Z axis Alarm 2", "SET"},
     {"System Alarm", "SET"}}};

// The text of each bit: "OK", "SET" or "FAIL"; all empty where STATUS was never read.
[[nodiscard]] inline std::array<std::string, kStatusFlags> StatusTexts(const StatusFlags& status) {
  std::array<std::string, kStatusFlags> texts;
  if (!status.known) return texts;
  for (std::size_t bit = 0; bit < kStatusFlags; ++bit) {
    const bool isSet = status.IsSet(static_cast<int>(bit));
    texts[bit] = isSet ? kStatusFlagTable[bit].whenSet : kStatusFlagClear;
  }
  return texts;
}

}  // namespace kestrel
