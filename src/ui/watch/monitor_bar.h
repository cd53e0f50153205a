// The controls over a monitor: the plan's file, and whether the desktop is told of alarms.
// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QWidget>

#include "ui/study/flat_button.h"

namespace kestrel {

class MonitorBar : public QWidget {
 public:
  MonitorBar();

  FlatButton* cmdNew;
  FlatButton* cmdOpen;
  FlatButton* cmdSave;
  FlatButton* cmdSaveAs;
  QCheckBox* ckNotify;
};

}  // namespace kestrel
