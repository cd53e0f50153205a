// The scenarios deliver what their names promise.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

#include "simulator/sensor_fixture.h"

namespace kestrel {
namespace {

std::vector<double> MachineSpectrum(unsigned axis, unsigned option) {
  Bench bench(RunningMachine());
  bench.Write(reg::kRecCtrl, RecCtrl(0, 0, option, 1));
  bench.Capture();
  std::vector<double> peaksG;
  for (const std::uint16_t word : bench.Spectrum(axis)) peaksG.push_back(word * kMagnitudeLsbG[0]);
  return peaksG;
}

std::size_t LargestBin(const std::vector<double>& spectrum) {
  return static_cast<std::size_t>(std::max_element(spectrum.begin() + 3, spectrum.end()) -
                                  spectrum.begin());
}

TEST(RunningMachine, FillsAOneGPlotOnEveryAxisWithAPeakOfItsOwn) {
  const std::size_t bins[] = {116, 5, 42};  // mesh, spindle, bearing
  for (unsigned axis = 0; axis < 3; ++axis) {
    const auto spectrum = MachineSpectrum(axis, 0);
    EXPECT_EQ(LargestBin(spectrum), bins[axis]) << axis;
    EXPECT_GT(spectrum[bins[axis]], 0.5) << axis;
    EXPECT_LT(spectrum[bins[axis]], 0.7) << axis;
  }
}

TEST(RunningMachine, ShowsPeaksWellAboveTheNoiseAtEverySampleRate) {
  for (unsigned option = 0; option < 4; ++option) {
    for (unsigned axis = 0; axis < 3; ++axis) {
      auto spectrum = MachineSpectrum(axis, option);
      const double peak = spectrum[LargestBin(spectrum)];
      std::nth_element(spectrum.begin(), spectrum.begin() + 128, spectrum.end());
      EXPECT_GT(peak, 20 * spectrum[128]) << "axis " << axis << ", option " << option;
    }
  }
}

TEST(RunningMachine, HasAMemsOffsetOnEveryAxis) {
  for (const AxisVibration& axis : RunningMachine().axes) {
    EXPECT_GE(std::abs(axis.offsetG), 0.020);
    EXPECT_LE(std::abs(axis.offsetG), 0.060);
  }
}

TEST(Tones, KeepTheirAmplitudeUnlessTheyGrow) {
  const Tone steady{100.0, 0.5};
  EXPECT_EQ(steady.AmplitudeAt(0), 0.5);
  EXPECT_EQ(steady.AmplitudeAt(1000000), 0.5);
  const Tone growing{100.0, 0.5, 0.0, 0.1, 0.75};
  EXPECT_DOUBLE_EQ(growing.AmplitudeAt(0), 0.5);
  EXPECT_DOUBLE_EQ(growing.AmplitudeAt(2), 0.7);
  EXPECT_DOUBLE_EQ(growing.AmplitudeAt(3), 0.75);
  EXPECT_DOUBLE_EQ(growing.AmplitudeAt(1000000000000), 0.75);
}

// Magnitude in bin 24 of X after each capture of `bench`.
double Grown(Bench& bench) {
  bench.Capture(1s);
  return bench.Spectrum(0)[24] * kMagnitudeLsbG[0];
}

Scenario GrowingTone() {
  Scenario scenario = SingleTone(0.0, 0.0);
  scenario.axes[0].tones = {{BinHz(24, 0), 0.1, 0.0, 0.05, 1.0}};
  return scenario;
}

TEST(Growth, GoesOneStepWithEachCompleteCapture) {
  Bench bench(GrowingTone());
  bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1));
  EXPECT_NEAR(Grown(bench), 0.10, 1e-4);
  EXPECT_NEAR(Grown(bench), 0.15, 1e-4);
  bench.StartStop();
  bench.StopRequest();
  bench.Command(command::kSoftwareReset);
  bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1));
  EXPECT_NEAR(Grown(bench), 0.20, 1e-4) << "a machine does not heal by a reset of the sensor";
  bench.sensor.SetScenario(GrowingTone());
  EXPECT_NEAR(Grown(bench), 0.10, 1e-4);
}

TEST(Growth, CountsTheCapturesOfASeriesThatNobodySaw) {
  Scenario scenario = GrowingTone();
  scenario.axes[0].tones[0].growthG = 1e-5;
  Bench bench(scenario);
  bench.Write(reg::kRecCtrl, RecCtrl(1, 0, 0, 1));
  bench.Write(reg::kFftAvg, 1);
  bench.Write(reg::kRecPrd, 1);
  bench.StartStop();
  bench.clock.Advance(20000s + 500ms);
  ASSERT_EQ(bench.Read(reg::kRecCnt), 20001);
  EXPECT_NEAR(bench.Spectrum(0)[24] * kMagnitudeLsbG[0], 0.3, 1e-4);
}

TEST(Scenarios, HaveNamesOfTheirOwn) {
  const auto names = ScenarioNames();
  EXPECT_EQ(names.front(), "running-machine");
  EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size());
  EXPECT_NE(std::find(names.begin(), names.end(), "bearing-fault"), names.end());
  for (const std::string& name : names) EXPECT_TRUE(ScenarioNamed(name)) << name;
  for (const char* name : {"", "running", "Running-Machine", "bearing-fault "}) {
    EXPECT_FALSE(ScenarioNamed(name)) << name;
  }
}

