// Columns, marks and copying of a register list.
// SPDX-License-Identifier: MIT
#include "ui/windows/register_list_box.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QtMath>
#include <algorithm>
#include <memory>

#include "ui/parts/contrast.h"

namespace kestrel {
namespace {

constexpr double kWidthCharacters = 40;
constexpr double kMarginCharacters = 2;  // room for the mark
constexpr double kTint = 0.25;           // of the highlight colour

// Points at the line from the left.
QPolygonF Mark(const QRectF& line, double width) {
  const double size = std::min(0.5 * width, 0.5 * line.height());
  const QPointF tip(line.left() + 0.75 * width, line.center().y());
  return QPolygonF({tip, tip + QPointF(-size, -size / 1.5), tip + QPointF(-size, size / 1.5)});
}

}  // namespace

QFont FixedWidthFont() {
  return QFontDatabase::systemFont(QFontDatabase::FixedFont);
}

// The first stop is passed by every line but the heading's, whose two tabs lead to the address.
QList<QTextOption::Tab> ListColumns(const QFontMetricsF& font) {
  QList<QTextOption::Tab> stops;
  for (const double column : {8.0, 21.0, 31.0}) {
    stops.append(QTextOption::Tab(column * font.horizontalAdvance('0'), QTextOption::LeftTab));
  }
  return stops;
}

RegisterListBox::RegisterListBox() {
  setObjectName("txtRegList");
  setAccessibleName(tr("Register list"));
  setToolTip(
      tr("Registers with their addresses and contents, hexadecimal. Lines that have changed "
         "since the list before are marked."));
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setLineWrapMode(NoWrap);
  setTabChangesFocus(true);
  setFont(FixedWidthFont());
  SetColumns();
}

void RegisterListBox::SetColumns() {
  const QFontMetricsF metrics(font());
  QTextOption option;
  option.setTabs(ListColumns(metrics));
  option.setWrapMode(QTextOption::NoWrap);
  document()->setDefaultTextOption(option);
  const double character = metrics.horizontalAdvance('0');
  document()->setDocumentMargin(kMarginCharacters * character);
  setMinimumWidth(qCeil((kWidthCharacters + 2 * kMarginCharacters) * character) +
                  verticalScrollBar()->sizeHint().width() + 2 * frameWidth());
}

void RegisterListBox::ShowList(const RegisterListing& listing) {
  changed_.clear();
  for (std::size_t line = 0; line < listing.lines.size(); ++line) {
    if (listing.lines[line].changed) changed_.insert(static_cast<int>(line));
  }
  text_ = QString::fromStdString(listing.text);
  setPlainText(text_);
  SetColumns();
}

void RegisterListBox::CopyList() {
  if (textCursor().hasSelection()) {
    copy();
  } else {
    QGuiApplication::clipboard()->setText(text_);
  }
}

QMimeData* RegisterListBox::createMimeDataFromSelection() const {
  auto copied = std::make_unique<QMimeData>();
  copied->setText(textCursor().selectedText().replace(QChar::ParagraphSeparator, "\r\n"));
  return copied.release();
}

void RegisterListBox::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    CopyList();
  } else {
    QPlainTextEdit::keyPressEvent(event);
  }
}

void RegisterListBox::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = createStandardContextMenu(event->pos());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  QAction* all = menu->addAction(tr("Copy whole list"));
  all->setEnabled(!text_.isEmpty());
  connect(all, &QAction::triggered, this, [this] { QGuiApplication::clipboard()->setText(text_); });
  menu->popup(event->globalPos());
}

void RegisterListBox::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
      const QRectF line = blockBoundingGeometry(block).translated(contentOffset());
      if (line.top() > event->rect().bottom()) break;
      if (!StandsOut(block.blockNumber() - kListHeadingLines)) continue;
      painter.fillRect(
          QRectF(0, line.top(), viewport()->width(), line.height()),
          Mix(palette().color(QPalette::Base), palette().color(QPalette::Highlight), kTint));
      painter.setBrush(palette().color(QPalette::Text));
      painter.drawPolygon(Mark(line, document()->documentMargin()));
    }
  }
  QPlainTextEdit::paintEvent(event);
}

void RegisterListBox::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange) SetColumns();
}

}  // namespace kestrel
