// Where it is remembered, and how the theme is applied when the program starts.
// SPDX-License-Identifier: MIT
#include "ui/analyser/kept_settings.h"

namespace kestrel {

QSettings KeptSettings() {
  return {QSettings::IniFormat, QSettings::UserScope, "kestrel", "analyser"};
}

Theme ThemeIn(const QSettings& kept) {
  const int theme = kept.value("theme", 0).toInt();
  const bool isOne =
      theme == static_cast<int>(Theme::Light) || theme == static_cast<int>(Theme::Dark);
  return isOne ? static_cast<Theme>(theme) : Theme::System;
}

void ApplyKeptTheme() {
  const Theme theme = ThemeIn(KeptSettings());
  if (theme != Theme::System) ApplyTheme(theme);
}

}  // namespace kestrel
