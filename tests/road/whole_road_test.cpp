// The whole road without windows: simulated vibration, sensor, adapter or pins, registers, g.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "analysis/peaks.h"
#include "app/program_state.h"
#include "record/capture_data.h"
#include "record/frequency.h"
#include "simulator/simulated_hardware.h"
#include "station/station.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"

namespace kestrel {
namespace {

constexpr std::int16_t kFftMode = 0;
constexpr std::int16_t kTimeMode = 2;
constexpr std::int16_t kPortAddress = 0x378;

class Road {
 public:
  Road(const Scenario& scenario, std::int16_t interfaceType)
      : hardware_(clock_, scenario), station_(Site(), Chosen(interfaceType)) {
    EXPECT_TRUE(station_.Connect());
  }

  // The record; its g are also those of the mandated names.
  Record Capture(std::int16_t mode, int option, int window, int range, int averages) {
    const auto code = [](int value) { return static_cast<std::int16_t>(value); };
    EXPECT_TRUE(station_.Records().Configure({.mode = mode,
                                              .range = code(range),
                                              .option = code(option),
                                              .window = code(window),
                                              .averages = code(averages)}));
    const auto captured = station_.Records().Capture();
    EXPECT_TRUE(captured && captured->record.IsNew());
    EXPECT_TRUE(station_.TakeNotes().empty());
    return captured ? captured->record : Record{};
  }

 private:
  StationSite Site() {
    return {.clock = clock_,
            .files = files_,
            .locale = locale_,
            .hardware = {&hardware_.Adapter(), &hardware_.Port(), &hardware_.Service()},
            .watch = {}};
  }
  static Connection Chosen(std::int16_t interfaceType) {
    Connection connection;
    if (interfaceType == kParallelPort) connection.parallelAddress = kPortAddress;
    return connection;
  }

