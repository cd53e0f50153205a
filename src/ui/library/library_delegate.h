// Rows of the library's list: a record in small, and the mark of an alarm.
// SPDX-License-Identifier: MIT
#pragma once

#include "ui/study/row_delegate.h"

namespace kestrel {

class LibraryDelegate : public RowDelegate {
 public:
  using RowDelegate::RowDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

}  // namespace kestrel
