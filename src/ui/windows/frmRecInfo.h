// The window that tells how the record at hand was taken.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <array>

#include "connection/core.h"
#include "regmap/bit_field.h"
#include "ui/parts/secondary_window.h"

namespace kestrel {

// How the record at hand was taken: the raw word and its four decoded rows.
class frmRecInfo : public SecondaryWindow {
 public:
  frmRecInfo(Core& core, HandlerEdge& edge, QWidget* parent);

  // Refreshes the display from the sensor.
  void Read_RecInfo();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  struct Row {
    QLabel* lblBits;
    QLabel* lblParam;
    QLabel* lblValue;
    QLabel* lblSetting;
  };

  void LayOut();
  void ShowRow(std::size_t index, const cBitFieldProp& field);

  QLabel* lblHex_;
  std::array<Row, 5> rows_{};  // 1 to 4
};

}  // namespace kestrel
