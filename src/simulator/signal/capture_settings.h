// How one record is taken, as latched when it starts.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>

#include "simulator/signal/spectrum.h"

namespace kestrel {

// Which records go to flash: codes of the storage field of REC_CTRL.
enum class RecordStorage : unsigned { None = 0, AlarmTrigger = 1, All = 2 };

// How one record is taken, as latched from REC_CTRL, FFT_AVG and REC_PRD when it starts.
struct CaptureSettings {
  bool timeRecord = false;
  bool repeats = false;
  RecordStorage storage = RecordStorage::None;
  unsigned sampleRateOption = 0;  // 0..3
  WindowShape window = WindowShape::Rectangular;
  unsigned range = 0;                  // 0..3: 1, 5, 20, 70 g
  unsigned averages = 0;               // 0..255, as set; 0 counts as 1
  std::chrono::nanoseconds period{0};  // wanted from start to start

  [[nodiscard]] static CaptureSettings Latch(std::uint16_t recCtrl, std::uint16_t fftAvg,
                                             std::uint16_t recPrd);

  [[nodiscard]] double SampleRateHz() const;
  [[nodiscard]] unsigned Blocks() const;  // of 512 samples
  [[nodiscard]] std::chrono::nanoseconds Duration() const;

  // From start to start: the period, but at least a capture's duration.
  [[nodiscard]] std::chrono::nanoseconds Interval() const;

  // How many captures of a series are complete `elapsed` after the first one began.
  [[nodiscard]] std::uint64_t CompletedIn(std::chrono::nanoseconds elapsed) const;

  // g per LSB of the record's words, and of time samples whatever the record is.
  [[nodiscard]] double MagnitudeLsbG() const;
  [[nodiscard]] double SampleLsbG() const { return 2.0 * MagnitudeLsbG(); }

  // REC_INFO.
  [[nodiscard]] std::uint16_t InfoWord() const;
};

}  // namespace kestrel
