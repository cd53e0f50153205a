// The whole of a trend in a strip, with the part of it that the plot shows.
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <vector>

#include "chart/plot_scene.h"

namespace kestrel {

// The part is moved and its ends are pulled with the mouse; the arrow keys move it, with Shift its
// length changes.
class TrendOverview : public QWidget {
  Q_OBJECT

 public:
  TrendOverview();

  // All along one axis, in seconds.
  void SetTrace(SceneTrace trace, std::vector<PlotGap> gaps, const PlotAcross& across);
  void SetShown(const PlotRange& shown);
  [[nodiscard]] const PlotRange& Shown() const { return shown_; }

  [[nodiscard]] QSize sizeHint() const override { return {400, 76}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {120, 60}; }

 signals:
  void Wanted(const kestrel::PlotRange& shown, bool isSettled);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Grip { None, Low, High, Whole };

  [[nodiscard]] QRectF Canvas() const;
  [[nodiscard]] AxisMap Across() const;
  [[nodiscard]] Grip GripAt(double x) const;
  [[nodiscard]] PlotRange Pulled(double x) const;
  void PaintTrace(QPainter& painter) const;
  void PaintShown(QPainter& painter) const;

  SceneTrace trace_;
  std::vector<PlotGap> gaps_;
  PlotAcross across_;
  PlotRange range_;  // of the values
  PlotRange shown_;
  Grip grip_ = Grip::None;
  double pressed_ = 0;  // where, along the axis
  PlotRange before_;    // what was shown then
};

}  // namespace kestrel
