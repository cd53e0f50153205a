// The archive's records as a table of any length: rows are read as they come into view.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QSet>
#include <QTimer>
#include <vector>

#include "ui/library/library.h"

namespace kestrel {

class LibraryModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Picture, Time, Machine, Point, Kind, X, Y, Z, Alarm, Tags, Note, Columns };
  enum Role { Id = Qt::UserRole, Sketch, IsTimeRecord };
  static constexpr int kBlock = 200;  // rows read at once

  explicit LibraryModel(Library& library, QObject* parent = nullptr);

  [[nodiscard]] const std::vector<ArchiveId>& Ids() const { return ids_; }
  [[nodiscard]] ArchiveId IdOf(int row) const { return ids_[static_cast<std::size_t>(row)]; }
  // -1 where it is not in the list.
  [[nodiscard]] int RowOf(ArchiveId id) const;
  // Null while it has not been read.
  [[nodiscard]] const LibraryRow* Known(ArchiveId id) const;
  // What is known of rows may have changed: they are read again.
  void ReadAgain();
  void ReadAgain(ArchiveId id);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 signals:
  void RowsKnown();       // of some ids
  void RowsToBeOthers();  // by more than some rows that came or went
  void RowsAreOthers();

 private:
  void TakeIds(const std::vector<ArchiveId>& ids);
  void Prepend(const std::vector<ArchiveId>& ids);
  [[nodiscard]] bool MoveTo(const std::vector<ArchiveId>& ids);
  void TakeRows(const std::vector<LibraryRow>& rows);
  void TakeSketches(const Sketches& sketches);
  void Want(int row) const;
  void WantSketch(ArchiveId id) const;
  void AskRows();
  void AskSketches();
  void Failed();
  [[nodiscard]] QVariant Text(const LibraryRow& row, int column) const;
  [[nodiscard]] QVariant Tip(const LibraryRow& row, int column) const;
  void Number();

  Library& library_;
  std::vector<ArchiveId> ids_;     // the latest first
  QHash<ArchiveId, int> numbers_;  // of rows from the end, which new records do not change
  QHash<ArchiveId, LibraryRow> rows_;
  QHash<ArchiveId, QList<double>> sketches_;
  // Painting asks; what was asked for last is read first, one block at a time, and what has
  // scrolled away long since is not read.
  mutable std::vector<int> wanted_;  // blocks, the latest last
  mutable std::vector<ArchiveId> wantedSketches_;
  QSet<ArchiveId> reading_;
  QSet<ArchiveId> sketching_;
  mutable QTimer ask_;
};

}  // namespace kestrel
