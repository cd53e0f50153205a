// A group of read-outs that tells when they were read, once they may no longer hold.
// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>

#include "seams/locale.h"

namespace kestrel {

// What is shown is what the sensor said last. When that may have changed since, the group says "as
// of" that time and takes its colours back, until it is read again.
class AsOfBox : public QGroupBox {
 public:
  AsOfBox(const QString& title, Locale& locale);

  // What has been read so far may no longer hold. Nothing while nothing was read.
  void ShowAsOf();
  [[nodiscard]] bool IsAsOf() const { return asOf_; }

 protected:
  // Something has just been read from the sensor.
  void Refreshed();
  // Takes the colours back: nothing shown is a present state.
  virtual void Grey() = 0;

 private:
  QString title_;
  Locale& locale_;
  QString readAt_;  // time of day; empty: never
  bool asOf_ = false;
};

// The ground of a light whose state is not known now.
void PaintGrey(QWidget* light);

}  // namespace kestrel
