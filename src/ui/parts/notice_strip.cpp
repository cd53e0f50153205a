// Rows of notices, of which the gravest shows.
// SPDX-License-Identifier: MIT
#include "ui/parts/notice_strip.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <algorithm>

#include "ui/parts/contrast.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

struct Colours {
  QColor ground;
  QColor text;
};

Colours ColoursFor(const QPalette& palette) {
  const bool dark = Luminance(palette.color(QPalette::Base)) < 0.2;
  if (dark) return {QColor(0x3A, 0x2E, 0x14), QColor(0xFF, 0xD2, 0x7A)};
  return {QColor(0xFF, 0xF3, 0xD6), QColor(0x6B, 0x45, 0x00)};
}

QToolButton* MakeCloseButton(const QString& id) {
  auto* close = new QToolButton;
  close->setObjectName("cmdNoticeClose_" + id);
  close->setText(QString(QChar(0xD7)));
  close->setAutoRaise(true);
  close->setFocusPolicy(Qt::StrongFocus);
  close->setToolTip(NoticeStrip::tr("Close this notice"));
  close->setAccessibleName(NoticeStrip::tr("Close this notice"));
  return close;
}

}  // namespace

// The widget's own base colour stays the window's: it tells a light window from a dark one.
void PaintNotice(QWidget& widget) {
  QPalette palette = widget.palette();
  const Colours colours = ColoursFor(palette);
  if (palette.color(QPalette::Window) == colours.ground) return;
  palette.setColor(QPalette::Window, colours.ground);
  palette.setColor(QPalette::WindowText, colours.text);
  widget.setAutoFillBackground(true);
  widget.setPalette(palette);
}

NoticeStrip::NoticeStrip(const QString& name, QWidget* leading)
    : leading_(leading), rows_(new QVBoxLayout), cmdMore_(new QPushButton) {
  setObjectName(name);
  setAccessibleName(tr("Notices"));
  cmdMore_->setObjectName("cmdMore_" + name);
  cmdMore_->setToolTip(tr("Show all notices, or the first one only"));
  PaintNotice(*this);
  rows_->setSpacing(0);
  if (leading_ != nullptr) rows_->addWidget(leading_);
  auto* all = new QHBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addLayout(rows_, 1);
  all->addWidget(cmdMore_, 0, Qt::AlignTop);
  connect(cmdMore_, &QPushButton::clicked, this, [this] {
    open_ = !open_;
    Arrange();
  });
  Arrange();
}

void NoticeStrip::Put(const Notice& notice) {
  const auto same = std::find_if(lines_.begin(), lines_.end(),
                                 [&](const Line& line) { return line.notice.id == notice.id; });
  if (same != lines_.end()) {
    if (same->notice.text == notice.text && same->notice.cure == notice.cure) return;
    Remove(notice.id);
  }
  const auto lighter = std::find_if(lines_.begin(), lines_.end(), [&](const Line& line) {
    return line.notice.gravity < notice.gravity;
  });
  const int place = static_cast<int>(lighter - lines_.begin()) + (leading_ != nullptr ? 1 : 0);
  QWidget* row = MakeRow(notice);
  rows_->insertWidget(place, row);
  lines_.insert(lighter, {notice, row});
  Arrange();
  QAccessibleEvent alert(row, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

void NoticeStrip::Take(const QString& id) {
  if (!Has(id)) return;
  Remove(id);
  Arrange();
}

bool NoticeStrip::Has(const QString& id) const {
  return std::any_of(lines_.begin(), lines_.end(),
                     [&](const Line& line) { return line.notice.id == id; });
}

// A row may be taken away by its own button: it goes when that is done.
void NoticeStrip::Remove(const QString& id) {
  const auto found = std::find_if(lines_.begin(), lines_.end(),
                                  [&](const Line& line) { return line.notice.id == id; });
  found->row->hide();
  found->row->setObjectName("");
  for (QObject* part : found->row->findChildren<QObject*>()) part->setObjectName("");
  found->row->deleteLater();
  rows_->removeWidget(found->row);
  lines_.erase(found);
}

QWidget* NoticeStrip::MakeRow(const Notice& notice) {
  auto* row = new QWidget;
  row->setObjectName("notice_" + notice.id);
  row->setAccessibleName(notice.text);
  QLabel* text = MakeLabel("lblNotice_" + notice.id, notice.text);
  text->setWordWrap(true);
  auto* line = new QHBoxLayout(row);
  line->addWidget(text, 1);
  if (!notice.cure.isEmpty()) {
    auto* cure = new QPushButton(notice.cure);
    cure->setObjectName("cmdNotice_" + notice.id);
    cure->setAccessibleDescription(notice.text);
    line->addWidget(cure);
    connect(cure, &QPushButton::clicked, this, [act = notice.carryOut] { act(); });
  }
  QToolButton* close = MakeCloseButton(notice.id);
  line->addWidget(close);
  connect(close, &QToolButton::clicked, this, [this, id = notice.id, told = notice.closed] {
    Take(id);
    if (told) told();
  });
  return row;
}

void NoticeStrip::Arrange() {
  bool first = !Leads();
  for (const Line& line : lines_) {
    line.row->setVisible(first || open_);
    first = false;
  }
  const auto all = static_cast<int>(lines_.size()) + (Leads() ? 1 : 0);
  if (all <= 1) open_ = false;
  cmdMore_->setVisible(all > 1);
  const QString word = open_ ? tr("Fewer") : tr("%1 more").arg(all - 1);
  cmdMore_->setText(all > 1 ? word : QString());
  setVisible(all > 0);
}

void NoticeStrip::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) PaintNotice(*this);
}

}  // namespace kestrel
