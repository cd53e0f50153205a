// The analyser's icons, painted from their paths in the text colour at any size.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>
#include <QString>
#include <QStringList>

class QPainter;

namespace kestrel {

// A null icon for a name that there is none for. Follows the application's palette.
[[nodiscard]] QIcon AnalyserIcon(const QString& name);

// The same in a colour of its own.
void PaintIcon(QPainter& painter, const QRectF& place, const QString& name, const QColor& colour);

[[nodiscard]] QStringList IconNames();

}  // namespace kestrel
