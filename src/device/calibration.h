// The logic of the calibration window: offset corrections of the three axes.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>

#include "app/delay.h"
#include "record/axis.h"
#include "seams/mouse_pointer.h"
#include "transport/register_access.h"

namespace kestrel {

class CalibrationView {
 public:
  virtual ~CalibrationView() = default;
  // A null register's word in hexadecimal and its value in g.
  virtual void ShowNull(Axis axis, const std::string& word, const std::string& value) = 0;
  [[nodiscard]] virtual std::string ValueText(Axis axis) = 0;
  // What the user should know about the step just taken.
  virtual void ShowNote(const std::string& text) = 0;
  // What the program waits for, painted at once; empty when the wait has ended.
  virtual void ShowBusy(const std::string& text) = 0;
};

// The offset corrections of the three axes. The hourglass shows during waits that can be felt.
class Calibration {
 public:
  Calibration(RegisterAccess& registers, SoftwareDelay& delay, MousePointer& pointer,
              CalibrationView& view)
      : registers_(registers), delay_(delay), pointer_(pointer), view_(view) {}

  // Refreshes all rows, or none when the sensor cannot be reached.
  void ReadCalRegisters();

  // Writes the number that the axis's value box begins with, 0 when it begins with none, and says
  // so where the text is more than a number. One that the register cannot hold throws RuntimeError
  // "Overflow" with the step and the value; nothing is written then.
  void WriteNull(Axis axis);

  void cmdAutoNull_Click();

  // Sends the command and waits. Nothing is read back.
  void cmdFlashUpdate_Click();

  // Retrieves a record and refreshes. Bound to no control, and called by nothing: kept as a public
  // procedure of the window.
  void RetrieveAndRead();

  // Shows what was last read in place of what was typed since.
  void ShowLastRead();

 private:
  struct NullTexts {
    std::string word;
    std::string value;
  };
  class BusySign;

  void Command(std::int32_t word, float waitMs, const char* busy);

  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  MousePointer& pointer_;
  CalibrationView& view_;
  std::array<NullTexts, 3> read_;
};

}  // namespace kestrel
