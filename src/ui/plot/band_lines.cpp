// Painting the bands' lines strip by strip.
// SPDX-License-Identifier: MIT
#include "ui/plot/band_lines.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTransform>
#include <algorithm>

#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

// The levels' own colours, and the highlight, are too light for the paper: a dark casing holds
// them.
const QColor kCasing(45, 48, 54);
constexpr int kCasedThickness = 2;  // in lines of width 1
constexpr int kMargin = 5;          // pixels that a line with its casing may be off its place

bool HasCasing(int group, const OverlayLine& line) {
  return line.highlighted || !IsEdge(group);
}

bool IsInside(double least, double most, int extent) {
  return most >= 0 && least <= extent;
}

// The device pixels that a line without its casing fills; none where it runs off the box.
QRect PixelsOf(const PictureBox& box, int group, const OverlayLine& line, QSize picture,
               int thickness) {
  const auto [x1, x2] = std::minmax(line.x1, line.x2);
  const double left = box.ToPixels({x1, 0}).x();
  const double right = box.ToPixels({x2, 0}).x();
  if (!IsInside(left, right, box.width())) return {};
  const int thick = HasCasing(group, line) ? kCasedThickness * thickness : thickness;
  if (IsEdge(group)) {
    return {box.GridColumn(x1, picture.width(), thick), 0, thick, picture.height()};
  }
  const double y = box.ToPixels({0, line.y1}).y();
  if (!IsInside(y, y, box.height())) return {};
  const int first = box.GridColumn(x1, picture.width(), thickness);
  const int last = box.GridColumn(x2, picture.width(), thickness) + thickness;
  return {first, box.GridRow(line.y1, picture.height(), thick), last - first, thick};
}

}  // namespace

BandLines::BandLines(PictureBox* box) : QWidget(box), box_(box) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setAttribute(Qt::WA_NoSystemBackground);
  setGeometry(box->rect());
  box->installEventFilter(this);
  connect(box, &PictureBox::ScaleChanged, this, [this] { update(); });
}

void BandLines::SetLine(int index, const OverlayLine& line) {
  OverlayLine& kept = lines_.at(static_cast<std::size_t>(index));
  UpdateStrip(kept);
  kept = line;
  UpdateStrip(kept);
}

void BandLines::UpdateStrip(const OverlayLine& line) {
  if (!line.visible) return;
  const auto pixel = [this](double x, double y) {
    const QPointF exact = box_->ToPixels({x, y});
    return QPoint(
        static_cast<int>(std::clamp(exact.x(), -1.0 * kMargin, width() + 1.0 * kMargin)),
        static_cast<int>(std::clamp(exact.y(), -1.0 * kMargin, height() + 1.0 * kMargin)));
  };
  const QRect strip(pixel(std::min(line.x1, line.x2), std::max(line.y1, line.y2)),
                    pixel(std::max(line.x1, line.x2), std::min(line.y1, line.y2)));
  update(strip.marginsAdded({kMargin, kMargin, kMargin, kMargin}));
}

void BandLines::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  for (const bool highlighted : {false, true}) {
    for (int index = 0; index < kOverlayLines; ++index) {
      const OverlayLine& line = lines_.at(static_cast<std::size_t>(index));
      if (line.visible && line.highlighted == highlighted) {
        PaintLine(painter, index / kLinesPerGroup, line);
      }
    }
  }
}

// On whole device pixels, sharp at any scale.
void BandLines::PaintLine(QPainter& painter, int group, const OverlayLine& line) const {
  const int thickness = LineThickness(painter.deviceTransform().m11());
  const QRect picture = DevicePixels(painter, rect());
  const QRect core = PixelsOf(*box_, group, line, picture.size(), thickness);
  if (core.isEmpty()) return;
  const QTransform toLogical = painter.deviceTransform().inverted();
  const auto fill = [&](const QRect& pixels, const QColor& colour) {
    painter.fillRect(toLogical.mapRect(QRectF(pixels.translated(picture.topLeft()))), colour);
  };
  if (HasCasing(group, line)) {
    fill(core.marginsAdded({thickness, thickness, thickness, thickness}), kCasing);
  }
  fill(core, ToColour(line.colour));
}

bool BandLines::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) setGeometry(box_->rect());
  return QWidget::eventFilter(watched, event);
}

}  // namespace kestrel
