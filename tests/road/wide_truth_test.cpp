// The joined spectrum of a machine whose vibration is known at every frequency is that vibration.
// SPDX-License-Identifier: MIT
#include <cmath>

#include "analysis/levels.h"
#include "analysis/third_octaves.h"
#include "analysis/wide_spectrum.h"
#include "record/frequency.h"
#include "simulator/simulated_hardware.h"
#include "station/wide_capture.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"

namespace kestrel {
namespace {

using analysis::Joined;

constexpr std::int16_t kHanning = 1;
constexpr std::int16_t kOneG = 0;

// What a station on this machine captures at all options.
analysis::WideSpectrum WideSpectrumOf(const Scenario& scenario, std::int16_t averages) {
  ResetProgram();
  FakeClock clock;
  SimulatedHardware hardware(clock, scenario);
  MemoryFiles files;
  FixedLocale locale;
  Station station({.clock = clock,
                   .files = files,
                   .locale = locale,
                   .hardware = {&hardware.Adapter(), &hardware.Port(), &hardware.Service()},
                   .watch = {.progress = {}, .interrupted = {}}});
  EXPECT_TRUE(station.Connect());
  WideCapture capture(station,
                      {.setup = {.range = kOneG, .window = kHanning, .averages = averages}});
  const WideCaptured captured = capture.Run();
  EXPECT_EQ(captured.records.size(), 4U);
  return analysis::WideOf(captured.records);
}

// Power of a band's noise, by the closed form.
double NoiseBetween(const AxisVibration& axis, double fromHz, double toHz) {
  constexpr int kSteps = 2000;
  double sum = 0;
  for (int i = 0; i < kSteps; ++i) {
    sum += axis.NoisePowerAt(fromHz + (i + 0.5) * (toHz - fromHz) / kSteps);
  }
  return sum * (toHz - fromHz) / kSteps;
}

// Power of a line, A²/2, as far as an ideal spectrum of these segments shows it within a band.
double LineBetween(const Joined& joined, const Tone& tone, double fromHz, double toHz) {
  double sum = 0;
  for (std::size_t i = 0; i < joined.segments.size(); ++i) {
    const analysis::Segment& segment = joined.segments[i];
    const double low = std::max(fromHz, segment.usedFromHz);
    const double high = std::min(toHz, segment.usedToHz);
    for (int bin = 3; bin < 256; ++bin) {
      const double width = segment.binWidthHz;
      const double share = std::min(high, (bin + 0.5) * width) - std::max(low, (bin - 0.5) * width);
      if (share <= 0) continue;
      const double shape =
          LobeShape(joined.captures[i].window, std::fabs(bin - tone.frequencyHz / width));
      sum += share / width * std::pow(tone.amplitudeG * shape, 2) / 2;
    }
  }
  return sum / joined.captures.front().window.noiseBandwidth;
}

double TruthBetween(const Joined& joined, const AxisVibration& axis, double fromHz, double toHz) {
  double power = NoiseBetween(axis, fromHz, toHz);
  for (const Tone& tone : axis.tones) power += LineBetween(joined, tone, fromHz, toHz);
  return power;
}

// Third octaves whose edges lie between 2 Hz and 40 kHz, told or not.
template <typename Look>
void ForEachThirdOctave(const Look& look) {
  for (int number = -26; number <= 15; ++number) {
    const double centre = 1000 * std::pow(10.0, number / 10.0);
    const double edge = std::pow(10.0, 1.0 / 20);
    look(centre / edge, centre * edge);
  }
}

// The largest distance from the truth in dB over all bands.
double FarthestDb(const analysis::WideSpectrum& wide, const Scenario& scenario) {
  double farthest = 0;
  for (const Axis axis : kAxes) {
    const Joined& joined = *wide.axes[Index(axis)];
    const AxisVibration& truth = scenario.axes[Index(axis)];
    ForEachThirdOctave([&](double fromHz, double toHz) {
      const double db = 10 * std::log10(PowerBetween(joined, fromHz, toHz) /
                                        TruthBetween(joined, truth, fromHz, toHz));
      EXPECT_LT(std::fabs(db), 1) << Letter(axis) << ", " << fromHz << " to " << toHz << " Hz";
      farthest = std::max(farthest, std::fabs(db));
    });
  }
  return farthest;
}

TEST(WideTruth, TheJoinedDensityIsTheMachinesInEveryThirdOctave) {
  const Scenario scenario = BroadbandMachine();
  const auto wide = WideSpectrumOf(scenario, 255);
  EXPECT_TRUE(wide.Steady());
  RecordProperty("farthest_db", std::to_string(FarthestDb(wide, scenario)));
}

TEST(WideTruth, NoiseAloneIsToldAsWell) {
  Scenario scenario = BroadbandMachine();
  scenario.noiseSeed = 7;
  for (AxisVibration& axis : scenario.axes) axis.tones.clear();
  RecordProperty("farthest_db",
                 std::to_string(FarthestDb(WideSpectrumOf(scenario, 255), scenario)));
}

// What the averaging of magnitudes takes from noise would be missing without the correction.
TEST(WideTruth, WithoutTheNoisesPowerTheDensityWouldBeADecibelTooLow) {
  Scenario scenario = BroadbandMachine();
  for (AxisVibration& axis : scenario.axes) axis.tones.clear();
  const auto wide = WideSpectrumOf(scenario, 255);
  const Joined& joined = *wide.axes[0];
  const double truth = NoiseBetween(scenario.axes[0], 15000, 45000);
  EXPECT_NEAR(10 * std::log10(PowerBetween(joined.captures.back(), 15000, 45000) / truth), -1.03,
              0.1);
  EXPECT_NEAR(10 * std::log10(PowerBetween(joined.power.back(), 15000, 45000) / truth), 0, 0.1);
}

TEST(WideTruth, EveryLineIsFoundOnceWithinItsBound) {
  const Scenario scenario = BroadbandMachine();
  const auto wide = WideSpectrumOf(scenario, 255);
  for (const Axis axis : kAxes) {
    const auto lines = LinesOf(*wide.axes[Index(axis)]);
    const auto& tones = scenario.axes[Index(axis)].tones;
    EXPECT_EQ(lines.size(), tones.size()) << Letter(axis);
    for (const Tone& tone : tones) {
      SCOPED_TRACE(std::string(1, Letter(axis)) + ", " + std::to_string(tone.frequencyHz));
      const auto found = std::ranges::find_if(lines, [&](const analysis::JoinedLine& line) {
        return std::fabs(line.peak.line.hz - tone.frequencyHz) < 2 * BinWidth(line.option);
      });
      ASSERT_NE(found, lines.end());
      const analysis::Line& line = found->peak.line;
      EXPECT_NEAR(line.hz, tone.frequencyHz, line.hzBound);
      ASSERT_TRUE(line.peakBoundG);
      EXPECT_NEAR(line.peakG, tone.amplitudeG, *line.peakBoundG);
      EXPECT_LT(*line.peakBoundG, 0.2 * tone.amplitudeG) << "a bound that says something";
    }
  }
}

TEST(WideTruth, AMachineWhoseLoadRisesMeanwhileIsSaidNotToBeSteady) {
  const auto wide = WideSpectrumOf(UnsteadyMachine(), 16);
  EXPECT_FALSE(wide.Steady());
  for (const Axis axis : kAxes) {
    for (const analysis::Overlap& overlap : wide.axes[Index(axis)]->overlaps) {
      EXPECT_TRUE(overlap.unsteady) << Letter(axis) << ", option " << overlap.fineOption;
    }
  }
  EXPECT_EQ(wide.Disagreements().size(), 9U);
}

// 5 dB a capture, the quickest first: each finer capture is 5 dB above its coarser neighbour.
TEST(WideTruth, TheDisagreementIsWhatChanged) {
  const auto wide = WideSpectrumOf(UnsteadyMachine(), 255);
  for (const Axis axis : kAxes) {
    for (const analysis::Overlap& overlap : wide.axes[Index(axis)]->overlaps) {
      EXPECT_NEAR(overlap.differenceDb, -5, 1.0) << Letter(axis) << ", " << overlap.fineOption;
    }
  }
}

}  // namespace
}  // namespace kestrel
