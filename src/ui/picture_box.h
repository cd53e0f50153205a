// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPixmap>
#include <QPointF>
#include <QString>
#include <QWidget>
#include <cstddef>
#include <vector>

namespace kestrel {

// A drawable area with its own coordinate scale. What is drawn is kept as a display list and as a
// picture of it, so that whatever lies on top can be repainted without drawing the traces again.
class PictureBox : public QWidget {
  Q_OBJECT

 public:
  explicit PictureBox(QWidget* parent = nullptr);

  // Coordinates of the top left and the bottom right corner. What is drawn already moves along.
  void Scale(double left, double top, double right, double bottom);
  // Always positive, whichever end is up; 0 for a scale without height.
  [[nodiscard]] double ScaleHeight() const;

  void Cls();
  // A straight line in colour 0xBBGGRR. A line that starts where the last one of its colour ended
  // continues it.
  void Line(double x1, double y1, double x2, double y2, double colour);

  // Shown in the middle while nothing is drawn.
  void SetHint(const QString& text);

  // Between the scale's coordinates and the widget's. A scale without width or height maps to the
  // left or top edge.
  [[nodiscard]] QPointF ToPixels(QPointF point) const;
  [[nodiscard]] QPointF FromPixels(QPointF pixel) const;

  // Where the grid lines are, in the scale's coordinates.
  [[nodiscard]] std::vector<double> XTicks() const;
  [[nodiscard]] std::vector<double> YTicks() const;
  // Their device pixels: the first ones they fill, and how many.
  [[nodiscard]] int GridColumn(double x, qreal ratio) const;
  [[nodiscard]] int GridRow(double y, qreal ratio) const;
  [[nodiscard]] static int GridThickness(qreal ratio);

  // Always light: the trace colours need it. Dimmed when the palette is dark.
  [[nodiscard]] QColor Paper() const;

  // How often the traces have been drawn.
  [[nodiscard]] int TracePaintCount() const { return tracePaintCount_; }

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  // In the scale's coordinates; with a button held down also beyond the box.
  void PointerMoved(double x, double y);
  void PointerPressed(double x, double y);
  void PointerReleased(double x, double y);
  void PointerLeft();
  void ScaleChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Trace {
    double colour;
    std::vector<QPointF> points;
    std::vector<std::size_t> starts;  // index of the first point of each polyline
  };

  void Invalidate();
  void PaintPicture(qreal ratio);
  void PaintGrid(QPainter& painter, qreal ratio) const;
  void PaintTraces(QPainter& painter, qreal ratio) const;
  void PaintHint(QPainter& painter) const;

  double left_ = 0;
  double top_ = 1;
  double right_ = 255;
  double bottom_ = 0;
  QString hint_;
  std::vector<Trace> traces_;
  QPixmap picture_;
  bool pictureValid_ = false;
  int tracePaintCount_ = 0;
};

}  // namespace kestrel
