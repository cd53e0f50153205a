// Sending a function and showing the sensor as busy for its time.
// SPDX-License-Identifier: MIT
#include "device/global_commands.h"

#include <cmath>
#include <string>

#include "numeric/conversions.h"
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
  WriteBit(index);
  delay_.Delay(float{kCommandWaitMs});
}

void GlobalCommands::ShowBusy(double t) {
  const BusyLabel busy(view_, loop_);
  delay_.Delay(static_cast<float>(t));
}

void GlobalCommands::WriteBit(int bit) {
  registers_.WriteReg(row::COMMAND, ToLong(std::exp2(bit)));
}

void GlobalCommands::Send(int bit, double busyMs) {
  WriteBit(bit);
  ShowBusy(busyMs);
}

void GlobalCommands::CmdAutonull() {
  Send(0, 700);
}
void GlobalCommands::CmdPowerDown() {
  Send(1, 51);
}
void GlobalCommands::CmdSelfTest() {
  Send(2, 51);
}
void GlobalCommands::CmdFactoryReset() {
  Send(3, 152);
}
void GlobalCommands::CmdFlashTest() {
  Send(5, 152);
}
void GlobalCommands::CmdSoftwareReset() {
  Send(7, 51);
}
void GlobalCommands::CmdClearRecords() {
  Send(8, 51);
}
void GlobalCommands::CmdRecordStartStop() {
  Send(11, 51);
}
void GlobalCommands::CmdSaveAlarmBand() {
  Send(12, 51);
}
void GlobalCommands::CmdRetrieveRecord() {
  Send(13, 51);
}

}  // namespace kestrel
