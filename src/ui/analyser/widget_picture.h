// Pictures of a whole view that leave the program: in light colours, with what was measured below.
// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace kestrel {

// `ratio` pixels for each of the widget's.
[[nodiscard]] QImage PictureOf(QWidget& widget, const QString& line, double ratio);

// A .png, .pdf or .svg file, by its ending. False when it cannot be written or the ending is
// another.
[[nodiscard]] bool WriteWidgetPicture(QWidget& widget, const QString& line, const QString& file);

}  // namespace kestrel
