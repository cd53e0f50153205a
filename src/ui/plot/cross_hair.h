// The cursor's cross-hair over a picture box.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QWidget>
#include <optional>

#include "ui/plot/picture_box.h"

namespace kestrel {

// The cursor's light cross-hair over a picture box. Moving it repaints the two strips it leaves and
// the two it goes to, never the traces.
class CrossHair : public QWidget {
 public:
  explicit CrossHair(PictureBox* box);

  // To a place in the box's coordinates.
  void Move(double x, double y);
  void Hide();

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void UpdateStrips();

  PictureBox* box_;
  std::optional<QPointF> place_;  // in the box's coordinates
};

}  // namespace kestrel
