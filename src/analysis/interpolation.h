// A line between two bins: its place, its amplitude, and how wrong both may be.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>

#include "analysis/spectrum.h"

namespace kestrel::analysis {

// Magnitudes in g peak around a bin: the median of the bins beyond the lobe, at most twelve either
// side and none of the offset; 0 where there are none.
[[nodiscard]] double LocalNoise(const Spectrum& spectrum, std::size_t bin);

// A line at a bin. Where it is unresolved, hz and peakG are the bin's own and peakBoundG is none.
struct Line {
  double hz = 0;
  double hzBound = 0;  // ±, 95 % of lines in noise
  double peakG = 0;
  std::optional<double> peakBoundG{};  // ±, 95 %
  bool unresolved = false;    // another line, or none of this window's shape, within the lobes
  bool interpolated = false;  // false as well where the neighbours cannot be used
};

// Interpolates about a bin that is larger than its neighbours, by the two largest bins (Hanning,
// rectangular) or by those two away (flat top). The bound is the sum of leakage (by distance from 0
// Hz and from half the sample rate; of other lines), 2.2 times the scatter that the bins' noise
// causes, less what averaging takes away, and rounding to
// steps. With a rectangular window a line close to a bin shows nearly equal neighbours, which do
// not tell its side: the bound then spans both. Where interpolation cannot be done (unknown window,
// edge of the spectrum, a lobe that reaches the offset) the bin's own value is returned with half a
// bin and the scallop as bounds.
[[nodiscard]] Line LineAt(const Spectrum& spectrum, std::size_t bin);

}  // namespace kestrel::analysis
