// An option button that acts when the pointer's button goes up.
// SPDX-License-Identifier: MIT
#pragma once

#include <QMouseEvent>
#include <QRadioButton>

namespace kestrel {

// Acts whenever the left button, pressed on it, goes up, also beside it, where nothing is selected;
// and once for each use by the keyboard or an assistive technology.
class MouseUpOption : public QRadioButton {
  Q_OBJECT

 public:
  explicit MouseUpOption(const QString& caption);

 signals:
  void Acted();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  bool byPointer_ = false;
};

[[nodiscard]] MouseUpOption* MakeMouseUpOption(const char* name, const QString& caption,
                                               const QString& toolTip);

}  // namespace kestrel
