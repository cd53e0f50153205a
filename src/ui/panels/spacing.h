// How much room the parts of the main window leave between them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>

namespace kestrel {

// Pixels.
struct Spacing {
  int edge;     // around the window's content
  int between;  // groups and columns
  int side;     // inside a group, left and right
  int end;      // inside a group, above and below
  int control;  // controls that stand below each other
  int line;     // lines of text that stand below each other
  int beside;   // controls that stand beside each other
  int swatch;   // length of a trace's line in the legend
};

// One of them holds for the whole window: the tight one where the screen has no room for the other.
[[nodiscard]] Spacing RoomySpacing();
[[nodiscard]] Spacing TightSpacing();

// The margins of a group's content.
void SpaceGroup(QLayout& content, const Spacing& spacing);

}  // namespace kestrel
