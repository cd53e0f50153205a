// The waterfall's events: new rows, pointer, keys, resizing.
// SPDX-License-Identifier: MIT
#include "ui/waterfall/waterfall_view.h"

#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "ui/waterfall/waterfall_painter.h"

namespace kestrel {
namespace {

constexpr double kLongestOf = 3;  // times the last step: longer is a gap
constexpr double kWheelFactor = 1.25;
constexpr double kNotch = 120;

// A chart to assistive technology; what it shows is its description.
QAccessibleInterface* SpeakerFor(const QString& /*className*/, QObject* object) {
  auto* map = qobject_cast<WaterfallView*>(object);
  return map == nullptr ? nullptr : new QAccessibleWidget(map, QAccessible::Chart);
}

}  // namespace

WaterfallView::WaterfallView(QWidget* parent)
    : QWidget(parent),
      look_(Look::Of(palette())),
      fonts_(font()),
      map_(look_.isDark ? MapForDarkPaper() : MapForLightPaper()) {
  QAccessible::installFactory(&SpeakerFor);
  setObjectName(QStringLiteral("waterfallView"));
  setAccessibleName(QStringLiteral("Waterfall"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setFocusPolicy(Qt::StrongFocus);
}

void WaterfallView::Begin(const PlotAcross& across, std::vector<double> x) {
  axis_ = across;
  shown_ = across.whole;
  x_ = std::move(x);
  rows_ = WaterfallRows(x_.size());
  gaps_.clear();
  timeCursor_.reset();
  LayOut();
}

bool WaterfallView::AddRow(double time, const std::vector<double>& values) {
  if (!rows_.Add(time, values)) return false;
  const bool isPlain = isMapValid_ && !isFrozen_;
  if (!isFrozen_) top_ = time;
  if (isPlain) AddToMap(rows_.Count() - 1);
  if (!isFrozen_) update();
  return true;
}

void WaterfallView::AddGap(const WaterfallGap& gap) {
  gaps_.push_back(gap);
  isMapValid_ = false;
  update();
}

void WaterfallView::SetScale(const WaterfallScale& scale, const QString& title) {
  if (!IsShowable(scale.range, scale.kind)) return;
  scaleTitle_ = title;
  scale_ = scale;
  isMapValid_ = false;
  update();
}

void WaterfallView::SetAcross(const PlotRange& range) {
  if (!IsShowable(range, axis_.kind) || range == shown_) return;
  shown_ = range;
  LayOut();
}

void WaterfallView::SetSpan(double seconds) {
  constexpr double kLongest = 10.0 * 366 * 86400;
  if (!(seconds > 0)) return;
  span_ = std::clamp(seconds, 1.0, kLongest);
  isMapValid_ = false;
  update();
}

void WaterfallView::SetFrozen(bool isFrozen) {
  isFrozen_ = isFrozen;
  if (!isFrozen && rows_.Count() > 0) top_ = rows_.Time(rows_.Count() - 1);
  isMapValid_ = false;
  update();
}

void WaterfallView::SetTimeCursor(std::optional<double> time) {
  timeCursor_ = time;
  update();
}

void WaterfallView::SetCursor(SceneCursor cursor) {
  cursor_ = std::move(cursor);
  update();
}

double WaterfallView::TimeAt(double y) const {
  return top_ - (y - canvas_.top()) / canvas_.height() * span_;
}

double WaterfallView::YOf(double time) const {
  return canvas_.top() + (top_ - time) / span_ * canvas_.height();
}

void WaterfallView::LayOut() {
  canvas_ = WaterfallCanvas(size(), fonts_, devicePixelRatioF());
  across_ = AxisMap(shown_, axis_.kind, canvas_.left(), canvas_.right());
  isMapValid_ = false;
  update();
}

std::optional<WaterfallGap> WaterfallView::GapIn(double from, double to) const {
  const auto gap = std::find_if(gaps_.begin(), gaps_.end(), [&](const WaterfallGap& known) {
    return known.from < to && known.to > from;
  });
  return gap == gaps_.end() ? std::nullopt : std::optional(*gap);
}

// After a gap, and first of all, a row covers as much as the one before it did.
void WaterfallView::AddToMap(std::size_t row) {
  const double time = rows_.Time(row);
  const double pixel = span_ / canvas_.height();
  double since = row > 0 ? rows_.Time(row - 1) : time - pixel;
  const double usual = row > 1 ? rows_.Time(row - 1) - rows_.Time(row - 2) : time - since;
  const bool isLong = row > 1 && time - since > kLongestOf * usual;
  if (isLong || GapIn(since, time)) since = std::max(since, time - usual);
  image_.Add(since, time, rows_.Row(row));
}

void WaterfallView::Rebuild() {
  const QSize pixels = (canvas_.size() * ratio_).toSize();
  const AxisMap across(shown_, axis_.kind, 0, pixels.width());
  image_.Reset(pixels, across, x_, scale_, map_, Paper().rgb(),
               span_ / static_cast<double>(std::max(1, pixels.height())));
  for (std::size_t row = 0; row < rows_.Count(); ++row) {
    const bool isSeen = rows_.Time(row) <= top_ && rows_.Time(row) > top_ - 2 * span_;
    if (isSeen) AddToMap(row);
  }
  isMapValid_ = true;
}

void WaterfallView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const double ratio = painter.deviceTransform().m11();
  if (ratio != ratio_) isMapValid_ = false;
  ratio_ = ratio;
  if (!isMapValid_) Rebuild();
  const QRegion around = QRegion(rect()) - QRegion(canvas_.toRect());
  for (const QRect& part : around) painter.fillRect(part, look_.panel);
  image_.Paint(painter, canvas_.topLeft(), ratio, top_);
  const WaterfallPage page{axis_, shown_, canvas_, across_, look_, fonts_, top_, span_, ratio};
  PaintWaterfallGaps(painter, page, rows_, gaps_);
  PaintWaterfallAxes(painter, page);
  PaintColourScale(painter, page, scale_, map_, scaleTitle_);
  PaintWaterfallCursor(painter, page, cursor_, timeCursor_);
}

QColor WaterfallView::Paper() const {
  return look_.canvas;
}

void WaterfallView::resizeEvent(QResizeEvent* event) {
  LayOut();
  QWidget::resizeEvent(event);
}

void WaterfallView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    look_ = Look::Of(palette());
    fonts_ = LookFonts(font());
    map_ = look_.isDark ? MapForDarkPaper() : MapForLightPaper();
    LayOut();
  }
  QWidget::changeEvent(event);
}

