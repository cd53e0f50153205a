// How parts of the workbench are titled and framed.
// SPDX-License-Identifier: MIT
#include "ui/workbench/bench_card.h"

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/chart/look.h"
#include "ui/study/number_field.h"

namespace kestrel {
namespace {

bool IsOfLook(const QEvent& event) {
  return event.type() == QEvent::PaletteChange || event.type() == QEvent::FontChange;
}

// A font is set only where it is another one: setting it is a change of the font, too.
void SetSize(QWidget& widget, const QFont& font) {
  if (widget.font() != font) widget.setFont(font);
}

}  // namespace

BenchCard::BenchCard(const QString& name, const QString& title, QWidget* content)
    : head_(new QWidget),
      row_(new QHBoxLayout(head_)),
      lblTitle_(new QLabel(title)),
      lblSummary_(new LineLabel) {
  setObjectName(name);
  lblTitle_->setObjectName(name + "_title");
  lblSummary_->setObjectName(name + "_summary");
  lblSummary_->setTextFormat(Qt::PlainText);
  row_->setContentsMargins(12, 0, 4, 0);
  row_->setSpacing(8);
  row_->addWidget(lblTitle_);
  row_->addWidget(lblSummary_, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(1, 1, 1, 1);
  column->setSpacing(1);
  column->addWidget(head_);
  column->addWidget(content, 1);
  Colour();
}

void BenchCard::SetSummary(const QString& summary) {
  lblSummary_->setText(summary);
  lblSummary_->setToolTip(summary);
}

void BenchCard::AddToHead(QWidget* widget) {
  row_->addWidget(widget);
}

FlatButton* BenchCard::AddButton(const QString& name, const QString& icon, const QString& word) {
  auto* button = new FlatButton(name, {}, icon);
  button->setToolTip(word);
  button->setAccessibleName(word);
  AddToHead(button);
  return button;
}

void BenchCard::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (IsOfLook(*event)) Colour();
}

void BenchCard::paintEvent(QPaintEvent* /*event*/) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.fillRect(rect(), look.panel);
  painter.setPen(look.hairline);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  const int below = head_->geometry().bottom() + 1;
  painter.drawLine(0, below, width(), below);
}

void BenchCard::Colour() {
  SetSize(*lblTitle_, LookFonts(font()).bold);
  SetInk(*lblSummary_, Look::Of(palette()).muted);
  head_->setMinimumHeight(std::max(34, fontMetrics().height() + 14));
}

BenchHeading::BenchHeading(const QString& name, const QString& text) : QLabel(text) {
  setObjectName(name);
  setContentsMargins(12, 4, 12, 4);
  SetInk(*this, Look::Of(palette()).muted);
}

void BenchHeading::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() != QEvent::PaletteChange) return;
  const QColor muted = Look::Of(palette()).muted;
  if (palette().color(QPalette::WindowText) != muted) SetInk(*this, muted);
}

void BenchHeading::paintEvent(QPaintEvent* event) {
  const Look look = Look::Of(palette());
  QPainter painter(this);
  painter.fillRect(rect(), look.header);
  painter.setPen(look.hairline);
  painter.drawLine(rect().topLeft(), rect().topRight());
  painter.drawLine(rect().bottomLeft(), rect().bottomRight());
  QLabel::paintEvent(event);
}

BenchNote::BenchNote(const QString& name, const QString& text) : QLabel(text) {
  setObjectName(name);
  setWordWrap(true);
  setTextFormat(Qt::PlainText);
  Colour();
}

void BenchNote::SetWarning(bool isWarning) {
  isWarning_ = isWarning;
  Colour();
}

void BenchNote::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Colour();
}

void BenchNote::Colour() {
  const Look look = Look::Of(palette());
  const QColor ink = isWarning_ ? look.noticeText : look.muted;
  if (palette().color(QPalette::WindowText) != ink) SetInk(*this, ink);
}

}  // namespace kestrel
