// How a theme reaches the program's windows.
// SPDX-License-Identifier: MIT
#include "ui/chart/theme.h"

#include <QApplication>

#include "ui/chart/look.h"

namespace kestrel {

void ApplyTheme(Theme theme) {
  switch (theme) {
    case Theme::Light:
      QApplication::setPalette(Look::Light().Palette());
      break;
    case Theme::Dark:
      QApplication::setPalette(Look::Dark().Palette());
      break;
    default:
      QApplication::setPalette(QPalette());
  }
}

}  // namespace kestrel
