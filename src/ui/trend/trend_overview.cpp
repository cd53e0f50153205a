// Painting the strip and moving the part that is shown.
// SPDX-License-Identifier: MIT
#include "ui/trend/trend_overview.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "chart/spread.h"
#include "ui/chart/ground_painter.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {
namespace {

constexpr double kEdge = 12;
constexpr double kRightEdge = 28;
constexpr double kGrip = 5;  // half the width of a handle, and how near is on it
constexpr double kLeastPart = 0.002;
constexpr double kKeyPart = 0.1;
constexpr double kTicksApart = 80;

}  // namespace

TrendOverview::TrendOverview() {
  setObjectName("trendOverview");
  setAccessibleName(tr("Whole archive, and the part that is shown"));
  setToolTip(
      tr("The whole archive. Pull the part that is shown or its ends; arrow keys move it, Shift "
         "with them changes its length"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

void TrendOverview::SetTrace(SceneTrace trace, std::vector<PlotGap> gaps,
                             const PlotAcross& across) {
  trace_ = std::move(trace);
  gaps_ = std::move(gaps);
  across_ = across;
  double least = std::numeric_limits<double>::infinity();
  double largest = -least;
  for (const double value : trace_.y) {
    least = std::fmin(least, value);
    largest = std::fmax(largest, value);
  }
  range_ = least <= largest ? RangeFor(least, largest, AxisKind::Decibel) : PlotRange{0, 1};
  update();
}

void TrendOverview::SetShown(const PlotRange& shown) {
  if (shown == shown_) return;
  shown_ = shown;
  setAccessibleDescription(
      tr("%1 % of it are shown")
          .arg(100 * shown.Span() / std::max(across_.whole.Span(), 1e-9), 0, 'f', 0));
  update();
}

QRectF TrendOverview::Canvas() const {
  const double below = std::ceil(QFontMetricsF(LookFonts(font()).small).height()) + 8;
  return {kEdge, 4, std::max(16.0, width() - kEdge - kRightEdge),
          std::max(16.0, height() - below - 4)};
}

AxisMap TrendOverview::Across() const {
  return {across_.whole, AxisKind::Linear, Canvas().left(), Canvas().right()};
}

void TrendOverview::PaintTrace(QPainter& painter) const {
  const Look look = Look::Of(palette());
  const QRectF canvas = Canvas();
  const AxisMap across = Across();
  const AxisMap up(range_, AxisKind::Linear, canvas.bottom() - 2, canvas.top() + 2);
  for (const PlotGap& gap : gaps_) {
    const double left = across.ToPixel(gap.from);
    PaintHatch(
        painter, look,
        QRectF(left, canvas.top(), std::max(1.0, across.ToPixel(gap.to) - left), canvas.height()));
  }
  const Spread spread = SpreadInColumns(trace_.x, trace_.y, across, up);
  QColor ink = look.Ink(trace_.ink);
  ink.setAlphaF(0.3F);
  for (const ColumnArea& area : spread.area) {
    painter.fillRect(QRectF(area.x, area.upper, 1, std::max(1.0, area.lower - area.upper)), ink);
  }
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look.Ink(trace_.ink), 1));
  for (const PlotLine& line : spread.lines) {
    QPolygonF polygon;
    for (const PlotPoint& point : line) polygon << QPointF(point.x, point.y);
    polygon.size() == 1 ? painter.drawPoint(polygon[0]) : painter.drawPolyline(polygon);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
}

void TrendOverview::PaintShown(QPainter& painter) const {
  const Look look = Look::Of(palette());
  const QRectF canvas = Canvas();
  const double left = Across().ToPixel(shown_.low);
  const double right = Across().ToPixel(shown_.high);
  QColor shade = look.accent;
  shade.setAlphaF(0.08F);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(look.accent, hasFocus() ? 2.5 : 1.5));
  painter.setBrush(shade);
  painter.drawRect(QRectF(QPointF(left, canvas.top()), QPointF(right, canvas.bottom())));
  painter.setPen(Qt::NoPen);
  painter.setBrush(look.accent);
  for (const double x : {left, right}) {
    painter.drawRoundedRect(QRectF(x - 3, canvas.center().y() - 8, 6, 16), 2, 2);
  }
}

void TrendOverview::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  QPainter painter(this);
  painter.fillRect(rect(), look.panel);
  const QRectF canvas = Canvas();
  painter.fillRect(canvas, look.canvas);
  if (trace_.x.empty()) return;
  PaintTrace(painter);
  FillRow(painter, devicePixelRatioF(), canvas.bottom(), canvas.left(), canvas.right(), look.axis);
  painter.setPen(look.muted);
  if (across_.calendar) {
    for (const AxisTick& tick :
         TimeTicks(across_.whole, *across_.calendar, canvas.width(), kTicksApart)) {
      const double x = Across().ToPixel(tick.value);
      FillColumn(painter, devicePixelRatioF(), x, canvas.bottom(), canvas.bottom() + 4, look.axis);
      painter.setPen(look.muted);
      DrawTabular(painter, fonts.small,
                  QRectF(x - 40, canvas.bottom() + 4, 80, height() - canvas.bottom() - 4),
                  Qt::AlignHCenter, tick.label);
    }
  }
  PaintShown(painter);
}

