// The two spacings of the main window.
// SPDX-License-Identifier: MIT
#include "ui/panels/spacing.h"

namespace kestrel {

Spacing RoomySpacing() {
  return {.edge = 9,
          .between = 6,
          .side = 9,
          .end = 9,
          .control = 5,
          .line = 3,
          .beside = 6,
          .swatch = 18};
}

Spacing TightSpacing() {
  return {.edge = 4,
          .between = 4,
          .side = 4,
          .end = 3,
          .control = 2,
          .line = 0,
          .beside = 3,
          .swatch = 8};
}

void SpaceGroup(QLayout& content, const Spacing& spacing) {
  content.setContentsMargins(spacing.side, spacing.end, spacing.side, spacing.end);
}

}  // namespace kestrel
