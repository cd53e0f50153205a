// The strip that tells of thresholds given for another range than the present one.
// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <string>

namespace kestrel {

class RangeNotice : public QFrame {
 public:
  RangeNotice();

  // Hidden without a text.
  void Show(const std::string& text);

  QPushButton* cmdKeepG;      // recalculates the codes
  QPushButton* cmdKeepCodes;  // takes the thresholds as they are now

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QLabel* lblRangeNotice_;
};

}  // namespace kestrel
