// The whole road to a script: simulated vibration, sensor, adapter, record, analysis, JSON.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "analysis/levels.h"
#include "analysis/peaks.h"
#include "cli/program.h"
#include "record/frequency.h"
#include "simulator/simulated_hardware.h"
#include "support/fake_clock.h"
#include "support/fixed_locale.h"
#include "support/memory_files.h"
#include "support/reset_program.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

// A script's sensor.
class Script {
 public:
  explicit Script(const Scenario& scenario) : hardware_(clock_, scenario) { ResetProgram(); }
  ~Script() { ResetProgram(); }
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;

  Json Run(Words words) {
    words.insert(words.begin(), "--json");
    std::ostringstream out;
    std::ostringstream error;
    const ExitCode end = RunProgram(
        words, {.clock = clock_,
                .files = files_,
                .locale = locale_,
                .hardware = {&hardware_.Adapter(), &hardware_.Port(), &hardware_.Service()},
                .interrupted = [] { return false; },
                .out = out,
                .error = error});
    EXPECT_EQ(end, ExitCode::Success) << error.str();
    return Json::parse(out.str());
  }

 private:
  FakeClock clock_;
  SimulatedHardware hardware_;
  MemoryFiles files_;
  FixedLocale locale_;
};

struct Setting {
  const char* option;
  const char* window;
  const char* range;
  double fullScaleG;
};

constexpr Setting kSettings[] = {{"0", "hanning", "70", 70},     {"1", "flattop", "5", 5},
                                 {"2", "rectangular", "20", 20}, {"3", "hanning", "1", 1},
                                 {"2", "flattop", "70", 70},     {"0", "rectangular", "1", 1}};

