// Answering what a cell shows, is marked with and explains.
// SPDX-License-Identifier: MIT
#include "ui/bands/band_grid_model.h"

#include <QStringList>
#include <utility>

#include "numeric/number_format.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

QString Join(const QStringList& parts, const QString& separator) {
  QStringList filled = parts;
  filled.removeAll(QString());
  return filled.join(separator);
}

}  // namespace

QString BinFrequencyText(int bin, int option) {
  const double width = BinWidth(option);
  const int decimals = DecimalsFinerThan(width / 10);
  const double frequency = bin * width;
  return QString::fromStdString(
      (decimals == 0 ? GroupedWholeNumber(frequency) : FixedNumber(frequency, decimals)) + " Hz");
}

BandGridModel::BandGridModel(const BandTable& table, Host host, QObject* parent)
    : QAbstractTableModel(parent), table_(table), host_(std::move(host)) {}

void BandGridModel::Show(int option, const BandScale& scale) {
  option_ = option;
  scale_ = scale;
  emit dataChanged(index(0, 0), index(kAlarmBands - 1, kBandColumns - 1));
}

int BandGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kAlarmBands;
}

int BandGridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kBandColumns;
}

std::int32_t BandGridModel::Value(BandCell cell) const {
  return table_(FieldOf(cell.column), cell.band, option_);
}

QString BandGridModel::Text(BandCell cell) const {
  return QString::fromStdString(CellText(cell.column, Value(cell), scale_));
}

int BandGridModel::Marks(BandCell cell) const {
  const auto held = host_.inSensor(FieldOf(cell.column), cell.band, option_);
  const auto problem = ProblemOf(table_, cell, option_);
  int marks = held && *held != Value(cell) ? NotWritten : 0;
  if (problem) marks |= problem->empty ? EmptyBand : Doubtful;
  return marks;
}

QString BandGridModel::SensorText(BandCell cell) const {
  const auto held = host_.inSensor(FieldOf(cell.column), cell.band, option_);
  if (!held) return tr("what the sensor holds is not known");
  if (*held == Value(cell)) return {};
  return tr("not yet written, the sensor holds %1")
      .arg(QString::fromStdString(CellText(cell.column, *held, scale_)));
}

// What there is to know about a cell beside its value.
QString BandGridModel::Explanation(BandCell cell) const {
  const auto problem = ProblemOf(table_, cell, option_);
  const QString unit =
      IsBin(cell.column) ? BinFrequencyText(Value(cell), option_) : tr("code %1").arg(Value(cell));
  return Join({unit, SensorText(cell), problem ? QString::fromStdString(problem->text) : QString()},
              "\n");
}

QVariant BandGridModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const BandCell cell = CellAt(index);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return Text(cell);
    case NoteRole:
      return IsBin(cell.column) ? BinFrequencyText(Value(cell), option_) : QString();
    case MarksRole:
      return Marks(cell);
    case Qt::ToolTipRole:
      return QString::fromStdString(CellName(cell)) + "\n" + Explanation(cell);
    case Qt::AccessibleTextRole:
      return tr("%1: %2").arg(QString::fromStdString(CellName(cell)), Text(cell)) +
             (IsBin(cell.column) ? ", " : tr(" g, ")) + Explanation(cell).replace("\n", ", ");
    default:
      return {};
  }
}

QVariant BandGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return QAbstractTableModel::headerData(section, orientation, role);
  if (orientation == Qt::Vertical) return tr("Band %1").arg(section + 1);
  QString name = QString::fromStdString(ColumnName(section + 1));
  name[0] = name[0].toUpper();
  return name + "\n" + (IsBin(section + 1) ? tr("bin") : tr("g"));
}

Qt::ItemFlags BandGridModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
  const bool editable = index.isValid() && (IsBin(index.column() + 1) || scale_.Known());
  return editable ? flags | Qt::ItemIsEditable : flags;
}

bool BandGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable)) return false;
  host_.enter(CellAt(index), value.toString().toStdString());
  return true;
}

QString BandGridModel::Check(const QModelIndex& index, const QString& text) const {
  return QString::fromStdString(host_.check(CellAt(index), text.toStdString()));
}

}  // namespace kestrel
