// cRecInfo: how the record at hand was taken.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "regmap/bit_field.h"
#include "transport/register_access.h"

namespace kestrel {

// Texts of codes that REC_INFO and REC_CTRL share.
[[nodiscard]] std::string SampleRateText(std::int16_t code);
[[nodiscard]] std::string WindowText(std::int16_t code);

// The fields of a REC_INFO word: sample-rate option, window, range, FFT averages.
[[nodiscard]] std::array<cBitFieldProp, 4> DescribeRecInfo(std::int32_t word);

// Model of REC_INFO: how the record at hand was taken. Each field is described for display.
class cRecInfo {
 public:
  explicit cRecInfo(RegisterAccess& registers) : registers_(registers) {}

  // The word as last read (0).
  [[nodiscard]] double DecimalReadWord() const { return word_; }

  [[nodiscard]] cBitFieldProp SampleRateOption() const { return sampleRateOption_; }
  [[nodiscard]] cBitFieldProp Windowing() const { return windowing_; }
  [[nodiscard]] cBitFieldProp SignalRange() const { return signalRange_; }
  [[nodiscard]] cBitFieldProp FFTAverages() const { return fftAverages_; }

  // Reads and decodes the register. Returns whether the sensor gave it.
  bool ReadRec_Info();
  // Decodes a word of the register that was read elsewhere.
  void Decode(std::int32_t word);

 private:
  RegisterAccess& registers_;
  double word_ = 0;
  cBitFieldProp sampleRateOption_;
  cBitFieldProp windowing_;
  cBitFieldProp signalRange_;
  cBitFieldProp fftAverages_;
};

// The model all windows share (none); made by InitRegisterTable, never replaced.
extern const std::unique_ptr<cRecInfo>& gRecInfo;

void MakeRecInfo(RegisterAccess& registers);
void DropRecInfo();

}  // namespace kestrel
