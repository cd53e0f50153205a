// The list of the archive's records.
// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>
#include <optional>
#include <vector>

#include "ui/library/library_model.h"

namespace kestrel {

// Keeps selection and place while records come and go.
class LibraryTable : public QTableView {
  Q_OBJECT

 public:
  explicit LibraryTable(LibraryModel& model);

  // From the top.
  [[nodiscard]] std::vector<ArchiveId> Chosen() const;
  // Says what will stand here while there are no rows.
  void SetHint(const QString& hint);

 signals:
  void OpenAsked();
  void DeleteAsked();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void FitRows();
  void FitColumns();
  void Remember();
  void ChooseAgain();

  LibraryModel& model_;
  QString hint_;
  std::vector<ArchiveId> chosen_;  // while all rows become others
  std::optional<ArchiveId> current_;
  std::optional<ArchiveId> top_;
};

}  // namespace kestrel
