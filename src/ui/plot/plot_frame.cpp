// Placing labels and numbers where there is room.
// SPDX-License-Identifier: MIT
#include "ui/plot/plot_frame.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QPalette>
#include <QTransform>
#include <algorithm>
#include <cmath>

#include "numeric/number_format.h"
#include "ui/parts/contrast.h"
#include "ui/parts/widgets.h"
#include "ui/plot/free_place.h"

namespace kestrel {
namespace {

const QString kUnit = QStringLiteral("g");
const QString kUsualNumber = QStringLiteral("-0.025");  // keeps the box still between the scales

int TickLength(const QFontMetrics& font) {
  return std::max(4, font.height() / 4);
}
int Gap(const QFontMetrics& font) {
  return TickLength(font) + std::max(4, font.height() / 4);
}

QRect CentredAt(QPoint centre, QSize size) {
  return {centre - QPoint(size.width() / 2, size.height() / 2), size};
}

// Vertically centred, with the right edge at `right`.
QRect EndingAt(int right, int centre, QSize size) {
  return {QPoint(right - size.width(), centre - size.height() / 2), size};
}

QString Text(double value) {
  return QString::fromStdString(GeneralNumber(value));
}

}  // namespace

PlotFrame::PlotFrame(QWidget* parent) : QWidget(parent), pic1(new PictureBox(this)), edges_(*pic1) {
  pic1->setObjectName("pic1");
  lblYmax = AddLabel("lblYmax", "1");
  LbLYmid = AddLabel("LbLYmid", "0.5");
  lblYmin = AddLabel("lblYmin", "0");
  lblXmin = AddLabel("lblXmin", "0");
  lblXmax = AddLabel("lblXmax", "255");
  Label5 = AddLabel("Label5", "bin");
  lblYmax->setAccessibleDescription(tr("Top of the vertical axis, g"));
  LbLYmid->setAccessibleDescription(tr("Middle of the vertical axis, g"));
  lblYmin->setAccessibleDescription(tr("Bottom of the vertical axis, g"));
  lblXmin->setAccessibleDescription(tr("Left end of the horizontal axis"));
  lblXmax->setAccessibleDescription(tr("Right end of the horizontal axis"));
  Label5->setAccessibleDescription(tr("Unit of the horizontal axis"));
  for (QLabel* label : {lblYmax, LbLYmid, lblYmin}) {
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  for (QLabel* label : {lblXmin, lblXmax, Label5}) label->setAlignment(Qt::AlignCenter);
  connect(pic1, &PictureBox::ScaleChanged, this, &PlotFrame::Relayout);
}

QLabel* PlotFrame::AddLabel(const char* name, const QString& text) {
  QLabel* label = MakeLabel(name, text);
  label->setParent(this);
  return label;
}

void PlotFrame::Relayout() {
  PlaceBox();
  PlaceLabels();
  PlaceNumbers();
  edges_.Place();
  update();
}

QMargins PlotFrame::Strips() const {
  const QFontMetrics font = fontMetrics();
  const int right = std::max(lblXmax->sizeHint().width() / 2, font.height() / 2) + 2;
  const int top = font.height() * 3 / 2 + 4;
  return {LeftStrip(), top, right, TickLength(font) + 2 * font.height() + 8};
}

int PlotFrame::LeftStrip() const {
  int widest = fontMetrics().horizontalAdvance(kUsualNumber);
  for (const QLabel* label : {lblYmax, LbLYmid, lblYmin}) {
    widest = std::max(widest, label->sizeHint().width());
  }
  for (const double tick : pic1->YTicks()) {
    widest = std::max(widest, fontMetrics().horizontalAdvance(Text(tick)));
  }
  return 2 + widest + std::max(Gap(fontMetrics()), lblXmin->sizeHint().width() / 2 + 2);
}

// The height comes first: the grid, and with it the width of its numbers, depends on it.
void PlotFrame::PlaceBox() {
  const auto inside = [this] { return rect().marginsRemoved(Strips()).size(); };
  pic1->resize(pic1->width(), std::max(1, inside().height()));
  const QMargins strips = Strips();
  pic1->setGeometry(QRect(QPoint(strips.left(), strips.top()), inside().expandedTo({1, 1})));
}

QPoint PlotFrame::GridPoint(double x, double y) const {
  return pic1->pos() +
         QPoint(pic1->GridColumn(x, pic1->width(), 1), pic1->GridRow(y, pic1->height(), 1));
}

void PlotFrame::PlaceLabels() {
  const QRect box = pic1->geometry();
  const int right = box.left() - Gap(fontMetrics());
  lblYmax->setGeometry(EndingAt(right, box.top(), lblYmax->sizeHint()));
  LbLYmid->setGeometry(EndingAt(right, box.top() + box.height() / 2, LbLYmid->sizeHint()));
  lblYmin->setGeometry(EndingAt(right, box.bottom(), lblYmin->sizeHint()));

  const int row = box.bottom() + TickLength(fontMetrics()) + 3 + fontMetrics().height() / 2;
  lblXmin->setGeometry(CentredAt({box.left(), row}, lblXmin->sizeHint()));
  lblXmax->setGeometry(CentredAt({box.right(), row}, lblXmax->sizeHint()));
  Label5->setGeometry(
      CentredAt({box.center().x(), row + fontMetrics().height() + 3}, Label5->sizeHint()));
}

// A number that would touch a label or its neighbour is left out.
void PlotFrame::PlaceNumbers() {
  const QFontMetrics font = fontMetrics();
  const auto sizeOf = [&](const QString& text) {
    return QSize(font.horizontalAdvance(text), font.height());
  };
  const auto add = [](std::vector<Number>& numbers, std::vector<QRect>& taken, Number number,
                      const QMargins& room) {
    if (!IsFree(number.place.marginsAdded(room), taken)) return;
    taken.push_back(number.place);
    numbers.push_back(std::move(number));
  };

  yNumbers_.clear();
  std::vector<QRect> taken{lblYmax->geometry(), LbLYmid->geometry(), lblYmin->geometry()};
  const int right = pic1->x() - Gap(font);
  for (const double tick : pic1->YTicks()) {
    const QString text = Text(tick);
    add(yNumbers_, taken, {tick, text, EndingAt(right, GridPoint(0, tick).y(), sizeOf(text))}, {});
  }

  xNumbers_.clear();
  taken = {lblXmin->geometry(), lblXmax->geometry()};
  const int row = lblXmax->geometry().center().y() + 1;
  const int space = font.horizontalAdvance('0');
  for (const double tick : pic1->XTicks()) {
    const QString text = Text(tick);
    add(xNumbers_, taken, {tick, text, CentredAt({GridPoint(tick, 0).x(), row}, sizeOf(text))},
        {space, 0, space, 0});
  }
}

void PlotFrame::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QColor text = palette().color(QPalette::WindowText);
  const QColor muted = Mix(text, palette().color(QPalette::Window), 0.3);
  PaintTickMarks(painter, Mix(text, palette().color(QPalette::Window), 0.5));
  painter.setPen(muted);
  for (const auto* numbers : {&xNumbers_, &yNumbers_}) {
    for (const Number& number : *numbers) {
      painter.drawText(number.place, Qt::AlignCenter | Qt::TextDontClip, number.text);
    }
  }
  painter.setPen(text);
  const QRect top = lblYmax->geometry();
  painter.drawText(
      QRect(0, top.top() - fontMetrics().height() - 2, top.right() + 1, fontMetrics().height()),
      Qt::AlignRight | Qt::AlignVCenter | Qt::TextDontClip, kUnit);
}

// Device pixel by device pixel in line with the grid.
void PlotFrame::PaintTickMarks(QPainter& painter, const QColor& colour) const {
  const qreal ratio = painter.deviceTransform().m11();
  const int thickness = LineThickness(ratio);
  const int length = static_cast<int>(std::lround(TickLength(fontMetrics()) * ratio));
  const QRect box = DevicePixels(painter, pic1->geometry());
  const QTransform toLogical = painter.deviceTransform().inverted();
  const auto mark = [&](const QRect& pixels) {
    painter.fillRect(toLogical.mapRect(QRectF(pixels)), colour);
  };
  for (const double tick : pic1->XTicks()) {
    const int column = pic1->GridColumn(tick, box.width(), thickness);
    mark({box.left() + column, box.bottom() + 1, thickness, length});
  }
  for (const double tick : pic1->YTicks()) {
    const int row = pic1->GridRow(tick, box.height(), thickness);
    mark({box.left() - length, box.top() + row, length, thickness});
  }
}

bool PlotFrame::event(QEvent* event) {
  const bool done = QWidget::event(event);
  switch (event->type()) {
    case QEvent::PaletteChange:
      edges_.Colour();
      update();
      break;
    case QEvent::LayoutRequest:
    case QEvent::FontChange:
    case QEvent::StyleChange:
      Relayout();
      updateGeometry();
      break;
    default:
      break;
  }
  return done;
}

void PlotFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Relayout();
}

void PlotFrame::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Relayout();
}

QSize PlotFrame::sizeHint() const {
  return pic1->sizeHint().grownBy(Strips());
}

QSize PlotFrame::minimumSizeHint() const {
  const int height = fontMetrics().height();
  return QSize(12 * height, 6 * height).grownBy(Strips());
}

}  // namespace kestrel
