// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <QLabel>

namespace kestrel {

// What is known of the sensor besides its status: product, supply, temperature, record count.
class ConditionsPanel : public QGroupBox {
 public:
  ConditionsPanel();

  QLabel* lblProduct;
  QLabel* LbLSupply;
  QLabel* LbLTemp;
  QLabel* lblRecCount;
};

}  // namespace kestrel
