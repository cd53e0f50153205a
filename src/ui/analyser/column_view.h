// Level against time beside the waterfall: one column of the map, its times those of the map.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <optional>
#include <vector>

#include "chart/axis_map.h"
#include "display/row_study.h"
#include "ui/chart/look.h"
#include "ui/waterfall/waterfall_view.h"

namespace kestrel {

// What is drawn: a bin of the map's rows.
struct MapColumn {
  std::size_t bin = 0;
  QString title = {};  // "Z at 8,221 Hz, g peak"
  QString hint = {};   // instead of the level: no cursor, offset
  AxisKind kind = AxisKind::Linear;
  PlotInk ink = PlotInk::Z;
  study::ThresholdsAt thresholds = {};
  std::optional<double> time = {};  // the row that is looked at, seconds since 1970
};

// Lies beside the map at the same height: rows stand at the map's own places. Where records are
// missing the line breaks.
class ColumnView : public QWidget {
 public:
  explicit ColumnView(const WaterfallView& map, QWidget* parent = nullptr);

  void Show(MapColumn column, std::vector<WaterfallGap> gaps);
  [[nodiscard]] const MapColumn& Column() const { return column_; }
  [[nodiscard]] const PlotRange& Range() const { return range_; }
  // Pieces of the line in the widget's pixels, each without a break.
  [[nodiscard]] std::vector<std::vector<QPointF>> Lines() const;

  [[nodiscard]] QSize sizeHint() const override { return {190, 400}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {120, 80}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QRectF Canvas() const;
  [[nodiscard]] AxisMap Levels() const;
  [[nodiscard]] bool IsBreak(std::size_t row) const;
  void PaintGround(QPainter& painter, const Look& look, const LookFonts& fonts) const;
  void PaintThresholds(QPainter& painter, const Look& look) const;
  void PaintLevel(QPainter& painter, const Look& look) const;
  void PaintTime(QPainter& painter, const Look& look) const;

  const WaterfallView& map_;
  MapColumn column_;
  std::vector<WaterfallGap> gaps_;
  PlotRange range_;
};

}  // namespace kestrel
