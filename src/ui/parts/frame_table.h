// The table in which SPI frames are typed, with their answers.
// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <QLineEdit>
#include <array>
#include <string>
#include <vector>

#include "transport/spi_frames.h"

namespace kestrel {

// A text box that takes no more room than so many digits.
[[nodiscard]] QLineEdit* MakeEntry(const QString& name, const QString& accessibleName,
                                   const QString& toolTip, int digits);

// The frames of one transfer, typed in hexadecimal, with the answers beside them.
class FrameTable : public QGroupBox {
 public:
  FrameTable();

  [[nodiscard]] FrameTexts Frames() const;
  void PointAt(int number);  // 1..16
  // Answers from frame 1 on; the boxes after them are emptied.
  void ShowAnswers(const std::vector<std::string>& answers);

 private:
  struct Row {
    QLineEdit* txtTx;
    QLineEdit* txtRx;
  };

  void MakeBoxes();
  void LayOut();

  std::array<Row, kFramesPerTransfer> rows_{};  // [0] is frame 1
};

}  // namespace kestrel
