// How the sets are listed, added to and taken from.
// SPDX-License-Identifier: MIT
#include "ui/workbench/sets_panel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/chart/icons.h"
#include "ui/chart/look.h"
#include "ui/study/text_table.h"
#include "ui/workbench/set_chooser.h"

namespace kestrel {
namespace {

enum Role { kSecond = Qt::UserRole, kIcon, kCount, kPart };

constexpr int kIconRoom = 36;

// Headings with their count; rows with an icon and a second line.
class SetDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const Look look = Look::Of(option.palette);
    const LookFonts fonts(option.font);
    const bool isHeading = index.data(kCount).isValid();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    painter->save();
    painter->fillRect(option.rect, isHeading    ? look.header
                                   : isSelected ? look.selected
                                                : look.panel);
    painter->setPen(look.hairline);
    painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
    if (isHeading) {
      PaintHeading(*painter, option.rect, look, fonts, index);
    } else {
      PaintRow(*painter, option.rect, look, fonts, index);
    }
    if (option.state.testFlag(QStyle::State_HasFocus)) {
      painter->setPen(QPen(look.accent, 2));
      painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    }
    painter->restore();
  }

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override {
    const int line = QFontMetrics(option.font).height();
    if (index.data(kCount).isValid()) return {80, line + 8};
    return {80, RowRect(option.rect, option.font, index).height() + line + 12};
  }

 private:
  // Of the second line's wrapped text.
  static QRect RowRect(const QRect& row, const QFont& font, const QModelIndex& index) {
    const int width = std::max(100, row.width() - kIconRoom - 8);
    return QFontMetrics(LookFonts(font).small)
        .boundingRect(QRect(0, 0, width, 1000), Qt::TextWordWrap, index.data(kSecond).toString());
  }
  static void PaintHeading(QPainter& painter, const QRect& rect, const Look& look,
                           const LookFonts& fonts, const QModelIndex& index) {
    painter.setPen(look.muted);
    painter.setFont(fonts.small);
    const QRect inside = rect.adjusted(12, 0, -12, 0);
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
    painter.drawText(inside, Qt::AlignRight | Qt::AlignVCenter, index.data(kCount).toString());
  }
  static void PaintRow(QPainter& painter, const QRect& rect, const Look& look,
                       const LookFonts& fonts, const QModelIndex& index) {
    const QString icon = index.data(kIcon).toString();
    PaintIcon(painter, QRectF(rect.left() + 11, rect.top() + 6, 16, 16), icon,
              icon == "warn" ? look.fault : look.text);
    const QRect inside = rect.adjusted(kIconRoom, 5, -8, -4);
    painter.setPen(look.text);
    painter.setFont(fonts.bold);
    const QString first = QFontMetrics(fonts.bold)
                              .elidedText(index.data().toString(), Qt::ElideRight, inside.width());
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignTop, first);
    painter.setPen(look.muted);
    painter.setFont(fonts.small);
    painter.drawText(inside.adjusted(0, QFontMetrics(fonts.bold).height() + 1, 0, 0),
                     Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                     index.data(kSecond).toString());
  }
};

QString NameOf(const baseline::Part& part) {
  if (!part.name.empty()) return Text(part.name);
  if (!part.ids.empty()) return QObject::tr("Chosen in the library");
  return QObject::tr("No record");
}

}  // namespace

SetsPanel::SetsPanel(WorkbenchModel& model)
    : cmdGood(new FlatButton("cmdAddGood", tr("Good"), "plus")),
      cmdBad(new FlatButton("cmdAddBad", tr("Bad"), "plus")),
      model_(model),
      list_(new QListWidget),
      cmdRemove_(new FlatButton("cmdRemoveSet", {}, "close")),
      cmdAgain_(new FlatButton("cmdReadAgain", {}, "repeat")) {
  setObjectName("setsPanel");
  LayOut();
  connect(cmdGood, &QToolButton::clicked, this, [this] { Choose(baseline::Verdict::Good); });
  connect(cmdBad, &QToolButton::clicked, this, [this] { Choose(baseline::Verdict::Bad); });
  connect(cmdRemove_, &QToolButton::clicked, this, &SetsPanel::RemoveCurrent);
  connect(cmdAgain_, &QToolButton::clicked, &model_, &WorkbenchModel::Read);
  connect(&model_, &WorkbenchModel::Changed, this, &SetsPanel::Show);
  connect(list_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
    cmdRemove_->setEnabled(item != nullptr && item->data(kPart).toInt() >= 0);
  });
  list_->installEventFilter(this);
  Show();
}

