// The sensor's sign to stop.
// SPDX-License-Identifier: MIT
#include "acquisition/capture_steps.h"

#include <algorithm>

#include "record/frequency.h"

namespace kestrel {
namespace {

// The sensor takes a write of this byte to this address as the request to stop a capture.
constexpr std::int16_t kStopAddress = 0x68;
constexpr std::uint8_t kStopData = 0xE8;

constexpr double kPatience = 3;
constexpr std::chrono::seconds kWakeUp{30};

}  // namespace

// A block of samples lasts as long as a bin is wide.
std::chrono::nanoseconds LongestCapture(int option, int averages) {
  const std::chrono::duration<double> samples{std::max(averages, 1) /
                                              BinWidth(std::clamp(option, 0, 3))};
  return kWakeUp + std::chrono::duration_cast<std::chrono::nanoseconds>(kPatience * samples);
}

bool SendStop(RegisterAccess& registers) {
  return registers.WriteRegByte(std::int16_t{kStopAddress}, kStopData);
}

}  // namespace kestrel
