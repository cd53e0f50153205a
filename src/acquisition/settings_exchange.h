// The record settings of the window and of the sensor, kept the same.
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "acquisition/status.h"
#include "acquisition/window_delay.h"
#include "alarms/alarm_status.h"
#include "seams/messages.h"
#include "transport/register_access.h"

namespace kestrel {

// The drop-down lists of the record settings.
enum class Setting { RecMode, Window, SignalRange, Storage, Units, Interval, FftAvgs, RecPntr };

class SettingsExchangeView {
 public:
  virtual ~SettingsExchangeView() = default;
  // List index, -1 when nothing is selected.
  [[nodiscard]] virtual int Selected(Setting setting) = 0;
  // Selects a list index without triggering a write; false when the list has no such item.
  virtual bool Select(Setting setting, int index) = 0;
  // Selects nothing, likewise without a write.
  virtual void Deselect(Setting setting) = 0;
  [[nodiscard]] virtual bool SampleRateBit(int bit) = 0;  // ckBW0..ckBW3
  virtual void SetSampleRateBit(int bit, bool on) = 0;
  [[nodiscard]] virtual bool PowerDownTicked() = 0;
  virtual void SetPowerDown(bool on) = 0;
  virtual void SetRecCount(const std::string& text) = 0;
  // Caption of the frame around the settings.
  [[nodiscard]] virtual std::string FraCapCaption() = 0;
  virtual void SetFraCapCaption(const std::string& text) = 0;
};

// Keeps the record settings of the window and the sensor's registers the same: what the user
// changes is written at once and read back. When the sensor is lost meanwhile, what was read last
// shows again, and the model of REC_CTRL is what it was.
class SettingsExchange {
 public:
  SettingsExchange(RegisterAccess& registers, StatusDisplay& status, AlarmStatus& alarms,
                   Messages& messages, WindowDelay& delay, SettingsExchangeView& view)
      : registers_(registers),
        status_(status),
        alarms_(alarms),
        messages_(messages),
        delay_(delay),
        view_(view) {}

  // The settings as they were read last; no list before the first reading.
  struct Shown {
    std::map<Setting, int> lists;  // list indices, -1 for nothing selected
    int rateBits = 0;              // ckBW0..ckBW3
    bool powerDown = false;
    bool operator==(const Shown&) const = default;
  };
  [[nodiscard]] Shown LastRead() const { return {read_, readBits_, readPowerDown_}; }

  // Writes settings that were read earlier and reads all of them back.
  void Restore(const Shown& shown);

  // Reads the settings again, and nothing else.
  void ReadSettings();

  // Refreshes the window from the sensor; changes nothing while it cannot be reached.
  void ReadMainFormRegisters();

  void Set_RecCtrl();
  void Write_RecPrd();
  void Read_FftAvg();
  // False when the sensor was lost meanwhile.
  bool Display_RecCtrl();
  bool Read_RecPrd();
  bool Read_RecPtrCnt();
  bool Read_FFTAVGS();

  // A visible sign that the settings were just exchanged with the sensor.
  void ShowWorkingCapPrd();
  // Ends the sign early: a capture that is started meanwhile lasts longer than it should.
  void HideWorkingSign();

  void cbxFFTAvgs_Click();
  void cbxRecPntr_Click();

 private:
  // Shows what was read; false when the list has no such item.
  bool Show(Setting setting, int index);
  // What could not be written is not shown either.
  void ShowLastRead();

  void ShowBoxes();

  // Shows a code; one that the list does not have leaves nothing selected.
  void ShowCode(Setting setting, std::int16_t code);

  // The list index of a setting; out of `last` shows `complaint` followed by it and gives -1.
  int Accepted(Setting setting, int last, const char* complaint);

  RegisterAccess& registers_;
  StatusDisplay& status_;
  AlarmStatus& alarms_;
  Messages& messages_;
  WindowDelay& delay_;
  SettingsExchangeView& view_;
  std::map<Setting, int> read_;  // list indices as they were read last, -1 for nothing selected
  int readBits_ = 0;             // ckBW0..ckBW3 likewise, while read_ holds the lists beside them
  bool readPowerDown_ = false;
  bool signShown_ = false;
  std::string savedCaption_;  // of the frame, while the sign is shown
};

}  // namespace kestrel