  FakeClock clock_;
  SimulatedHardware hardware_;
  MemoryFiles files_;
  FixedLocale locale_;
  Station station_;
};

constexpr double kFullScaleG[] = {1, 5, 20, 70};

// option, window, range
class EverySetting : public ::testing::TestWithParam<std::tuple<int, int, int>> {};

TEST_P(EverySetting, ASineOnABinCentreReadsBackItsAmplitude) {
  const auto [option, window, range] = GetParam();
  for (const auto& [bin, part] :
       {std::pair{12, 0.9}, std::pair{100, 0.37}, std::pair{203, 0.011}}) {
    const double amplitude = part * kFullScaleG[range];
    Road road(SingleTone(bin * BinWidth(option), amplitude), kUsbAdapter);
    const Record record = road.Capture(kFftMode, option, window, range, 2);
    EXPECT_EQ(record.lsbWeight, LsbWeight);
    const double tolerance = std::max(LsbWeight, 0.001 * amplitude);
    EXPECT_NEAR(DataX(bin), amplitude, tolerance) << "bin " << bin;
    EXPECT_NEAR(DataY(bin), amplitude, tolerance) << "bin " << bin;
    EXPECT_NEAR(DataZ(bin), amplitude, tolerance) << "bin " << bin;
  }
}

INSTANTIATE_TEST_SUITE_P(OptionsWindowsRanges, EverySetting,
                         ::testing::Combine(::testing::Range(0, 4), ::testing::Range(0, 3),
                                            ::testing::Range(0, 4)));

TEST_P(EverySetting, ASineBetweenBinsReadsWithinItsBounds) {
  const auto [option, window, range] = GetParam();
  for (const auto& [bin, part] : {std::pair{12.3, 0.9}, std::pair{100.5, 0.37},
                                  std::pair{203.77, 0.011}, std::pair{60.0, 0.2}}) {
    const double amplitude = part * kFullScaleG[range];
    const double hz = bin * BinWidth(option);
    Road road(SingleTone(hz, amplitude), kUsbAdapter);
    const Record record = road.Capture(kFftMode, option, window, range, 2);
    const auto peaks = analysis::FindPeaks(*analysis::SpectrumOf(record, Axis::X));
    ASSERT_FALSE(peaks.empty()) << "bin " << bin;
    const analysis::Line& line = peaks.front().line;
    ASSERT_TRUE(line.interpolated) << "bin " << bin;
    EXPECT_NEAR(line.hz, hz, line.hzBound) << "bin " << bin;
    EXPECT_NEAR(line.peakG, amplitude, *line.peakBoundG) << "bin " << bin;
    EXPECT_LT(line.hzBound, BinWidth(option) / 4) << "bin " << bin;
    EXPECT_LT(*line.peakBoundG, 0.05 * amplitude) << "bin " << bin;
  }
}

// Wherever a line lies, whatever is told of it holds.
TEST_P(EverySetting, ASineAnywhereReadsWithinWhatIsToldInEachQuantity) {
  using analysis::Amplitude;
  using analysis::Quantity;
  const auto [option, window, range] = GetParam();
  const double width = BinWidth(option);
  int bounded = 0;
  for (const double bin : {5.43, 6.5, 9.98, 31.26, 77.5, 133.71, 222.04, 249.6}) {
    const double peakG = 0.6 * kFullScaleG[range];
    const double hz = bin * width;
    const double omega = 2 * 3.14159265358979323846 * hz;
    Road road(SingleTone(hz, peakG), kUsbAdapter);
    const auto spectrum =
        analysis::SpectrumOf(road.Capture(kFftMode, option, window, range, 1), Axis::Z);
    const std::pair<analysis::QuantityChoice, double> wanted[] = {
        {{Quantity::Acceleration, Amplitude::PeakToPeak}, 2 * peakG},
        {{Quantity::Velocity, Amplitude::Rms}, 9806.65 * peakG / omega / std::sqrt(2.0)},
        {{Quantity::Displacement, Amplitude::PeakToPeak}, 2 * 9.80665e6 * peakG / (omega * omega)}};
    for (const auto& [choice, value] : wanted) {
      const auto peaks = analysis::PeaksIn(*spectrum, choice, {.atMost = 1});
      ASSERT_EQ(peaks->size(), 1U) << "bin " << bin;
      const analysis::QuantityPeak& peak = peaks->front();
      EXPECT_NEAR(peak.peak.line.hz, hz, peak.peak.line.hzBound) << "bin " << bin;
      if (!peak.value.bound) continue;
      ++bounded;
      EXPECT_NEAR(peak.value.value, value, *peak.value.bound) << "bin " << bin;
    }
  }
  EXPECT_GE(bounded, 18) << "few lines have no bound";
}

TEST(WholeRoad, ATimeRecordHoldsTheSineItself) {
  const double frequency = 16 * BinWidth(0);
  Road road(SingleTone(frequency, 3.0), kUsbAdapter);
  road.Capture(kTimeMode, 0, 0, 1, 1);
  // The record begins anywhere in the period; its two quadratures give amplitude and phase.
  double inPhase = 0;
  double quadrature = 0;
  const double step = 2 * 3.14159265358979323846 * 16 / 512;
  for (int i = 0; i <= kTimeWidth; ++i) {
    inPhase += DataX(i) * std::cos(step * i) / 256;
    quadrature += DataX(i) * std::sin(step * i) / 256;
  }
  EXPECT_NEAR(std::hypot(inPhase, quadrature), 3.0, 0.003);
  for (int i = 0; i <= kTimeWidth; ++i) {
    const double expected = inPhase * std::cos(step * i) + quadrature * std::sin(step * i);
    ASSERT_NEAR(DataX(i), expected, LsbWeight) << "sample " << i;
  }
}

TEST(WholeRoad, TheParallelPortCarriesTheSameRecordAsTheAdapter) {
  const double amplitude = 0.6;
  for (const std::int16_t interfaceType : {kParallelPort, kUsbAdapter}) {
    Road road(SingleTone(40 * BinWidth(0), amplitude), interfaceType);
    road.Capture(kFftMode, 0, 1, 0, 1);
    EXPECT_NEAR(DataX(40), amplitude, 0.001 * amplitude);
    EXPECT_NEAR(DataX(120), 0.0, 2 * LsbWeight);
    EXPECT_NEAR(CaptSupply, 3.3, 0.1);
  }
}

TEST(WholeRoad, ASignalOverTheRangeReadsTheFullScale) {
  Road road(SingleTone(40 * BinWidth(0), 1.5), kUsbAdapter);
  road.Capture(kTimeMode, 0, 0, 0, 1);
  double highest = 0;
  double lowest = 0;
  for (int i = 0; i <= kTimeWidth; ++i) {
    highest = std::max(highest, DataX(i));
    lowest = std::min(lowest, DataX(i));
  }
  EXPECT_DOUBLE_EQ(highest, 32767 * LsbWeight);
  EXPECT_DOUBLE_EQ(lowest, -32768 * LsbWeight);
}

}  // namespace
}  // namespace kestrel
