// The null registers shift samples of their own axis.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

using namespace command;

constexpr double kNullLsbG = 0.004768372;

// Of a sensor that feels nothing.
class Nulls : public SensorTest {
 protected:
  void SetNull(unsigned axis, int null) {
    Write(static_cast<std::uint8_t>(reg::kXNull + 2 * axis), static_cast<std::uint16_t>(null));
  }
  std::int16_t Null(unsigned axis) {
    return static_cast<std::int16_t>(Read(static_cast<std::uint8_t>(reg::kXNull + 2 * axis)));
  }
  // The code that every sample of a time record has.
  int Sample(unsigned axis) {
    const auto samples = Samples(axis);
    EXPECT_EQ(samples, std::vector<std::int16_t>(512, samples[0]));
    return samples[0];
  }
};

TEST_F(Nulls, ShiftEverySampleOfTheirOwnAxisInEveryRange) {
  for (unsigned range = 0; range < 4; ++range) {
    Write(reg::kRecCtrl, RecCtrl(2, range, 0, 0));
    for (unsigned axis = 0; axis < 3; ++axis) {
      for (const int null : {-150, -1, 1, 150}) {
        SetNull(axis, null);
        Capture();
        for (unsigned other = 0; other < 3; ++other) {
          const double expectedG = other == axis ? null * kNullLsbG : 0.0;
          EXPECT_EQ(Sample(other), std::lround(expectedG / kSampleLsbG[range])) << axis << null;
        }
      }
      SetNull(axis, 0);
    }
  }
}

TEST_F(Nulls, ShowAsTheMeanInBinZeroOfASpectrumAndNowhereElse) {
  Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 0));
  SetNull(1, -100);
  Capture();
  const auto spectrum = Spectrum(1);
  EXPECT_EQ(spectrum[0], std::lround(100 * kNullLsbG / kMagnitudeLsbG[0]));
  EXPECT_EQ(std::vector<std::uint16_t>(spectrum.begin() + 1, spectrum.end()),
            std::vector<std::uint16_t>(255, 0));
}

TEST_F(Nulls, ClearedShiftLaterSamplesNoMore) {
  Write(reg::kRecCtrl, RecCtrl(2, 0, 0, 0));
  for (unsigned axis = 0; axis < 3; ++axis) SetNull(axis, 50);
  Command(kClearNulls);
  Capture();
  for (unsigned axis = 0; axis < 3; ++axis) {
    EXPECT_EQ(Null(axis), 0);
    EXPECT_EQ(Sample(axis), 0);
  }
}

TEST_F(Nulls, OfAutonullBringBackEachAxisToZeroInEveryRange) {
  Scenario scenario = SingleTone(0.0, 0.0);
  const double offsetsG[] = {0.30, -0.20, 0.05};
  for (unsigned axis = 0; axis < 3; ++axis) scenario.axes[axis].offsetG = offsetsG[axis];
  sensor.SetScenario(scenario);
  for (unsigned range = 0; range < 4; ++range) {
    Write(reg::kRecCtrl, RecCtrl(2, range, 0, 0));
    Command(kClearNulls);
    Command(kAutonull);
    Capture();
    for (unsigned axis = 0; axis < 3; ++axis) {
      EXPECT_EQ(Null(axis), std::lround(-offsetsG[axis] / kNullLsbG)) << range;
      EXPECT_NEAR(Sample(axis) * kSampleLsbG[range], 0.0, (kNullLsbG + kSampleLsbG[range]) / 2);
    }
  }
}

TEST_F(Nulls, AreSavedWithTheSettings) {
  SetNull(2, -7);
  Command(kFlashUpdate);
  SetNull(2, 9);
  Command(kSoftwareReset);
  EXPECT_EQ(Null(2), -7);
}

}  // namespace
}  // namespace kestrel
