// Traces drawn antialiased into a picture's pixels, many times faster than a general painter could.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "chart/trace_points.h"

namespace kestrel {

// Pixels as 0xffRRGGBB, row by row from the top; opaque.
struct PixelRows {
  std::uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
  std::ptrdiff_t stride = 0;  // pixels from one row to the next
};

// A light colouring between a line and a base line, fading evenly from one height to another.
struct StrokeFill {
  double base = 0;      // its height
  double top = 0;       // where it has opacity `atTop`
  double bottom = 0;    // where it has opacity `atBottom`
  double atTop = 0.12;  // 0 to 1
  double atBottom = 0.12;
};

struct Stroke {
  std::vector<PlotLine> lines = {};  // in pixels of the picture, x not decreasing
  std::uint32_t colour = 0;          // 0xRRGGBB
  double width = 1.5;                // pixels
  double opacity = 1;
  bool isFilled = false;
  StrokeFill fill = {};
};

// Draws one over the other in their order, clipped to the picture.
void DrawStrokes(const PixelRows& picture, const std::vector<Stroke>& strokes);

// The same over another picture of the same size, which stays as it is: every pixel is written, so
// that it need not be copied first.
void DrawStrokesOver(const PixelRows& ground, const PixelRows& picture,
                     const std::vector<Stroke>& strokes);

// The area between an upper and a lower line of points that share their x, one a pixel column.
struct ColumnArea {
  double x = 0;
  double upper = 0;
  double lower = 0;
};
void DrawArea(const PixelRows& picture, const std::vector<ColumnArea>& area, std::uint32_t colour,
              double opacity);

}  // namespace kestrel
