// Moving and painting the cursor's strips.
// SPDX-License-Identifier: MIT
#include "ui/plot/cross_hair.h"

#include <QEvent>
#include <QPainter>

namespace kestrel {
namespace {

const QColor kLineColour(70, 76, 84, 190);

}  // namespace

CrossHair::CrossHair(PictureBox* box) : QWidget(box), box_(box) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_NoSystemBackground);
  setGeometry(box->rect());
  box->installEventFilter(this);
}

void CrossHair::Move(double x, double y) {
  UpdateStrips();
  place_ = QPointF(x, y);
  UpdateStrips();
}

void CrossHair::Hide() {
  UpdateStrips();
  place_.reset();
}

void CrossHair::UpdateStrips() {
  if (!place_) return;
  const QPoint pixel = box_->ToPixels(*place_).toPoint();
  update(pixel.x() - 1, 0, 3, height());
  update(0, pixel.y() - 1, width(), 3);
}

void CrossHair::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (box_->hasFocus()) {
    painter.setPen(QPen(palette().color(QPalette::Highlight), 0));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
  if (!place_) return;
  const QPoint pixel = box_->ToPixels(*place_).toPoint();
  painter.setPen(QPen(kLineColour, 0));
  painter.drawLine(pixel.x(), 0, pixel.x(), height());
  painter.drawLine(0, pixel.y(), width(), pixel.y());
}

bool CrossHair::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Resize:
      setGeometry(box_->rect());
      break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
      update();
      break;
    default:
      break;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kestrel
