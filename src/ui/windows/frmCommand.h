// The window of global commands, with its direct procedures.
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
  Q_OBJECT

 public:
  frmCommand(Core& core, HandlerEdge& edge, QWidget* parent);

  // For other windows: one function each, and then the busy label for a time chosen for it. They
  // run in the handler of whoever calls them.
  void CmdAutonull() { commands_.CmdAutonull(); }
  void CmdPowerDown() { commands_.CmdPowerDown(); }
  void CmdSelfTest() { commands_.CmdSelfTest(); }
  void CmdFactoryReset() { commands_.CmdFactoryReset(); }
  void CmdFlashTest() { commands_.CmdFlashTest(); }
  void CmdSoftwareReset() { commands_.CmdSoftwareReset(); }
  void CmdClearRecords() { commands_.CmdClearRecords(); }
  void CmdRecordStartStop() { commands_.CmdRecordStartStop(); }
  void CmdSaveAlarmBand() { commands_.CmdSaveAlarmBand(); }
  void CmdRetrieveRecord() { commands_.CmdRetrieveRecord(); }
  // Shows the busy label for `t` milliseconds.
  void ShowBusy(double t) { commands_.ShowBusy(t); }

  void ShowBusyLabel(bool shown) override;

 signals:
  // The function of this bit was sent, and its wait is over.
  void Sent(int bit);

 protected:
  void Refused(const QString& why) override { lblNote_->setText(why); }

 private:
  void cmdWrite_Click();

  RegisterAccess& registers_;
  QComboBox* cbxCommand_;
  QLabel* LbLBusy_;
  QLabel* lblNote_;
  GlobalCommands commands_;
};

}  // namespace kestrel
