// The inner loops of drawing, several pixels at once where the processor can.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace kestrel {

// Pixels as 0xffRRGGBB, row by row from the top; opaque.
struct PixelRows {
  std::uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;  // pixels from one row to the next
};

// A pixel that is covered whole.
inline constexpr int kFullCover = 128;

// To be called before many runs. Where other code has left something in the upper parts of wide
// registers, every instruction on narrow ones has to keep it, at half the speed.
void ClearWideRegisters();

// A run of pixels towards a colour, 0xRRGGBB, each by its own part of kFullCover.
void Blend(std::uint32_t* pixels, std::span<const std::int16_t> parts, std::uint32_t colour);

// Rows become columns: to[c][r] = from[r][c].
void Turn(const std::uint32_t* from, std::ptrdiff_t fromStride, int columns, int rows,
          std::uint32_t* to, std::ptrdiff_t toStride);

// Coverages grow from row to row by a step, and that by the changes of a slope so far:
//   cover[i] = sum of steps[0..i] + sum over k <= i of (sum of bends[0..k])
// in units of 1 / kCoverOne, rounded to parts of kFullCover and kept within 0 to kFullCover.
// Steps and bends are 0 afterwards. All three are as long; a multiple of kRowsAtOnce.
inline constexpr int kCoverOneBits = 20;
inline constexpr std::size_t kRowsAtOnce = 8;
void SumUp(std::span<std::int32_t> steps, std::span<std::int32_t> bends,
           std::span<std::int16_t> cover);

// The cover of every row by what lies between two lines that rise evenly through a column of
// pixels: the first comes into the column at `top` rows below the first row and leaves it `rise`
// rows lower, the other does so `thickness` below. Within two parts of kFullCover where rise is at
// least kSteepRise.
inline constexpr double kSteepRise = 8;
inline constexpr double kMostThickness = 16;
void CoverSteep(std::span<std::int16_t> cover, double top, double thickness, double rise);

}  // namespace kestrel
