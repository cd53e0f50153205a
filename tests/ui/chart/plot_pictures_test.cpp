// Pictures of the plot at every scale, in light and dark, compared with approved ones.
// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFileInfo>

#include "ui/chart/analyser_plot.h"
#include "ui/chart/sample_scenes.h"
#include "ui/rendering.h"

namespace kestrel {
namespace {

struct Sight {
  const char* name;
  bool isDark;
  double ratio;
};

QImage Taken(const Sight& sight) {
  AnalyserPlot plot;
  plot.setPalette(sight.isDark ? Look::Dark().Palette() : Look::Light().Palette());
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPixelSize(12);
  plot.setFont(font);
  plot.resize(760, 520);
  const QString name = QLatin1String(sight.name);
  if (name == u"overlaid") {
    plot.SetScene(OverlaidScene());
    plot.SetCursor(HarmonicCursor());
  } else if (name == u"stacked") {
    plot.SetScene(StackedScene());
    plot.SetCursor(DeltaCursor());
  } else {
    plot.SetScene(EmptyScene());
  }
  return RenderOf(plot, sight.ratio);
}

// Small shifts of letters do not count, wrong places and colours do: means over blocks of pixels.
double Difference(const QImage& a, const QImage& b, double ratio) {
  const QSize blocks = (QSizeF(a.size()) / (8 * ratio)).toSize();
  const QImage x = a.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  const QImage y = b.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  double largest = 0;
  for (int row = 0; row < blocks.height(); ++row) {
    for (int column = 0; column < blocks.width(); ++column) {
      const QColor one = x.pixelColor(column, row);
      const QColor other = y.pixelColor(column, row);
      const double off =
          (std::abs(one.redF() - other.redF()) + std::abs(one.greenF() - other.greenF()) +
           std::abs(one.blueF() - other.blueF())) /
          3.0;
      largest = std::max(largest, off);
    }
  }
  return largest;
}

class PlotPictures : public ::testing::TestWithParam<Sight> {};

TEST_P(PlotPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  const QImage now = Taken(sight);
  const QString name = QStringLiteral("%1-%2-%3.png")
                           .arg(QLatin1String(sight.name), sight.isDark ? "dark" : "light")
                           .arg(sight.ratio);
  // KESTREL_APPROVE names a folder that the pictures are written to, to be looked at and approved.
  const QString folder = qEnvironmentVariable("KESTREL_APPROVE");
  if (!folder.isEmpty()) {
    ASSERT_TRUE(now.save(QDir(folder).filePath(name)));
    GTEST_SKIP() << "written to be looked at";
  }
  const QImage approved(QDir(QStringLiteral(KESTREL_APPROVED)).filePath(name));
  ASSERT_FALSE(approved.isNull()) << name.toStdString();
  ASSERT_EQ(now.size(), approved.size());
  EXPECT_LT(Difference(now, approved, sight.ratio), 0.06) << name.toStdString();
}

INSTANTIATE_TEST_SUITE_P(All, PlotPictures,
                         ::testing::Values(Sight{"overlaid", false, 1}, Sight{"overlaid", true, 1},
                                           Sight{"overlaid", false, 1.25},
                                           Sight{"overlaid", false, 2}, Sight{"overlaid", true, 3},
                                           Sight{"stacked", false, 1}, Sight{"stacked", true, 1},
                                           Sight{"stacked", true, 1.25}, Sight{"stacked", true, 2},
                                           Sight{"stacked", false, 3}, Sight{"empty", false, 1},
                                           Sight{"empty", true, 2}));

TEST(PlotPictures, AWrongPictureIsTold) {
  const QImage right = Taken({"overlaid", false, 1});
  QImage moved(right.size(), right.format());
  moved.fill(Qt::white);
  QPainter painter(&moved);
  painter.drawImage(QPoint(12, 0), right);
  painter.end();
  EXPECT_GT(Difference(right, moved, 1), 0.1);
  EXPECT_GT(Difference(right, Taken({"overlaid", true, 1}), 1), 0.1);
}

}  // namespace
}  // namespace kestrel