// The six bits of ALM_x_STAT for the warnings and faults of bands 1 to 6.
std::set<unsigned> BandsThatAlarm(unsigned stat) {
  std::set<unsigned> bands;
  for (unsigned band = 1; band <= 6; ++band) {
    if ((stat >> (2 * band + 2) & 3U) != 0) bands.insert(band);
  }
  return bands;
}

class BearingFaultAt : public ::testing::TestWithParam<unsigned> {};  // window

TEST_P(BearingFaultAt, IsCalmThenWarnsThenFailsInBand3OfZAndNowhereElse) {
  Bench bench(*ScenarioNamed("bearing-fault"));
  if (GetParam() != 1) bench.Write(reg::kRecCtrl, RecCtrl(0, 3, 0, GetParam()));
  for (unsigned capture = 1; capture <= 40; ++capture) {
    bench.Give(command::kClearStatus);
    bench.Capture(500ms);
    SCOPED_TRACE(capture);
    const unsigned flags = capture < 4 ? 0U : capture < 7 ? 1U << 10 : 1U << 10 | 1U << 13;
    EXPECT_EQ(bench.Status(), 0x80U | flags);
    EXPECT_EQ(bench.Stat(0), 0);
    EXPECT_EQ(bench.Stat(1), 0);
    EXPECT_EQ(BandsThatAlarm(bench.Stat(2)),
              capture < 4 ? std::set<unsigned>{} : std::set<unsigned>{3});
    EXPECT_EQ(bench.Stat(2) & 7, capture < 4 ? 0 : 3);
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, BearingFaultAt, ::testing::Values(0U, 1U, 2U));

TEST(BearingFault, ComesInTimerModeToo) {
  Bench bench(BearingFault());
  bench.Write(reg::kRecCtrl, RecCtrl(1, 3, 0, 1));
  bench.Write(reg::kRecPrd, 1);
  bench.StartStop();
  bench.clock.Advance(2500ms);
  EXPECT_EQ(bench.Status(), 0x80);
  bench.clock.Advance(1s);
  EXPECT_EQ(bench.Status(), 0x80 | 1 << 10);
  bench.clock.Advance(3s);
  EXPECT_EQ(bench.Status(), 0x80 | 1 << 10 | 1 << 13);
}

TEST(BearingFault, IsCalmAtTheOptionsThatDoNotSeeTheBearing) {
  for (const unsigned option : {1U, 2U, 3U}) {
    Bench bench(BearingFault());
    bench.Write(reg::kRecCtrl, RecCtrl(0, 3, option, 1));
    for (unsigned capture = 0; capture < 12; ++capture) bench.Capture();
    EXPECT_EQ(bench.Status(), 0x80) << option;
  }
}

TEST(BearingFault, AlarmsAtOnceInTheFinerRangesWhereTheCodesAreLess) {
  for (const unsigned range : {0U, 1U, 2U}) {
    Bench bench(BearingFault());
    bench.Write(reg::kRecCtrl, RecCtrl(0, range, 0, 1));
    bench.Capture();
    EXPECT_EQ(bench.Stat(2) >> 8U & 3U, 3U) << range;
  }
}

TEST(BearingFault, PresetSurvivesASoftwareResetAndNotAFactoryReset) {
  Bench bench(BearingFault());
  EXPECT_EQ(bench.Read(reg::kAlmCtrl), 0x0007);
  bench.Command(command::kSoftwareReset);
  EXPECT_EQ(bench.Read(reg::kAlmCtrl), 0x0007);
  const auto lowOfBand3 = [&] {
    bench.Write(reg::kAlmPntr, 3);
    bench.Command(command::kRetrieveBand);
    return bench.Read(reg::kFLow);
  };
  EXPECT_EQ(lowOfBand3(), 40);
  bench.Command(command::kFactoryReset);
  EXPECT_EQ(bench.Read(reg::kAlmCtrl), 0);
  EXPECT_EQ(lowOfBand3(), 0);
}

TEST(Overheating, RaisesTheSystemAlarmInTheSecondMinuteAndNothingElse) {
  Bench bench(*ScenarioNamed("overheating"));
  bench.Capture(40s);
  EXPECT_EQ(bench.Status(), 0x80);
  bench.clock.Advance(20s);
  bench.Capture();
  EXPECT_EQ(bench.Status(), 0x80 | 1 << 14);
}

TEST(Calibrator, ReadsTenMetresPerSecondSquaredOnEveryAxis) {
  Bench bench(*ScenarioNamed("calibrator"));
  bench.Write(reg::kRecCtrl, RecCtrl(0, 1, 2, 2));
  bench.Capture();
  for (unsigned axis = 0; axis < 3; ++axis) {
    const auto spectrum = bench.Spectrum(axis);
    EXPECT_NEAR(spectrum[52] * kMagnitudeLsbG[1], 10.0 * std::sqrt(2.0) / 9.80665, 0.01) << axis;
  }
}

TEST(AtRest, HasNothingButOffsetAndNoise) {
  Bench bench(*ScenarioNamed("at-rest"));
  bench.Write(reg::kRecCtrl, RecCtrl(0, 0, 0, 1));
  bench.Capture();
  for (unsigned axis = 0; axis < 3; ++axis) {
    const auto spectrum = bench.Spectrum(axis);
    EXPECT_GT(spectrum[0] * kMagnitudeLsbG[0], 0.02);
    EXPECT_LT(*std::max_element(spectrum.begin() + 2, spectrum.end()) * kMagnitudeLsbG[0], 0.02);
  }
}

}  // namespace
}  // namespace kestrel
