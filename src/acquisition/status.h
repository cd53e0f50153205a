// The column of status flags: STATUS read, and shown.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "alarms/alarm_status.h"
#include "record/record.h"
#include "seams/event_loop.h"
#include "transport/register_access.h"

namespace kestrel {

// The column of fifteen status flags, numbered by STATUS bit.
class StatusView {
 public:
  virtual ~StatusView() = default;
  virtual void SetStatusName(int bit, const std::string& text) = 0;
  virtual void SetStatusFlag(int bit, const std::string& text, double colour) = 0;
};

class StatusDisplay {
 public:
  StatusDisplay(RegisterAccess& registers, AlarmStatus& alarms, EventLoop& loop, StatusView& view)
      : registers_(registers), alarms_(alarms), loop_(loop), view_(view) {}

  // Shows peaks and STATUS and fills StatusFlagText. `caller` is the name of the calling control:
  // after a capture ("cmdStart") the SPI communication failure flag is never shown. Flags and text
  // stay as they are while the sensor cannot be reached.
  void ReadStatus(const std::string& caller);

  // Tells the sensor to clear its flags, then shows them.
  void ClearStatus(const std::string& caller);

  // STATUS as it was last shown.
  [[nodiscard]] const StatusFlags& Last() const { return last_; }

 private:
  void ShowNames();
  void ShowFlags();

  RegisterAccess& registers_;
  AlarmStatus& alarms_;
  EventLoop& loop_;
  StatusView& view_;
  StatusFlags last_;
};

}  // namespace kestrel
