// The pointer's moves, presses and the Escape that ends a drag; the cursor's steps.
// SPDX-License-Identifier: MIT
#include "ui/plot/plot_pointer.h"

#include <QKeyEvent>
#include <algorithm>

#include "record/capture_data.h"

namespace kestrel {

// Moves and steps read nothing from the sensor and may come at any time.
PlotPointer::PlotPointer(PlotPanel& panel, BandOverlay& overlay, PlotCursor& cursor,
                         HandlerEdge& edge)
    : panel_(panel), overlay_(overlay), cursor_(cursor), edge_(edge) {
  connect(&panel, &PlotPanel::PointerMoved, this,
          [this](double x, double y, bool isHeld, bool isShift) {
            pic1_MouseMove({.x = x, .y = y, .held = isHeld, .shift = isShift});
          });
  connect(&panel, &PlotPanel::PointerPressed, this, [this](double x, double y, bool isShift) {
    overlay_.pic1_MouseDown({.x = x, .y = y, .held = true, .shift = isShift});
  });
  connect(&panel, &PlotPanel::PointerReleased, this, [this] { pic1_MouseUp(); });
  connect(&panel, &PlotPanel::PointerLeft, this, [this] { overlay_.PointerLeft(); });
  connect(&panel, &PlotPanel::PointerLost, this, [this] { overlay_.EndDrag(); });
  connect(&panel, &PlotPanel::CursorStepped, this, [this](CursorStep step) { cursor_.Step(step); });
  connect(&panel, &PlotPanel::CursorPlaced, this, [this](int index) { cursor_.GoTo(index); });
}

void PlotPointer::pic1_MouseMove(const PointerPlace& pointer) {
  overlay_.pic1_MouseMove(pointer);
  // A held pointer may leave the box; the record ends there.
  const double x =
      pointer.held ? std::clamp(pointer.x, 0.0, static_cast<double>(Buff.width)) : pointer.x;
  cursor_.pic1_MouseMove(x, pointer.y);
  if (pointer.held) {
    panel_.HideHoverValues();
  } else {
    panel_.ShowHoverValues(pointer.x, pointer.y);
  }
}

// What the edge refuses ends like an interrupted drag.
void PlotPointer::pic1_MouseUp() {
  if (!overlay_.Drag().Dragging()) return;
  edge_.Run("pic1_MouseUp", [this] { overlay_.pic1_MouseUp(); });
  overlay_.EndDrag();
}

bool PlotPointer::TakesKey(const QEvent& event) {
  if (event.type() != QEvent::KeyPress && event.type() != QEvent::KeyRelease) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  if (key.key() != Qt::Key_Escape) return false;
  if (event.type() == QEvent::KeyPress) {
    if (!key.isAutoRepeat()) escapeDown_ = overlay_.Drag().Dragging();
    overlay_.EndDrag();
    return escapeDown_;
  }
  const bool taken = escapeDown_;
  if (!key.isAutoRepeat()) escapeDown_ = false;
  return taken;
}

}  // namespace kestrel
