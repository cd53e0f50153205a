// A simulated sensor in timer mode.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "simulator/sensor_fixture.h"

namespace kestrel {

using namespace command;

inline constexpr auto kCapture = 46ms;  // a capture takes 45.11 ms
inline constexpr std::uint16_t kEscape = 1 << 4;
inline constexpr std::uint16_t kReady = 1 << 7;

// Spectra of one average in timer mode.
class Timer : public SensorTest {
 protected:
  void SetUp() override {
    Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1));
    Write(reg::kFftAvg, 1);
  }
  void StartSeries(std::uint16_t recPrd) {
    Write(reg::kRecPrd, recPrd);
    StartStop();
  }
  void StartSeriesAndWaitForItsFirstRecord(std::uint16_t recPrd) {
    StartSeries(recPrd);
    clock.Advance(kCapture);
    ASSERT_EQ(Count(), 1);
  }
  std::uint16_t Count() { return Read(reg::kRecCnt); }
};

struct Period {
  std::uint16_t recPrd;
  std::chrono::nanoseconds length;
};

class TimerPeriod : public Timer, public ::testing::WithParamInterface<Period> {};

}  // namespace kestrel
