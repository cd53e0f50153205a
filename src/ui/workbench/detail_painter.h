// Painting the plot of one band and axis.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>

#include "ui/workbench/detail_layout.h"

namespace kestrel {

struct DetailPage {
  const DetailScene& scene;
  const DetailLayout& layout;
  const Look& look;
  const LookFonts& fonts;
};

// `chosen` is the threshold that keys move, where the plot has the focus.
void PaintDetail(QPainter& painter, const DetailPage& page, std::optional<AlarmLevel> chosen);

// A diamond about a point, as known bad records are marked.
void PaintDiamond(QPainter& painter, QPointF middle, double half, const QColor& colour,
                  const QColor& ground);

}  // namespace kestrel
