// What the analyser and the program's looks remember between two runs.
// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>

#include "ui/chart/theme.h"

namespace kestrel {

// The user's file of it.
[[nodiscard]] QSettings KeptSettings();

[[nodiscard]] Theme ThemeIn(const QSettings& kept);
// For all windows; the system's own where none or no such theme is kept.
void ApplyKeptTheme();

}  // namespace kestrel
