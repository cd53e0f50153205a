// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include "device/dio_gpio.h"

#include "device/field.h"
#include "device/updating_flag.h"
#include "numeric/conversions.h"
#include "numeric/number_format.h"
#include "regmap/register_table.h"

namespace kestrel {
namespace {

// The sensor needs this long to take over a line's function.
constexpr float kDioWaitMs = 100;

constexpr std::array<Field, kDioLines> kPolarity{{{0, 0x0001}, {1, 0x0002}}};
constexpr std::array<Field, kDioLines> kFunction{{{2, 0x000C}, {4, 0x0030}}};
constexpr std::array<Field, kDioLines> kDirection{{{0, 0x0001}, {1, 0x0002}}};
constexpr std::array<Field, kDioLines> kLevel{{{8, 0x0100}, {9, 0x0200}}};

std::int16_t Code(std::optional<bool> option) {
  return option.value_or(false) ? std::int16_t{1} : std::int16_t{0};
}
std::int16_t Code(std::optional<DioFunction> function) {
  return static_cast<std::int16_t>(function.value_or(DioFunction::Gpio));
}

}  // namespace

void DioGpio::WriteDIOCTRL() {
  const DioLines lines = view_.Lines();
  double word = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    word +=
        kPolarity[i].Place(Code(lines[i].activeHigh)) + kFunction[i].Place(Code(lines[i].function));
  }
  registers_.WriteReg(row::DIO_CTRL, ToLong(word));
  delay_.Delay(float{kDioWaitMs});
  ReadDIOGPIO();
}

void DioGpio::WriteGPIOCTRL() {
  const DioLines lines = view_.Lines();
  double word = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    word += kDirection[i].Place(Code(lines[i].output)) + kLevel[i].Place(Code(lines[i].high));
  }
  registers_.WriteReg(row::GPIO_CTRL, ToLong(word));
  ReadDIOGPIO();
}

void DioGpio::ReadDIOGPIO() {
  const UpdatingFlag updating(updating_);
  registers_.ReadReg(row::DIO_CTRL);
  const std::int32_t dio = RegValue;
  if (!RegisterAccess::Usable()) return;
  registers_.ReadReg(row::GPIO_CTRL);
  const std::int32_t gpio = RegValue;
  if (!RegisterAccess::Usable()) return;
  DioLines lines;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    lines[i].function = static_cast<DioFunction>(kFunction[i].Take(dio));
    lines[i].activeHigh = true;
    if (lines[i].function != DioFunction::Gpio) continue;
    lines[i].output = kDirection[i].Take(gpio) != 0;
    lines[i].high = kLevel[i].Take(gpio) != 0;
  }
  view_.ShowLines(lines);
  view_.ShowWords(Hex(dio), Hex(gpio));
}

void DioGpio::DioChanged() {
  if (!updating_) WriteDIOCTRL();
}

void DioGpio::GpioChanged() {
  if (!updating_) WriteGPIOCTRL();
}

}  // namespace kestrel
