// Painting each figure in the middle of its cell.
// SPDX-License-Identifier: MIT
#include "ui/chart/tabular_text.h"

#include <QPaintEngine>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <vector>

namespace kestrel {
namespace {

constexpr double kRim = 2;
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

// What is drawn where: letter by letter where figures have cells of one width.
struct Piece {
  QPointF place;
  QString text;
};

std::vector<Piece> InCells(const QFontMetricsF& metrics, QPointF place, const QString& text,
                           double cell) {
  std::vector<Piece> pieces;
  for (const QChar letter : text) {
    const double own = metrics.horizontalAdvance(letter);
    const double width = letter.isDigit() ? cell : own;
    pieces.push_back({place + QPointF((width - own) / 2, 0), QString(letter)});
    place.rx() += width;
  }
  return pieces;
}

std::vector<Piece> PiecesOf(const QFont& font, const QRectF& place, Qt::Alignment alignment,
                            const QString& text) {
  if (text.isEmpty()) return {};
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
  if (cell > 0) return InCells(metrics, start, text, cell);
  return {{start, text}};
}

// Whether texts stay texts on the device, which a rim made of texts would repeat.
bool KeepsTexts(const QPainter& painter) {
  const auto* engine = painter.paintEngine();
  return engine != nullptr &&
         (engine->type() == QPaintEngine::Pdf || engine->type() == QPaintEngine::SVG);
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
  painter.setFont(font);
  for (const Piece& piece : PiecesOf(font, place, alignment, text)) {
    painter.drawText(piece.place, piece.text);
  }
}

void DrawWithHalo(QPainter& painter, const QFont& font, const QRectF& place,
                  Qt::Alignment alignment, const QString& text, const QColor& halo) {
  const QPen pen = painter.pen();
  painter.setPen(halo);
  if (KeepsTexts(painter)) {
    QPainterPath outline;
    for (const Piece& piece : PiecesOf(font, place, alignment, text)) {
      outline.addText(piece.place, font, piece.text);
    }
    painter.strokePath(outline, QPen(halo, 2 * kRim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  } else {
    for (int dx = -2; dx <= 2; ++dx) {
      for (int dy = -2; dy <= 2; ++dy) {
        const bool isRim = std::abs(dx) + std::abs(dy) == 2 || std::abs(dx) + std::abs(dy) == 3;
        if (isRim) DrawTabular(painter, font, place.translated(dx, dy), alignment, text);
      }
    }
  }
  painter.setPen(pen);
  DrawTabular(painter, font, place, alignment, text);
}

}  // namespace kestrel
