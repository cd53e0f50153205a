// The alarm bands' lines over a picture box.
// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QWidget>
#include <array>

#include "plot/overlay_lines.h"
#include "ui/plot/picture_box.h"

namespace kestrel {

// The alarm bands' lines over a picture box. Changing one repaints the strip it leaves and the one
// it goes to, never the traces.
class BandLines : public QWidget {
 public:
  explicit BandLines(PictureBox* box);

  // In the box's coordinates.
  void SetLine(int index, const OverlayLine& line);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void UpdateStrip(const OverlayLine& line);
  void PaintLine(QPainter& painter, int group, const OverlayLine& line) const;

  PictureBox* box_;
  std::array<OverlayLine, kOverlayLines> lines_{};
};

}  // namespace kestrel
