// Pictures of a whole view that leave the program: in light colours, with what was measured below.
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QWidget>

namespace kestrel {

// `ratio` pixels for each of the widget's.
[[nodiscard]] QImage PictureOf(QWidget& widget, const QString& line, double ratio);

// As PictureFile.
[[nodiscard]] QByteArray WidgetPictureFile(QWidget& widget, const QString& line,
                                           const QString& ending);

}  // namespace kestrel
