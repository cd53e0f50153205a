// The fonts of a page, and which characters none of them has.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QMap>
#include <QString>
#include <string>

namespace kestrel {

// Units of a page for each point of type.
inline constexpr double kUnitsPerInch = 960;
inline constexpr double kUnitsPerPoint = kUnitsPerInch / 72;
inline constexpr double kUnitsPerMm = kUnitsPerInch / 25.4;
inline constexpr double kUnitsPerPixel = kUnitsPerInch / 96;  // of plots

class PageFonts {
 public:
  // Throws RuntimeError where no font is installed.
  PageFonts();

  [[nodiscard]] QFont Sized(double points, QFont::Weight weight = QFont::Normal) const;
  [[nodiscard]] QFont OfPlots() const;

  // The text with "[U+1F527]" in the place of each character that would be an empty box.
  [[nodiscard]] QString Shown(const std::string& text);
  // What was so replaced since the fonts were made, and what helps; empty for nothing.
  [[nodiscard]] std::string Missing() const;

 private:
  [[nodiscard]] bool Has(char32_t character);

  QString family_;
  QMap<char32_t, bool> known_;
};

}  // namespace kestrel
