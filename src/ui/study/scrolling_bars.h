// Bars of controls that scroll sideways where there is no room for them.
// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

namespace kestrel {

// As high as what is in it, and as the scroll bar where it is narrow. The height is set, not
// hinted: a hint that depends on the width comes too late for the layout that asks for it.
class ScrollingBars : public QScrollArea {
 public:
  ScrollingBars(const QString& name, QWidget* bars);
  [[nodiscard]] QSize sizeHint() const override { return {widget()->sizeHint().width(), height()}; }
  [[nodiscard]] QSize minimumSizeHint() const override { return {100, height()}; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void FitHeight();
};

}  // namespace kestrel
