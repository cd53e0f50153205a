// Known vibrations measured through everything but the windows.
// SPDX-License-Identifier: MIT
// The whole road without windows: simulated vibration -> sensor -> adapter or port pins ->
// registers
// -> read-out in g.

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "acquisition/capture_readout.h"
#include "acquisition/quiet_views.h"
#include "analysis/peaks.h"
#include "connection/core.h"
#include "connection/start.h"
#include "device/rec_ctrl.h"
#include "record/frequency.h"
#include "regmap/register_table.h"
#include "simulator/simulated_hardware.h"
#include "support/fake_clock.h"
#include "support/fake_main_views.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/recording_messages.h"
#include "support/recording_pointer.h"
#include "support/reset_program.h"
#include "support/scripted_loop.h"

namespace kestrel {
namespace {

constexpr int kFftMode = 0;
constexpr int kTimeMode = 2;

class Road {
 public:
  Road(const Scenario& scenario, std::int16_t interfaceType)
      : hardware_(clock_, scenario),
        loop_(clock_),
        core_({clock_, loop_, pointer_, messages, files_, locale_, hardware_.Adapter(),
               hardware_.Port(), hardware_.Service()}),
        alarms_(core_.registers, views_),
        status_(core_.registers, alarms_, loop_, statusView_),
        plot_(core_.record, views_, alarms_, loop_, messages),
        log_(core_.record, files_, locale_, loop_, views_),
        readout_(core_, status_, alarms_, plot_, views_, log_, views_) {
    ResetProgram();
    core_.delay.SkipCalibration();
    InterfaceType = interfaceType;
    PortAddress = 0x378;
    InitInterface(core_);
    InitRegisterTable(core_.registers);
  }

  void Capture(int mode, int option, int window, int range, int averages) {
    gRecCtrl->RecModeCode(static_cast<std::int16_t>(mode));
    gRecCtrl->SampleRate(static_cast<std::int16_t>(option));
    gRecCtrl->Windowing(static_cast<std::int16_t>(window));
    gRecCtrl->RangeFS(static_cast<std::int16_t>(range));
    gRecCtrl->StrogeMethod(0);
    gRecCtrl->WriteRecCtrl();
    gRecCtrl->ReadRecCtrl();
    core_.registers.WriteReg(row::FFT_AVG, averages);
    core_.registers.WriteReg(row::COMMAND, 0x0800);
    clock_.Advance(std::chrono::seconds{10 * averages});
    readout_.Expect(mode == kTimeMode ? RecordKind::Time : RecordKind::Spectrum);
    ASSERT_TRUE(readout_.ReadCaptureBuffer());
  }

  RecordingMessages messages;

 private:
  FakeClock clock_;
  SimulatedHardware hardware_;
  ScriptedLoop loop_;
  RecordingPointer pointer_;
  MemoryFiles files_;
  FixedLocale locale_;
  Core core_;
  QuietViews views_;
  Journal journal_;
  FakeStatusView statusView_{journal_};
  AlarmStatus alarms_;
  StatusDisplay status_;
  SpectrumPlot plot_;
  DataLog log_;
  CaptureReadout readout_;
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
    road.Capture(kFftMode, option, window, range, 2);
    const double tolerance = std::max(LsbWeight, 0.001 * amplitude);
    EXPECT_NEAR(DataX(bin), amplitude, tolerance) << "bin " << bin;
    EXPECT_NEAR(DataY(bin), amplitude, tolerance) << "bin " << bin;
    EXPECT_NEAR(DataZ(bin), amplitude, tolerance) << "bin " << bin;
    EXPECT_TRUE(road.messages.Texts().empty());
  }
}

INSTANTIATE_TEST_SUITE_P(OptionsWindowsRanges, EverySetting,
                         ::testing::Combine(::testing::Range(0, 4), ::testing::Range(0, 3),
                                            ::testing::Range(0, 4)));

// The record as it came, its first axis.
analysis::Spectrum Analysed(int option, int window, int range, int averages) {
  Record record;
  record.settings.option = static_cast<std::int16_t>(option);
  record.settings.window = static_cast<std::int16_t>(window);
  record.settings.range = record.scaledRange = static_cast<std::int16_t>(range);
  record.settings.averages = static_cast<std::int16_t>(averages);
  record.lsbWeight = LsbWeight;
  for (int bin = 0; bin <= kFftWidth; ++bin) record.Of(Axis::X).data(bin) = DataX(bin);
  return *analysis::SpectrumOf(record, Axis::X);
}

TEST_P(EverySetting, ASineBetweenBinsReadsWithinItsBounds) {
  const auto [option, window, range] = GetParam();
  for (const auto& [bin, part] : {std::pair{12.3, 0.9}, std::pair{100.5, 0.37},
                                  std::pair{203.77, 0.011}, std::pair{60.0, 0.2}}) {
    const double amplitude = part * kFullScaleG[range];
    const double hz = bin * BinWidth(option);
    Road road(SingleTone(hz, amplitude), kUsbAdapter);
    road.Capture(kFftMode, option, window, range, 2);
    const auto peaks = analysis::FindPeaks(Analysed(option, window, range, 2));
    ASSERT_FALSE(peaks.empty()) << "bin " << bin;
    const analysis::Line& line = peaks.front().line;
    ASSERT_TRUE(line.interpolated) << "bin " << bin;
    EXPECT_NEAR(line.hz, hz, line.hzBound) << "bin " << bin;
    EXPECT_NEAR(line.peakG, amplitude, *line.peakBoundG) << "bin " << bin;
    EXPECT_LT(line.hzBound, BinWidth(option) / 4) << "bin " << bin;
    EXPECT_LT(*line.peakBoundG, 0.05 * amplitude) << "bin " << bin;
  }
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
