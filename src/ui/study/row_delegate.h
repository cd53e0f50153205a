// Rows of the analyser's tables: a hairline below, figures of one width, swatches of traces.
// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>
#include <optional>
#include <vector>

#include "analysis/band_levels.h"
#include "ui/chart/tabular_text.h"

namespace kestrel {

// Pixels left and right of a cell's text.
inline constexpr int kCellInside = 6;

class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;

 private:
  mutable std::optional<TabularMeter> meter_;  // of the font that was asked for last
};

// Largest magnitude of a band against its thresholds, as parts of the largest of them.
struct BandBar {
  double level = 0;
  double warning = 0;  // 0: none
  double fault = 0;
  analysis::BandState state = analysis::BandState::Free;
};

// A row's bar, in a column without text.
class BarDelegate : public RowDelegate {
 public:
  using RowDelegate::RowDelegate;
  void SetBars(std::vector<BandBar> bars) { bars_ = std::move(bars); }
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  std::vector<BandBar> bars_;
};

}  // namespace kestrel
