// cALMCtrl: the model of the alarm control register.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "regmap/bit_field.h"
#include "transport/register_access.h"

namespace kestrel {

// The fields of an ALM_CTRL word, highest bits first.
[[nodiscard]] std::vector<cBitFieldProp> DescribeAlmCtrl(std::int32_t word);

// Model of ALM_CTRL: which alarms are on and what they drive. Fields are 16-bit codes, stored as
// given without range checks, 0 at the start.
class cALMCtrl {
 public:
  explicit cALMCtrl(RegisterAccess& registers) : registers_(registers) {}

  [[nodiscard]] std::int16_t ResponseDelay() const { return responseDelay_; }
  void ResponseDelay(std::int16_t code) { responseDelay_ = code; }

  // 1 = alarm flags in the status register stay set until cleared.
  [[nodiscard]] std::int16_t LatchSTATUSRegisterAlarmFlagsEnable() const { return latch_; }
  void LatchSTATUSRegisterAlarmFlagsEnable(std::int16_t value) { latch_ = value; }

  // 1 = alarm 1 and alarm 2 drive DIO1 and DIO2.
  [[nodiscard]] std::int16_t EnableAlarm1Alarm2onDIO1DIO2() const { return dioEnable_; }
  void EnableAlarm1Alarm2onDIO1DIO2(std::int16_t value) { dioEnable_ = value; }

  // 1 = alarm when greater than the limit, 0 = when less.
  [[nodiscard]] std::int16_t SystemAlarmComparisonPolarity() const { return systemPolarity_; }
  void SystemAlarmComparisonPolarity(std::int16_t value) { systemPolarity_ = value; }

  // 1 = temperature, 0 = power supply.
  [[nodiscard]] std::int16_t SystemAlarmSource() const { return systemSource_; }
  void SystemAlarmSource(std::int16_t value) { systemSource_ = value; }

  [[nodiscard]] std::int16_t SystemAlarmEnable() const { return systemEnable_; }
  void SystemAlarmEnable(std::int16_t value) { systemEnable_ = value; }

  [[nodiscard]] std::int16_t SpectralAlarmZEnable() const { return spectralZ_; }
  void SpectralAlarmZEnable(std::int16_t value) { spectralZ_ = value; }

  [[nodiscard]] std::int16_t SpectralAlarmYEnable() const { return spectralY_; }
  void SpectralAlarmYEnable(std::int16_t value) { spectralY_ = value; }

  [[nodiscard]] std::int16_t SpectralAlarmXEnable() const { return spectralX_; }
  void SpectralAlarmXEnable(std::int16_t value) { spectralX_ = value; }

  // The whole word as last read.
  [[nodiscard]] std::int16_t ReadWord() const { return readWord_; }

  // Composes the register from the fields (unmasked) and writes it; ReadWord stays.
  void WriteAlmCtrl();

  // Reads the register into ReadWord and the fields.
  bool ReadAlmCtrl();

 private:
  RegisterAccess& registers_;
  std::int16_t responseDelay_ = 0;
  std::int16_t latch_ = 0;
  std::int16_t dioEnable_ = 0;
  std::int16_t systemPolarity_ = 0;
  std::int16_t systemSource_ = 0;
  std::int16_t systemEnable_ = 0;
  std::int16_t spectralZ_ = 0;
  std::int16_t spectralY_ = 0;
  std::int16_t spectralX_ = 0;
  std::int16_t readWord_ = 0;
};

// The model all windows share (none); made by InitRegisterTable, never replaced.
extern const std::unique_ptr<cALMCtrl>& gAlmCtrl;

void MakeAlmCtrl(RegisterAccess& registers);
void DropAlmCtrl();

}  // namespace kestrel
