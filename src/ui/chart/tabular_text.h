// Numbers painted in figures of one width, whatever the font.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QRectF>
#include <QString>
#include <array>
#include <string>

namespace kestrel {

// Width of a text whose figures each take a cell of the widest one's width.
[[nodiscard]] double TabularWidth(const QFont& font, const QString& text);
[[nodiscard]] inline double TabularWidth(const QFont& font, const std::string& text) {
  return TabularWidth(font, QString::fromStdString(text));
}

// The same of many texts in one font, for columns that follow every record: in numbers each sign is
// measured once; in words letters move together, so that they are measured whole, and remembered.
class TabularMeter {
 public:
  explicit TabularMeter(const QFont& font);

  [[nodiscard]] const QFont& Font() const { return font_; }
  [[nodiscard]] double WidthOf(const QString& text);

 private:
  [[nodiscard]] double WidthOfWord(const QString& text);

  QFont font_;
  QFontMetricsF metrics_;
  double cell_;                    // 0 for a font whose figures are equally wide already
  std::array<double, 256> latin_;  // widths; below 0 where not measured yet
  QHash<QString, double> words_;
};

// In the painter's pen. The text stands in the rectangle as the alignment says (horizontally left,
// right or centre; vertically always in the middle).
void DrawTabular(QPainter& painter, const QFont& font, const QRectF& place, Qt::Alignment alignment,
                 const QString& text);
inline void DrawTabular(QPainter& painter, const QFont& font, const QRectF& place,
                        Qt::Alignment alignment, const std::string& text) {
  DrawTabular(painter, font, place, alignment, QString::fromStdString(text));
}

// The same with a rim in another colour, two pixels wide, that keeps it readable over traces.
void DrawWithHalo(QPainter& painter, const QFont& font, const QRectF& place,
                  Qt::Alignment alignment, const QString& text, const QColor& halo);
inline void DrawWithHalo(QPainter& painter, const QFont& font, const QRectF& place,
                         Qt::Alignment alignment, const std::string& text, const QColor& halo) {
  DrawWithHalo(painter, font, place, alignment, QString::fromStdString(text), halo);
}

}  // namespace kestrel
