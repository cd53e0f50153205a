// What the cells of the library's list say.
// SPDX-License-Identifier: MIT
#include <QDateTime>
#include <QTimeZone>

#include "numeric/number_texts.h"
#include "ui/library/library_model.h"
#include "ui/parts/local_time.h"

namespace kestrel {
namespace {

QString Joined(const std::vector<std::string>& tags) {
  QStringList all;
  for (const std::string& tag : tags) all << QString::fromStdString(tag);
  return all.join(QStringLiteral(", "));
}

QString TimeWithZone(std::chrono::system_clock::time_point time) {
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
  const QDateTime local = QDateTime::fromMSecsSinceEpoch(ms.count());
  return local.toString("yyyy-MM-dd HH:mm:ss.zzz ") + local.timeZoneAbbreviation() + "\n" +
         local.toUTC().toString("yyyy-MM-dd HH:mm:ss.zzz") + " UTC";
}

QString LevelText(const std::optional<archive::AxisLevels>& level) {
  return level ? QString::fromStdString(analysis::SignificantText(level->rmsG))
               : QStringLiteral("–");
}

}  // namespace

QVariant LibraryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    const bool isNumber = section == X || section == Y || section == Z;
    return QVariant::fromValue((isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  }
  if (role == Qt::ToolTipRole && section >= X && section <= Z) {
    return tr("Overall RMS over the bins that hold vibration, in g");
  }
  if (role != Qt::DisplayRole) return {};
  static constexpr std::array kHeads{
      QT_TR_NOOP(""),       QT_TR_NOOP("Time"),     QT_TR_NOOP("Machine"),  QT_TR_NOOP("Point"),
      QT_TR_NOOP("Record"), QT_TR_NOOP("X, g RMS"), QT_TR_NOOP("Y, g RMS"), QT_TR_NOOP("Z, g RMS"),
      QT_TR_NOOP("Alarm"),  QT_TR_NOOP("Tags"),     QT_TR_NOOP("Note")};
  static_assert(kHeads.size() == Columns);
  return section >= 0 && section < Columns ? tr(kHeads[static_cast<std::size_t>(section)])
                                           : QVariant();
}

QVariant LibraryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const ArchiveId id = IdOf(index.row());
  if (role == Id) return QVariant::fromValue(id);
  if (role == Qt::TextAlignmentRole) {
    const bool isNumber = index.column() >= X && index.column() <= Z;
    return QVariant::fromValue(Qt::Alignment(isNumber ? Qt::AlignRight : Qt::AlignLeft));
  }
  if (role == Qt::ForegroundRole) return index.column() == Kind || index.column() == Tags;
  const LibraryRow* row = Known(id);
  if (row == nullptr) {
    Want(index.row());
    return role == Qt::DisplayRole && index.column() == Time ? QVariant(QStringLiteral("…"))
                                                             : QVariant();
  }
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return Text(*row, index.column());
    case Qt::ToolTipRole:
      return Tip(*row, index.column());
    case IsTimeRecord:
      return row->kind == RecordKind::Time;
    case Sketch:
      if (!sketches_.contains(id)) WantSketch(id);
      return QVariant::fromValue(sketches_.value(id));
    default:
      return {};
  }
}

QVariant LibraryModel::Text(const LibraryRow& row, int column) const {
  switch (column) {
    case Time:
      return LocalTime(row.time);
    case Machine:
      return QString::fromStdString(row.remarks.machine);
    case Point:
      return QString::fromStdString(row.remarks.point);
    case Kind:
      return row.line;
    case X:
    case Y:
    case Z:
      return LevelText(row.levels[static_cast<std::size_t>(column - X)]);
    case Alarm:
      return row.hasAlarm ? tr("alarm") : QString();
    case Tags:
      return Joined(row.remarks.tags);
    case Note:
      return QString::fromStdString(row.remarks.note).simplified();
    default:
      return {};
  }
}

QVariant LibraryModel::Tip(const LibraryRow& row, int column) const {
  switch (column) {
    case Time:
      return TimeWithZone(row.time);
    case Kind:
      return row.full + "\n" + row.source;
    case Point:
      return QString::fromStdString(row.remarks.orientation.empty()
                                        ? row.remarks.point
                                        : row.remarks.point + "\n" + row.remarks.orientation);
    case Alarm:
      return row.hasAlarm ? tr("An alarm band was above a threshold") : QString();
    case Note:
      return QString::fromStdString(row.remarks.note);
    default:
      return Text(row, column);
  }
}

}  // namespace kestrel
