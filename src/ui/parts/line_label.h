// A line of text that ends in an ellipsis where there is no room.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace kestrel {

// A line of text that ends in an ellipsis where there is no room for all of it. Its tip is expected
// to have the whole.
class LineLabel : public QLabel {
 public:
  using QLabel::QLabel;

  [[nodiscard]] bool IsCut() const;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kestrel
