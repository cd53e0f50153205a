// The icon's shapes, and the engine that paints them.
// SPDX-License-Identifier: MIT
#include "ui/main/app_icon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QPolygonF>
#include <algorithm>
#include <array>

namespace kestrel {
namespace {

constexpr double kBox = 128;  // the shapes' own unit
constexpr int kSmall = 32;    // pixels, below which details would blur
constexpr QColor kGround(0x1F, 0x2A, 0x36);
constexpr QColor kGrid(0x3A, 0x4A, 0x5C);
constexpr QColor kTrace(0x32, 0xCD, 0x32);

struct Level {
  double y;
  QColor colour;
};
constexpr std::array kLevels{Level{36, QColor(0xFF, 0xE6, 0x00)},
                             Level{26, QColor(0xE6, 0x00, 0x00)}};

QPolygonF Spectrum() {
  return {{20, 96}, {28, 90}, {36, 95}, {44, 84}, {52, 93}, {60, 72},  {66, 92},
          {70, 30}, {75, 91}, {82, 62}, {88, 93}, {96, 82}, {102, 94}, {108, 90}};
}

QPen Round(const QColor& colour, double width) {
  return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

class AppIconEngine : public QIconEngine {
 public:
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/,
             QIcon::State /*state*/) override {
    const double side = std::min(rect.width(), rect.height());
    const bool isSmall = side * painter->deviceTransform().m11() < kSmall;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(QRectF(rect).center() - QPointF(side / 2, side / 2));
    painter->scale(side / kBox, side / kBox);
    painter->setPen(Qt::NoPen);
    painter->setBrush(kGround);
    painter->drawRoundedRect(QRectF(6, 6, 116, 116), 22, 22);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(kGrid, 2, Qt::SolidLine, Qt::FlatCap));
    if (!isSmall) {
      for (const double y : {98.0, 70.0, 42.0}) painter->drawLine(QPointF(20, y), QPointF(108, y));
    }
    for (const Level& level : kLevels) {
      painter->setPen(Round(level.colour, isSmall ? 7 : 4));
      painter->drawLine(QPointF(54, level.y), QPointF(84, level.y));
    }
    painter->setPen(Round(kTrace, isSmall ? 9 : 5));
    painter->drawPolyline(Spectrum());
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new AppIconEngine(*this); }
};

}  // namespace

QIcon AppIcon() {
  return QIcon(new AppIconEngine);
}

}  // namespace kestrel
