// Moves of the pointer over a plot, counted and timed until painted.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QWidget>

#include "program.h"
#include "ui/plot/picture_box.h"

namespace kestrel {

inline constexpr QSize kPlot{1600, 900};

// Counts how often a widget is painted.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
  [[nodiscard]] int Paints() const { return paints_; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints_;
    return false;
  }

 private:
  int paints_ = 0;
};

// What lies over the plot.
template <typename Layer>
Layer& LayerOf(PictureBox& plot) {
  for (QObject* child : plot.children()) {
    if (auto* layer = dynamic_cast<Layer*>(child)) return *layer;
  }
  qFatal("the plot lacks a layer");
}

inline void EnlargePlot(frm1& window, PictureBox& plot) {
  for (int i = 0; i < 2; ++i) {
    window.resize(window.size() + kPlot - plot.size());
    QApplication::processEvents();
  }
}

inline void SendMouse(PictureBox& plot, QEvent::Type type, QPointF at, Qt::MouseButton button,
                      bool isHeld) {
  QMouseEvent event(type, at, plot.mapToGlobal(at), button, isHeld ? Qt::LeftButton : Qt::NoButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(&plot, &event);
}

}  // namespace kestrel
