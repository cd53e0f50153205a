// How a whole view becomes a picture.
// SPDX-License-Identifier: MIT
#include "ui/analyser/widget_picture.h"

#include <QPainter>

#include "ui/chart/look.h"
#include "ui/chart/picture_out.h"

namespace kestrel {
namespace {

constexpr int kFoot = 24;

// The widget in light colours for as long as this exists.
class InLight {
 public:
  explicit InLight(QWidget& widget) : widget_(widget), before_(widget.palette()) {
    widget_.setPalette(Look::Light().Palette());
  }
  ~InLight() { widget_.setPalette(before_); }
  InLight(const InLight&) = delete;
  InLight& operator=(const InLight&) = delete;

 private:
  QWidget& widget_;
  QPalette before_;
};

void Paint(QWidget& widget, const QString& line, QPainter& painter) {
  const Look look = Look::Light();
  painter.fillRect(QRect(QPoint(), widget.size() + QSize(0, kFoot)), look.panel);
  widget.render(&painter);
  painter.setFont(LookFonts(widget.font()).small);
  painter.setPen(look.muted);
  painter.drawText(QRect(12, widget.height(), widget.width() - 24, kFoot),
                   Qt::AlignVCenter | Qt::AlignLeft, line);
}

}  // namespace

QImage PictureOf(QWidget& widget, const QString& line, double ratio) {
  const InLight light(widget);
  QImage image((QSizeF(widget.size() + QSize(0, kFoot)) * ratio).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  QPainter painter(&image);
  Paint(widget, line, painter);
  painter.end();
  image.setText(QStringLiteral("Description"), line);
  return image;
}

QByteArray WidgetPictureFile(QWidget& widget, const QString& line, const QString& ending) {
  const InLight light(widget);
  return PictureFile({.title = widget.accessibleName(),
                      .description = line,
                      .size = widget.size() + QSize(0, kFoot),
                      .paint = [&](QPainter& painter) { Paint(widget, line, painter); },
                      .image = [&](double ratio) { return PictureOf(widget, line, ratio); }},
                     ending);
}

}  // namespace kestrel
