// Sample frequency and width of a bin at a sample-rate option.
// SPDX-License-Identifier: MIT
#pragma once

namespace kestrel {

// Samples a second at a sample-rate option, 0 to 3.
[[nodiscard]] double SampleFrequency(int option);

// Width in Hz of one FFT bin at a sample-rate option.
[[nodiscard]] double BinWidth(int option);

}  // namespace kestrel
