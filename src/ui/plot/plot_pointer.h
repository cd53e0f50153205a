// The pointer over the plot, and the keys of its cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <QEvent>
#include <QObject>

#include "app/handler_edge.h"
#include "plot/band_overlay.h"
#include "plot/cursor.h"
#include "ui/plot/plot_panel.h"

namespace kestrel {

// What the pointer does over the plot: reads it out, drags the lines of the alarm bands; the
// cursor's steps and places too.
class PlotPointer : public QObject {
 public:
  PlotPointer(PlotPanel& panel, BandOverlay& overlay, PlotCursor& cursor, HandlerEdge& edge);

  // Whether a key event of any window is the Escape that ends a drag, or its release: it must reach
  // nobody else.
  bool TakesKey(const QEvent& event);

 private:
  void pic1_MouseMove(const PointerPlace& pointer);
  void pic1_MouseUp();

  PlotPanel& panel_;
  BandOverlay& overlay_;
  PlotCursor& cursor_;
  HandlerEdge& edge_;
  bool escapeDown_ = false;  // the Escape that ended a drag
};

}  // namespace kestrel
