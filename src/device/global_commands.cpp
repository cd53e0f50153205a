// Sending a function and showing the sensor as busy for its time.
// SPDX-License-Identifier: MIT
#include "device/global_commands.h"

#include <string>

#include "regmap/register_table.h"

namespace kestrel {
namespace {

constexpr int kLastCommand = 15;
constexpr float kCommandWaitMs = 300;

// The label is hidden again however the wait ends.
class BusyLabel {
 public:
  BusyLabel(BusyView& view, EventLoop& loop) : view_(view), loop_(loop) {
    view_.ShowBusyLabel(true);
    loop_.YieldToPaint();
  }
  ~BusyLabel() {
    view_.ShowBusyLabel(false);
    loop_.YieldToPaint();
  }
  BusyLabel(const BusyLabel&) = delete;
  BusyLabel& operator=(const BusyLabel&) = delete;

 private:
  BusyView& view_;
  EventLoop& loop_;
};

}  // namespace

void GlobalCommands::cmdWrite_Click(int index) {
  if (index < 0 || index > kLastCommand) {
    messages_.Show("Error: Index must be between 0 and 15   idx = " + std::to_string(index));
    return;
  }
  const BusyLabel busy(view_, loop_);
  Write(static_cast<CommandBit>(index));
  delay_.Delay(float{kCommandWaitMs});
}

void GlobalCommands::ShowBusy(double t) {
  const BusyLabel busy(view_, loop_);
  delay_.Delay(static_cast<float>(t));
}

void GlobalCommands::Write(CommandBit bit) {
  registers_.WriteReg(row::COMMAND, CommandWord(bit));
}

void GlobalCommands::Send(CommandBit bit, double busyMs) {
  Write(bit);
  ShowBusy(busyMs);
}

void GlobalCommands::CmdAutonull() {
  Send(CommandBit::Autonull, 700);
}
void GlobalCommands::CmdPowerDown() {
  Send(CommandBit::PowerDown, 51);
}
void GlobalCommands::CmdSelfTest() {
  Send(CommandBit::SelfTest, 51);
}
void GlobalCommands::CmdFactoryReset() {
  Send(CommandBit::FactoryReset, 152);
}
void GlobalCommands::CmdFlashTest() {
  Send(CommandBit::FlashTest, 152);
}
void GlobalCommands::CmdSoftwareReset() {
  Send(CommandBit::SoftwareReset, 51);
}
void GlobalCommands::CmdClearRecords() {
  Send(CommandBit::ClearRecords, 51);
}
void GlobalCommands::CmdRecordStartStop() {
  Send(CommandBit::RecordStartStop, 51);
}
void GlobalCommands::CmdSaveAlarmBand() {
  Send(CommandBit::SaveAlarmBand, 51);
}
void GlobalCommands::CmdRetrieveRecord() {
  Send(CommandBit::RetrieveRecord, 51);
}

}  // namespace kestrel
