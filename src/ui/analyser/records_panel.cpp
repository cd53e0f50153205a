// How the records are listed, sketched, filtered and selected.
// SPDX-License-Identifier: MIT
#include "ui/analyser/records_panel.h"

#include <QItemSelectionModel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "record/record_line.h"
#include "ui/chart/look.h"
#include "ui/chart/tabular_text.h"
#include "ui/parts/local_time.h"
#include "ui/study/sketch.h"

namespace kestrel {
namespace {

constexpr int kSketchHeight = 32;

class RecordDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const Look look = Look::Of(option.palette);
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (isSelected) {
      painter->fillRect(option.rect, look.selected);
      painter->fillRect(QRect(option.rect.left(), option.rect.top(), 3, option.rect.height()),
                        look.accent);
    } else if (option.state.testFlag(QStyle::State_MouseOver)) {
      painter->fillRect(option.rect, look.pointedAt);
    }
    const QRectF place = QRectF(option.rect).adjusted(12, 0, -8, 0);
    PaintSketch(
        *painter,
        QRectF(place.left(), place.center().y() - kSketchHeight / 2.0, kSketchWidth, kSketchHeight),
        index.data(RecordsModel::Sketch).value<QList<double>>(), look.muted);
    const LookFonts fonts(option.font);
    const QRectF words = place.adjusted(kSketchWidth + 10, 5, 0, -5);
    const auto line = [&](const QFont& font, double top, int role) {
      const QString text = QFontMetricsF(font).elidedText(index.data(role).toString(),
                                                          Qt::ElideRight, words.width());
      DrawTabular(*painter, font, QRectF(words.left(), top, words.width(), words.height() / 2),
                  Qt::AlignLeft, text);
    };
    painter->setPen(look.text);
    line(fonts.plain, words.top(), Qt::DisplayRole);
    painter->setPen(look.muted);
    line(fonts.small, words.center().y(), RecordsModel::Second);
  }

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const override {
    return {180, std::max(48, 2 * option.fontMetrics.height() + 16)};
  }
};

QString SecondLine(const Record& record) {
  return Text(RecordLine(record, {}));
}

}  // namespace

RecordsModel::RecordsModel(StudyModel& model, QObject* parent)
    : QAbstractListModel(parent), model_(model) {
  connect(&model, &StudyModel::RecordsChanged, this, &RecordsModel::Follow);
}

int RecordsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

QVariant RecordsModel::data(const QModelIndex& index, int role) const {
  const auto& entries = model_.Get().Records().Entries();
  const bool isLive = index.row() == 0;
  if (!isLive && index.row() > static_cast<int>(entries.size())) return {};
  const auto entry = static_cast<std::size_t>(std::max(0, index.row() - 1));
  if (role == Id) return isLive ? QVariant() : QVariant::fromValue(entries[entry].id);
  const study::RecordPointer& live = model_.Get().Live();
  if (isLive && !live) {
    if (role == Qt::DisplayRole) return tr("Live");
    return role == Second ? QVariant(tr("no record yet")) : QVariant();
  }
  const Record& record = isLive ? *live : *entries[entry].record;
  const QString time = LocalTime(record.time);
  switch (role) {
    case Qt::DisplayRole:
      return isLive ? tr("Live, %1").arg(time) : time;
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole:
      return (isLive ? tr("Live") + ", " : QString()) +
             Text(RecordLine(record, time.toStdString()));
    case Second:
      return SecondLine(record);
    case Sketch:
      return QVariant::fromValue(SketchOf(record));
    case IsTime:
      return record.kind == RecordKind::Time;
    default:
      return {};
  }
}

// Records come one at a time; the oldest may go as the newest comes.
void RecordsModel::Follow() {
  const auto& entries = model_.Get().Records().Entries();
  const study::RecordId newest = entries.empty() ? 0 : entries.front().id;
  const auto come = static_cast<int>(newest - newest_);
  if (come > 0) {
    beginInsertRows({}, 1, come);
    rows_ += come;
    newest_ = newest;
    endInsertRows();
  }
  const int all = static_cast<int>(entries.size()) + 1;
  if (all < rows_) {
    beginRemoveRows({}, all, rows_ - 1);
    rows_ = all;
    endRemoveRows();
  }
  emit dataChanged(index(0), index(0));
}

RecordsPanel::RecordsPanel(StudyModel& model) : model_(model), records_(model) {
  filtered_.setSourceModel(&records_);
  filtered_.setFilterRole(Qt::ToolTipRole);
  filtered_.setFilterCaseSensitivity(Qt::CaseInsensitive);
  filter_.setObjectName("txtFilterRecords");
  filter_.setPlaceholderText(tr("Filter: time, option, window"));
  filter_.setAccessibleName(tr("Filter of the records"));
  filter_.setClearButtonEnabled(true);
  list_.setObjectName("lstRecords");
  list_.setAccessibleName(tr("Records"));
  list_.setModel(&filtered_);
  list_.setItemDelegate(new RecordDelegate(&list_));
  list_.setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_.setFrameShape(QFrame::NoFrame);
  list_.setUniformItemSizes(true);
  list_.setMouseTracking(true);
  list_.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(1, 8, 1, 1);
  column->setSpacing(8);
  auto* row = new QHBoxLayout;
  row->setContentsMargins(8, 0, 8, 0);
  row->addWidget(&filter_);
  column->addLayout(row);
  column->addWidget(&list_, 1);
  connect(&filter_, &QLineEdit::textChanged, &filtered_,
          &QSortFilterProxyModel::setFilterFixedString);
  connect(list_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (!isFollowing_) ShowSelected();
  });
  connect(&model, &StudyModel::RecordsChanged, this, &RecordsPanel::Show);
  Show();
}

void RecordsPanel::Show() {
  const auto& study = model_.Get();
  const auto kept = static_cast<int>(study.Records().Entries().size());
  QString summary = tr("%n kept", nullptr, kept);
  if (study.Records().Dropped() > 0) {
    summary += tr(", %1 older dropped").arg(study.Records().Dropped());
  }
  if (study.Selected().size() > 1) summary += tr(", %1 shown").arg(study.Selected().size());
  emit Summarised(summary);
  if (!study.IsLive() || list_.selectionModel()->isRowSelected(0, {})) return;
  isFollowing_ = true;
  list_.setCurrentIndex(filtered_.mapFromSource(records_.index(0)));
  isFollowing_ = false;
}

void RecordsPanel::ShowSelected() {
  std::vector<study::RecordId> ids;
  QModelIndexList rows = list_.selectionModel()->selectedIndexes();
  std::sort(rows.begin(), rows.end());
  for (const QModelIndex& row : rows) {
    const QVariant id = row.data(RecordsModel::Id);
    if (id.isValid()) ids.push_back(id.value<study::RecordId>());
  }
  isFollowing_ = true;
  model_.Select(ids);
  isFollowing_ = false;
}

}  // namespace kestrel
