// The table of distributions: six bands, three axes, each with its thresholds and counts.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <array>
#include <vector>

#include "ui/workbench/detail_of.h"

namespace kestrel {

class DistributionModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  struct Row {
    QString hz;
    std::array<SmallDistribution, 3> axes;
  };
  void Show(std::vector<Row> rows, const DistributionRange& range);
  [[nodiscard]] const DistributionRange& Range() const { return range_; }
  // Of column 1 to 3.
  [[nodiscard]] const SmallDistribution* At(const QModelIndex& index) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  std::vector<Row> rows_;
  DistributionRange range_;
};

// A cell is chosen by mouse and keys.
class DistributionTable : public QTableView {
  Q_OBJECT

 public:
  explicit DistributionTable(QWidget* parent = nullptr);

  void Show(const baseline::Workbench& bench, const WorkbenchChoice& choice);
  void Clear();
  [[nodiscard]] const DistributionModel& Model() const { return model_; }
  // Cells as texts with tabs, heads first.
  [[nodiscard]] QString AsTabs() const;

 signals:
  void CellChosen(kestrel::baseline::CellPlace cell);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void FitCells();

  DistributionModel model_;
};

}  // namespace kestrel
