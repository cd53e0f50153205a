// What is known of the sensor besides its status.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

#include "ui/panels/spacing.h"
#include "ui/parts/as_of_box.h"

namespace kestrel {

// What is known of the sensor besides its status: product, supply, temperature, record count.
class ConditionsPanel : public AsOfBox {
 public:
  explicit ConditionsPanel(Locale& locale);

  void SetSpacing(const Spacing& spacing);

  // Whether what is read comes from a real sensor.
  void ShowSimulated(bool isSimulated);
  // Nothing has been read yet.
  void SetStartValues();
  // Supply and temperature have just been read.
  void NoteReading() { Refreshed(); }

  QLabel* lblProduct;
  QLabel* LbLSupply;
  QLabel* LbLTemp;
  QLabel* lblRecCount;

 protected:
  void Grey() override {}  // it has no colours of its own
  void changeEvent(QEvent* event) override;

 private:
  QLabel* lblSimulated_;
};

}  // namespace kestrel
