// The loop's calibration against the timer of the day, and waits on the monotonic clock.
// SPDX-License-Identifier: MIT
#include "app/delay.h"

#include <algorithm>
#include <chrono>

#include "numeric/conversions.h"
#include "numeric/number_format.h"

namespace kestrel {

namespace {

struct DelayState {
  std::int32_t loopsPer10us = 0;
  bool calibrated = false;
  float minimum = 0;
  std::int32_t minimumCount = 0;
  std::string report;
};

DelayState state;

}  // namespace

const std::int32_t& LoopsPer10us = state.loopsPer10us;
const bool& DelayCalibrated = state.calibrated;
const float& MinimumDelay = state.minimum;
const std::int32_t& MinimumDelayCount = state.minimumCount;
const std::string& DelayReport = state.report;

namespace {

constexpr float kResolutionMs = 0.01F;
constexpr std::chrono::microseconds kPass{10};
constexpr std::int32_t kFirstGuess = 1000;
constexpr float kHalfSecondMs = 500;
constexpr float kThreeSecondsMs = 3000;

std::int32_t Passes(float ms) {
  return ToLong(static_cast<double>(ms * 100));
}

std::string Line(const char* title, const std::string& figure) {
  return title + figure + "\r\n";
}

std::string Report(float first, float second, float third, float actual) {
  return Line("First 0.5Sec delay =    ", GeneralNumber(first)) +
         Line("2nd 0.5Sec delay =   ", GeneralNumber(second)) +
         Line("3rd 0.5Sec delay =   ", GeneralNumber(third)) +
         Line("Actual 3Sec delay =  ", GeneralNumber(actual)) +
         Line("10uS Delay Count =   ", GeneralNumber(LoopsPer10us)) +
         Line("Minimum Delay=      ", GeneralNumber(MinimumDelay * 1000) + " uS") +
         Line("Minimum Delay Count= ", GeneralNumber(MinimumDelayCount));
}

void SetLoops(double loops) {
  state.loopsPer10us = ToLong(loops);
}

}  // namespace

void ResetDelayState() {
  state = {};
}

void SoftwareDelay::Delay(float& ms) {
  if (ms == 0) return;
  if (ms < kResolutionMs) ms = kResolutionMs;
  const std::int32_t passes = Passes(ms);
  if (!DelayCalibrated) CalibrateDelay();
  clock_.WaitUntil(clock_.Monotonic() + passes * kPass);
}

void SoftwareDelay::CalibrateDelay() {
  state.calibrated = true;
  state.loopsPer10us = kFirstGuess;
  const Hourglass hourglass(pointer_);

  const float first = TrialSeconds(kHalfSecondMs);
  float second = 0;
  float third = 0;
  float last = first;
  if (first < 0.005F) {
    SetLoops(LoopsPer10us * 40.0);
    last = second = TrialSeconds(kHalfSecondMs);
  }
  if (last < 0.1F) {
    SetLoops(LoopsPer10us * 6.0);
    last = third = TrialSeconds(kHalfSecondMs);
  }
  last = std::max(last, 0.0005F);
  SetLoops(0.5 / static_cast<double>(last) * LoopsPer10us);

  const float actual = std::max(TrialSeconds(kThreeSecondsMs), 0.1F);
  SetLoops(3.0 / static_cast<double>(actual) * LoopsPer10us);
  state.minimum = static_cast<float>(40.0 / LoopsPer10us * 0.01);
  state.minimumCount = ToLong(static_cast<double>(MinimumDelay) * LoopsPer10us / 0.01);
  state.report = Report(first, second, third, actual);
}

void SoftwareDelay::ForgetCalibration() {
  state.calibrated = false;
}

void SoftwareDelay::SkipCalibration() {
  state.calibrated = true;
  state.loopsPer10us = kFirstGuess;
  state.report = "Delay calibration was skipped.\r\n";
}

// A timer that passes midnight gives a negative time; the floors of the calibration catch it.
float SoftwareDelay::TrialSeconds(float ms) {
  const double start = clock_.SecondsSinceMidnight();
  clock_.RunEmptyLoop(Passes(ms), LoopsPer10us);
  return static_cast<float>(clock_.SecondsSinceMidnight() - start);
}

}  // namespace kestrel
