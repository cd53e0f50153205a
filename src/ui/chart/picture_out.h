// Pictures of a plot that leave the program: the same painters, light colours, everything inside.
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QStringList>
#include <functional>

#include "chart/plot_scene.h"
#include "ui/chart/plot_layout.h"

namespace kestrel {

// What is shown, at which size (unscaled pixels), with the cursor but without the pointer.
struct PlotPicture {
  PlotScene scene;
  PlotRanges ranges;
  SceneCursor cursor;
  QFont font;
  QSize size{1200, 700};
};

[[nodiscard]] QImage Drawn(const PlotPicture& picture, double ratio);

// With a painter, its corner at 0, 0; lines as fine as `ratio` pixels for each unscaled one.
void PaintPicture(QPainter& painter, const PlotPicture& picture, double ratio);

// The endings of picture files that can be made, "svg" only where the toolkit can write it.
[[nodiscard]] QStringList PictureEndings();

// What any picture file is made of.
struct PictureSheet {
  QString title;
  QString description;
  QSize size;                            // unscaled pixels
  std::function<void(QPainter&)> paint;  // in vectors where the painter can
  std::function<QImage(double ratio)> image;
};
// What refers to the picture lives as long as the sheet.
[[nodiscard]] PictureSheet SheetOf(const PlotPicture& picture);

// The whole content of a file with one of the endings: png (at twice the size), svg or pdf. Empty
// for another ending.
[[nodiscard]] QByteArray PictureFile(const PictureSheet& sheet, const QString& ending);

void CopyPicture(const PlotPicture& picture);  // to the clipboard

}  // namespace kestrel