void WaterfallView::Choose(QPointF place) {
  if (!canvas_.contains(place) || rows_.Count() == 0) return;
  const std::size_t row = rows_.Nearest(TimeAt(place.y()));
  emit RowChosen(static_cast<int>(row), rows_.Time(row));
  emit ColumnChosen(across_.FromPixel(place.x()));
}

void WaterfallView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Choose(event->position());
}

void WaterfallView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton)) Choose(event->position());
}

// Over time alone; the horizontal axis is the spectrum's above it.
void WaterfallView::wheelEvent(QWheelEvent* event) {
  SetSpan(span_ / std::pow(kWheelFactor, event->angleDelta().y() / kNotch));
  emit SpanTurned();
  event->accept();
}

void WaterfallView::contextMenuEvent(QContextMenuEvent* event) {
  const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
  const QPointF place = isKey ? canvas_.center() : QPointF(event->pos());
  const double x =
      isKey && !cursor_.members.empty() ? cursor_.members.front().x : across_.FromPixel(place.x());
  emit MenuAsked(mapToGlobal(place.toPoint()), x);
}

void WaterfallView::keyPressEvent(QKeyEvent* event) {
  const int far = event->modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1;
  switch (event->key()) {
    case Qt::Key_Up:
      emit StepAsked(far, 0);
      return;
    case Qt::Key_Down:
      emit StepAsked(-far, 0);
      return;
    case Qt::Key_Left:
      emit StepAsked(0, -far);
      return;
    case Qt::Key_Right:
      emit StepAsked(0, far);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace kestrel
