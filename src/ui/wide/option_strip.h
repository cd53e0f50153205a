// Rate options along the frequency axis: what each capture holds, what is used, how they agree.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <vector>

#include "chart/axis_map.h"
#include "display/wide_view.h"
#include "ui/chart/look.h"

namespace kestrel {

class OptionStrip : public QWidget {
 public:
  OptionStrip();

  void Show(std::vector<study::OptionLane> lanes);
  // Where the plot above has its canvas, pixels, and what it shows, Hz.
  void Follow(double left, double right, const PlotRange& shown);

  [[nodiscard]] const std::vector<study::OptionLane>& Lanes() const { return lanes_; }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;

 private:
  [[nodiscard]] double RowHeight() const;
  [[nodiscard]] QRectF PlaceOf(std::size_t row, const PlotRange& hz, double part) const;
  void PaintLane(QPainter& painter, const Look& look, const LookFonts& fonts,
                 std::size_t row) const;
  void PaintChips(QPainter& painter, const Look& look, const LookFonts& fonts, std::size_t row,
                  double left) const;

  std::vector<study::OptionLane> lanes_;
  AxisMap across_{{1, study::kMostHz}, AxisKind::Logarithmic, 60, 600};
  double left_ = 60;
  double right_ = 600;
};

}  // namespace kestrel
