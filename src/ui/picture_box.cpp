// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "ui/picture_box.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <algorithm>
#include <cmath>

#include "ui/plot_ticks.h"
#include "ui/widgets.h"

namespace kestrel {
namespace {

const QColor kPaper(0xFF, 0xFF, 0xFF);
const QColor kDimmedPaper(0xE4, 0xE7, 0xEA);
const QColor kHintText(0x5A, 0x62, 0x6B);
constexpr int kGridDarker = 112;  // per cent
constexpr int kAxisDarker = 160;  // the zero line and the box's edges

constexpr int kMostXParts = 16;
constexpr int kMostYParts = 10;
constexpr double kSmallestBinScale = 16;

double Part(double value, double from, double to) {
  return from == to ? 0 : (value - from) / (to - from);
}

QSize DevicePixels(QSize size, qreal ratio) {
  return (QSizeF(size) * ratio).toSize();
}

// The device pixel that holds the position, as long as the whole line stays inside.
int GridPixel(qreal position, qreal ratio, int size) {
  const int last = static_cast<int>(std::lround(size * ratio)) - PictureBox::GridThickness(ratio);
  return static_cast<int>(std::clamp(std::floor(position * ratio), 0.0, std::max(0.0, last * 1.0)));
}

bool IsFinite(double a, double b, double c, double d) {
  return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d);
}

bool Same(QPointF a, QPointF b) {
  return a.x() == b.x() && a.y() == b.y();
}

}  // namespace

PictureBox::PictureBox(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
}

void PictureBox::Scale(double left, double top, double right, double bottom) {
  if (left == left_ && top == top_ && right == right_ && bottom == bottom_) return;
  if (!IsFinite(left, top, right, bottom)) return;
  left_ = left;
  top_ = top;
  right_ = right;
  bottom_ = bottom;
  Invalidate();
  emit ScaleChanged();
}

double PictureBox::ScaleHeight() const {
  return std::abs(top_ - bottom_);
}

void PictureBox::Cls() {
  traces_.clear();
  Invalidate();
}

void PictureBox::Line(double x1, double y1, double x2, double y2, double colour) {
  if (!IsFinite(x1, y1, x2, y2)) return;
  auto trace = std::find_if(traces_.begin(), traces_.end(),
                            [=](const Trace& other) { return other.colour == colour; });
  if (trace == traces_.end()) trace = traces_.insert(trace, {colour, {}, {}});
  const QPointF start(x1, y1);
  if (trace->points.empty() || !Same(trace->points.back(), start)) {
    trace->starts.push_back(trace->points.size());
    trace->points.push_back(start);
  }
  trace->points.emplace_back(x2, y2);
  Invalidate();
}

void PictureBox::SetHint(const QString& text) {
  if (text == hint_) return;
  hint_ = text;
  Invalidate();
}

QPointF PictureBox::ToPixels(QPointF point) const {
  return {Part(point.x(), left_, right_) * width(), Part(point.y(), top_, bottom_) * height()};
}

QPointF PictureBox::FromPixels(QPointF pixel) const {
  return {left_ + Part(pixel.x(), 0, width()) * (right_ - left_),
          top_ + Part(pixel.y(), 0, height()) * (bottom_ - top_)};
}

std::vector<double> PictureBox::XTicks() const {
  const int spacing = fontMetrics().horizontalAdvance(QStringLiteral("00000000"));
  const int wished = std::clamp(width() / spacing, 1, kMostXParts);
  const bool isBins =
      left_ == 0 && right_ >= kSmallestBinScale && right_ == std::round(right_) && right_ < 65536;
  return isBins ? BinTicks(static_cast<int>(right_), wished) : NiceTicks(left_, right_, wished);
}

std::vector<double> PictureBox::YTicks() const {
  const int spacing = fontMetrics().height() * 3 / 2;
  return HalvedTicks(bottom_, top_, std::clamp(height() / spacing, 2, kMostYParts));
}

int PictureBox::GridColumn(double x, qreal ratio) const {
  return GridPixel(ToPixels({x, top_}).x(), ratio, width());
}

int PictureBox::GridRow(double y, qreal ratio) const {
  return GridPixel(ToPixels({left_, y}).y(), ratio, height());
}

