// Pictures of the plot at every scale, in light and dark, compared with approved ones.
// SPDX-License-Identifier: MIT
#include "ui/approved_picture.h"
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

class PlotPictures : public ::testing::TestWithParam<Sight> {};

TEST_P(PlotPictures, LookAsApproved) {
  const Sight& sight = GetParam();
  const QImage now = Taken(sight);
  const QString name = QStringLiteral("%1-%2-%3.png")
                           .arg(QLatin1String(sight.name), sight.isDark ? "dark" : "light")
                           .arg(sight.ratio);
  ExpectApproved(now, name, sight.ratio, KESTREL_APPROVED);
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
  EXPECT_GT(DifferenceOf(right, moved, 1), 0.1);
  EXPECT_GT(DifferenceOf(right, Taken({"overlaid", true, 1}), 1), 0.1);
}

}  // namespace
}  // namespace kestrel
