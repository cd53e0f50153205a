// Colours for heights: 256 steps whose lightness changes evenly, for light and for dark paper.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace kestrel {

// As 0xffRRGGBB; the first is nothing, near the paper, the last the most.
using ColourMap = std::array<std::uint32_t, 256>;

[[nodiscard]] ColourMap MapForLightPaper();
[[nodiscard]] ColourMap MapForDarkPaper();

}  // namespace kestrel
