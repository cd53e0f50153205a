// Where the pointer's read-out stands.
// SPDX-License-Identifier: MIT
#include "ui/plot/hover_values.h"

#include <algorithm>

namespace kestrel {
namespace {

constexpr int kGap = 12;  // from the pointer
constexpr int kMargin = 4;

}  // namespace

HoverValues::HoverValues(PictureBox* box) : QLabel(box), box_(box) {
  setObjectName("lblHoverValues");
  setTextFormat(Qt::PlainText);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFrameStyle(QFrame::Box | QFrame::Plain);
  setAutoFillBackground(true);
  setMargin(kMargin);
  hide();
}

void HoverValues::ShowBeside(QPointF place, const QString& text) {
  const QPoint pixel = box_->ToPixels(place).toPoint();
  setText(text);
  resize(sizeHint());
  const bool right = pixel.x() < box_->width() / 2;
  const int x = right ? pixel.x() + kGap : pixel.x() - kGap - width();
  const int y = std::clamp(pixel.y() - height() / 2, 0, std::max(0, box_->height() - height()));
  move(x, y);
  show();
  raise();
}

}  // namespace kestrel
