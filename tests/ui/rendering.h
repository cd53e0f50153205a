// Windows drawn as on a screen of any scale.
// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QImage>
#include <QPaintEvent>
#include <QRegion>
#include <QWidget>

namespace kestrel {

// As on a screen of that scale, whatever the scale of the screen the test runs on.
inline QImage RenderOf(QWidget& widget, qreal ratio) {
  QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  widget.render(&image);
  return image;
}

// All that a widget was asked to paint.
class PaintedRegion : public QObject {
 public:
  explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }

  QRegion region;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

}  // namespace kestrel
