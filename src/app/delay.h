// Short waits between register accesses, and what the calibration at the start reports.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "seams/clock.h"
#include "seams/mouse_pointer.h"

namespace kestrel {

// What the calibration found, for reading; start values in brackets.
extern const std::int32_t& LoopsPer10us;       // empty loop iterations that take 10 us (0)
extern const bool& DelayCalibrated;            // (false); no unit
extern const float& MinimumDelay;              // ms (0)
extern const std::int32_t& MinimumDelayCount;  // iterations (0); reported, used by no wait
extern const std::string& DelayReport;         // the figures of the calibration ("")

// Back to the start values in brackets.
void ResetDelayState();

// The short waits between register accesses. The wait itself follows the monotonic clock; the
// computer's loop speed is still measured at start-up, for the report.
class SoftwareDelay {
 public:
  SoftwareDelay(Clock& clock, MousePointer& pointer) : clock_(clock), pointer_(pointer) {}

  // Waits `ms` milliseconds, rounded to 0.01 ms. 0 returns at once; anything else below 0.01,
  // negative values included, becomes 0.01, in the caller's variable too.
  void Delay(float& ms);
  void Delay(float&& ms) { Delay(ms); }

  // Measures LoopsPer10us in up to three half-second trials and one of three seconds, and writes
  // the report. Throws RuntimeError "Overflow" when a count leaves 32 bits.
  void CalibrateDelay();

  // The next wait calibrates first.
  static void ForgetCalibration();

  // Spares the trials: LoopsPer10us keeps its first guess and the report says so.
  void SkipCalibration();

 private:
  [[nodiscard]] float TrialSeconds(float ms);

  Clock& clock_;
  MousePointer& pointer_;
};

}  // namespace kestrel
