// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "app/delay.h"
#include "app/mouse_pointer.h"
#include "device/axis.h"
#include "transport/register_access.h"

namespace kestrel {

class CalibrationView {
 public:
  virtual ~CalibrationView() = default;
  // The null register's word in hexadecimal and its value in g.
  virtual void ShowNull(Axis axis, const std::string& word, const std::string& value) = 0;
  [[nodiscard]] virtual std::string ValueText(Axis axis) = 0;
};

// The offset corrections of the three axes.
class Calibration {
 public:
  Calibration(RegisterAccess& registers, SoftwareDelay& delay, MousePointer& pointer,
              CalibrationView& view)
      : registers_(registers), delay_(delay), pointer_(pointer), view_(view) {}

  // Refreshes all rows; those of a lost sensor stay as they are.
  void ReadCalRegisters();

  // Writes the number that the axis's value box begins with, 0 when it begins with none. One that
  // the register cannot hold throws RuntimeError "Overflow" with the step and the text.
  void WriteNull(Axis axis);

  void cmdAutoNull_Click();

  // Has the sensor save; the hourglass shows meanwhile. Nothing is read back.
  void cmdFlashUpdate_Click();

  // Bound to no control: retrieves a record and refreshes.
  void RetrieveAndRead();

 private:
  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  MousePointer& pointer_;
  CalibrationView& view_;
};

}  // namespace kestrel
