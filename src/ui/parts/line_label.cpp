// Cutting a line that has no room.
// SPDX-License-Identifier: MIT
#include "ui/parts/line_label.h"

#include <QPainter>

namespace kestrel {

bool LineLabel::IsCut() const {
  return fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

QSize LineLabel::minimumSizeHint() const {
  return {0, QLabel::minimumSizeHint().height()};
}

void LineLabel::paintEvent(QPaintEvent* event) {
  if (!IsCut()) {
    QLabel::paintEvent(event);
    return;
  }
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(contentsRect(), Qt::AlignVCenter | Qt::AlignLeft,
                   fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width()));
}

}  // namespace kestrel
