// What lies around and over a waterfall's map: axes, colour scale, gaps, cursors.
// SPDX-License-Identifier: MIT
#pragma once

#include <QPainter>
#include <optional>
#include <vector>

#include "ui/waterfall/waterfall_view.h"

namespace kestrel {

struct WaterfallPage {
  const PlotAcross& axis;
  const PlotRange& shown;
  const QRectF& canvas;
  const AxisMap& across;
  const Look& look;
  const LookFonts& fonts;
  double top = 0;   // time at the upper edge
  double span = 1;  // seconds to the lower edge
  double ratio = 1;

  [[nodiscard]] double YOf(double time) const {
    return canvas.top() + (top - time) / span * canvas.height();
  }
};

// Its edges lie on device pixels.
[[nodiscard]] QRectF WaterfallCanvas(QSizeF size, const LookFonts& fonts, double ratio);

// Named ones, and the time before the first row.
void PaintWaterfallGaps(QPainter& painter, const WaterfallPage& page, const WaterfallRows& rows,
                        const std::vector<WaterfallGap>& gaps);
void PaintWaterfallAxes(QPainter& painter, const WaterfallPage& page);
void PaintColourScale(QPainter& painter, const WaterfallPage& page, const WaterfallScale& scale,
                      const ColourMap& map, const QString& title);
void PaintWaterfallCursor(QPainter& painter, const WaterfallPage& page, const SceneCursor& cursor,
                          std::optional<double> time);

// Local times at round steps, at most so many, as seconds since 1970.
[[nodiscard]] std::vector<double> TimeTicks(double from, double to, int most);

}  // namespace kestrel
