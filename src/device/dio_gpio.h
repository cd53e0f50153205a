// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>

#include "app/delay.h"
#include "transport/register_access.h"

namespace kestrel {

inline constexpr int kDioLines = 2;

// Functions of a line, as DIO_CTRL codes them.
enum class DioFunction { Gpio = 0, Alarm = 1, CaptureTrigger = 2, Busy = 3 };

// The option groups of one line; of a group nothing may be selected.
struct DioLine {
  std::optional<DioFunction> function;
  std::optional<bool> activeHigh;
  std::optional<bool> output;  // otherwise input
  std::optional<bool> high;    // output level
};

using DioLines = std::array<DioLine, kDioLines>;

class DioGpioView {
 public:
  virtual ~DioGpioView() = default;
  // Direction and level can be chosen only where the function is general-purpose I/O.
  virtual void ShowLines(const DioLines& lines) = 0;
  // The registers' words in hexadecimal, as read.
  virtual void ShowWords(const std::string& dioCtrl, const std::string& gpioCtrl) = 0;
  [[nodiscard]] virtual DioLines Lines() = 0;
};

// The sensor's two digital lines: composes DIO_CTRL and GPIO_CTRL, writes a register as soon as one
// of its options is chosen and reads both back.
class DioGpio {
 public:
  DioGpio(RegisterAccess& registers, SoftwareDelay& delay, DioGpioView& view)
      : registers_(registers), delay_(delay), view_(view) {}

  // Refreshes the window; it stays as it is while the sensor cannot be reached. Whatever the
  // polarity bits hold, active high is shown.
  void ReadDIOGPIO();
  void WriteDIOCTRL();
  void WriteGPIOCTRL();

  // An option was chosen: writes, unless the window is filling itself.
  void DioChanged();
  void GpioChanged();

 private:
  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  DioGpioView& view_;
  bool updating_ = false;
};

}  // namespace kestrel
