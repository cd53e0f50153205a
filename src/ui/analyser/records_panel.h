// The records of this session, newest first, each with its spectrum in small.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QLineEdit>
#include <QListView>
#include <QSortFilterProxyModel>

#include "ui/analyser/table_panels.h"
#include "ui/study/study_model.h"

namespace kestrel {

// Row 0 is live; the records follow.
class RecordsModel : public QAbstractListModel {
 public:
  enum Role { Second = Qt::UserRole, Id, Sketch, IsTime };

  explicit RecordsModel(StudyModel& model, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  void Follow();

  StudyModel& model_;
  int rows_ = 1;
  study::RecordId newest_ = 0;
};

// Selecting records shows them: the first in the place of the live one, the others beside it.
class RecordsPanel : public SummarisedPanel {
 public:
  explicit RecordsPanel(StudyModel& model);
  [[nodiscard]] QListView& List() { return list_; }
  [[nodiscard]] QLineEdit& Filter() { return filter_; }

 private:
  void Show();
  void ShowSelected();

  StudyModel& model_;
  RecordsModel records_;
  QSortFilterProxyModel filtered_;
  QLineEdit filter_;
  QListView list_;
  bool isFollowing_ = false;
};

}  // namespace kestrel