Words CaptureAs(const Setting& setting, const Words& more) {
  Words words{"capture",  "--averages",   "1",       "--option",   setting.option,
              "--window", setting.window, "--range", setting.range};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

TEST(NumbersOverTheRoad, AToneReadsWithinItsUncertainty) {
  for (const Setting& setting : kSettings) {
    for (const double bin : {12.0, 33.4, 100.5, 203.77}) {
      const double width = BinWidth(std::stoi(setting.option));
      const double hz = bin * width;
      const double peakG = 0.4 * setting.fullScaleG;
      Script script(SingleTone(hz, peakG));
      const Json json = script.Run(CaptureAs(setting, {"--peaks", "1"}));
      for (const char* axis : {"X", "Y", "Z"}) {
        const Json peak = json["axes"][axis]["peaks"].at(0);
        SCOPED_TRACE(std::string(setting.window) + ", option " + setting.option + ", " + axis +
                     ", bin " + std::to_string(bin));
        EXPECT_NEAR(peak["frequency_hz"], hz, peak["frequency_uncertainty_hz"]);
        EXPECT_NEAR(peak["amplitude"], peakG, peak["uncertainty"]);
        EXPECT_LT(peak["frequency_uncertainty_hz"], width / 4);
        EXPECT_LT(peak["uncertainty"], 0.05 * peakG);
        EXPECT_EQ(peak["unit"], "g peak");
      }
    }
  }
}

TEST(NumbersOverTheRoad, AToneReadsItsVelocityAndItsDisplacement) {
  for (const Setting& setting : kSettings) {
    const double hz = 24.37 * BinWidth(std::stoi(setting.option));
    const double omega = 2 * std::numbers::pi * hz;
    const double peakG = 0.7 * setting.fullScaleG;
    Script script(SingleTone(hz, peakG));
    const auto check = [&](const char* quantity, const char* unit, double wanted) {
      const Words more{"--peaks", "1", "--levels", "--quantity", quantity};
      const Json axis = script.Run(CaptureAs(setting, more))["axes"]["Y"];
      const Json peak = axis["peaks"].at(0);
      SCOPED_TRACE(std::string(quantity) + ", " + setting.window);
      EXPECT_EQ(peak["unit"], unit);
      EXPECT_NEAR(peak["amplitude"], wanted, peak["uncertainty"]);
      EXPECT_LT(peak["uncertainty"], 0.1 * wanted);
      EXPECT_EQ(axis["levels"]["largest_unit"], unit);
    };
    check("velocity", "mm/s RMS", 9806.65 * peakG / omega / std::numbers::sqrt2);
    check("displacement", "\u00B5m peak to peak", 2 * 9.80665e6 * peakG / (omega * omega));
  }
}

// A spectrum out of the points that a script is handed.
analysis::Spectrum SpectrumFrom(const Json& json, const std::string& axis) {
  const int option = json["sample_rate_option"];
  return {.peakG = json["axes"][axis]["data_g"],
          .binWidthHz = BinWidth(option),
          .window = analysis::WindowOf(analysis::WindowKind::Hanning),
          .option = option,
          .averages = json["averages"],
          .stepG = LsbWeightOf(3, RecordKind::Spectrum)};
}

TEST(NumbersOverTheRoad, AScriptReadsWhatTheAnalysisHas) {
  Script script(RunningMachine());
  const Json json = script.Run({"capture", "--averages", "8", "--peaks", "256", "--levels"});
  for (const char* axis : {"X", "Y", "Z"}) {
    const analysis::Spectrum spectrum = SpectrumFrom(json, axis);
    const auto peaks = analysis::FindPeaks(spectrum, {.atMost = 256});
    const Json told = json["axes"][axis];
    ASSERT_EQ(told["peaks"].size(), peaks.size());
    EXPECT_GE(peaks.size(), 4U);
    for (std::size_t i = 0; i < peaks.size(); ++i) {
      EXPECT_NEAR(told["peaks"][i]["frequency_hz"], peaks[i].line.hz, peaks[i].line.hzBound / 10);
      EXPECT_NEAR(told["peaks"][i]["amplitude"], peaks[i].line.peakG, 1e-3);
    }
    const double rms = analysis::OverallLevel(spectrum)->rmsG;
    EXPECT_NEAR(told["levels"]["overall"], rms, 1e-5 * rms);
  }
}

// Tones beyond the lobes of each other and of the offset.
Scenario SteadyTones(Random& random, double width) {
  Scenario scenario = SingleTone(1, 0);
  for (AxisVibration& axis : scenario.axes) {
    axis.tones.clear();
    axis.offsetG = 0.2;
    for (const double bin : {25.0, 70.0, 140.0, 210.0}) {
      axis.tones.push_back({.frequencyHz = (bin + random.Below(1000) / 100.0) * width,
                            .amplitudeG = 0.1 + random.Below(1000) / 500.0,
                            .phaseRad = random.Below(628) / 100.0});
    }
  }
  return scenario;
}

TEST(NumbersOverTheRoad, TheSumOfSquaresOfASpectrumIsTheRmsOfTheTimeRecord) {
  WithSeeds(4, [](Random& random) {
    for (const Setting& setting : kSettings) {
      if (setting.fullScaleG < 20) continue;
      Script script(SteadyTones(random, BinWidth(std::stoi(setting.option))));
      const Json spectrum = script.Run(CaptureAs(setting, {"--levels"}));
      const Json time = script.Run(CaptureAs(setting, {"--mode", "time", "--levels"}));
      for (const char* axis : {"X", "Y", "Z"}) {
        const double overTime = time["axes"][axis]["levels"]["overall"];
        const double overBins = spectrum["axes"][axis]["levels"]["overall"];
        // The two are taken at different times: what beats at the ends of a record differs.
        EXPECT_NEAR(overBins, overTime, 0.02 * overTime)
            << setting.window << ", option " << setting.option << ", " << axis;
      }
    }
  });
}

TEST(NumbersOverTheRoad, OfOneRecordTheyAreEqualButForWhatTheWindowWeighs) {
  WithSeeds(4, [](Random& random) {
    Script script(SteadyTones(random, BinWidth(1)));
    const Json json = script.Run({"capture", "--mode", "time", "--option", "1", "--range", "20"});
    for (const char* axis : {"X", "Y", "Z"}) {
      const std::vector<double> samples = json["axes"][axis]["data_g"];
      const auto plain =
          analysis::TestSelf(samples, analysis::WindowOf(analysis::WindowKind::Rectangular));
      const auto hanning =
          analysis::TestSelf(samples, analysis::WindowOf(analysis::WindowKind::Hanning));
      EXPECT_NEAR(plain->differenceDb, 0, 1e-9);
      EXPECT_NEAR(hanning->differenceDb, 0, 0.2);
    }
  });
}

TEST(NumbersOverTheRoad, AveragedNoiseReadsAsLowAsTheNoticeSays) {
  Scenario noise = SingleTone(1, 0);
  for (AxisVibration& axis : noise.axes) axis.noiseDensityG = 0.001;
  Script script(noise);
  const auto power = [&](const Words& words) {
    double sum = 0;
    for (int capture = 0; capture < 24; ++capture) {
      const Json json = script.Run(words);
      for (const char* axis : {"X", "Y", "Z"}) {
        const double rms = json["axes"][axis]["levels"]["overall"];
        sum += rms * rms;
      }
    }
    return sum;
  };
  const double overTime = power({"capture", "--mode", "time", "--range", "5", "--levels"});
  const double once = power({"capture", "--mode", "manual", "--averages", "1", "--levels"});
  const double averaged = power({"capture", "--averages", "16", "--levels"});
  EXPECT_NEAR(10 * std::log10(once / overTime), 0, 0.25);
  EXPECT_NEAR(10 * std::log10(averaged / overTime), -0.98, 0.25);
  const Json json = script.Run({"capture", "--averages", "16", "--levels"});
  EXPECT_NE(std::string(json["numbers"]["notices"].at(0)).find("Noise reads 1.0 dB low"),
            std::string::npos);
}

// With noise the bounds are those of 95 % of lines.
TEST(NumbersOverTheRoad, InNoiseNearlyAllTonesAreWithinTheirUncertainty) {
  int all = 0;
  int frequencies = 0;
  int amplitudes = 0;
  WithSeeds(1, [&](Random& random) {
    for (int tone = 0; tone < 100; ++tone) {
      const double hz = (15 + random.Below(22000) / 100.0) * BinWidth(0);
      Scenario scenario = SingleTone(hz, 1.0);
      scenario.noiseSeed = static_cast<std::uint64_t>(random.Below(1 << 20));
      for (AxisVibration& axis : scenario.axes) axis.noiseDensityG = 0.001;
      Script script(scenario);
      const Json json = script.Run({"capture", "--averages", "1", "--range", "5", "--peaks", "1"});
      for (const char* axis : {"X", "Y", "Z"}) {
        const Json peak = json["axes"][axis]["peaks"].at(0);
        if (peak["uncertainty"].is_null()) continue;
        ++all;
        const double hzError = std::fabs(double{peak["frequency_hz"]} - hz);
        const double error = std::fabs(double{peak["amplitude"]} - 1.0);
        if (hzError <= double{peak["frequency_uncertainty_hz"]}) ++frequencies;
        if (error <= double{peak["uncertainty"]}) ++amplitudes;
      }
    }
  });
  EXPECT_GE(all, 270);
  EXPECT_GE(frequencies, 0.95 * all) << "of " << all;
  EXPECT_GE(amplitudes, 0.95 * all) << "of " << all;
}

}  // namespace
}  // namespace kestrel
