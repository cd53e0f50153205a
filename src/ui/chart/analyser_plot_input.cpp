// The plot of the analyser: what the mouse does, and what the focus shows.
// SPDX-License-Identifier: MIT
#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/chart/analyser_plot.h"

namespace kestrel {
namespace {

constexpr double kWheelFactor = 1.25;  // a notch
constexpr double kNotch = 120;         // of a wheel
constexpr double kNear = 4;            // pixels from a cursor's line
constexpr double kSnap = 8;            // pixels from a peak
constexpr double kLeastBand = 6;       // pixels of a rubber band that means something

}  // namespace

int AnalyserPlot::PaneOrFirst(QPointF place) const {
  return std::max(0, layout_.PaneAt(place));
}

AnalyserPlot::Drag AnalyserPlot::DragAt(QPointF place, int* member) const {
  const auto flags = FlagPlaces(Page(), overlay_.cursor);
  const bool isOnCanvas = layout_.Canvases().contains(place);
  for (std::size_t i = 0; i < flags.size(); ++i) {
    const double x = layout_.panes.front().across.ToPixel(overlay_.cursor.members[i].x);
    const bool isOnLine = isOnCanvas && std::abs(place.x() - x) <= kNear;
    if (!isOnLine && !flags[i].contains(place)) continue;
    *member = static_cast<int>(i);
    return Drag::Member;
  }
  if (layout_.acrossAxis.contains(place)) return Drag::PanAcross;
  if (layout_.IsOnUpAxis(place)) return Drag::PanUp;
  return isOnCanvas ? Drag::Pan : Drag::None;
}

void AnalyserPlot::mousePressEvent(QMouseEvent* event) {
  const bool isLeft = event->button() == Qt::LeftButton;
  const bool isRight = event->button() == Qt::RightButton;
  if ((!isLeft && !isRight) || press_.drag != Drag::None || layout_.panes.empty()) return;
  press_ = {.drag = Drag::Click,
            .wished = Drag::None,
            .place = event->position(),
            .button = event->button(),
            .pane = layout_.PaneAt(event->position()),
            .ranges = Ranges()};
  const bool isBand = isRight || event->modifiers().testFlag(Qt::ControlModifier);
  press_.wished =
      isBand ? (press_.pane >= 0 ? Drag::Band : Drag::None) : DragAt(press_.place, &press_.member);
}

void AnalyserPlot::mouseMoveEvent(QMouseEvent* event) {
  const QPointF place = event->position();
  const bool isFar = (place - press_.place).manhattanLength() >=
                     QGuiApplication::styleHints()->startDragDistance() / 2.0;
  if (press_.drag == Drag::Click && isFar) press_.drag = press_.wished;
  switch (press_.drag) {
    case Drag::Pan:
    case Drag::PanAcross:
    case Drag::PanUp:
      Pan(place);
      return;
    case Drag::Member:
      emit MemberDragged(press_.member, layout_.panes.front().across.FromPixel(place.x()));
      return;
    case Drag::Band:
      Refresh([&] {
        overlay_.band = QRectF(press_.place, place).normalized().intersected(layout_.Canvases());
      });
      return;
    case Drag::Click:
    case Drag::None:
      SetHover(place);
  }
}

// From where the drag began, so that nothing adds up.
void AnalyserPlot::Pan(QPointF place) {
  const QPointF moved = place - press_.place;
  const bool isAcross = press_.drag != Drag::PanUp;
  if (isAcross) {
    const double part = -moved.x() / layout_.panes.front().canvas.width();
    navigator_.PutAcross(Panned(press_.ranges.across, scene_.across.kind, part));
  }
  const auto pane = static_cast<std::size_t>(std::max(press_.pane, 0));
  const bool isKept = pane < layout_.panes.size() && pane < press_.ranges.up.size();
  if (press_.drag != Drag::PanAcross && isKept && std::abs(moved.y()) > 0) {
    const double part = moved.y() / layout_.panes[pane].canvas.height();
    navigator_.PutUp(pane, Panned(press_.ranges.up[pane], scene_.panes[pane].up, part));
  }
  Changed(false);
}

void AnalyserPlot::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != press_.button) return;
  const Press press = std::exchange(press_, {});
  if (press.drag == Drag::Band) {
    press_.pane = press.pane;
    ZoomToBand();
    press_ = {};
  } else if (press.drag == Drag::Click && event->button() == Qt::RightButton) {
    const double x = layout_.panes.front().across.FromPixel(event->position().x());
    emit MenuAsked(event->globalPosition().toPoint(), NearestSample(x, press.pane).value_or(x),
                   std::max(press.pane, 0));
  } else if (press.drag == Drag::Click && press.wished == Drag::Pan) {
    const double x = layout_.panes.front().across.FromPixel(event->position().x());
    emit CursorPlaced(NearestSample(x, press.pane).value_or(x), press.pane);
  } else if (press.drag == Drag::Click && press.wished == Drag::Member) {
    emit MemberClicked(press.member);
  } else if (press.drag != Drag::Click && press.drag != Drag::None) {
    Changed(true);
  }
}

