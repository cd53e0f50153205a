// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "simulator/spectrum.h"

namespace kestrel {

// How one record is taken, as latched from REC_CTRL and FFT_AVG when it starts.
struct CaptureSettings {
  bool timeRecord = false;
  unsigned sampleRateOption = 0;  // 0..3
  WindowShape window = WindowShape::Rectangular;
  unsigned range = 0;     // 0..3: 1, 5, 20, 70 g
  unsigned averages = 0;  // 0..255, as set; 0 counts as 1

  [[nodiscard]] static CaptureSettings Latch(std::uint16_t recCtrl, std::uint16_t fftAvg);

  [[nodiscard]] double SampleRateHz() const;
  [[nodiscard]] unsigned Blocks() const;  // of 512 samples
  [[nodiscard]] std::chrono::nanoseconds Duration() const;

  // g per LSB of the record's words, and of time samples whatever the record is.
  [[nodiscard]] double MagnitudeLsbG() const;
  [[nodiscard]] double SampleLsbG() const { return 2.0 * MagnitudeLsbG(); }

  // REC_INFO.
  [[nodiscard]] std::uint16_t InfoWord() const;
};

}  // namespace kestrel
