// Third-octave bands of one capture, or of captures of several rate options.
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "analysis/spectrum.h"

namespace kestrel::analysis {

// Base-ten bands (IEC 61260-1): centre 1000 · 10^(n/10) Hz, edges a twentieth of a decade either
// side.
struct ThirdOctave {
  int number = 0;        // n; 0 is 1 kHz
  double nominalHz = 0;  // 31.5, 1250
  double centreHz = 0;
  double fromHz = 0;
  double toHz = 0;
  double rmsG = 0;
  int option = 0;  // of the capture it comes from
};

// Bins that a band must at least hold to be told.
inline constexpr double kLeastThirdOctaveBins = 3;

// Bands, lowest first, that one of the captures holds wholly with at least three bins; of several
// the finest. Captures of one axis; those with an unknown window, and holds, are left out.
[[nodiscard]] std::vector<ThirdOctave> ThirdOctavesOf(std::span<const Spectrum> captures);

}  // namespace kestrel::analysis
