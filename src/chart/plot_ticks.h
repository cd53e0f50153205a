// Where the ticks of a plot's axis are.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace kestrel {

// Tick positions on a plot axis, in ascending order whichever way round the interval is given.
// An empty or endless interval has none; a wish below 1 counts as 1.

// The step of 1, 2 or 5 times a power of ten that divides the span into about `wished` parts;
// 0 when there is none.
[[nodiscard]] double NiceStep(double span, int wished);

// Multiples of the nice step, as far as they lie within the interval.
[[nodiscard]] std::vector<double> NiceTicks(double from, double to, int wished);

// At most `wished` equal parts with ticks on both ends and in the middle, at multiples of a step of
// 1, 2, 2.5 or 5 times a power of ten. With no such step, both ends and the middle alone.
[[nodiscard]] std::vector<double> HalvedTicks(double from, double to, int wished);

// 0 and `last`, and between them the multiples of the smallest power of two that makes at most
// `wished` parts. A multiple too near to `last` gives way to it.
[[nodiscard]] std::vector<double> BinTicks(int last, int wished);

}  // namespace kestrel
