// The window in which a USB adapter is selected.
// SPDX-License-Identifier: MIT
#pragma once

#include "connection/core.h"
#include "ui/parts/secondary_window.h"
#include "ui/windows/adapter_panel.h"
#include "ui/windows/frmUSBdebug.h"

namespace kestrel {

// Searches for USB adapters and selects one. It searches whenever it is opened.
class frmUSBselect : public SecondaryWindow {
  Q_OBJECT

 public:
  frmUSBselect(Core& core, HandlerEdge& edge, QWidget* parent);

 signals:
  // A USB adapter is the interface now, chosen here or in the debug window.
  void InterfaceChosen();

 protected:
  void Form_Activate() override;
  void showEvent(QShowEvent* event) override;

 private:
  void cmdDebugUsb_Click();

  Core& core_;
  AdapterPanel* adapters_;
  frmUSBdebug* debugWindow_ = nullptr;  // made when first opened; belongs to the main window
};

}  // namespace kestrel
