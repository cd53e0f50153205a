// What is read again, and when read-outs are marked as of the time they were read.
// SPDX-License-Identifier: MIT
#include "ui/main/freshness.h"

#include "regmap/register_table.h"

namespace kestrel {
namespace {

// Bits of COMMAND.
constexpr int kPowerDown = 1;
constexpr int kFactoryReset = 3;
constexpr int kClearBands = 9;
constexpr int kRecordStartStop = 11;
constexpr int kSaveBand = 12;

constexpr int kTimerMode = 1;

bool ChangesBands(int bit) {
  return bit == kFactoryReset || bit == kClearBands || bit == kSaveBand;
}

}  // namespace

void Freshness::LightsAsOf() {
  parts_.statusPanel.ShowAsOf();
  parts_.alarmPanel.ShowAsOf();
}

void Freshness::CommandSent(int bit) {
  LightsAsOf();
  if (ChangesBands(bit)) parts_.windows.ForgetSensor();
  if (bit == kPowerDown) {
    parts_.notices.Asleep();
  } else if (bit != kRecordStartStop) {
    parts_.desk.settings.ReadSettings();
    parts_.windows.ReadAgain();
  }
}

void Freshness::RegisterWritten(int row) {
  if (row == row::COMMAND) LightsAsOf();
  parts_.desk.settings.ReadSettings();
  parts_.windows.ReadAgain();
}

// The strip of a loss still stands while the handler runs that ends the loss.
void Freshness::InterfaceChosen() {
  const bool wasLost = !parts_.lost.isHidden();
  const SettingsExchange::Shown before = parts_.desk.settings.LastRead();
  parts_.desk.settings.ReadMainFormRegisters();
  if (wasLost && parts_.registers.Reachable()) {
    parts_.notices.ComeBack(before, parts_.desk.settings.LastRead());
  }
}

void Freshness::RestoreSettings() {
  parts_.desk.settings.Restore(parts_.notices.Earlier());
  if (parts_.desk.settings.LastRead() == parts_.notices.Earlier())
    parts_.notices.SettingsRestored();
}

bool Freshness::GiveBack(const SettingsExchange::Shown& earlier) {
  SettingsExchange& settings = parts_.desk.settings;
  InterfaceChosen();
  if (earlier.lists.empty() || settings.LastRead() == earlier) return true;
  settings.Restore(earlier);
  if (settings.LastRead() != earlier) return false;
  parts_.notices.SettingsRestored();
  return true;
}

void Freshness::StopTimer() {
  if (!parts_.desk.cycle.StopSeries()) return;
  parts_.notices.TimerStopped();
  parts_.desk.status.ReadStatus("cmdStopTimer");
}

void Freshness::ReadAll() {
  parts_.desk.settings.ReadMainFormRegisters();
}

void Freshness::Refresh() {
  parts_.lost.Refresh();
  const bool reachable = parts_.registers.Reachable();
  if (!reachable) {
    LightsAsOf();
    parts_.conditions.ShowAsOf();
  }
  if (!parts_.statusPanel.IsAsOf()) parts_.notices.Awake();
  parts_.notices.ShowTimerMode(reachable && parts_.record.Selected(Setting::RecMode) == kTimerMode,
                               parts_.record.PeriodInWords());
  parts_.strip.Arrange();
}

}  // namespace kestrel
