// Painting each figure in the middle of its cell.
// SPDX-License-Identifier: MIT
#include "ui/chart/tabular_text.h"

#include <algorithm>
#include <cmath>

namespace kestrel {
namespace {

constexpr QStringView kFigures = u"0123456789";

// 0 for a font whose figures are equally wide already.
double CellWidth(const QFontMetricsF& metrics) {
  double widest = 0;
  double narrowest = 1e9;
  for (const QChar figure : kFigures) {
    const double width = metrics.horizontalAdvance(figure);
    widest = std::max(widest, width);
    narrowest = std::min(narrowest, width);
  }
  return widest - narrowest > 0.01 ? widest : 0;
}

double WidthInCells(const QFontMetricsF& metrics, const QString& text, double cell) {
  double width = 0;
  for (const QChar letter : text) {
    width += letter.isDigit() ? cell : metrics.horizontalAdvance(letter);
  }
  return width;
}

void DrawInCells(QPainter& painter, QPointF place, const QString& text, double cell) {
  const QFontMetricsF metrics(painter.font());
  for (const QChar letter : text) {
    const double own = metrics.horizontalAdvance(letter);
    const double width = letter.isDigit() ? cell : own;
    painter.drawText(place + QPointF((width - own) / 2, 0), QString(letter));
    place.rx() += width;
  }
}

}  // namespace

double TabularWidth(const QFont& font, const QString& text) {
  const QFontMetricsF metrics(font);
  const double cell = CellWidth(metrics);
  return cell > 0 ? WidthInCells(metrics, text, cell) : metrics.horizontalAdvance(text);
}

TabularMeter::TabularMeter(const QFont& font)
    : font_(font), metrics_(font), cell_(CellWidth(metrics_)) {
  latin_.fill(-1);
}

double TabularMeter::WidthOfWord(const QString& text) {
  constexpr qsizetype kMostWords = 1000;
  if (words_.size() >= kMostWords) words_.clear();
  auto found = words_.find(text);
  if (found == words_.end()) found = words_.insert(text, TabularWidth(font_, text));
  return *found;
}

double TabularMeter::WidthOf(const QString& text) {
  double width = 0;
  for (const QChar letter : text) {
    if (letter.unicode() >= latin_.size() || letter.isLetter()) return WidthOfWord(text);
    double& own = latin_[letter.unicode()];
    if (own < 0) own = letter.isDigit() && cell_ > 0 ? cell_ : metrics_.horizontalAdvance(letter);
    width += own;
  }
  return width;
}

void DrawTabular(QPainter& painter, const QFont& font, const QRectF& place, Qt::Alignment alignment,
                 const QString& text) {
  if (text.isEmpty()) return;
  painter.setFont(font);
  const QFontMetricsF metrics(font);
  const double cell = CellWidth(metrics);
  const double width =
      cell > 0 ? WidthInCells(metrics, text, cell) : metrics.horizontalAdvance(text);
  double left = place.left();
  if (alignment.testFlag(Qt::AlignRight)) left = place.right() - width;
  if (alignment.testFlag(Qt::AlignHCenter)) left = place.center().x() - width / 2;
  // Whole pixels: letters stay sharp.
  const QPointF start(std::round(left),
                      std::round(place.center().y() + (metrics.ascent() - metrics.descent()) / 2));
  if (cell > 0) {
    DrawInCells(painter, start, text, cell);
  } else {
    painter.drawText(start, text);
  }
}

void DrawWithHalo(QPainter& painter, const QFont& font, const QRectF& place,
                  Qt::Alignment alignment, const QString& text, const QColor& halo) {
  const QPen pen = painter.pen();
  painter.setPen(halo);
  for (int dx = -2; dx <= 2; ++dx) {
    for (int dy = -2; dy <= 2; ++dy) {
      const bool isRim = std::abs(dx) + std::abs(dy) == 2 || std::abs(dx) + std::abs(dy) == 3;
      if (isRim) DrawTabular(painter, font, place.translated(dx, dy), alignment, text);
    }
  }
  painter.setPen(pen);
  DrawTabular(painter, font, place, alignment, text);
}

}  // namespace kestrel
