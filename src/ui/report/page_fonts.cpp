// Choosing a family, and asking it for characters.
// SPDX-License-Identifier: MIT
#include "ui/report/page_fonts.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QTextLayout>
#include <algorithm>
#include <array>

#include "numeric/runtime_error.h"

namespace kestrel {
namespace {

constexpr double kPlotPixels = 11;
constexpr double kNoLigatures = 0.05;  // they hide letters from who searches for a word
constexpr int kMostNamed = 8;          // missing characters

// Families with figures of one width and all signs of the program's own texts.
constexpr std::array kWished{"DejaVu Sans", "Noto Sans", "Segoe UI", "Liberation Sans", "Arial"};

QString ChosenFamily() {
  const QStringList installed = QFontDatabase::families();
  if (installed.isEmpty()) {
    throw RuntimeError(
        "No font is installed, so no report can be printed. Install one, for example DejaVu Sans "
        "(Debian package fonts-dejavu-core).");
  }
  for (const char* wished : kWished) {
    if (installed.contains(QLatin1String(wished))) return QLatin1String(wished);
  }
  const QString usual = QGuiApplication::font().family();
  return installed.contains(usual) ? usual : installed.first();
}

QString CodeOf(char32_t character) {
  return QStringLiteral("U+%1")
      .arg(static_cast<uint>(character), 4, 16, QLatin1Char('0'))
      .toUpper();
}

}  // namespace

PageFonts::PageFonts() : family_(ChosenFamily()) {}

QFont PageFonts::Sized(double points, QFont::Weight weight) const {
  QFont font(family_);
  font.setPixelSize(qRound(points * kUnitsPerPoint));
  font.setWeight(weight);
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setLetterSpacing(QFont::AbsoluteSpacing, kNoLigatures);
  return font;
}

QFont PageFonts::OfPlots() const {
  QFont font(family_);
  font.setPixelSize(qRound(kPlotPixels));
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

bool PageFonts::Has(char32_t character) {
  if (character < 0x7F || QChar::category(character) == QChar::Other_Format ||
      QChar::category(character) == QChar::Mark_NonSpacing) {
    return true;
  }
  const auto found = known_.constFind(character);
  if (found != known_.constEnd()) return *found;
  QTextLayout layout(QString::fromUcs4(&character, 1), Sized(10));
  layout.beginLayout();
  static_cast<void>(layout.createLine());
  layout.endLayout();
  bool has = true;
  for (const QGlyphRun& run : layout.glyphRuns()) has = has && !run.glyphIndexes().contains(0U);
  known_.insert(character, has);
  return has;
}

QString PageFonts::Shown(const std::string& text) {
  QString shown;
  for (const char32_t character : QString::fromStdString(text).toStdU32String()) {
    shown += Has(character) ? QString::fromUcs4(&character, 1)
                            : QLatin1Char('[') + CodeOf(character) + QLatin1Char(']');
  }
  return shown;
}

std::string PageFonts::Missing() const {
  QStringList codes;
  for (auto known = known_.constBegin(); known != known_.constEnd(); ++known) {
    if (!known.value()) codes << CodeOf(known.key());
  }
  if (codes.isEmpty()) return "";
  const auto more = codes.size() - kMostNamed;
  QString text = codes.mid(0, kMostNamed).join(QStringLiteral(", "));
  if (more > 0) text += QStringLiteral(" and %1 more").arg(more);
  return "No installed font has " + text.toStdString() +
         "; the report names such a character instead of showing it. Install a font that has it, "
         "for example of the Noto family (Debian packages fonts-noto-core, fonts-noto-cjk, "
         "fonts-noto-color-emoji).";
}

}  // namespace kestrel
