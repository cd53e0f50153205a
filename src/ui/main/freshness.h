// Keeps what the windows show true to the sensor, or says that it may no longer hold.
// SPDX-License-Identifier: MIT
#pragma once

#include "acquisition/desk.h"
#include "ui/main/lost_notice.h"
#include "ui/main/main_notices.h"
#include "ui/main/secondary_windows.h"
#include "ui/panels/alarm_panel.h"
#include "ui/panels/conditions_panel.h"
#include "ui/panels/record_panel.h"
#include "ui/panels/status_panel.h"
#include "ui/parts/notice_strip.h"

namespace kestrel {

// Reads again what a command, a register written by hand or another sensor may have changed, and
// marks what is not read as it was. Its functions run in the handlers of the main window.
class Freshness {
 public:
  struct Parts {
    RegisterAccess& registers;
    Desk& desk;
    SecondaryWindows& windows;
    RecordPanel& record;
    ConditionsPanel& conditions;
    StatusPanel& statusPanel;
    AlarmPanel& alarmPanel;
    LostNotice& lost;
    NoticeStrip& strip;
    MainNotices& notices;
  };

  explicit Freshness(const Parts& parts) : parts_(parts) {}

  // The function of this bit was sent by hand. STATUS is not read after it, so its lights are what
  // they were before; settings are read again, unless that would wake the sensor or meet a capture.
  void CommandSent(int bit);
  void RegisterWritten(int row);

  // An interface has been chosen, or found again: everything is read from its sensor.
  void InterfaceChosen();

  void RestoreSettings();
  // The sensor that was lost is back by itself: all is read, and it gets these settings again where
  // it has others. Returns whether it has them.
  [[nodiscard]] bool GiveBack(const SettingsExchange::Shown& earlier);
  void StopTimer();
  void ReadAll();

  // After every handler: what the state of the interface and of the settings says.
  void Refresh();

 private:
  void LightsAsOf();

  Parts parts_;
};

}  // namespace kestrel
