// What holds for every tone, setting and moment, tried with seeded ones.
// SPDX-License-Identifier: MIT
// What holds for every tone, setting and moment.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "simulator/sensor_fixture.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

constexpr unsigned kWindows = 3;  // rectangular, Hanning, flat top

// What a tone of amplitude 1 leaves in all bins together, as a power: its own bin and those beside
// it, half the ratio of the window's cosine terms to its constant.
constexpr double kPower[kWindows] = {1.0, 1.5, 3.7702};
// The least that a tone between two bins may read.
constexpr double kLoss[kWindows] = {0.6366, 0.8488, 0.9975};

struct Setting {
  unsigned option, window, range;
  std::uint16_t averages;

  explicit Setting(Random& random)
      : option(static_cast<unsigned>(random.Below(4))),
        window(static_cast<unsigned>(random.Below(kWindows))),
        range(static_cast<unsigned>(random.Below(4))),
        averages(static_cast<std::uint16_t>(random.OneIn(3) ? random.Between(2, 40) : 1)) {}

  [[nodiscard]] double LsbG() const { return kMagnitudeLsbG[range]; }
  [[nodiscard]] std::string Text() const {
    return "option " + std::to_string(option) + ", window " + std::to_string(window) + ", range " +
           std::to_string(range) + ", averages " + std::to_string(averages);
  }
};

std::vector<std::uint16_t> SpectrumOf(const Setting& setting, double bin, double amplitudeG,
                                      Random& random, unsigned axis) {
  Bench bench(SingleTone(BinHz(bin, setting.option), amplitudeG));
  bench.Write(reg::kRecCtrl, RecCtrl(0, setting.range, setting.option, setting.window));
  bench.Write(reg::kFftAvg, setting.averages);
  bench.clock.Advance(random.Below(1000000) * 1us);  // any phase
  bench.Capture(200s);
  const std::vector<std::uint16_t> spectrum = bench.Spectrum(axis);
  const auto peak = std::max_element(spectrum.begin() + 1, spectrum.end());
  EXPECT_EQ(bench.Read(static_cast<std::uint8_t>(reg::kXFreq + 2 * axis)), peak - spectrum.begin());
  EXPECT_EQ(bench.Read(static_cast<std::uint8_t>(reg::kXPeak + 2 * axis)), *peak);
  return spectrum;
}

unsigned PeakBin(const std::vector<std::uint16_t>& spectrum) {
  return static_cast<unsigned>(std::max_element(spectrum.begin() + 1, spectrum.end()) -
                               spectrum.begin());
}

TEST(AnyTone, OnABinPeaksThereWithItsAmplitudeHoweverManySpectraAreAveraged) {
  WithSeeds(60, [](Random& random) {
    const Setting setting(random);
    SCOPED_TRACE(setting.Text());
    const int bin = random.Between(6, 249);
    const double amplitudeG = random.Between(5, 95) * 0.01 * 65535 * setting.LsbG();
    const auto axis = static_cast<unsigned>(random.Below(3));
    const auto spectrum = SpectrumOf(setting, bin, amplitudeG, random, axis);
    EXPECT_EQ(PeakBin(spectrum), static_cast<unsigned>(bin));
    EXPECT_NEAR(spectrum[static_cast<std::size_t>(bin)] * setting.LsbG(), amplitudeG,
                0.0005 * amplitudeG + setting.LsbG());
  });
}

TEST(AnyTone, BetweenTwoBinsPeaksInTheNearerOneAndLosesNoMoreThanItsWindowDoes) {
  WithSeeds(60, [](Random& random) {
    const Setting setting(random);
    const double place = 6 + random.Below(24300) * 0.01;
    SCOPED_TRACE(setting.Text() + ", bin " + std::to_string(place));
    const double amplitudeG = random.Between(5, 95) * 0.01 * 65535 * setting.LsbG();
    const auto spectrum = SpectrumOf(setting, place, amplitudeG, random, 0);
    const unsigned peak = PeakBin(spectrum);
    // The flat top is flat: two bins may be next to equal.
    EXPECT_LE(std::abs(peak - place), setting.window == 2 ? 0.75 : 0.55);
    const double readG = spectrum[peak] * setting.LsbG();
    EXPECT_GE(readG, 0.98 * kLoss[setting.window] * amplitudeG);
    EXPECT_LE(readG, 1.02 * amplitudeG + setting.LsbG());
  });
}

