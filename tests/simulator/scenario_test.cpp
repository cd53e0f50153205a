// Kestrel evaluation program
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

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

}  // namespace
}  // namespace kestrel
