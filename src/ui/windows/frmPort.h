// The window of the parallel port.
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QLineEdit>

#include "connection/core.h"
#include "transport/port_choice.h"
#include "ui/parts/secondary_window.h"

namespace kestrel {

// Sets the address of the parallel port and makes the port the interface.
class frmPort : public SecondaryWindow {
  Q_OBJECT

 public:
  frmPort(Core& core, HandlerEdge& edge, QWidget* parent);

 signals:
  // The parallel port is the interface now.
  void InterfaceChosen();

 protected:
  void Refused(const QString& why) override { lblHint_->setText(why); }
  void Form_Activate() override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void cmdOK_Click();

  PortChoice choice_;
  QLineEdit* txtUser_;
  QLabel* lblHint_;  // the usual addresses, or why the choice was refused
};

}  // namespace kestrel
