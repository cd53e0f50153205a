// The sensor's sign to stop.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_steps.h"

namespace kestrel {
namespace {

// The sensor takes a write of this byte to this address as the request to stop a capture.
constexpr std::int16_t kStopAddress = 0x68;
constexpr std::uint8_t kStopData = 0xE8;

}  // namespace

bool SendStop(RegisterAccess& registers) {
  return registers.WriteRegByte(std::int16_t{kStopAddress}, kStopData);
}

}  // namespace kestrel
