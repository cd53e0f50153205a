// The model of REC_CTRL, the register that says how the sensor records.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "regmap/bit_field.h"
#include "transport/register_access.h"

namespace kestrel {

// Which records the sensor keeps, by storage method code.
inline constexpr std::array<const char*, 3> kStorageMethods{"None", "Alarm trig", "All"};

// Units of the recording period, by REC_PRD bits 9:8.
inline constexpr std::array<const char*, 3> kTimeUnits{"Seconds", "Minutes", "Hours"};

// g per LSB of the peak words at a range code 0..3, before any doubling for time records.
[[nodiscard]] double GPerLsb(std::int16_t range);

// A measurement range.
struct SignalRange {
  const char* text;
  double milliG;  // per LSB of a spectrum
};
// By its code, 0 to 3; null for any other.
[[nodiscard]] const SignalRange* FindSignalRange(int code);

// The fields of a REC_CTRL word, highest bits first.
[[nodiscard]] std::vector<cBitFieldProp> DescribeRecCtrl(std::int32_t word);

// Model of REC_CTRL: how the sensor records. Fields are 16-bit codes, stored as given; the derived
// values and texts change only when the register is read. Everything starts at 0 or empty.
class cRecCtrl {
 public:
  explicit cRecCtrl(RegisterAccess& registers) : registers_(&registers) {}

  [[nodiscard]] std::int16_t RecModeCode() const { return recModeCode_; }
  void RecModeCode(std::int16_t code) { recModeCode_ = code; }

  [[nodiscard]] double gLsb() const { return gLsb_; }  // g per LSB
  [[nodiscard]] double gMax() const { return gMax_; }  // g at full scale

  [[nodiscard]] std::int16_t PowerDown() const { return powerDown_; }
  // Takes the program-wide model's power-down as it was last read, whatever the argument: bit 7 of
  // the register is always written back as it came.
  void PowerDown(std::int16_t ignored);

  // Never read from or written to the register.
  [[nodiscard]] std::int16_t RecordStorageMethod() const { return recordStorageMethod_; }
  void RecordStorageMethod(std::int16_t method) { recordStorageMethod_ = method; }

  [[nodiscard]] std::int16_t SampleRate() const { return sampleRate_; }
  void SampleRate(std::int16_t option) { sampleRate_ = option; }

  [[nodiscard]] std::int16_t Windowing() const { return windowing_; }
  void Windowing(std::int16_t code) { windowing_ = code; }

  [[nodiscard]] std::int16_t RangeFS() const { return rangeFS_; }
  void RangeFS(std::int16_t code) { rangeFS_ = code; }

  [[nodiscard]] const std::string& RangeString() const { return rangeString_; }

  // Reads the register first, so every field is refreshed. The name is spelled so.
  [[nodiscard]] std::int16_t StrogeMethod();
  void StrogeMethod(std::int16_t code) { strogeMethod_ = code; }

  // The register's word as the fields compose it.
  [[nodiscard]] std::int32_t Word() const;

  // Composes the register from the fields and writes it. Fields are not masked: a value wider than
  // its field spills into the next bits. Returns whether the sensor was reached.
  bool WriteRecCtrl();

  // Reads the register into the fields, the texts, gLsb and gMax. Returns whether the sensor gave
  // it; where not, they hold what seemed to be read.
  bool ReadRecCtrl();

  // Everything as it was when `earlier` was kept, without a transfer.
  void PutBack(const cRecCtrl& earlier) { *this = earlier; }

 private:
  RegisterAccess* registers_;  // a pointer, so that a state can be kept and put back
  std::int16_t recModeCode_ = 0;
  std::string recModeText_;
  std::int16_t powerDown_ = 0;
  std::int16_t recordStorageMethod_ = 0;
  std::int16_t sampleRate_ = 0;
  std::int16_t windowing_ = 0;
  std::int16_t rangeFS_ = 0;
  std::string rangeString_;
  double gLsb_ = 0;
  double gMax_ = 0;
  std::int16_t strogeMethod_ = 0;
};

// The model all windows share (none); made by InitRegisterTable, never replaced.
extern const std::unique_ptr<cRecCtrl>& gRecCtrl;

void MakeRecCtrl(RegisterAccess& registers);
void DropRecCtrl();

}  // namespace kestrel
