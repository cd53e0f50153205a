// Traces drawn antialiased into a picture's pixels, many times faster than a general painter could.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "chart/pixel_runs.h"
#include "chart/trace_points.h"

namespace kestrel {

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

// The area between an upper and a lower line of points that share their x, one a pixel column.
struct ColumnArea {
  double x = 0;
  double upper = 0;
  double lower = 0;
};
void DrawArea(const PixelRows& picture, const std::vector<ColumnArea>& area, std::uint32_t colour,
              double opacity);

}  // namespace kestrel
