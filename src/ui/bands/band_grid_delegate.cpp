// Painting a cell's marks, and its line edit.
// SPDX-License-Identifier: MIT
#include "ui/bands/band_grid_delegate.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "ui/bands/band_grid_model.h"
#include "ui/parts/contrast.h"
#include "ui/parts/widgets.h"

namespace kestrel {
namespace {

constexpr QColor kAlert(230, 0, 0);

int Margin(const QFontMetrics& metrics) {
  return std::max(3, metrics.averageCharWidth() * 2 / 3);
}

// Beside a bin there is room for its frequency.
int NoteWidth(const QFontMetrics& metrics) {
  return metrics.horizontalAdvance(BinFrequencyText(kLastBin, 0));
}

// A folded corner: the sensor holds something else.
void DrawCorner(QPainter& painter, const QRectF& cell, const QColor& colour, double size) {
  const QPointF corner = cell.topRight();
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawPolygon(QPolygonF{corner, corner - QPointF(size, 0), corner + QPointF(0, size)});
}

// A waved line below a number that can hardly be meant.
void DrawWave(QPainter& painter, const QRectF& below, const QColor& colour) {
  const double step = std::max(2.0, below.height());
  const int turns = static_cast<int>(below.width() / step);
  QPolygonF wave;
  for (int i = 0; i <= turns; ++i) {
    wave << QPointF(below.left() + i * step, i % 2 == 0 ? below.bottom() : below.top());
  }
  painter.setPen(QPen(colour, std::max(1.0, step / 3)));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(wave);
}

}  // namespace

void BandGridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
  QStyleOptionViewItem cell = option;
  initStyleOption(&cell, index);
  const int marks = index.data(BandGridModel::MarksRole).toInt();
  const QString value = cell.text;
  const QString note = index.data(BandGridModel::NoteRole).toString();
  const bool selected = cell.state.testFlag(QStyle::State_Selected);
  const QPalette::ColorGroup group =
      !cell.state.testFlag(QStyle::State_Enabled) ? QPalette::Disabled : QPalette::Normal;
  const QColor text =
      cell.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
  const QColor ground = cell.palette.color(group, selected ? QPalette::Highlight : QPalette::Base);
  if ((marks & BandGridModel::EmptyBand) != 0) {
    cell.backgroundBrush = Mix(cell.palette.color(group, QPalette::Base), kAlert, 0.25);
  }
  cell.text.clear();
  QStyle* style = cell.widget != nullptr ? cell.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  QFont font = cell.font;
  font.setBold((marks & BandGridModel::NotWritten) != 0);
  const int margin = Margin(cell.fontMetrics);
  QRect room = cell.rect.adjusted(margin, 0, -margin, 0);
  painter->setPen(text);
  if ((marks & BandGridModel::EmptyBand) != 0) {
    painter->drawText(room, Qt::AlignLeft | Qt::AlignVCenter, "!");
  }
  if (!note.isEmpty()) {
    painter->setFont(cell.font);
    painter->setPen(Mix(text, ground, selected ? 0 : 0.35));
    painter->drawText(room, Qt::AlignRight | Qt::AlignVCenter, note);
    room.setRight(room.right() - NoteWidth(cell.fontMetrics) - 2 * margin);
  }
  painter->setFont(font);
  painter->setPen(text);
  QRect drawn;
  painter->drawText(room, Qt::AlignRight | Qt::AlignVCenter, value, &drawn);
  if ((marks & BandGridModel::Doubtful) != 0) {
    const double height = std::max(2.0, cell.fontMetrics.height() / 8.0);
    DrawWave(*painter, QRectF(drawn.left(), drawn.bottom() - height / 2, drawn.width(), height),
             selected ? text : Mix(text, kAlert, 0.75));
  }
  if ((marks & BandGridModel::NotWritten) != 0) {
    DrawCorner(*painter, cell.rect, text, cell.fontMetrics.height() * 0.4);
  }
  painter->restore();
}

QSize BandGridDelegate::sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
  QFont bold = option.font;
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  const int margin = Margin(metrics);
  const bool bin = !index.data(BandGridModel::NoteRole).toString().isEmpty();
  const int width =
      bin ? metrics.horizontalAdvance("! 255") + NoteWidth(option.fontMetrics) + 2 * margin
          : metrics.horizontalAdvance("0.00000");
  return {width + 3 * margin, metrics.height() + std::max(6, metrics.height() / 2)};
}

QWidget* BandGridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                        const QModelIndex& index) const {
  const BandCell cell = BandGridModel::CellAt(index);
  auto* editor = new QLineEdit(parent);
  editor->setObjectName(ArrayName("Text1", cell.band * 10 + cell.column));
  editor->setAccessibleName(QString::fromStdString(CellName(cell)));
  editor->setFrame(false);
  if (!IsBin(cell.column)) editor->setAlignment(Qt::AlignRight);
  editor->setAutoFillBackground(true);
  const QPersistentModelIndex place(index);
  const QPalette calm = editor->palette();
  connect(editor, &QLineEdit::textEdited, editor, [editor, place, calm](const QString& text) {
    const auto* model = static_cast<const BandGridModel*>(place.model());
    const QString reason = model->Check(place, text);
    QPalette palette = calm;
    if (!reason.isEmpty()) {
      palette.setColor(QPalette::Base, Mix(calm.color(QPalette::Base), kAlert, 0.25));
    }
    editor->setPalette(palette);
    editor->setToolTip(reason);
    editor->setAccessibleDescription(reason);
    // An empty text shows no tip.
    QToolTip::showText(editor->mapToGlobal(QPoint(0, editor->height())), reason, editor);
  });
  return editor;
}

// What is being typed is not overwritten when the table changes meanwhile.
void BandGridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* line = static_cast<QLineEdit*>(editor);
  if (!line->isModified()) line->setText(index.data(Qt::EditRole).toString());
}

// Leaving a cell as it was is no entry.
void BandGridDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                    const QModelIndex& index) const {
  auto* line = static_cast<QLineEdit*>(editor);
  if (!line->isModified() && line->text() == index.data(Qt::EditRole).toString()) return;
  model->setData(index, line->text(), Qt::EditRole);
  line->setText(index.data(Qt::EditRole).toString());
}

}  // namespace kestrel
