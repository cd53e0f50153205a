// How a state's chip is sized and painted.
// SPDX-License-Identifier: MIT
#include "ui/panels/state_chip.h"

#include <QPainter>
#include <algorithm>

#include "ui/parts/as_of_box.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr int kBeside = 4;   // left and right of the text
constexpr int kRoom = 16;    // that a chip which stands out has more than a small one
constexpr int kCorner = 3;   // radius
constexpr int kBetween = 1;  // a small chip and the edge of its line

}  // namespace

StateChip::StateChip(const QString& name, const QString& text) : QLabel(text) {
  setObjectName(name);
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
}

void StateChip::ShowState(const QColor& ground, bool standsOut) {
  isShown_ = true;
  standsOut_ = standsOut;
  PaintGround(this, ground);
  setAutoFillBackground(false);
  update();
}

void StateChip::Grey() {
  if (!isShown_) return;
  standsOut_ = false;
  PaintGrey(this);
  setAutoFillBackground(false);
  update();
}

QFont StateChip::BoldFont() const {
  QFont bold = font();
  bold.setBold(true);
  return bold;
}

QRect StateChip::Ground() const {
  if (standsOut_) return rect();
  const int width = fontMetrics().horizontalAdvance(text()) + 2 * kBeside;
  QRect small(0, 0, std::min(width, this->width()),
              std::max(1, std::min(height(), fontMetrics().height()) - 2 * kBetween));
  small.moveCenter(rect().center());
  if (alignment().testFlag(Qt::AlignRight)) small.moveRight(rect().right());
  return small;
}

QSize StateChip::sizeHint() const {
  const int text = QFontMetrics(BoldFont()).horizontalAdvance(this->text());
  return {text + 2 * kBeside + kRoom, fontMetrics().height()};
}

void StateChip::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (isShown_) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette().color(QPalette::Window));
    painter.drawRoundedRect(Ground(), kCorner, kCorner);
  }
  if (standsOut_) painter.setFont(BoldFont());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(Ground(), Qt::AlignCenter | Qt::TextDontClip, text());
}

}  // namespace kestrel
