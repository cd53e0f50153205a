// How rows are asked for, kept, and moved when others come or go.
// SPDX-License-Identifier: MIT
#include "ui/library/library_model.h"

#include <algorithm>
#include <utility>

namespace kestrel {
namespace {

constexpr qsizetype kMostRows = 20'000;     // of 1 kB
constexpr qsizetype kMostSketches = 4'000;  // of half a kB
constexpr std::size_t kMostWanted = 4;      // blocks; what is seen is of two at most
constexpr std::size_t kMostWantedSketches = 64;
constexpr std::size_t kSketchesAtOnce = 16;
constexpr std::size_t kMostMoves = 64;  // beyond, all rows are others

// A run of rows that go or come.
struct Run {
  int from = 0;
  int count = 0;
};

}  // namespace

LibraryModel::LibraryModel(Library& library, QObject* parent)
    : QAbstractTableModel(parent), library_(library) {
  ask_.setSingleShot(true);
  connect(&ask_, &QTimer::timeout, this, [this] {
    AskRows();
    AskSketches();
  });
  connect(&library, &Library::Failed, this, &LibraryModel::Failed);
  connect(&library, &Library::Found, this, &LibraryModel::TakeIds);
  connect(&library, &Library::Listed, this, &LibraryModel::TakeRows);
  connect(&library, &Library::Sketched, this, &LibraryModel::TakeSketches);
}

int LibraryModel::RowOf(ArchiveId id) const {
  const auto found = numbers_.constFind(id);
  return found == numbers_.constEnd() ? -1 : rowCount() - 1 - *found;
}

const LibraryRow* LibraryModel::Known(ArchiveId id) const {
  const auto found = rows_.constFind(id);
  return found == rows_.constEnd() ? nullptr : &*found;
}

void LibraryModel::ReadAgain() {
  rows_.clear();
  if (!ids_.empty()) emit dataChanged(index(0, 0), index(rowCount() - 1, Columns - 1));
}

// What is known stays to be seen until the answer comes.
void LibraryModel::ReadAgain(ArchiveId id) {
  if (RowOf(id) >= 0) library_.Fetch({id});
}

int LibraryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(ids_.size());
}

int LibraryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Columns;
}

void LibraryModel::Number() {
  numbers_.clear();
  numbers_.reserve(static_cast<qsizetype>(ids_.size()));
  const int last = rowCount() - 1;
  for (int row = 0; row <= last; ++row) numbers_.insert(IdOf(row), last - row);
}

void LibraryModel::TakeIds(const std::vector<ArchiveId>& ids) {
  if (ids == ids_) return;
  wanted_.clear();
  const std::size_t more = ids.size() - std::min(ids.size(), ids_.size());
  if (more > 0 && std::equal(ids_.begin(), ids_.end(), ids.begin() + static_cast<int>(more))) {
    Prepend({ids.begin(), ids.begin() + static_cast<int>(more)});
    return;
  }
  if (MoveTo(ids)) return;
  emit RowsToBeOthers();
  beginResetModel();
  ids_ = ids;
  Number();
  endResetModel();
  emit RowsAreOthers();
}

void LibraryModel::Prepend(const std::vector<ArchiveId>& ids) {
  const auto count = static_cast<int>(ids.size());
  beginInsertRows({}, 0, count - 1);
  ids_.insert(ids_.begin(), ids.begin(), ids.end());
  const int last = rowCount() - 1;
  for (int row = 0; row < count; ++row) numbers_.insert(IdOf(row), last - row);
  endInsertRows();
}

