// The wheel over a control without focus scrolls what the control stands in.
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace kestrel {

// Installed on the application: the wheel changes a list or a spin box only while that has the
// focus, and never gives it the focus. A list that writes to the sensor must not do so in passing.
class WheelGuard : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kestrel
