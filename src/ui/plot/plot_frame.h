// The picture box with its axes and their labels.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLabel>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QWidget>
#include <vector>

#include "ui/plot/edge_labels.h"
#include "ui/plot/picture_box.h"

namespace kestrel {

// The picture box with its axes: labels at the ends and in the middle, lighter numbers at the other
// grid lines where there is room, and over the picture the labels of the alarm band edges.
class PlotFrame : public QWidget {
  Q_OBJECT

 public:
  // A painted tick number.
  struct Number {
    double value;
    QString text;
    QRect place;
  };

  explicit PlotFrame(QWidget* parent = nullptr);

  [[nodiscard]] EdgeLabels& Edges() { return edges_; }

  [[nodiscard]] const std::vector<Number>& XNumbers() const { return xNumbers_; }
  [[nodiscard]] const std::vector<Number>& YNumbers() const { return yNumbers_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

  PictureBox* pic1;
  QLabel* lblYmax;
  QLabel* LbLYmid;
  QLabel* lblYmin;
  QLabel* lblXmin;
  QLabel* lblXmax;
  QLabel* Label5;

 protected:
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* AddLabel(const char* name, const QString& text);

  void Relayout();
  void PlaceBox();
  void PlaceLabels();
  void PlaceNumbers();
  void PaintTickMarks(QPainter& painter, const QColor& colour) const;
  [[nodiscard]] int LeftStrip() const;
  [[nodiscard]] QMargins Strips() const;
  [[nodiscard]] QPoint GridPoint(double x, double y) const;

  EdgeLabels edges_;
  std::vector<Number> xNumbers_;
  std::vector<Number> yNumbers_;
};

}  // namespace kestrel