void AnalyserPlot::ZoomToBand() {
  const QRectF band = overlay_.band.value_or(QRectF());
  Refresh([this] { overlay_.band.reset(); });
  if (band.width() < kLeastBand && band.height() < kLeastBand) return;
  const auto index = static_cast<std::size_t>(std::max(press_.pane, 0));
  if (index >= layout_.panes.size()) return;
  const PaneLayout pane = layout_.panes[index];
  if (band.width() >= kLeastBand) {
    navigator_.PutAcross({pane.across.FromPixel(band.left()), pane.across.FromPixel(band.right())});
  }
  if (band.height() >= kLeastBand) {
    navigator_.PutUp(index, {pane.up.FromPixel(band.bottom()), pane.up.FromPixel(band.top())});
  }
  Changed(true);
}

// Whether there is a peak or a flag to snap to.
bool AnalyserPlot::SnapAt(QPointF place) {
  const auto flags = FlagPlaces(Page(), overlay_.cursor);
  for (std::size_t i = 0; i < flags.size(); ++i) {
    if (!flags[i].contains(place)) continue;
    emit SnapAsked(overlay_.cursor.members[i].x, overlay_.cursor.members[i].pane);
    return true;
  }
  const int index = layout_.PaneAt(place);
  if (index < 0) return false;
  const PaneLayout& pane = layout_.panes[static_cast<std::size_t>(index)];
  for (const PlotPeak& peak : scene_.panes[static_cast<std::size_t>(index)].peaks) {
    const QPointF at(pane.across.ToPixel(peak.x), pane.up.ToPixel(peak.y));
    if (std::hypot(at.x() - place.x(), at.y() - place.y()) > kSnap) continue;
    emit SnapAsked(peak.x, index);
    return true;
  }
  return false;
}

void AnalyserPlot::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  if (!SnapAt(event->position())) ShowAll();
}

void AnalyserPlot::wheelEvent(QWheelEvent* event) {
  event->accept();
  if (layout_.panes.empty()) return;
  const QPointF place = event->position();
  const int pane = PaneOrFirst(place);
  const auto index = static_cast<std::size_t>(pane);
  // Some platforms turn the wheel sideways while Shift is held.
  const bool isShift = event->modifiers().testFlag(Qt::ShiftModifier);
  const QPoint turn = event->angleDelta();
  const double notches = (turn.y() != 0 || !isShift ? turn.y() : turn.x()) / kNotch;
  const AxisMap& across = layout_.panes[index].across;
  if (turn.x() != 0 && !isShift) {  // a touch pad
    const double part = -turn.x() / kNotch * 0.1;
    navigator_.PutAcross(Panned(Ranges().across, scene_.across.kind, part));
  }
  const double factor = std::pow(kWheelFactor, notches);
  if (notches != 0 && (isShift || layout_.IsOnUpAxis(place))) {
    navigator_.ZoomUp(index, layout_.panes[index].up.FromPixel(place.y()), factor);
  } else if (notches != 0) {
    navigator_.ZoomAcross(across.FromPixel(place.x()), factor);
  }
  Changed(false);
}

void AnalyserPlot::SetHover(QPointF place) {
  int member = -1;
  const Drag drag = DragAt(place, &member);
  setCursor(drag == Drag::Member      ? Qt::SplitHCursor
            : drag == Drag::PanAcross ? Qt::SizeHorCursor
            : drag == Drag::PanUp     ? Qt::SizeVerCursor
                                      : Qt::ArrowCursor);
  Point(place);
}

void AnalyserPlot::Point(QPointF place) {
  const int index = layout_.PaneAt(place);
  if (index < 0 || layout_.IsOnUpAxis(place)) {
    ForgetPointer();
    return;
  }
  const PaneLayout& pane = layout_.panes[static_cast<std::size_t>(index)];
  const auto x = NearestSample(pane.across.FromPixel(place.x()), index);
  if (!x || !pane.across.Range().Holds(*x)) {
    ForgetPointer();
    return;
  }
  Refresh([&] {
    overlay_.pointer = x;
    overlay_.pointerPlace = place;
    overlay_.pointerReadOut = ReadOutAt(*x, index);
  });
  emit PointerMoved(*x, index);
}

void AnalyserPlot::ForgetPointer() {
  if (!overlay_.pointer) return;
  Refresh([this] { overlay_.pointer.reset(); });
  emit PointerLeft();
}

void AnalyserPlot::leaveEvent(QEvent* event) {
  ForgetPointer();
  QWidget::leaveEvent(event);
}

// The right button asks when it is released without a drag; the key asks for the cursor's place.
void AnalyserPlot::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() != QContextMenuEvent::Keyboard || layout_.panes.empty()) return;
  const PaneLayout& pane = layout_.panes.front();
  const auto& members = overlay_.cursor.members;
  const QPointF middle = pane.canvas.center();
  const double x = members.empty() ? pane.across.FromPixel(middle.x()) : members.front().x;
  const double left = std::clamp(pane.across.ToPixel(x), pane.canvas.left(), pane.canvas.right());
  emit MenuAsked(mapToGlobal(QPointF(left, middle.y()).toPoint()), NearestSample(x, 0).value_or(x),
                 0);
}

void AnalyserPlot::focusInEvent(QFocusEvent* event) {
  const bool isByKey = event->reason() == Qt::TabFocusReason ||
                       event->reason() == Qt::BacktabFocusReason ||
                       event->reason() == Qt::ShortcutFocusReason;
  overlay_.hasFocus = isByKey;
  update();
  QWidget::focusInEvent(event);
}

void AnalyserPlot::focusOutEvent(QFocusEvent* event) {
  overlay_.hasFocus = false;
  update();
  QWidget::focusOutEvent(event);
}

}  // namespace kestrel
