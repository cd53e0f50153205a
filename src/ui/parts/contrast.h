// How much contrast texts and edges need, and what two colours have.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace kestrel {

// What a reader with weak sight needs between a text, or the edge of a control, and its ground.
inline constexpr double kTextContrast = 4.5;
inline constexpr double kEdgeContrast = 3;

// Relative luminance of sRGB, 0 black to 1 white.
[[nodiscard]] double Luminance(const QColor& colour);

// 1 for equal colours to 21 for black on white.
[[nodiscard]] double Contrast(const QColor& a, const QColor& b);

// From `from` so far towards `to`: 0 to 1.
[[nodiscard]] QColor Mix(const QColor& from, const QColor& to, double part);

}  // namespace kestrel
