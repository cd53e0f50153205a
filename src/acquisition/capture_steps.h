// How long the sensor takes over a capture, and how it is asked to end one.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "record/record.h"
#include "record/status_flags.h"
#include "transport/register_access.h"

namespace kestrel {

// From one look at STATUS to the next.
inline constexpr std::chrono::milliseconds kPoll{50};
// A capture takes at least this long for each FFT average, and for each code of the sample rate.
inline constexpr std::chrono::milliseconds kPerAverage{45};
inline constexpr std::chrono::milliseconds kPerRateCode{10};
// The sensor needs this long to bring a record from its flash into the buffers.
inline constexpr float kRetrieveMs = 51;

// A capture is asked to stop this often at most, as long as the sensor has data ready.
inline constexpr int kStopPasses = 20;

// Record mode code of time records; the two below it are of spectra.
inline constexpr std::int16_t kTimeMode = 2;

[[nodiscard]] constexpr bool IsDataReady(const StatusFlags& status) {
  return (status.word & kDataReadyFlag) != 0;
}

// How long a capture can last at most, for one that nobody watches: three times what its samples
// take, and time to wake up. `option` 0 to 3 is the sample-rate option.
[[nodiscard]] std::chrono::nanoseconds LongestCapture(int option, int averages);

// Asks the sensor to stop a capture or a series of them. Returns whether it was reached.
bool SendStop(RegisterAccess& registers);

}  // namespace kestrel
