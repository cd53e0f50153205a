// Laying out the plot of one band and axis.
// SPDX-License-Identifier: MIT
#include "ui/workbench/detail_layout.h"

#include <algorithm>
#include <cmath>

#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kInside = 8;
constexpr double kTick = 4;
constexpr double kApart = 60;    // labels of the horizontal axis
constexpr double kUpApart = 24;  // and of the vertical ones

double Height(const QFont& font) {
  return std::ceil(QFontMetricsF(font).height());
}

int MostInABar(const DetailScene& scene) {
  int most = 1;
  for (const DetailScene::Bar& bar : scene.good) most = std::max(most, bar.count);
  return most;
}

// In dB re a level the ticks are at round decibels, whatever the levels.
std::vector<AxisTick> AcrossTicks(const DetailScene& scene, double pixels) {
  if (!scene.decibelsRe) return AxisTicks(scene.across, AxisKind::Logarithmic, pixels, kApart);
  const double re = *scene.decibelsRe;
  const PlotRange range{20 * std::log10(scene.across.low / re),
                        20 * std::log10(scene.across.high / re)};
  std::vector<AxisTick> ticks = AxisTicks(range, AxisKind::Linear, pixels, kApart);
  for (AxisTick& tick : ticks) tick.value = re * std::pow(10, tick.value / 20);
  return ticks;
}

void PlaceFlags(const DetailScene& scene, const LookFonts& fonts, DetailLayout& layout) {
  for (const AlarmLevel level : kAlarmLevels) {
    const auto g = scene.proposed[Index(level)];
    if (!g || !scene.across.Holds(*g)) continue;
    const double width = TabularWidth(fonts.smallBold, scene.flags[Index(level)]) + 16;
    const double x = layout.across.ToPixel(*g);
    const double left = std::clamp(x - width / 2, layout.flags.left(),
                                   std::max(layout.flags.left(), layout.flags.right() - width));
    layout.flagPlaces[Index(level)] =
        QRectF(left, layout.flags.top(), width, layout.flags.height() - 4);
  }
  QRectF& warning = layout.flagPlaces[0];
  QRectF& fault = layout.flagPlaces[1];
  if (warning.isEmpty() || fault.isEmpty() || !warning.intersects(fault)) return;
  // Side by side, the lower threshold left.
  const bool isWarningLeft = *scene.proposed[0] <= *scene.proposed[1];
  QRectF& left = isWarningLeft ? warning : fault;
  QRectF& right = isWarningLeft ? fault : warning;
  const double middle = std::clamp(
      (left.right() + right.left()) / 2, layout.flags.left() + left.width() + 2,
      std::max(layout.flags.left() + left.width() + 2, layout.flags.right() - right.width() - 2));
  left.moveRight(middle - 2);
  right.moveLeft(middle + 2);
}

}  // namespace

DetailLayout LaidOut(const DetailScene& scene, const LookFonts& fonts, QSizeF size) {
  DetailLayout layout;
  const double line = Height(fonts.small) + 4;
  const double left = std::ceil(TabularWidth(fonts.small, QStringLiteral("100 %"))) + kInside + 10;
  const double width = std::max(40.0, size.width() - left - 2 * kInside);
  const double fixed = 5 * line + kTick + 8;
  const double canvases = std::max(60.0, size.height() - fixed - 4);
  const double upper = std::floor(canvases * 0.46);
  layout.titleLine = QRectF(kInside, 2, size.width() - 2 * kInside, line);
  layout.flags = QRectF(left, layout.titleLine.bottom(), width, line + 4);
  layout.records = QRectF(left, layout.flags.bottom(), width, upper);
  layout.shareLine = QRectF(kInside, layout.records.bottom() + 2, size.width() - 2 * kInside, line);
  layout.shares = QRectF(left, layout.shareLine.bottom() + 2, width, canvases - upper);
  layout.ticks = QRectF(left, layout.shares.bottom() + kTick, width, line);
  layout.axisTitle = QRectF(left, layout.ticks.bottom(), width, line);
  layout.across = AxisMap(scene.across, AxisKind::Logarithmic, left, left + width);
  const PlotRange counts{0, std::ceil(MostInABar(scene) * 1.2 + 0.5)};
  layout.counts = AxisMap(counts, AxisKind::Linear, layout.records.bottom(), layout.records.top());
  layout.parts = AxisMap({0, 1}, AxisKind::Linear, layout.shares.bottom(), layout.shares.top());
  layout.acrossTicks = AcrossTicks(scene, width);
  layout.countTicks = AxisTicks(counts, AxisKind::Linear, upper, kUpApart);
  std::erase_if(layout.countTicks,
                [](const AxisTick& tick) { return tick.value != std::floor(tick.value); });
  PlaceFlags(scene, fonts, layout);
  return layout;
}

}  // namespace kestrel
