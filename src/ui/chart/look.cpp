// The values of the analyser's colours and sizes, chosen by the palette.
// SPDX-License-Identifier: MIT
#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr double kHatchOpacity = 0.35;

QColor Rgb(unsigned value) {
  return QColor::fromRgb(value);
}

std::array<QColor, 4> Four(unsigned a, unsigned b, unsigned c, unsigned d) {
  return {Rgb(a), Rgb(b), Rgb(c), Rgb(d)};
}

QColor Faint(QColor colour, double opacity) {
  colour.setAlphaF(static_cast<float>(opacity));
  return colour;
}

Look MakeLight() {
  Look look;
  look.window = Rgb(0xF1F3F6);
  look.panel = Rgb(0xFFFFFF);
  look.header = Rgb(0xF7F8FA);
  look.canvas = Rgb(0xFFFFFF);
  look.grid = Rgb(0xE6E9EE);
  look.minorGrid = Rgb(0xF1F3F6);
  look.hairline = Rgb(0xDDE2E8);
  look.axis = Rgb(0x7F8895);
  look.edge = Rgb(0x7F8895);
  look.button = Rgb(0xFFFFFF);
  look.text = Rgb(0x1A212B);
  look.muted = Rgb(0x5A6472);
  look.disabled = Rgb(0x9AA3AF);
  look.accent = Rgb(0x5B45C2);
  look.onAccent = Rgb(0xFFFFFF);
  look.accentSoft = Rgb(0xECE9FB);
  look.selected = Rgb(0xE5E1FA);
  look.pointedAt = Rgb(0xE7EAEF);
  look.inks = Four(0xD55E00, 0x009E73, 0x005FA8, 0x5A6472);
  look.notice = Rgb(0xFFF3D6);
  look.noticeEdge = Rgb(0xC98600);
  look.noticeText = Rgb(0x6B4500);
  look.warning = Rgb(0x9A6200);
  look.fault = Rgb(0xB0123C);
  look.faultGround = Rgb(0xFCE7EB);
  look.hatch = Faint(look.axis, kHatchOpacity);
  look.hatchGround = Rgb(0xEEF0F3);
  look.options = Four(0x46566C, 0x6F7F94, 0x9AA7B7, 0xC2CBD6);
  return look;
}

Look MakeDark() {
  Look look;
  look.isDark = true;
  look.window = Rgb(0x17191D);
  look.panel = Rgb(0x202429);
  look.header = Rgb(0x262B31);
  look.canvas = Rgb(0x15181C);
  look.grid = Rgb(0x2A3037);
  look.minorGrid = Rgb(0x1F242A);
  look.hairline = Rgb(0x333A42);
  look.axis = Rgb(0x6F7986);
  look.edge = Rgb(0x76808D);
  look.button = Rgb(0x2B3037);
  look.text = Rgb(0xE6E9ED);
  look.muted = Rgb(0xA3ACB8);
  look.disabled = Rgb(0x68717D);
  look.accent = Rgb(0xB0A0FA);
  look.onAccent = Rgb(0x17132E);
  look.accentSoft = Rgb(0x322D55);
  look.selected = Rgb(0x363059);
  look.pointedAt = Rgb(0x2D333A);
  look.inks = Four(0xFF8A47, 0x45E0B0, 0x5A9BF5, 0xA3ACB8);
  look.notice = Rgb(0x3A2E14);
  look.noticeEdge = Rgb(0xA77A1F);
  look.noticeText = Rgb(0xFFD27A);
  look.warning = Rgb(0xF0B644);
  look.fault = Rgb(0xFF7089);
  look.faultGround = Rgb(0x44202A);
  look.hatch = Faint(look.axis, kHatchOpacity);
  look.hatchGround = Rgb(0x22272D);
  look.options = Four(0xB4C0CF, 0x8593A6, 0x5E6C7E, 0x414C5A);
  return look;
}

QFont Sized(const QFont& system, double part, QFont::Weight weight) {
  QFont font = system;
  if (system.pixelSize() > 0) {
    font.setPixelSize(qRound(system.pixelSize() * part));
  } else {
    font.setPointSizeF(system.pointSizeF() * part);
  }
  font.setWeight(weight);
  return font;
}

}  // namespace

Look Look::Light() {
  return MakeLight();
}

Look Look::Dark() {
  return MakeDark();
}

Look Look::Of(const QPalette& palette) {
  const bool isDark =
      palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
  return isDark ? Dark() : Light();
}

QPalette Look::Palette() const {
  QPalette palette(text, button, panel, hairline, edge, text, onAccent, panel, window);
  palette.setColor(QPalette::WindowText, text);
  palette.setColor(QPalette::ButtonText, text);
  palette.setColor(QPalette::AlternateBase, header);
  palette.setColor(QPalette::PlaceholderText, muted);
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, onAccent);
  palette.setColor(QPalette::Link, accent);
  palette.setColor(QPalette::ToolTipBase, panel);
  palette.setColor(QPalette::ToolTipText, text);
  for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, disabled);
  }
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
  palette.setColor(QPalette::Accent, accent);
#endif
  return palette;
}

LookFonts::LookFonts(const QFont& system)
    : plain(Sized(system, 1, QFont::Normal)),
      bold(Sized(system, 1, QFont::DemiBold)),
      small(Sized(system, 0.92, QFont::Normal)),
      smallBold(Sized(system, 0.92, QFont::DemiBold)),
      heading(Sized(system, 1.33, QFont::DemiBold)),
      figure(Sized(system, 1.67, QFont::DemiBold)) {}

}  // namespace kestrel