int PictureBox::GridThickness(qreal ratio) {
  return std::max(1, static_cast<int>(ratio));
}

QColor PictureBox::Paper() const {
  const QPalette& colours = palette();
  const bool isDark =
      colours.color(QPalette::Window).lightness() < colours.color(QPalette::WindowText).lightness();
  return isDark ? kDimmedPaper : kPaper;
}

QSize PictureBox::sizeHint() const {
  return {720, 400};
}

// Only the first change after a picture asks for the next one.
void PictureBox::Invalidate() {
  if (!pictureValid_) return;
  pictureValid_ = false;
  update();
}

void PictureBox::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const qreal ratio = painter.device()->devicePixelRatioF();
  const QSize pixels = DevicePixels(size(), ratio);
  if (!pictureValid_ || picture_.size() != pixels || picture_.devicePixelRatio() != ratio) {
    PaintPicture(ratio);
  }
  painter.drawPixmap(0, 0, picture_);
}

void PictureBox::PaintPicture(qreal ratio) {
  const QSize pixels = DevicePixels(size(), ratio);
  if (picture_.size() != pixels) picture_ = QPixmap(pixels);
  picture_.setDevicePixelRatio(1);
  picture_.fill(Paper());
  {
    QPainter painter(&picture_);
    PaintGrid(painter, ratio);
    PaintTraces(painter, ratio);
  }
  picture_.setDevicePixelRatio(ratio);
  if (traces_.empty() && !hint_.isEmpty()) {
    QPainter painter(&picture_);
    PaintHint(painter);
  }
  pictureValid_ = true;
}

void PictureBox::PaintGrid(QPainter& painter, qreal ratio) const {
  const QColor grid = Paper().darker(kGridDarker);
  const QColor axis = Paper().darker(kAxisDarker);
  const int width = picture_.width();
  const int height = picture_.height();
  const int thick = GridThickness(ratio);
  const auto column = [&](int x, const QColor& colour) {
    painter.fillRect(x, 0, thick, height, colour);
  };
  const auto row = [&](int y, const QColor& colour) {
    painter.fillRect(0, y, width, thick, colour);
  };
  for (const double tick : XTicks()) column(GridColumn(tick, ratio), grid);
  for (const double tick : YTicks()) row(GridRow(tick, ratio), tick == 0 ? axis : grid);
  for (const int x : {0, width - thick}) column(x, axis);
  for (const int y : {0, height - thick}) row(y, axis);
}

void PictureBox::PaintTraces(QPainter& painter, qreal ratio) const {
  painter.setRenderHint(QPainter::Antialiasing);
  std::vector<QPointF> pixels;
  for (const Trace& trace : traces_) {
    painter.setPen(QPen(ToColour(trace.colour), 0));
    pixels.resize(trace.points.size());
    std::transform(trace.points.begin(), trace.points.end(), pixels.begin(),
                   [=, this](QPointF point) { return ToPixels(point) * ratio; });
    for (std::size_t i = 0; i < trace.starts.size(); ++i) {
      const std::size_t start = trace.starts[i];
      const std::size_t end = i + 1 < trace.starts.size() ? trace.starts[i + 1] : pixels.size();
      painter.drawPolyline(&pixels[start], static_cast<int>(end - start));
    }
  }
}

void PictureBox::PaintHint(QPainter& painter) const {
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.2);
  painter.setFont(large);
  painter.setPen(kHintText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, hint_);
}

void PictureBox::changeEvent(QEvent* event) {
  const auto type = event->type();
  if (type == QEvent::PaletteChange || type == QEvent::FontChange || type == QEvent::StyleChange) {
    Invalidate();
  }
  QWidget::changeEvent(event);
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = FromPixels(event->position());
  emit PointerMoved(at.x(), at.y());
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  const QPointF at = FromPixels(event->position());
  emit PointerPressed(at.x(), at.y());
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mouseReleaseEvent(event);
  const QPointF at = FromPixels(event->position());
  emit PointerReleased(at.x(), at.y());
}

void PictureBox::leaveEvent(QEvent* event) {
  emit PointerLeft();
  QWidget::leaveEvent(event);
}

}  // namespace kestrel
