// How lines are numbered, and mistakes painted after their lines' ends.
// SPDX-License-Identifier: MIT
#include "ui/watch/plan_editor.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include "ui/chart/look.h"

namespace kestrel {
namespace {

constexpr int kMargin = 8;   // beside the numbers
constexpr int kBefore = 16;  // between a line and what is wrong with it

}  // namespace

PlanEditor::PlanEditor() : gutter_(new QWidget(this)) {
  setObjectName("txtPlan");
  setAccessibleName(tr("Text of the plan"));
  setLineWrapMode(NoWrap);
  setTabChangesFocus(true);
  setFrameShape(NoFrame);
  gutter_->setObjectName("planGutter");
  gutter_->installEventFilter(this);
  connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { FitGutter(); });
  connect(this, &QPlainTextEdit::updateRequest, this, [this] { gutter_->update(); });
  FitGutter();
}

void PlanEditor::SetMistakes(const monitor::Mistakes& mistakes) {
  mistakes_.clear();
  for (const monitor::Mistake& mistake : mistakes) {
    QString& text = mistakes_[static_cast<int>(mistake.line)];
    if (!text.isEmpty()) text += QStringLiteral("; ");
    text += QString::fromStdString(mistake.what);
  }
  gutter_->update();
  viewport()->update();
}

void PlanEditor::GoTo(std::size_t line) {
  const QTextBlock block = document()->findBlockByNumber(static_cast<int>(line) - 1);
  if (block.isValid()) setTextCursor(QTextCursor(block));
  centerCursor();
  setFocus(Qt::OtherFocusReason);
}

void PlanEditor::FitGutter() {
  const int digits = std::max<int>(2, static_cast<int>(QString::number(blockCount()).size()));
  const int width = 2 * kMargin + fontMetrics().horizontalAdvance('0') * digits;
  setViewportMargins(width, 0, 0, 0);
  const QRect inside = contentsRect();
  gutter_->setGeometry(inside.left(), inside.top(), width, inside.height());
}

void PlanEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  FitGutter();
}

void PlanEditor::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitGutter();
}

bool PlanEditor::eventFilter(QObject* watched, QEvent* event) {
  if (watched == gutter_ && event->type() == QEvent::Paint) {
    PaintGutter();
    return true;
  }
  return QPlainTextEdit::eventFilter(watched, event);
}

void PlanEditor::EachLine(
    const std::function<void(const QTextBlock&, int, const QRectF&)>& deed) const {
  for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
    const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
    if (place.top() > viewport()->height()) return;
    deed(block, block.blockNumber() + 1, place);
  }
}

void PlanEditor::PaintGutter() {
  const Look look = Look::Of(palette());
  QPainter painter(gutter_);
  painter.fillRect(gutter_->rect(), look.header);
  painter.setPen(look.hairline);
  painter.drawLine(gutter_->rect().topRight(), gutter_->rect().bottomRight());
  const LookFonts fonts(font());
  EachLine([&](const QTextBlock&, int number, const QRectF& place) {
    const bool isWrong = mistakes_.contains(number);
    painter.setFont(isWrong ? fonts.bold : fonts.plain);
    painter.setPen(isWrong ? look.fault : look.muted);
    painter.drawText(QRectF(0, place.top(), gutter_->width() - kMargin, fontMetrics().height()),
                     Qt::AlignRight | Qt::AlignVCenter, QString::number(number));
  });
}

void PlanEditor::paintEvent(QPaintEvent* event) {
  const Look look = Look::Of(palette());
  {
    QPainter ground(viewport());
    EachLine([&](const QTextBlock&, int number, const QRectF& place) {
      if (!mistakes_.contains(number)) return;
      ground.fillRect(QRectF(0, place.top(), viewport()->width(), place.height()),
                      look.faultGround);
    });
  }
  QPlainTextEdit::paintEvent(event);
  QPainter painter(viewport());
  painter.setFont(LookFonts(font()).small);
  painter.setPen(look.fault);
  const QFontMetricsF small(painter.font());
  EachLine([&](const QTextBlock& block, int number, const QRectF& place) {
    const auto found = mistakes_.find(number);
    if (found == mistakes_.end()) return;
    const double left = place.left() + block.layout()->lineAt(0).naturalTextWidth() + kBefore;
    const double room = viewport()->width() - left - kMargin;
    if (room < kMargin) return;
    painter.drawText(QRectF(left, place.top(), room, place.height()),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     small.elidedText(found->second, Qt::ElideRight, room));
  });
}

}  // namespace kestrel
