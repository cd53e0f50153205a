// When an option button acts: at the pointer's release, or by keyboard.
// SPDX-License-Identifier: MIT
#include "ui/parts/mouse_up_option.h"

#include <QScopedValueRollback>

namespace kestrel {

MouseUpOption::MouseUpOption(const QString& caption) : QRadioButton(caption) {
  connect(this, &QRadioButton::clicked, this, [this] {
    if (!byPointer_) emit Acted();
  });
}

void MouseUpOption::mouseReleaseEvent(QMouseEvent* event) {
  {
    const QScopedValueRollback<bool> byPointer(byPointer_, true);
    QRadioButton::mouseReleaseEvent(event);
  }
  if (event->button() == Qt::LeftButton) emit Acted();
}

MouseUpOption* MakeMouseUpOption(const char* name, const QString& caption, const QString& toolTip) {
  auto* option = new MouseUpOption(caption);
  option->setObjectName(name);
  option->setToolTip(toolTip);
  return option;
}

}  // namespace kestrel
