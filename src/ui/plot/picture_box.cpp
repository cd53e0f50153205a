// Scales, grid and traces painted on whole device pixels.
// SPDX-License-Identifier: MIT
#include "ui/plot/picture_box.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QTransform>
#include <algorithm>
#include <cmath>

#include "chart/plot_ticks.h"
#include "ui/parts/widgets.h"

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

// Keeps what lies far beyond the box within what the painter can clip.
double Bounded(double part) {
  return std::clamp(part, -1e5, 1e5);
}

// The pixel that holds the part, as long as the whole line stays inside.
int GridPixel(double part, int pixels, int thickness) {
  return static_cast<int>(std::clamp(std::floor(part * pixels), 0.0,
                                     std::max(0.0, static_cast<double>(pixels - thickness))));
}

bool IsFinite(double a, double b, double c, double d) {
  return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d);
}

}  // namespace

QRect DevicePixels(const QPainter& painter, const QRect& rectangle) {
  const QRectF exact = painter.deviceTransform().mapRect(QRectF(rectangle));
  return {exact.topLeft().toPoint(), exact.bottomRight().toPoint() - QPoint(1, 1)};
}

int LineThickness(qreal ratio) {
  return std::max(1, static_cast<int>(ratio));
}

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

double PictureBox::ScaleWidth() const {
  return std::abs(right_ - left_);
}

void PictureBox::Cls() {
  traces_.clear();
  Invalidate();
}

void PictureBox::Line(std::size_t trace, double x1, double y1, double x2, double y2,
                      double colour) {
  if (!IsFinite(x1, y1, x2, y2)) return;
  auto known = std::ranges::find(traces_, trace, &Trace::number);
  if (known == traces_.end()) known = traces_.insert(known, {trace, colour, {}});
  known->lines.emplace_back(x1, y1, x2, y2);
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

int PictureBox::GridColumn(double x, int columns, int thickness) const {
  return GridPixel(Part(x, left_, right_), columns, thickness);
}

int PictureBox::GridRow(double y, int rows, int thickness) const {
  return GridPixel(Part(y, top_, bottom_), rows, thickness);
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

// The picture goes onto whole device pixels, so that it stays sharp at any scale.
void PictureBox::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const qreal ratio = painter.deviceTransform().m11();
  const QRect pixels = DevicePixels(painter, rect());
  if (pixels.isEmpty()) return;
  if (!pictureValid_ || picture_.size() != pixels.size() || picture_.devicePixelRatio() != ratio) {
    PaintPicture(pixels.size(), ratio);
  }
  painter.drawPixmap(painter.deviceTransform().inverted().map(QPointF(pixels.topLeft())), picture_);
}

void PictureBox::PaintPicture(QSize pixels, qreal ratio) {
  if (picture_.size() != pixels) picture_ = QPixmap(pixels);
  picture_.setDevicePixelRatio(1);
  picture_.fill(Paper());
  {
    QPainter painter(&picture_);
    PaintGrid(painter, LineThickness(ratio));
    PaintTraces(painter, LineThickness(ratio));
  }
  picture_.setDevicePixelRatio(ratio);
  if (traces_.empty() && !hint_.isEmpty()) {
    QPainter painter(&picture_);
    PaintHint(painter);
  }
  pictureValid_ = true;
  ++tracePaintCount_;
}

void PictureBox::PaintGrid(QPainter& painter, int thickness) const {
  const QColor grid = Paper().darker(kGridDarker);
  const QColor axis = Paper().darker(kAxisDarker);
  const int columns = picture_.width();
  const int rows = picture_.height();
  const auto column = [&](double x, const QColor& colour) {
    painter.fillRect(GridColumn(x, columns, thickness), 0, thickness, rows, colour);
  };
  const auto row = [&](double y, const QColor& colour) {
    painter.fillRect(0, GridRow(y, rows, thickness), columns, thickness, colour);
  };
  for (const double tick : XTicks()) column(tick, grid);
  for (const double tick : YTicks()) row(tick, tick == 0 ? axis : grid);
  for (const double edge : {left_, right_}) column(edge, axis);
  for (const double edge : {top_, bottom_}) row(edge, axis);
}

// A wide pen is many times slower than a cosmetic one, so thickness comes from lines side by side.
void PictureBox::PaintTraces(QPainter& painter, int thickness) const {
  painter.setRenderHint(QPainter::Antialiasing);
  const auto toPicture = [this](QPointF point) {
    return QPointF(Bounded(Part(point.x(), left_, right_)) * picture_.width(),
                   Bounded(Part(point.y(), top_, bottom_)) * picture_.height());
  };
  std::vector<QLineF> pixels;
  for (const Trace& trace : traces_) {
    pixels.clear();
    for (const QLineF& line : trace.lines) {
      const QLineF mapped(toPicture(line.p1()), toPicture(line.p2()));
      const bool isSteep = std::abs(mapped.dy()) > std::abs(mapped.dx());
      for (int i = 0; i < thickness; ++i) {
        const double shift = i - (thickness - 1) / 2.0;
        pixels.push_back(mapped.translated(isSteep ? shift : 0, isSteep ? 0 : shift));
      }
    }
    painter.setPen(QPen(ToColour(trace.colour), 0, Qt::SolidLine, Qt::FlatCap));
    painter.drawLines(pixels.data(), static_cast<int>(pixels.size()));
  }
}

void PictureBox::PaintHint(QPainter& painter) const {
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.2);
  painter.setFont(large);
  painter.setPen(kHintText);
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, hint_);
}

bool PictureBox::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::WindowDeactivate:
    case QEvent::UngrabMouse:
    case QEvent::Hide:
      emit PointerLost();
      break;
    default:
      break;
  }
  return QWidget::event(event);
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
  emit PointerMoved(at.x(), at.y(), event->buttons().testFlag(Qt::LeftButton),
                    event->modifiers().testFlag(Qt::ShiftModifier));
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  const QPointF at = FromPixels(event->position());
  emit PointerPressed(at.x(), at.y(), event->modifiers().testFlag(Qt::ShiftModifier));
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
