// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>
#include <QLabel>

#include "connection/core.h"
#include "device/global_commands.h"
#include "ui/parts/secondary_window.h"

namespace kestrel {

// Sends one of the sensor's sixteen functions.
class frmCommand : public SecondaryWindow, public BusyView {
 public:
  frmCommand(Core& core, HandlerEdge& edge, QWidget* parent);

  void ShowBusyLabel(bool shown) override;

 private:
  QComboBox* cbxCommand_;
  QLabel* LbLBusy_;
  GlobalCommands commands_;
};

}  // namespace kestrel