TrendOverview::Grip TrendOverview::GripAt(double x) const {
  const double left = Across().ToPixel(shown_.low);
  const double right = Across().ToPixel(shown_.high);
  if (std::abs(x - right) <= kGrip) return Grip::High;
  if (std::abs(x - left) <= kGrip) return Grip::Low;
  return x > left && x < right ? Grip::Whole : Grip::None;
}

// From where the pull began, so that nothing adds up.
PlotRange TrendOverview::Pulled(double x) const {
  const double moved = Across().FromPixel(x) - pressed_;
  const double least = across_.whole.Span() * kLeastPart;
  PlotRange pulled = before_;
  if (grip_ == Grip::Low) pulled.low = std::min(pulled.low + moved, pulled.high - least);
  if (grip_ == Grip::High) pulled.high = std::max(pulled.high + moved, pulled.low + least);
  if (grip_ == Grip::Whole) pulled = {pulled.low + moved, pulled.high + moved};
  return Within(pulled, AxisKind::Linear, across_.whole);
}

void TrendOverview::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || trace_.x.empty()) return;
  const double x = event->position().x();
  grip_ = GripAt(x);
  before_ = shown_;
  pressed_ = Across().FromPixel(x);
  if (grip_ != Grip::None) return;
  // Beside the part: it comes there.
  const double half = shown_.Span() / 2;
  before_ = Within({pressed_ - half, pressed_ + half}, AxisKind::Linear, across_.whole);
  grip_ = Grip::Whole;
  emit Wanted(before_, false);
}

void TrendOverview::mouseMoveEvent(QMouseEvent* event) {
  const double x = event->position().x();
  if (grip_ != Grip::None) {
    emit Wanted(Pulled(x), false);
    return;
  }
  const Grip under = GripAt(x);
  setCursor(under == Grip::Low || under == Grip::High ? Qt::SizeHorCursor
            : under == Grip::Whole                    ? Qt::OpenHandCursor
                                                      : Qt::ArrowCursor);
}

void TrendOverview::mouseReleaseEvent(QMouseEvent* event) {
  if (grip_ == Grip::None || event->button() != Qt::LeftButton) return;
  const PlotRange wanted = Pulled(event->position().x());
  grip_ = Grip::None;
  emit Wanted(wanted, true);
}

void TrendOverview::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
  grip_ = Grip::None;
  emit Wanted(across_.whole, true);
}

void TrendOverview::keyPressEvent(QKeyEvent* event) {
  const bool isLeft = event->key() == Qt::Key_Left;
  if (trace_.x.empty() || (!isLeft && event->key() != Qt::Key_Right) ||
      event->modifiers().testFlag(Qt::AltModifier)) {
    QWidget::keyPressEvent(event);
    return;
  }
  const double part = isLeft ? -kKeyPart : kKeyPart;
  PlotRange wanted = Panned(shown_, AxisKind::Linear, part);
  if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    const double least = across_.whole.Span() * kLeastPart;
    wanted = {shown_.low, std::max(shown_.low + least, shown_.high + shown_.Span() * part)};
  }
  emit Wanted(Within(wanted, AxisKind::Linear, across_.whole), true);
}

}  // namespace kestrel
