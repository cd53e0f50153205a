// A plot as PNG, SVG or PDF, or on the clipboard.
// SPDX-License-Identifier: MIT
#include "ui/chart/picture_out.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#ifdef KESTREL_SVG
#include <QSvgGenerator>
#endif

#include "ui/chart/label_painter.h"
#include "ui/chart/overlay_painter.h"
#include "ui/chart/trace_painter.h"

namespace kestrel {
namespace {

constexpr double kFileRatio = 2;
constexpr int kDotsPerInch = 96;  // one unscaled pixel

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

// What the painters need, kept together; always light.
class Sheet {
 public:
  Sheet(const PlotPicture& picture, double ratio)
      : picture_(picture),
        look_(Look::Light()),
        fonts_(picture.font),
        layout_(LaidOut(picture.scene, picture.ranges, fonts_, picture.size, ratio,
                        !picture.scene.source.empty())) {}

  [[nodiscard]] PlotPage Page() const { return {picture_.scene, layout_, look_, fonts_}; }

  void PaintBelow(QPainter& painter) const { PaintGround(painter, Page()); }
  void PaintAbove(QPainter& painter) const {
    PaintTraceLetters(painter, Page());
    PaintPeakLabels(painter, Page());
    PlotOverlay overlay;
    overlay.cursor = picture_.cursor;
    PaintOverlay(painter, Page(), overlay);
  }
  void PaintLines(QPainter& painter) const {
    PaintBelow(painter);
    PaintTraces(painter, Page());
    PaintAbove(painter);
  }

 private:
  const PlotPicture& picture_;
  Look look_;
  LookFonts fonts_;
  PlotLayout layout_;
};

#ifdef KESTREL_SVG
void WriteSvg(const PictureSheet& sheet, QIODevice& file) {
  QSvgGenerator svg;
  svg.setOutputDevice(&file);
  svg.setSize(sheet.size);
  svg.setViewBox(QRect(QPoint(), sheet.size));
  svg.setResolution(kDotsPerInch);
  svg.setTitle(sheet.title);
  svg.setDescription(sheet.description);
  QPainter painter(&svg);
  sheet.paint(painter);
}
#endif

void WritePdf(const PictureSheet& sheet, QIODevice& file) {
  QPdfWriter pdf(&file);
  constexpr double kPointsPerPixel = 72.0 / kDotsPerInch;
  pdf.setPageSize(QPageSize(QSizeF(sheet.size) * kPointsPerPixel, QPageSize::Point));
  pdf.setPageMargins(QMarginsF());
  pdf.setResolution(kDotsPerInch);
  pdf.setTitle(sheet.title + ", " + sheet.description.section('\n', 0, 0));
  QPainter painter(&pdf);
  sheet.paint(painter);
}

}  // namespace

QImage Drawn(const PlotPicture& picture, double ratio) {
  const Sheet sheet(picture, ratio);
  QImage image((QSizeF(picture.size) * ratio).toSize(), QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  QPainter below(&image);
  sheet.PaintBelow(below);
  below.end();
  DrawTraces(image, sheet.Page());
  QPainter above(&image);
  sheet.PaintAbove(above);
  above.end();
  image.setText(QStringLiteral("Title"), Text(picture.scene.head));
  image.setText(QStringLiteral("Description"), Text(picture.scene.line));
  image.setText(QStringLiteral("Source"), Text(picture.scene.source));
  return image;
}

void PaintPicture(QPainter& painter, const PlotPicture& picture, double ratio) {
  Sheet(picture, ratio).PaintLines(painter);
}

QStringList PictureEndings() {
  return {
      QStringLiteral("png"),
      QStringLiteral("pdf"),
#ifdef KESTREL_SVG
      QStringLiteral("svg"),
#endif
  };
}

PictureSheet SheetOf(const PlotPicture& picture) {
  return {.title = Text(picture.scene.head),
          .description = Text(picture.scene.line + '\n' + picture.scene.source),
          .size = picture.size,
          .paint = [&picture](QPainter& painter) { Sheet(picture, 1).PaintLines(painter); },
          .image = [&picture](double ratio) { return Drawn(picture, ratio); }};
}

QByteArray PictureFile(const PictureSheet& sheet, const QString& ending) {
  QByteArray content;
  QBuffer file(&content);
  file.open(QIODevice::WriteOnly);
  if (ending == u"png") sheet.image(kFileRatio).save(&file, "PNG");
#ifdef KESTREL_SVG
  if (ending == u"svg") WriteSvg(sheet, file);
#endif
  if (ending == u"pdf") WritePdf(sheet, file);
  return content;
}

void CopyPicture(const PlotPicture& picture) {
  QGuiApplication::clipboard()->setImage(Drawn(picture, kFileRatio));
}

}  // namespace kestrel
