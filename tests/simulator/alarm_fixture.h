// A sensor with one alarm band and tones around its thresholds.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "simulator/sensor_fixture.h"

namespace kestrel {

// Spectra of one average in the 1 g range. Band 1 of option 0 is bins 20 to 29, with a warning
// above 0.1 g and a fault above 0.2 g on every axis.
class AlarmTest : public SensorTest {
 protected:
  static constexpr std::uint16_t kReady = 1 << 7;
  static constexpr std::uint16_t kXWarns = 1 << 8;
  static constexpr std::uint16_t kXFails = 1 << 11;
  static constexpr std::uint16_t kSystem = 1 << 14;

  // ALM_CTRL.
  static constexpr std::uint16_t kX = 1 << 0;
  static constexpr std::uint16_t kXyz = 7;
  static constexpr std::uint16_t kSystemOn = 1 << 3;
  static constexpr std::uint16_t kOfTemperature = 1 << 4;
  static constexpr std::uint16_t kGreater = 1 << 5;
  static constexpr std::uint16_t kParts = 1 << 6;
  static constexpr std::uint16_t kLatch = 1 << 7;
  static constexpr std::uint16_t kDelayOf1 = 1 << 8;

  static constexpr double kCalmG = 0.05;
  static constexpr double kWarningG = 0.15;
  static constexpr double kFaultG = 0.25;

  void SetUp() override {
    const auto warning = static_cast<std::uint16_t>(0.1 / kMagnitudeLsbG[0]);
    const auto fault = static_cast<std::uint16_t>(0.2 / kMagnitudeLsbG[0]);
    SaveBand(1, {20, 29, warning, warning, warning, fault, fault, fault});
    SetMode(0);
    Write(reg::kFftAvg, 1);
  }
  // Mode 0 takes spectra, 1 a series, 2 time records; storage 1 stores alarms, 2 everything.
  void SetMode(unsigned mode, unsigned storage = 0) {
    Write(reg::kRecCtrl, RecCtrl(mode, 0, 0, 1, storage));
  }
  // From now on the X axis feels this.
  void Shake(double amplitudeG) {
    Scenario scenario = sensor.CurrentScenario();
    scenario.axes[0].tones = {{BinHz(24, 0), amplitudeG}};
    sensor.SetScenario(scenario);
  }
  void CaptureTone(double amplitudeG) {
    Shake(amplitudeG);
    Capture(1s);
  }
};

}  // namespace kestrel
