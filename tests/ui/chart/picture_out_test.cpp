// Pictures that leave the program: readable again, light, with what is needed to read them later.
// SPDX-License-Identifier: MIT
#include "ui/chart/picture_out.h"

#include <QSvgRenderer>

#include "ui/chart/icons.h"
#include "ui/chart/path_text.h"
#include "ui/chart/sample_scenes.h"

namespace kestrel {
namespace {

PlotPicture Sample() {
  const PlotScene scene = OverlaidScene();
  return {scene, FittingRanges(scene), HarmonicCursor(), QApplication::font(), {900, 560}};
}

QByteArray Made(const QString& ending) {
  const PlotPicture picture = Sample();
  return PictureFile(SheetOf(picture), ending);
}

int PixelsNear(const QImage& image, QColor colour, int within) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      count += std::abs(pixel.red() - colour.red()) <= within &&
                       std::abs(pixel.green() - colour.green()) <= within &&
                       std::abs(pixel.blue() - colour.blue()) <= within
                   ? 1
                   : 0;
    }
  }
  return count;
}

TEST(PictureOut, EveryEndingOfTheListIsWritten) {
  EXPECT_EQ(PictureEndings(), QStringList({"png", "pdf", "svg"}));
  for (const QString& ending : PictureEndings()) {
    EXPECT_FALSE(Made(ending).isEmpty()) << qPrintable(ending);
  }
}

TEST(PictureOut, APngHasTheTracesAndTellsWhatItShows) {
  const QImage image = QImage::fromData(Made("png"), "PNG");
  EXPECT_EQ(image.size(), QSize(1800, 1120));
  EXPECT_EQ(image.text("Description"), QString::fromStdString(Sample().scene.line));
  EXPECT_EQ(image.text("Source"), QString::fromStdString(Sample().scene.source));
  for (const auto ink : {PlotInk::X, PlotInk::Y, PlotInk::Z}) {
    EXPECT_GT(PixelsNear(image, Look::Light().Ink(ink), 8), 500);
  }
}

TEST(PictureOut, AnSvgShowsTheSameAsThePng) {
  const QByteArray text = Made("svg");
  EXPECT_TRUE(text.contains("polyline") || text.contains("<path"));
  EXPECT_TRUE(text.contains("Simulated sensor"));
  EXPECT_TRUE(text.contains("8 averages"));
  QSvgRenderer renderer(text);
  ASSERT_TRUE(renderer.isValid());
  QImage image(900, 560, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  const QImage drawn = Drawn(Sample(), 1);
  for (const auto ink : {PlotInk::X, PlotInk::Y, PlotInk::Z}) {
    const int vector = PixelsNear(image, Look::Light().Ink(ink), 60);
    const int raster = PixelsNear(drawn, Look::Light().Ink(ink), 60);
    EXPECT_NEAR(static_cast<double>(vector) / raster, 1, 0.3) << static_cast<int>(ink);
  }
}

TEST(PictureOut, APdfIsOnePage) {
  const QByteArray text = Made("pdf");
  EXPECT_TRUE(text.startsWith("%PDF-"));
  EXPECT_TRUE(text.contains("/Count 1"));
  EXPECT_TRUE(text.trimmed().endsWith("%%EOF"));
  EXPECT_GT(text.size(), 5000);
}

TEST(PictureOut, OtherEndingsGiveNothing) {
  EXPECT_TRUE(Made("txt").isEmpty());
  EXPECT_TRUE(Made({}).isEmpty());
}

TEST(PictureOut, TheClipboardHoldsThePicture) {
  CopyPicture(Sample());
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), QSize(1800, 1120));
}

TEST(Icons, EveryIconIsPaintedWithinItsBox) {
  EXPECT_EQ(IconNames().size(), 36);
  for (const QString& name : IconNames()) {
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    PaintIcon(painter, QRectF(0, 0, 48, 48), name, Qt::black);
    painter.end();
    int inked = 0;
    int atEdge = 0;
    for (int y = 0; y < 48; ++y) {
      for (int x = 0; x < 48; ++x) {
        const bool isInked = qAlpha(image.pixel(x, y)) > 128;
        inked += isInked ? 1 : 0;
        atEdge += isInked && (x == 0 || y == 0 || x == 47 || y == 47) ? 1 : 0;
      }
    }
    EXPECT_GT(inked, 30) << name.toStdString();
    EXPECT_EQ(atEdge, 0) << name.toStdString();
    EXPECT_FALSE(AnalyserIcon(name).pixmap(16).isNull());
  }
  EXPECT_TRUE(AnalyserIcon(QStringLiteral("no such icon")).isNull());
}

TEST(Icons, PathsAreReadAsWritten) {
  const auto parts = PathParts(u"M3 8V6.5A2.5 2.5 0 0 1 5.5 4H13; o 8 8 2 fill");
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_EQ(parts[0].path.currentPosition(), QPointF(13, 4));
  const QRectF bounds = parts[0].path.boundingRect();
  EXPECT_NEAR(bounds.left(), 3, 0.01);
  EXPECT_NEAR(bounds.top(), 4, 0.01);
  EXPECT_NEAR(bounds.bottom(), 8, 0.01);
  EXPECT_TRUE(parts[1].isFilled);
  EXPECT_EQ(parts[1].path.boundingRect(), QRectF(6, 6, 4, 4));
  EXPECT_TRUE(PathParts(u"?!; ").size() <= 1);
}

}  // namespace
}  // namespace kestrel
