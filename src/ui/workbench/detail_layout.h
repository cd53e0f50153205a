// Where the parts of the plot of one band and axis lie.
// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QSizeF>
#include <array>
#include <vector>

#include "chart/axis_ticks.h"
#include "ui/chart/look.h"
#include "ui/workbench/detail_scene.h"

namespace kestrel {

struct DetailLayout {
  QRectF titleLine;  // "Records" and the legend
  QRectF flags;      // lane of the thresholds' flags
  QRectF records;    // canvas of the distribution
  QRectF shareLine;  // "Share" and its legend
  QRectF shares;     // canvas of the curves
  QRectF ticks;
  QRectF axisTitle;
  AxisMap across;
  AxisMap counts;
  AxisMap parts;  // 0 to 1
  std::vector<AxisTick> acrossTicks;
  std::vector<AxisTick> countTicks;
  std::array<QRectF, 2> flagPlaces;  // by AlarmLevel; empty where there is none or it is not seen
};

[[nodiscard]] DetailLayout LaidOut(const DetailScene& scene, const LookFonts& fonts, QSizeF size);

}  // namespace kestrel
