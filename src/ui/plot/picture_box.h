// A box to draw traces in, with a coordinate scale of its own.
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QLineF>
#include <QPixmap>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <QString>
#include <QWidget>
#include <cstddef>
#include <vector>

namespace kestrel {

// The device pixels that a rectangle in the painter's coordinates fills: whole ones at any scale.
[[nodiscard]] QRect DevicePixels(const QPainter& painter, const QRect& rectangle);

// How many device pixels stand for a line of width 1.
[[nodiscard]] int LineThickness(qreal ratio);

// A drawable area with its own coordinate scale. What is drawn is kept as a display list and as a
// picture of it, so that whatever lies on top can be repainted without drawing the traces again.
class PictureBox : public QWidget {
  Q_OBJECT

 public:
  explicit PictureBox(QWidget* parent = nullptr);

  // Coordinates of the top left and the bottom right corner. What is drawn already moves along.
  void Scale(double left, double top, double right, double bottom);
  // Always positive, whichever end comes first; 0 for a scale without height or width.
  [[nodiscard]] double ScaleHeight() const;
  [[nodiscard]] double ScaleWidth() const;

  void Cls();
  // A straight line of a trace in colour 0xBBGGRR. A trace drawn first stays below the others; it
  // has the colour of its first line.
  void Line(std::size_t trace, double x1, double y1, double x2, double y2, double colour);

  [[nodiscard]] bool IsEmpty() const { return traces_.empty(); }

  // Shown in the middle while nothing is drawn.
  void SetHint(const QString& text);

  // Between the scale's coordinates and the widget's. A scale without width or height maps to the
  // left or top edge.
  [[nodiscard]] QPointF ToPixels(QPointF point) const;
  [[nodiscard]] QPointF FromPixels(QPointF pixel) const;

  // Where the grid lines are, in the scale's coordinates.
  [[nodiscard]] std::vector<double> XTicks() const;
  [[nodiscard]] std::vector<double> YTicks() const;
  // Their first pixels in a picture that is so many pixels wide or high.
  [[nodiscard]] int GridColumn(double x, int columns, int thickness) const;
  [[nodiscard]] int GridRow(double y, int rows, int thickness) const;

  // Always light: the trace colours need it. Dimmed when the palette is dark.
  [[nodiscard]] QColor Paper() const;

  // How often the traces have been drawn.
  [[nodiscard]] int TracePaintCount() const { return tracePaintCount_; }

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  // Of the left button, in the scale's coordinates; while it is held down also beyond the box.
  void PointerMoved(double x, double y, bool isHeld, bool isShift);
  void PointerPressed(double x, double y, bool isShift);
  void PointerReleased(double x, double y);
  void PointerLeft();
  // Whatever the pointer was doing ends here: the window is no longer active, or hidden.
  void PointerLost();
  void ScaleChanged();

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Trace {
    std::size_t number;
    double colour;
    std::vector<QLineF> lines;
  };

  void Invalidate();
  void PaintPicture(QSize pixels, qreal ratio);
  void PaintGrid(QPainter& painter, int thickness) const;
  void PaintTraces(QPainter& painter, int thickness) const;
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
