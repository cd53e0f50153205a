// Registers and bands of a sensor, word by word; what fails is thrown as Stopped.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "setup/sensor_setup.h"

namespace kestrel::setup {

// All of these throw Stopped where the sensor is lost or carries out no command.
class SensorWords {
 public:
  explicit SensorWords(const SensorAccess& sensor) : sensor_(sensor) {}

  [[nodiscard]] std::uint16_t Read(std::int16_t row);
  void Write(std::int16_t row, std::uint16_t word);
  void Wait(float milliseconds) { sensor_.delay.Delay(milliseconds); }

  // All registers of a set-up, in its order.
  [[nodiscard]] std::array<std::uint16_t, kRegisters> Registers();

  // A band out of the sensor's flash, and into it.
  [[nodiscard]] BandWords Band(int option, int band);
  void SaveBand(int option, int band, const BandWords& words);

 private:
  [[nodiscard]] BandWords Retrieved(int option, int band, std::uint16_t mark);

  SensorAccess sensor_;
};

// ALM_PNTR and the registers of its window, put back when it goes, as far as the sensor is there.
class BandWindow {
 public:
  explicit BandWindow(SensorWords& words);
  ~BandWindow();
  BandWindow(const BandWindow&) = delete;
  BandWindow& operator=(const BandWindow&) = delete;

 private:
  SensorWords& words_;
  BandWords earlier_{};
  std::uint16_t pointer_ = 0;
};

}  // namespace kestrel::setup
