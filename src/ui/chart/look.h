// The colours and type of the analyser, light and dark.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <array>

#include "chart/plot_scene.h"

namespace kestrel {

struct Look {
  bool isDark = false;
  QColor window, panel, header;    // chrome; tables and docks; their head rows
  QColor canvas, grid, minorGrid;  // of plots
  QColor hairline, axis;           // between panels; axis lines
  QColor edge, button;             // of controls
  QColor text, muted, disabled;
  QColor accent, onAccent, accentSoft;  // the user's: cursor, selection, focus; switched on
  QColor selected, pointedAt;           // rows
  std::array<QColor, 4> inks;           // by PlotInk
  QColor notice, noticeEdge, noticeText;
  QColor warning, fault, faultGround;
  QColor hatch, hatchGround;      // no vibration here, no records
  std::array<QColor, 4> options;  // by rate option

  [[nodiscard]] const QColor& Ink(PlotInk ink) const { return inks[static_cast<std::size_t>(ink)]; }

  [[nodiscard]] static Look Light();
  [[nodiscard]] static Look Dark();
  // By whether the palette's window is darker than its text. Made anew when the palette changes.
  [[nodiscard]] static Look Of(const QPalette& palette);

  // The same colours for the toolkit's own controls.
  [[nodiscard]] QPalette Palette() const;
};

// Sizes of type as parts of the system's size.
struct LookFonts {
  explicit LookFonts(const QFont& system);

  QFont plain, bold;       // 1
  QFont small, smallBold;  // 0.92: ticks, heads, second lines
  QFont heading;           // 1.33, half-bold
  QFont figure;            // 1.67, half-bold
};

}  // namespace kestrel