TEST(AnyTone, HoldsItsPowerInAllBinsTogether) {
  WithSeeds(60, [](Random& random) {
    const Setting setting(random);
    const double place = 40 + random.Below(17600) * 0.01;
    SCOPED_TRACE(setting.Text() + ", bin " + std::to_string(place));
    const double amplitudeG = random.Between(20, 90) * 0.01 * 65535 * setting.LsbG();
    const auto spectrum = SpectrumOf(setting, place, amplitudeG, random, 1);
    double power = 0;
    for (const std::uint16_t word : spectrum) power += std::pow(word * setting.LsbG(), 2);
    const double expected = kPower[setting.window] * amplitudeG * amplitudeG;
    EXPECT_NEAR(power, expected, 0.02 * expected);
  });
}

// Two sensors on the same bench; one is watched, the other left alone.
class Watched {
 public:
  explicit Watched(Random& random)
      : random_(random), scenario_(AnyScenario(random)), seen_(scenario_), alone_(scenario_) {}

  void Go() {
    for (Bench* bench : {&seen_, &alone_}) bench->clock.Advance(10s);
    SetUp();
    const auto time = random_.Between(100, 12000) * 1ms;
    Watch(time);
    alone_.clock.Advance(time);
    ASSERT_EQ(seen_.clock.Monotonic(), alone_.clock.Monotonic());
    Compare("at the end");
    for (std::uint16_t slot = 0; slot < 16; ++slot) {
      for (Bench* bench : {&seen_, &alone_}) {
        bench->StopRequest();
        bench->Write(reg::kRecPntr, slot);
        bench->Command(command::kRetrieveRecord);
      }
      Compare("record " + std::to_string(slot));
    }
  }

 private:
  static Scenario AnyScenario(Random& random) {
    const std::vector<std::string> names = ScenarioNames();
    Scenario scenario = *ScenarioNamed(random.Of(names));
    // Captures that nobody can see are left out, and their noise with them.
    for (AxisVibration& axis : scenario.axes) {
      axis.noiseDensityG = 0;
      axis.shapes.clear();
    }
    return scenario;
  }

  // Timer mode, but for a few single captures.
  void SetUp() {
    const unsigned mode = random_.OneIn(5) ? 0 : 1;
    const std::uint16_t settings = RecCtrl(mode, static_cast<unsigned>(random_.Below(4)),
                                           static_cast<unsigned>(random_.Below(3)), 1,
                                           static_cast<unsigned>(random_.Below(3)));
    const auto averages = static_cast<std::uint16_t>(random_.Between(1, 4));
    const auto period = static_cast<std::uint16_t>(random_.Below(4));
    const auto alarms = static_cast<std::uint16_t>(random_.Below(0x1000));
    for (Bench* bench : {&seen_, &alone_}) {
      bench->Write(reg::kRecCtrl, settings);
      bench->Write(reg::kFftAvg, averages);
      bench->Write(reg::kRecPrd, period);
      if (alarms % 3 != 0) bench->Write(reg::kAlmCtrl, alarms);
      bench->StartStop();
    }
  }

  void Watch(std::chrono::nanoseconds time) {
    while (time > 0ns) {
      const auto step = std::min<std::chrono::nanoseconds>(random_.Between(0, 700) * 1ms, time);
      seen_.clock.Advance(step);
      time -= step;
      for (int reads = random_.Below(4); reads > 0; --reads) {
        seen_.Read(static_cast<std::uint8_t>(2 * random_.Below(60)));
      }
    }
  }

  void Compare(const std::string& when) {
    for (int address = 0; address < 0x78; address += 2) {
      const auto at = static_cast<std::uint8_t>(address);
      ASSERT_EQ(seen_.Read(at), alone_.Read(at)) << when << std::hex << ", register " << address;
    }
    for (unsigned axis = 0; axis < 3; ++axis) {
      ASSERT_EQ(seen_.Spectrum(axis), alone_.Spectrum(axis)) << when << ", axis " << axis;
    }
    for (const int line : {1, 2}) {
      ASSERT_EQ(seen_.sensor.PinLevel(line), alone_.sensor.PinLevel(line)) << when;
    }
  }

  Random& random_;
  Scenario scenario_;
  Bench seen_;
  Bench alone_;
};

TEST(ASeries, IsTheSameWhetherItIsWatchedOrLeftAlone) {
  WithSeeds(40, [](Random& random) { Watched(random).Go(); });
}

}  // namespace
}  // namespace kestrel
