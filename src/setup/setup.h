// A set-up: the whole configuration of a sensor as a value.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "alarms/band_table.h"
#include "record/record.h"
#include "regmap/bit_field.h"

namespace kestrel::setup {

// The registers that say how the sensor works, in the order in which they are restored: lines have
// their levels before they become outputs, and what starts anything comes last. Commands, pointers
// into buffers and bands, counters, results, dates and keys are none.
inline constexpr std::array<const char*, 12> kRegisterNames{
    "X_NULL",    "Y_NULL",    "Z_NULL",   "FFT_AVG",  "REC_PNTR", "REC_PRD",
    "ALM_S_MAG", "GPIO_CTRL", "DIO_CTRL", "ALM_CTRL", "ST_CTRL",  "REC_CTRL"};
inline constexpr std::size_t kRegisters = kRegisterNames.size();

enum class Register : std::uint8_t {
  XNull,
  YNull,
  ZNull,
  FftAvg,
  RecPntr,
  RecPrd,
  AlmSMag,
  GpioCtrl,
  DioCtrl,
  AlmCtrl,
  StCtrl,
  RecCtrl
};
[[nodiscard]] constexpr std::size_t Index(Register which) {
  return static_cast<std::size_t>(which);
}

// Its row in the register table.
[[nodiscard]] std::int16_t RowOf(std::size_t index);
// The largest word that it holds.
[[nodiscard]] std::uint16_t LargestOf(std::size_t index);

// Words of the registers ALM_F_LOW to ALM_Z_MAG2, in the order of kBandFields.
using BandWords = std::array<std::uint16_t, kBandFields.size()>;

struct Setup {
  std::string name{};
  std::chrono::system_clock::time_point when{};  // milliseconds
  std::string program{};                         // the version that saved it
  SensorIdentity sensor{};
  std::uint16_t product = 0;   // PROD_ID
  std::uint16_t revision = 0;  // REV
  std::array<std::uint16_t, kRegisters> registers{};
  // By option 0..3 and band 1..6, the first of which is element 0.
  std::array<std::array<BandWords, kAlarmBands>, kSampleRateOptions> bands{};

  [[nodiscard]] std::uint16_t Of(Register which) const { return registers[Index(which)]; }
  [[nodiscard]] BandWords& Band(int option, int band) {
    return bands.at(static_cast<std::size_t>(option)).at(static_cast<std::size_t>(band - 1));
  }
  [[nodiscard]] const BandWords& Band(int option, int band) const {
    return bands.at(static_cast<std::size_t>(option)).at(static_cast<std::size_t>(band - 1));
  }
  bool operator==(const Setup&) const = default;
};

// GPIO_CTRL without the levels of lines that are inputs: these are what the world outside drives.
[[nodiscard]] std::uint16_t WithoutInputs(std::uint16_t gpioCtrl, std::uint16_t dioCtrl);

// "option 2, band 3".
[[nodiscard]] std::string BandName(int option, int band);

// A field's code and its meaning, "1: Hanning [default]".
[[nodiscard]] std::string FieldWords(const cBitFieldProp& field);

// What a register's word means, "3000 (3.662 V)"; other registers of the same set-up may say which
// unit it has.
[[nodiscard]] std::string WordText(const Setup& setup, std::size_t index);
// What a value of a band means, by its place in kBandFields: "40 (7.83 kHz)", "120 (0.143 g)".
[[nodiscard]] std::string BandText(const Setup& setup, int option, int band, std::size_t field);

}  // namespace kestrel::setup
