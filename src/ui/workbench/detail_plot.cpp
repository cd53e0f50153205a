// Mouse, keys and words of the plot of one band and axis.
// SPDX-License-Identifier: MIT
#include "ui/workbench/detail_plot.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/workbench/detail_painter.h"

namespace kestrel {
namespace {

constexpr double kReach = 6;     // pixels from a threshold's line
constexpr double kStepDb = 0.1;  // of an arrow key
constexpr double kWideStepDb = 1;

}  // namespace

DetailPlot::DetailPlot(QWidget* parent) : QWidget(parent) {
  setObjectName(QStringLiteral("detailPlot"));
  setAccessibleName(tr("Distribution and thresholds of the chosen band and axis"));
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void DetailPlot::SetScene(DetailScene scene) {
  scene_ = std::move(scene);
  Describe();
  update();
}

DetailLayout DetailPlot::Laid() const {
  return LaidOut(scene_, LookFonts(font()), size());
}

// Told as the threshold that keys move, then the other.
void DetailPlot::Describe() {
  const QString text = !scene_.hint.isEmpty()
                           ? scene_.hint
                           : tr("%1. %2 is moved by the arrow keys; the other is %3. %4")
                                 .arg(scene_.name, scene_.flags[Index(chosen_)],
                                      scene_.flags[1 - Index(chosen_)], scene_.note);
  if (text == accessibleDescription()) return;
  setAccessibleDescription(text);
}

void DetailPlot::Choose(AlarmLevel level) {
  chosen_ = level;
  Describe();
  update();
}

std::optional<AlarmLevel> DetailPlot::LevelAt(QPointF place) const {
  const DetailLayout layout = Laid();
  std::optional<AlarmLevel> found;
  double nearest = kReach;
  for (const AlarmLevel level : {AlarmLevel::Fault, AlarmLevel::Warning}) {
    const auto g = scene_.proposed[Index(level)];
    if (!g) continue;
    if (layout.flagPlaces[Index(level)].contains(place)) return level;
    const bool isBeside = place.y() >= layout.flags.top() && place.y() <= layout.shares.bottom();
    const double off = std::abs(place.x() - layout.across.ToPixel(*g));
    if (isBeside && off <= nearest) {
      nearest = off;
      found = level;
    }
  }
  return found;
}

// Hints that say what to do are tool tips, too.
bool DetailPlot::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    switch (static_cast<QKeyEvent*>(event)->key()) {
      case Qt::Key_Left:
      case Qt::Key_Right:
      case Qt::Key_Up:
      case Qt::Key_Down:
      case Qt::Key_Backspace:
        event->accept();
        break;
      default:
        break;
    }
  }
  return QWidget::event(event);
}

void DetailPlot::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  const LookFonts fonts(font());
  QPainter painter(this);
  painter.fillRect(rect(), look.panel);
  if (!scene_.hint.isEmpty()) {
    painter.setPen(look.muted);
    painter.drawText(rect().adjusted(24, 24, -24, -24),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, scene_.hint);
  } else {
    const DetailLayout layout = LaidOut(scene_, fonts, size());
    PaintDetail(painter, {scene_, layout, look, fonts},
                hasFocus() ? std::optional(chosen_) : std::nullopt);
  }
  if (!hasFocus()) return;
  painter.setPen(QPen(look.accent, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rect().adjusted(2, 2, -2, -2));
}

void DetailPlot::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) update();
  QWidget::changeEvent(event);
}

void DetailPlot::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  dragged_ = LevelAt(event->position());
  if (dragged_) Choose(*dragged_);
}

void DetailPlot::mouseMoveEvent(QMouseEvent* event) {
  if (!dragged_) {
    setCursor(scene_.hint.isEmpty() && LevelAt(event->position()) ? Qt::SizeHorCursor
                                                                  : Qt::ArrowCursor);
    return;
  }
  const DetailLayout layout = Laid();
  const double x = std::clamp(event->position().x(), layout.records.left(), layout.records.right());
  emit LevelMoved(*dragged_, layout.across.FromPixel(x));
}

void DetailPlot::mouseReleaseEvent(QMouseEvent* /*event*/) {
  dragged_.reset();
}

void DetailPlot::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (!scene_.hint.isEmpty()) {
    event->ignore();
  } else if (key == Qt::Key_Left || key == Qt::Key_Right) {
    const int sign = key == Qt::Key_Left ? -1 : 1;
    const bool isCode = event->modifiers().testFlag(Qt::ControlModifier);
    const bool isWide = event->modifiers().testFlag(Qt::ShiftModifier);
    emit LevelStepped(chosen_, isCode ? 0 : sign * (isWide ? kWideStepDb : kStepDb),
                      isCode ? sign : 0);
  } else if (key == Qt::Key_Up || key == Qt::Key_Down) {
    Choose(chosen_ == AlarmLevel::Warning ? AlarmLevel::Fault : AlarmLevel::Warning);
  } else if (key == Qt::Key_Backspace) {
    emit ResetAsked();
  } else {
    event->ignore();
  }
}

void DetailPlot::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  update();
}

void DetailPlot::focusOutEvent(QFocusEvent* event) {
  dragged_.reset();
  QWidget::focusOutEvent(event);
  update();
}

}  // namespace kestrel
