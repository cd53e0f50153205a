// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "regmap/bit_field.h"
#include "transport/register_access.h"

namespace kestrel {

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

  // Reads and decodes the register.
  void ReadRec_Info();

 private:
  RegisterAccess& registers_;
  double word_ = 0;
  cBitFieldProp sampleRateOption_;
  cBitFieldProp windowing_;
  cBitFieldProp signalRange_;
  cBitFieldProp fftAverages_;
};

// The model all windows share (none); made by InitRegisterTable, never replaced.
extern std::unique_ptr<cRecInfo> gRecInfo;

}  // namespace kestrel
