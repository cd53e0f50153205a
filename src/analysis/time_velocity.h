// Velocity over time, from the samples of a time record.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "analysis/refusal.h"

namespace kestrel::analysis {

struct VelocityRecord {
  std::vector<double> mmPerS{};
  double stepS = 0;   // between samples
  double fromHz = 0;  // edge of the high-pass, −3 dB
  double rms = 0;     // mm/s
};

// Periods of the lowest frequency that a record must hold.
inline constexpr double kPeriodsNeeded = 5;

// Mean and trend are removed, the samples are continued by their point reflection at both ends, and
// integrated in the frequency domain with a third-order Butterworth high-pass (magnitude only, no
// phase). `samplesG`: 512 in g, taken at rate option 0..3. Refused where the record is shorter than
// five periods of fromHz, with the option that would do; where fromHz is none or beyond the record;
// where the samples are not 512 finite ones.
[[nodiscard]] Told<VelocityRecord> VelocityOf(std::span<const double> samplesG, int option,
                                              double fromHz);

// Lowest frequency in Hz from which a record of this option tells velocity.
[[nodiscard]] double LowestVelocityOf(int option);

}  // namespace kestrel::analysis
