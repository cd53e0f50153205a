// Functions, polarity and levels of the two lines, from DIO_CTRL and GPIO_CTRL.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/digital_pins.h"

#include <utility>

#include "simulator/registers/sensor_registers.h"

namespace kestrel {
namespace {

// Codes of the function fields of DIO_CTRL.
enum class Function : unsigned { GeneralPurpose = 0, Alarm = 1, CaptureTrigger = 2, Busy = 3 };

Function FunctionOf(std::size_t index, std::uint16_t dioCtrl) {
  return static_cast<Function>((unsigned{dioCtrl} >> (2 + 2 * index)) & 3U);
}

bool Bit(std::size_t bit, std::uint16_t word) {
  return ((unsigned{word} >> bit) & 1U) != 0;
}

bool IsActiveHigh(std::size_t index, std::uint16_t dioCtrl) {
  return Bit(index, dioCtrl);
}

bool IsOutput(std::size_t index, std::uint16_t gpioCtrl) {
  return Bit(index, gpioCtrl);
}

// Alarm 1 on line 1 and alarm 2 on line 2, or any alarm on either.
std::uint16_t AlarmsOn(std::size_t index, const DigitalPins::Sensor& sensor) {
  if (!sensor.partsAlarms) return sensor::kAlarmFlags;
  return index == 0 ? sensor::kAlarms1 : sensor::kAlarms2;
}

}  // namespace

bool DigitalPins::Level(int line, const Sensor& sensor) const {
  const std::size_t index = Index(line);
  const bool driven = driven_.at(index);
  const bool activeHigh = IsActiveHigh(index, sensor.dioCtrl);
  switch (FunctionOf(index, sensor.dioCtrl)) {
    case Function::GeneralPurpose:
      return IsOutput(index, sensor.gpioCtrl) ? Bit(8 + index, sensor.gpioCtrl) : driven;
    case Function::Alarm:
      return ((sensor.status & AlarmsOn(index, sensor)) != 0) == activeHigh;
    case Function::Busy:
      return sensor.busy == activeHigh;
    case Function::CaptureTrigger:
      break;
  }
  return driven;
}

bool DigitalPins::Drive(int line, bool high, std::uint16_t dioCtrl) {
  const std::size_t index = Index(line);
  const bool changed = std::exchange(driven_.at(index), high) != high;
  return changed && FunctionOf(index, dioCtrl) == Function::CaptureTrigger &&
         high == IsActiveHigh(index, dioCtrl);
}

std::uint16_t DigitalPins::ReadGpioCtrl(std::uint16_t dioCtrl, std::uint16_t gpioCtrl) const {
  unsigned word = gpioCtrl;
  for (std::size_t index = 0; index < kLines; ++index) {
    if (FunctionOf(index, dioCtrl) != Function::GeneralPurpose || IsOutput(index, gpioCtrl))
      continue;
    word = (word & ~(0x100U << index)) | ((driven_[index] ? 0x100U : 0U) << index);
  }
  return static_cast<std::uint16_t>(word);
}

}  // namespace kestrel
