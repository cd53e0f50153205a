// The icons' paths, and the engine that paints them.
// SPDX-License-Identifier: MIT
#include "ui/chart/icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <algorithm>
#include <array>
#include <utility>

#include "ui/chart/path_text.h"

namespace kestrel {
namespace {

constexpr double kBox = 16;  // pixels the paths are drawn in
constexpr double kPen = 1.5;

struct Named {
  const char* name;
  const char* path;
};

// Parts are divided by ";": a path in SVG notation, "o x y r" a circle, "r x y w h" a rectangle,
// the latter two filled where "fill" follows.
constexpr std::array kIcons{
    Named{"rec", "o 8 8 5.5; o 8 8 2 fill"},
    Named{"stopf", "r 4 4 8 8 fill"},
    Named{"repeat",
          "M3 8V6.5A2.5 2.5 0 0 1 5.5 4H13M10.5 1.5 13 4l-2.5 2.5M13 8v1.5a2.5 2.5 0 0 1-2.5 "
          "2.5H3M5.5 14.5 3 12l2.5-2.5"},
    Named{"freeze", "M8 2v12M2.8 5l10.4 6M13.2 5 2.8 11"},
    Named{"overlay", "M2 12c2 0 2-8 4-8s2 8 4 8 2-4 4-4; M2 9c3 0 3 3 6 3s3-6 6-6"},
    Named{"stacked",
          "M2 5.5c2 0 2-3 4-3s2 3 4 3 2-1.5 4-1.5M2 13c2 0 2-3 4-3s2 3 4 3 2-1.5 4-1.5; M2 8h12"},
    Named{"waterf", "M2 4h12M2 7h3l1-2 1 2h7M2 10h5l1-2.5L9 10h5M2 13h12"},
    Named{"cur1", "M8 2v12; M6 2h4"},
    Named{"curd", "M5 2v12M11 2v12M5 8h6"},
    Named{"curh", "M3 2v12M7 5v9M11 8v6M14.5 10.5V14"},
    Named{"curs", "M8 2v12M4.5 6v8M11.5 6v8M1.5 9.5V14M14.5 9.5V14"},
    Named{"bands", "M2.5 13.5v-11M6.5 13.5v-11M10 13.5v-11M13.5 13.5v-11; M2.5 6h4M10 8.5h3.5"},
    Named{"label", "M2.5 2.5h5.5l5.5 5.5-5.5 5.5-5.5-5.5z; o 5.6 5.6 .7 fill"},
    Named{"vert", "M8 2v12M5.5 4.5 8 2l2.5 2.5M5.5 11.5 8 14l2.5-2.5"},
    Named{"horz", "M2 8h12M4.5 5.5 2 8l2.5 2.5M11.5 5.5 14 8l-2.5 2.5"},
    Named{"back", "M10 3 5 8l5 5"},
    Named{"fwd", "M6 3l5 5-5 5"},
    Named{"down", "M4.5 6.5 8 10l3.5-3.5"},
    Named{"fit", "M2.5 6V2.5H6M10 2.5h3.5V6M13.5 10v3.5H10M6 13.5H2.5V10"},
    Named{"copy", "r 5.5 5.5 8 8; M10.5 3.5v-1h-8v8h1"},
    Named{"export", "M8 10V2.5M5 5l3-3 3 3M2.5 9.5v4h11v-4"},
    Named{"search", "o 7 7 4.2; m10.2 10.2 3.3 3.3"},
    Named{"cal", "r 2.5 3.5 11 10; M2.5 6.5h11M5.5 2v2.5M10.5 2v2.5"},
    Named{"star", "m8 2.2 1.8 3.7 4 .6-2.9 2.8.7 4L8 11.4l-3.6 1.9.7-4L2.2 6.5l4-.6z"},
    Named{"note", "M3 2.5h10v8l-3 3H3z; M5.5 5.5h5M5.5 8h5"},
    Named{"warn", "M8 2.5 14 13.5H2z; M8 6.5v3.2M8 11.6v.2"},
    Named{"info", "o 8 8 6; M8 7.3v3.7M8 5v.2"},
    Named{"plug", "M5.5 2v3M10.5 2v3M4 5h8v2.5a4 4 0 0 1-8 0zM8 11.5V14"},
    Named{"noplug", "M5.5 2v3M10.5 2v3M4 5h8v2.5a4 4 0 0 1-8 0zM8 11.5V14M2 14 14 2"},
    Named{"arch", "M2.5 3h11v3h-11zM3.5 6v7.5h9V6M6.5 8.5h3"},
    Named{"lock", "r 3.5 7 9 6.5; M5.5 7V5a2.5 2.5 0 0 1 5 0v2"},
    Named{"plus", "M8 3v10M3 8h10"},
    Named{"check", "m3 8.5 3.2 3.2L13 5"},
    Named{"float", "r 2.5 5.5 8 8; M6 2.5h7.5V10"},
    Named{"close", "m4.5 4.5 7 7M11.5 4.5l-7 7"},
    Named{"more", "o 3.5 8 .8 fill; o 8 8 .8 fill; o 12.5 8 .8 fill"},
};

const char* PathOf(const QString& name) {
  const auto* found = std::find_if(kIcons.begin(), kIcons.end(), [&](const Named& icon) {
    return name == QLatin1String(icon.name);
  });
  return found == kIcons.end() ? nullptr : found->path;
}

QColor ColourFor(QIcon::Mode mode) {
  const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
  return QApplication::palette().color(group, QPalette::ButtonText);
}

// The colour is the palette's at the moment of painting, so that a change of theme needs no new
// icon.
class PathEngine : public QIconEngine {
 public:
  explicit PathEngine(QString path) : path_(std::move(path)) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode,
             QIcon::State /*on*/) override {
    PaintPath(*painter, place, path_, ColourFor(mode));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return pixmap;
  }
  [[nodiscard]] QIconEngine* clone() const override { return new PathEngine(path_); }

  static void PaintPath(QPainter& painter, const QRectF& place, const QString& path,
                        const QColor& colour) {
    const double side = std::min(place.width(), place.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center() - QPointF(side, side) / 2);
    painter.scale(side / kBox, side / kBox);
    for (const PathPart& part : PathParts(path)) {
      painter.setPen(QPen(colour, kPen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      painter.setBrush(part.isFilled ? QBrush(colour) : QBrush(Qt::NoBrush));
      if (part.isFilled) painter.setPen(Qt::NoPen);
      painter.drawPath(part.path);
    }
    painter.restore();
  }

 private:
  QString path_;
};

}  // namespace

QIcon AnalyserIcon(const QString& name) {
  const char* path = PathOf(name);
  return path == nullptr ? QIcon() : QIcon(new PathEngine(QLatin1String(path)));
}

void PaintIcon(QPainter& painter, const QRectF& place, const QString& name, const QColor& colour) {
  const char* path = PathOf(name);
  if (path != nullptr) PathEngine::PaintPath(painter, place, QLatin1String(path), colour);
}

QStringList IconNames() {
  QStringList names;
  for (const Named& icon : kIcons) names << QLatin1String(icon.name);
  return names;
}

}  // namespace kestrel