// Both lists are in the same order, so that what is in both stands in both in turn.
bool LibraryModel::MoveTo(const std::vector<ArchiveId>& ids) {
  const QSet<ArchiveId> now(ids.begin(), ids.end());
  std::vector<Run> gone;
  for (int i = 0; i < rowCount(); ++i) {
    if (now.contains(IdOf(i))) continue;
    if (!gone.empty() && gone.back().from + gone.back().count == i) {
      ++gone.back().count;
    } else {
      gone.push_back({i, 1});
    }
  }
  std::vector<Run> come;
  for (int i = 0; i < static_cast<int>(ids.size()); ++i) {
    if (numbers_.contains(ids[static_cast<std::size_t>(i)])) continue;
    if (!come.empty() && come.back().from + come.back().count == i) {
      ++come.back().count;
    } else {
      come.push_back({i, 1});
    }
  }
  if (gone.size() + come.size() > kMostMoves) return false;
  std::ranges::reverse(gone);
  for (const Run& run : gone) {
    beginRemoveRows({}, run.from, run.from + run.count - 1);
    ids_.erase(ids_.begin() + run.from, ids_.begin() + run.from + run.count);
    endRemoveRows();
  }
  for (const Run& run : come) {
    beginInsertRows({}, run.from, run.from + run.count - 1);
    ids_.insert(ids_.begin() + run.from, ids.begin() + run.from,
                ids.begin() + run.from + run.count);
    endInsertRows();
  }
  Number();
  return true;
}

void LibraryModel::TakeRows(const std::vector<LibraryRow>& rows) {
  if (rows_.size() > kMostRows) {
    rows_.clear();
  }
  reading_.clear();
  int first = rowCount();
  int last = -1;
  for (const LibraryRow& row : rows) {
    rows_.insert(row.id, row);
    const int number = RowOf(row.id);
    if (number < 0) continue;
    first = std::min(first, number);
    last = std::max(last, number);
  }
  if (last >= 0) emit dataChanged(index(first, 0), index(last, Columns - 1));
  emit RowsKnown();
  AskRows();
}

void LibraryModel::TakeSketches(const Sketches& sketches) {
  if (sketches_.size() > kMostSketches) {
    sketches_.clear();
  }
  sketching_.clear();
  for (const auto& [id, heights] : sketches) {
    sketches_.insert(id, heights);
    const int row = RowOf(id);
    if (row >= 0) emit dataChanged(index(row, Picture), index(row, Picture));
  }
  AskSketches();
}

void LibraryModel::Want(int row) const {
  if (reading_.contains(IdOf(row))) return;
  std::erase(wanted_, row / kBlock);
  wanted_.push_back(row / kBlock);
  if (wanted_.size() > kMostWanted) wanted_.erase(wanted_.begin());
  if (!ask_.isActive()) ask_.start(0);
}

void LibraryModel::WantSketch(ArchiveId id) const {
  if (sketching_.contains(id)) return;
  std::erase(wantedSketches_, id);
  wantedSketches_.push_back(id);
  if (wantedSketches_.size() > kMostWantedSketches) {
    wantedSketches_.erase(wantedSketches_.begin());
  }
  if (!ask_.isActive()) ask_.start(0);
}

void LibraryModel::AskRows() {
  while (reading_.isEmpty() && !wanted_.empty()) {
    const int block = wanted_.back();
    wanted_.pop_back();
    const int end = std::min(rowCount(), (block + 1) * kBlock);
    std::vector<ArchiveId> ids;
    for (int row = block * kBlock; row < end; ++row) {
      if (!rows_.contains(IdOf(row))) ids.push_back(IdOf(row));
    }
    reading_ = QSet<ArchiveId>(ids.begin(), ids.end());
    if (!ids.empty()) library_.Fetch(std::move(ids));
  }
}

void LibraryModel::AskSketches() {
  if (!sketching_.isEmpty() || wantedSketches_.empty()) return;
  std::vector<ArchiveId> ids;
  while (!wantedSketches_.empty() && ids.size() < kSketchesAtOnce) {
    const ArchiveId id = wantedSketches_.back();
    wantedSketches_.pop_back();
    if (!sketches_.contains(id)) ids.push_back(id);
  }
  sketching_ = QSet<ArchiveId>(ids.begin(), ids.end());
  if (!ids.empty()) library_.Sketch(std::move(ids));
}

// Asked for again by the next painting.
void LibraryModel::Failed() {
  reading_.clear();
  sketching_.clear();
}

}  // namespace kestrel
