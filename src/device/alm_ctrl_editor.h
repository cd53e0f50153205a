// The logic of the alarm control window.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>

namespace kestrel {

// The controls of the alarm control window. Of an option pair neither may be selected.
struct AlarmControls {
  std::string hexWord;  // only shown
  bool dioEnable = false;
  int responseDelay = -1;                // list index, -1 for none
  std::array<bool, 3> spectralEnable{};  // by axis
  std::optional<bool> greaterThan;       // otherwise less than
  bool systemEnable = false;
  std::optional<bool> temperature;  // otherwise supply
};

class AlarmControlView {
 public:
  virtual ~AlarmControlView() = default;
  virtual void ShowControls(const AlarmControls& controls) = 0;
  [[nodiscard]] virtual AlarmControls Controls() = 0;
};

// Edits ALM_CTRL through the program-wide model: every change is written at once and read back.
class AlmCtrlEditor {
 public:
  explicit AlmCtrlEditor(AlarmControlView& view) : view_(view) {}

  // Refreshes the controls from the sensor. While it cannot be reached they show what was read
  // before, and a change that was not taken over is seen to be none.
  void Display_AlmCtrl();

  // Writes the controls to the sensor, then refreshes. The latch bit is written back as last read.
  void Write_AlmCtrl();

  // A control was changed: writes, unless the window is filling itself. Controls that do not show
  // what the sensor holds (nothing read yet, or lost in between) are refreshed instead.
  void Changed();

  // Takes back what was changed since the last reading.
  void ShowLastRead();

 private:
  AlarmControlView& view_;
  AlarmControls read_;
  bool current_ = false;  // the last reading succeeded
  bool updating_ = false;
};

}  // namespace kestrel
