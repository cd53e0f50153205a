// What the pointer looks like over what can be dragged.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "plot/overlay_lines.h"

namespace kestrel {

// The pointer's shape and the hint over what can be dragged on the picture.
class GripLook {
 public:
  explicit GripLook(QWidget& picture) : picture_(picture) {}

  void Show(Grip grip);

 private:
  QWidget& picture_;
  Grip grip_ = Grip::None;
};

}  // namespace kestrel
