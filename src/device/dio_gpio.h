// The logic of the window of the digital lines.
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

// One line in the window. Of an option group nothing may be selected.
struct DioLine {
  std::optional<DioFunction> function;
  std::optional<bool> activeHigh;
  std::optional<bool> output;       // otherwise input
  std::optional<bool> high;         // output level
  std::optional<bool> polarityBit;  // as the sensor holds it; only shown
};

struct DioControls {
  std::array<DioLine, kDioLines> lines;
  std::string dioCtrl;  // the whole words in hexadecimal; only shown
  std::string gpioCtrl;
};

class DioGpioView {
 public:
  virtual ~DioGpioView() = default;
  // Direction and level can be chosen only where the function is general-purpose I/O.
  virtual void ShowControls(const DioControls& controls) = 0;
  [[nodiscard]] virtual DioControls Controls() = 0;
};

// The sensor's two digital lines: composes DIO_CTRL and GPIO_CTRL, writes a register as soon as one
// of its options is chosen and reads both back.
class DioGpio {
 public:
  DioGpio(RegisterAccess& registers, SoftwareDelay& delay, DioGpioView& view)
      : registers_(registers), delay_(delay), view_(view) {}

  // Refreshes the window from the sensor; while it cannot be reached the window shows what was read
  // before. Whatever the polarity bits hold, the options show active high.
  void ReadDIOGPIO();

  // Both write every line as its options show it; a group with nothing selected counts as 0.
  void WriteDIOCTRL();
  void WriteGPIOCTRL();

  // An option was chosen: writes, unless the window is filling itself. Options that do not show
  // what the sensor holds (nothing read yet, or lost in between) are refreshed instead.
  void DioChanged();
  void GpioChanged();

  // Takes back what was chosen since the last reading.
  void ShowLastRead();

 private:
  void Changed(void (DioGpio::*write)());

  RegisterAccess& registers_;
  SoftwareDelay& delay_;
  DioGpioView& view_;
  DioControls read_;
  bool current_ = false;  // the last reading succeeded
  bool updating_ = false;
};

}  // namespace kestrel
