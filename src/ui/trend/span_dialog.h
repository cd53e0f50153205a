// Asks from when to when a trend is shown.
// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTimeEdit>
#include <QDialog>
#include <QLabel>
#include <functional>

#include "chart/axis_map.h"

namespace kestrel {

// Stays beside the window without stopping it, and is gone when it closes.
class SpanDialog : public QDialog {
 public:
  using Told = std::function<void(const PlotRange& seconds)>;

  // In seconds since 1970.
  SpanDialog(const PlotRange& shown, Told told, QWidget* parent = nullptr);

 private:
  void Tell();

  Told told_;
  QDateTimeEdit* from_;
  QDateTimeEdit* until_;
  QLabel* lblWhyNot_;
};

}  // namespace kestrel
