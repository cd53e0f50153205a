// The read-out beside the pointer: what the traces are there.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

#include "ui/plot/picture_box.h"

namespace kestrel {

// Stands beside the pointer, on the side with more room, and lets presses through.
class HoverValues : public QLabel {
 public:
  explicit HoverValues(PictureBox* box);

  // Beside a place in the box's coordinates.
  void ShowBeside(QPointF place, const QString& text);

 private:
  PictureBox* box_;
};

}  // namespace kestrel
