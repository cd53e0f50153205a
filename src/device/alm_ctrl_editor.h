// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>

namespace kestrel {

// The controls of the alarm control window. Of an option pair neither may be selected.
struct AlarmControls {
  bool dioEnable = false;
  int responseDelay = 0;                 // list index
  std::array<bool, 3> spectralEnable{};  // by axis
  std::optional<bool> greaterThan;       // otherwise less than
  bool systemEnable = false;
  std::optional<bool> temperature;  // otherwise supply
};

class AlarmControlView {
 public:
  virtual ~AlarmControlView() = default;
  virtual void ShowControls(const std::string& hexWord, const AlarmControls& controls) = 0;
  [[nodiscard]] virtual AlarmControls Controls() = 0;
};

// Edits ALM_CTRL through the program-wide model: every change is written at once and read back.
class AlmCtrlEditor {
 public:
  explicit AlmCtrlEditor(AlarmControlView& view) : view_(view) {}

  // Refreshes the controls from the sensor; they stay as they are while it cannot be reached.
  void Display_AlmCtrl();

  // Writes the controls to the sensor, then refreshes. The latch bit is written back as last read.
  void Write_AlmCtrl();

  // A control changed: writes, unless the window is filling itself.
  void Changed();

 private:
  AlarmControlView& view_;
  bool updating_ = false;
};

}  // namespace kestrel