void SetsPanel::LayOut() {
  list_->setObjectName("lstSets");
  list_->setAccessibleName(tr("Records that are compared"));
  list_->setFrameShape(QFrame::NoFrame);
  list_->setItemDelegate(new SetDelegate(list_));
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_->setResizeMode(QListView::Adjust);
  list_->setMinimumHeight(96);
  list_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
  cmdGood->setToolTip(tr("Choose records that are known to be good"));
  cmdBad->setToolTip(tr("Choose records that are known to be bad"));
  cmdGood->setAccessibleName(tr("Add records known to be good"));
  cmdBad->setAccessibleName(tr("Add records known to be bad"));
  cmdRemove_->setToolTip(tr("Take the chosen line out (Del); the records stay in the archive"));
  cmdRemove_->setAccessibleName(tr("Take the chosen records out"));
  cmdRemove_->setEnabled(false);
  cmdAgain_->setToolTip(tr("Read the records again: newer ones may fit by now"));
  cmdAgain_->setAccessibleName(tr("Read the records again"));
  auto* buttons = new QHBoxLayout;
  buttons->setContentsMargins(8, 6, 8, 6);
  buttons->setSpacing(6);
  buttons->addWidget(cmdGood);
  buttons->addWidget(cmdBad);
  buttons->addStretch(1);
  buttons->addWidget(cmdAgain_);
  buttons->addWidget(cmdRemove_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addLayout(buttons);
  column->addWidget(list_, 1);
}

void SetsPanel::Choose(baseline::Verdict verdict) {
  auto* chooser = new SetChooser(model_.Place(), verdict, this);
  connect(chooser, &SetChooser::Chosen, &model_, &WorkbenchModel::AddPart);
  chooser->open();
}

void SetsPanel::AddHeading(const QString& text, std::size_t count) {
  rows_.push_back({.first = text, .count = QStringLiteral("%L1").arg(count)});
}

void SetsPanel::AddParts(baseline::Verdict verdict) {
  const bool isGood = verdict == baseline::Verdict::Good;
  const std::vector<baseline::Part>& parts = model_.Choice().parts;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i].verdict != verdict) continue;
    QString first = NameOf(parts[i]);
    QString second = model_.IsReading() ? tr("reading") : tr("no record can be compared");
    const bool isRead = model_.HasBench() && i < model_.Bench().TheSets().parts.size();
    if (isRead && model_.Bench().TheSets().parts[i].taken > 0) {
      const baseline::PartTaken& taken = model_.Bench().TheSets().parts[i];
      first = Text(baseline::SpanText(taken.first, taken.last));
      second = Text(ThinningText(taken));
      if (!parts[i].name.empty()) second += ", " + Text(parts[i].name);
    }
    rows_.push_back({isGood ? "check" : "warn", first, second, {}, static_cast<int>(i)});
  }
}

void SetsPanel::Show() {
  const std::vector<Row> before = std::exchange(rows_, {});
  const baseline::Sets none{};
  const baseline::Sets& sets = model_.HasBench() ? model_.Bench().TheSets() : none;
  AddHeading(tr("Known good"), sets.good.size());
  AddParts(baseline::Verdict::Good);
  AddHeading(tr("Known bad"), sets.bad.size());
  AddParts(baseline::Verdict::Bad);
  if (!sets.leftOut.empty()) AddHeading(tr("Left out"), sets.LeftOutCount());
  for (const baseline::LeftOut& each : sets.leftOut) {
    rows_.push_back(
        {"info", Text(each.title), tr("%L1: %2").arg(each.ids.size()).arg(Text(each.reason))});
  }
  if (rows_ != before) Fill();
  cmdAgain_->setEnabled(!model_.IsReading() && !model_.Choice().parts.empty());
  for (FlatButton* button : {cmdGood, cmdBad}) button->setEnabled(model_.HasArchive());
}

void SetsPanel::Fill() {
  const int current = list_->currentRow();
  list_->clear();
  for (const Row& row : rows_) {
    auto* item = new QListWidgetItem(row.first, list_);
    item->setData(kPart, row.part);
    const bool isHeading = !row.count.isEmpty();
    const QString second = isHeading ? row.count : row.second;
    item->setData(Qt::AccessibleTextRole, row.first + ", " + second);
    if (isHeading) {
      item->setData(kCount, row.count);
      item->setFlags(Qt::ItemIsEnabled);
    } else {
      item->setData(kSecond, row.second);
      item->setData(kIcon, row.icon);
      item->setToolTip(row.first + "\n" + row.second);
    }
  }
  list_->setCurrentRow(std::min(current, list_->count() - 1));
}

void SetsPanel::RemoveCurrent() {
  const QListWidgetItem* item = list_->currentItem();
  if (item == nullptr || item->data(kPart).toInt() < 0) return;
  model_.RemovePart(static_cast<std::size_t>(item->data(kPart).toInt()));
}

void SetsPanel::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange) Fill();
}

bool SetsPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
    RemoveCurrent();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kestrel
