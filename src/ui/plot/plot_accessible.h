// The plot as somebody meets it who cannot see it.
// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessibleWidget>
#include <QString>

#include "ui/plot/picture_box.h"

namespace kestrel {

// What there is to tell about a picture to somebody who cannot see it.
class PictureTeller {
 public:
  virtual ~PictureTeller() = default;
  [[nodiscard]] virtual QString CursorInWords() = 0;
  [[nodiscard]] virtual QString PictureInWords() = 0;
  [[nodiscard]] virtual int CursorIndex() = 0;
  [[nodiscard]] virtual int LastIndex() = 0;
  virtual void PlaceCursor(int index) = 0;
};

// A picture box as a chart: its name reads the cursor out, its description sums the picture up, its
// value is the cursor's place and can be set. The layers over the picture are not told about.
class PlotAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  PlotAccessible(PictureBox* box, PictureTeller& teller);

  // From now on the box is presented so. The teller lives as long as the box.
  static void Attach(PictureBox* box, PictureTeller& teller);
  // Tell listeners that the cursor moved or that another picture is shown.
  static void CursorMoved(PictureBox* box, int index);
  static void PictureChanged(PictureBox* box);

  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
    return -1;
  }
  void* interface_cast(QAccessible::InterfaceType type) override;

  [[nodiscard]] QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  [[nodiscard]] QVariant minimumValue() const override;
  [[nodiscard]] QVariant maximumValue() const override;
  [[nodiscard]] QVariant minimumStepSize() const override;

 private:
  PictureTeller& teller_;
};

}  // namespace kestrel
