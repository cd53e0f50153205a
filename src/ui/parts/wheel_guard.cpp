// Which controls take the wheel with focus only, and how it goes on to what they stand in.
// SPDX-License-Identifier: MIT
#include "ui/parts/wheel_guard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>

namespace kestrel {
namespace {

// The list or spin box that a widget is, or is a part of; its popup is a window of its own.
QWidget* ControlOf(QObject* watched) {
  auto* widget = qobject_cast<QWidget*>(watched);
  while (widget != nullptr && !widget->isWindow()) {
    if (qobject_cast<QComboBox*>(widget) != nullptr) return widget;
    if (qobject_cast<QAbstractSpinBox*>(widget) != nullptr) return widget;
    widget = widget->parentWidget();
  }
  return nullptr;
}

bool HasFocus(const QWidget& control) {
  const QWidget* focused = control.window()->focusWidget();
  return focused != nullptr && (focused == &control || control.isAncestorOf(focused));
}

}  // namespace

bool WheelGuard::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Polish) {
    QWidget* control = ControlOf(watched);
    if (control == watched && control->focusPolicy() == Qt::WheelFocus) {
      control->setFocusPolicy(Qt::StrongFocus);
    }
  } else if (event->type() == QEvent::Wheel) {
    const QWidget* control = ControlOf(watched);
    if (control != nullptr && !HasFocus(*control)) {
      event->ignore();  // what it stands in may scroll
      return true;
    }
  }
  return false;
}

}  // namespace kestrel
