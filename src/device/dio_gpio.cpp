// DIO_CTRL and GPIO_CTRL decoded, composed and written.
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

DioLine Decode(std::size_t line, std::int32_t dio, std::int32_t gpio) {
  DioLine shown;
  shown.function = static_cast<DioFunction>(kFunction.at(line).Take(dio));
  shown.activeHigh = true;
  shown.polarityBit = kPolarity.at(line).Take(dio) != 0;
  if (shown.function == DioFunction::Gpio) {
    shown.output = kDirection.at(line).Take(gpio) != 0;
    shown.high = kLevel.at(line).Take(gpio) != 0;
  }
  return shown;
}

}  // namespace

void DioGpio::WriteDIOCTRL() {
  const DioControls controls = view_.Controls();
  double word = 0;
  for (std::size_t i = 0; i < controls.lines.size(); ++i) {
    word += kPolarity[i].Place(Code(controls.lines[i].activeHigh)) +
            kFunction[i].Place(Code(controls.lines[i].function));
  }
  registers_.WriteReg(row::DIO_CTRL, ToLong(word));
  delay_.Delay(float{kDioWaitMs});
  ReadDIOGPIO();
}

void DioGpio::WriteGPIOCTRL() {
  const DioControls controls = view_.Controls();
  double word = 0;
  for (std::size_t i = 0; i < controls.lines.size(); ++i) {
    word += kDirection[i].Place(Code(controls.lines[i].output)) +
            kLevel[i].Place(Code(controls.lines[i].high));
  }
  registers_.WriteReg(row::GPIO_CTRL, ToLong(word));
  ReadDIOGPIO();
}

void DioGpio::ReadDIOGPIO() {
  const UpdatingFlag updating(updating_);
  const auto dio = registers_.Read(row::DIO_CTRL);
  const auto gpio = registers_.Read(row::GPIO_CTRL);
  current_ = dio && gpio;
  if (current_) {
    // The raw words have the bits too that the registers' decoding leaves out.
    for (std::size_t i = 0; i < read_.lines.size(); ++i) {
      read_.lines[i] = Decode(i, dio->raw, gpio->raw);
    }
    read_.dioCtrl = Hex(dio->raw);
    read_.gpioCtrl = Hex(gpio->raw);
  }
  view_.ShowControls(read_);
}

void DioGpio::Changed(void (DioGpio::*write)()) {
  if (updating_) return;
  if (current_) {
    (this->*write)();
  } else {
    ReadDIOGPIO();
  }
}

void DioGpio::DioChanged() {
  Changed(&DioGpio::WriteDIOCTRL);
}

void DioGpio::GpioChanged() {
  Changed(&DioGpio::WriteGPIOCTRL);
}

void DioGpio::ShowLastRead() {
  const UpdatingFlag updating(updating_);
  view_.ShowControls(read_);
}

}  // namespace kestrel
