// Paths written as text, in the notation of SVG and with short forms for circles and rectangles.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainterPath>
#include <QStringView>
#include <vector>

namespace kestrel {

struct PathPart {
  QPainterPath path;
  bool isFilled = false;
};

// Parts are divided by ";". "o x y r" is a circle, "r x y w h" a rectangle; "fill" after them fills
// them. Otherwise M L H V C S A Z, capital for absolute places, small for relative ones. What is
// not understood ends its part.
[[nodiscard]] std::vector<PathPart> PathParts(QStringView text);

}  // namespace kestrel
