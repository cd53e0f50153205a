// The sensor's one-shot functions, as the command window sends them.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "app/delay.h"
#include "regmap/command_words.h"
#include "seams/event_loop.h"
#include "seams/messages.h"
#include "transport/register_access.h"

namespace kestrel {

// The sixteen functions of the COMMAND register as lists show them; the index is the CommandBit.
inline constexpr std::array<const char*, 16> kCommandItems{"0   Autonull",
                                                           "1   Power-down",
                                                           "2   Self-test",
                                                           "3   Reset to factory configuration",
                                                           "4   Clear status register",
                                                           "5   Flash test",
                                                           "6   Flash Update/Save settings",
                                                           "7   Software reset",
                                                           "8   Clear Records",
                                                           "9   Clear spectral alarm bands",
                                                           "10  Reset buffer pointer",
                                                           "11  Record start/stop",
                                                           "12  Save spectral alarm band",
                                                           "13  Retrieve record from Flash",
                                                           "14  Retrieve spectral alarm band",
                                                           "15  Clear null values"};

// The label that shows while the sensor is expected to be working.
class BusyView {
 public:
  virtual ~BusyView() = default;
  virtual void ShowBusyLabel(bool shown) = 0;
};

// One-shot actions of the sensor. Completion is assumed when a command's fixed wait ends; nothing
// is read back.
class GlobalCommands {
 public:
  GlobalCommands(RegisterAccess& registers, SoftwareDelay& delay, EventLoop& loop,
                 Messages& messages, BusyView& view)
      : registers_(registers), delay_(delay), loop_(loop), messages_(messages), view_(view) {}

  // Sends the function with this list index; the busy label shows before the write.
  void cmdWrite_Click(int index);

  // Shows the busy label for `t` milliseconds.
  void ShowBusy(double t);

  // One function each, the busy label shown only after the write.
  void CmdAutonull();
  void CmdPowerDown();
  void CmdSelfTest();
  void CmdFactoryReset();
  void CmdFlashTest();
  void CmdSoftwareReset();
  void CmdClearRecords();
  void CmdRecordStartStop();
  void CmdSaveAlarmBand();
  void CmdRetrieveRecord();

 private:
  void Write(CommandBit bit);
  void Send(CommandBit bit, double busyMs);

  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  EventLoop& loop_;
  Messages& messages_;
  BusyView& view_;
};

}  // namespace kestrel
