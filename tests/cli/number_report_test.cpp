// Behaviour of peaks and levels as they are worked out for a record.
// SPDX-License-Identifier: MIT
#include "cli/number_report.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "cli/number_json.h"
#include "record/frequency.h"

namespace kestrel {
namespace {

using Json = nlohmann::ordered_json;
using testing::HasSubstr;
using testing::Not;

NumberChoice Asked(std::vector<std::string> words) {
  CLI::App app;
  NumberChoice choice;
  choice.AddTo(app);
  std::ranges::reverse(words);
  app.parse(words);
  return choice;
}

// Taken at 70 g, option 0; X has a line of 10,000 steps in bin 40, nothing else.
Record OneLine(std::int16_t window = 1) {
  Record record;
  record.settings = {.window = window, .range = 3, .averages = 1};
  record.time = std::chrono::system_clock::time_point{std::chrono::hours{1}};
  AxisRecord& axis = record.Of(Axis::X);
  axis.raw(39) = axis.raw(41) = 5000;
  axis.raw(40) = 10000;
  return Rescaled(record, 3);
}

Record Sine(double peakG, double periods) {
  Record record;
  record.kind = RecordKind::Time;
  record.settings = {.window = 1, .range = 3};
  record.time = std::chrono::system_clock::time_point{std::chrono::hours{1}};
  for (const Axis axis : kAxes) {
    for (int n = 0; n < 512; ++n) {
      const double value = peakG * std::sin(2 * std::numbers::pi * periods * n / 512);
      record.Of(axis).raw(n) = std::round(value / LsbWeightOf(3, RecordKind::Time));
    }
  }
  return Rescaled(record, 3);
}

Json AxisJsonOf(const NumberReport& report, Axis axis = Axis::X) {
  Json json;
  AddNumbers(json, report, axis);
  return json;
}

std::string TextOf(const NumberReport& report) {
  std::ostringstream out;
  PrintNumbers(out, report);
  return out.str();
}

TEST(NumberReport, ValuesAreOfTheRecordsOwnRangeWhateverItWasScaledBy) {
  const NumberChoice choice = Asked({"--peaks", "1", "--levels"});
  const double wanted = 10000 * LsbWeightOf(3, RecordKind::Spectrum);
  for (std::int16_t range = 0; range < 4; ++range) {
    const Json json = AxisJsonOf(NumbersOf(Rescaled(OneLine(), range), choice, {}));
    EXPECT_NEAR(json["peaks"][0]["amplitude"], wanted, 0.001 * wanted) << range;
    EXPECT_NEAR(json["levels"]["overall"], wanted / std::numbers::sqrt2, 0.001 * wanted) << range;
  }
}

TEST(NumberReport, AWeightThatOverflowedDoesNotReachTheNumbers) {
  Record record = OneLine();
  record.scaledRange = 7;  // none
  record.lsbWeight = 1e308;
  for (const Axis axis : kAxes) {
    for (int bin = 0; bin < 256; ++bin)
      record.Of(axis).data(bin) = record.Of(axis).raw(bin) * 1e308;
  }
  const NumberChoice choice = Asked({"--peaks", "1", "--levels"});
  EXPECT_EQ(AxisJsonOf(NumbersOf(record, choice, {})),
            AxisJsonOf(NumbersOf(OneLine(), choice, {})));
}

TEST(NumberReport, EachPeakHasItsFrequencyAmplitudeUnitAndUncertainty) {
  const Json peak = AxisJsonOf(NumbersOf(OneLine(), Asked({"--peaks", "9"}), {}))["peaks"][0];
  EXPECT_NEAR(peak["frequency_hz"], 40 * BinWidth(0), peak["frequency_uncertainty_hz"]);
  EXPECT_NEAR(peak["amplitude"], 11.921, peak["uncertainty"]);
  EXPECT_EQ(peak["unit"], "g peak");
  EXPECT_EQ(peak["unresolved"], false);
}

TEST(NumberReport, OnlyWhatWasAskedForIsTold) {
  const Json peaks = AxisJsonOf(NumbersOf(OneLine(), Asked({"--peaks", "9"}), {}));
  EXPECT_TRUE(peaks.contains("peaks"));
  EXPECT_FALSE(peaks.contains("levels"));
  const Json levels = AxisJsonOf(NumbersOf(OneLine(), Asked({"--levels"}), {}));
  EXPECT_FALSE(levels.contains("peaks"));
  EXPECT_TRUE(levels.contains("levels"));
}

TEST(NumberReport, ALineBesideAnotherIsUnresolvedAndHasNoUncertainty) {
  Record record = OneLine();
  record.Of(Axis::X).raw(43) = 6000;
  record.Of(Axis::X).raw(42) = 2500;
  const NumberReport report = NumbersOf(Rescaled(record, 3), Asked({"--peaks", "1"}), {});
  const Json peak = AxisJsonOf(report)["peaks"][0];
  EXPECT_EQ(peak["unresolved"], true);
  EXPECT_TRUE(peak["uncertainty"].is_null());
  EXPECT_THAT(TextOf(report), HasSubstr("11.9 g peak, unresolved: the bin's own value\n"));
}

TEST(NumberReport, VelocityIsNotToldOfBinsThatAreTooLow) {
  Record record = OneLine();
  record.Of(Axis::X).raw(2) = 60000;
  record = Rescaled(record, 3);
  const NumberReport report =
      NumbersOf(record, Asked({"--peaks", "256", "--levels", "--quantity", "velocity"}), {});
  EXPECT_NEAR(report.validFromHz, 587.05, 0.01);
  const Json json = AxisJsonOf(report);
  for (const Json& peak : json["peaks"]) EXPECT_GT(peak["frequency_hz"], 587 - 98);
  EXPECT_EQ(json["peaks"][0]["unit"], "mm/s RMS");
  const double rms = 9806.65 * 11.921 / (2 * std::numbers::pi * 40 * BinWidth(0)) / std::sqrt(2.0);
  EXPECT_NEAR(json["peaks"][0]["amplitude"], rms, 0.001 * rms);
  EXPECT_NEAR(json["levels"]["overall"], rms, 0.002 * rms);
  EXPECT_THAT(TextOf(report), HasSubstr("Peaks: Velocity, mm/s RMS, Hanning, from 587 Hz:\n"));
}

TEST(NumberReport, AnUnknownWindowRefusesDensityAndLevelsWithTheCure) {
  const NumberReport report =
      NumbersOf(OneLine(3), Asked({"--peaks", "2", "--levels", "--quantity", "density"}), {});
  const Json json = AxisJsonOf(report);
  EXPECT_TRUE(json["peaks"].is_null());
  EXPECT_THAT(std::string(json["refusal"]), HasSubstr("Capture with Hanning."));
  EXPECT_TRUE(json["levels"]["overall"].is_null());
  EXPECT_THAT(std::string(json["levels"]["refusal"]), HasSubstr("Capture with Hanning."));
  EXPECT_THAT(
      TextOf(report),
      HasSubstr("  X, Y, Z  Density cannot be determined from this trace: Its window is unknown, "
                "and with it the bandwidth of a bin. Capture with Hanning.\n"));
}

TEST(NumberReport, ARecordOfZerosIsRefusedAndAnAxisOfZerosIsNot) {
  const NumberChoice choice = Asked({"--peaks", "3", "--levels"});
  Record record = OneLine();
  const Json quiet = AxisJsonOf(NumbersOf(record, choice, {}), Axis::Y);
  EXPECT_TRUE(quiet["peaks"].is_array() && quiet["peaks"].empty());
  EXPECT_EQ(quiet["levels"]["overall"], 0);
  EXPECT_TRUE(quiet["levels"]["largest_hz"].is_null());
  for (const int bin : {39, 40, 41}) record.Of(Axis::X).raw(bin) = 0;
  const NumberReport report = NumbersOf(Rescaled(record, 3), choice, {});
  const Json blank = AxisJsonOf(report);
  EXPECT_TRUE(blank["peaks"].is_null());
  EXPECT_TRUE(blank["levels"]["overall"].is_null());
  EXPECT_THAT(std::string(blank["refusal"]), HasSubstr("Capture again."));
  EXPECT_THAT(report.notices, testing::Contains(HasSubstr("buffers are empty")));
}

TEST(NumberReport, AClippedRecordSaysSo) {
  Record record = OneLine();
  record.Of(Axis::X).raw(40) = 65535;
  const NumberReport report = NumbersOf(Rescaled(record, 3), Asked({"--levels"}), {});
  EXPECT_THAT(TextOf(report), HasSubstr("Note: Clipped at full scale: X (1 point). The true values "
                                        "are higher than shown.\n"));
}

TEST(NumberReport, LevelsOfAveragedMagnitudesSayWhatNoiseReads) {
  Record record = OneLine();
  record.settings.averages = 8;
  EXPECT_THAT(NumbersOf(record, Asked({"--levels"}), {}).notices,
              testing::ElementsAre("The sensor averages magnitudes, not power. Noise reads 0.9 dB "
                                   "low, lines as they are."));
  EXPECT_TRUE(NumbersOf(record, Asked({"--peaks", "3"}), {}).notices.empty());
  EXPECT_TRUE(NumbersOf(OneLine(), Asked({"--levels"}), {}).notices.empty());
}

BandTable OneBand(Axis axis, int low, int high, int warning, int fault) {
  BandTable table;
  table(kFLowField, 2, 0) = low;
  table(kFHighField, 2, 0) = high;
  table(Alarm1Field(axis), 2, 0) = warning;
  table(Alarm2Field(axis), 2, 0) = fault;
  return table;
}

TEST(NumberReport, TheSixBandsOfTheRecordsOptionTellStateAndHeadroom) {
  const BandTable table = OneBand(Axis::X, 30, 50, 20000, 40000);
  const NumberReport report = NumbersOf(OneLine(), Asked({"--levels"}), table);
  const Json bands = AxisJsonOf(report)["levels"]["bands"];
  ASSERT_EQ(bands.size(), 6U);
  EXPECT_EQ(bands[0], (Json{{"band", 1}, {"state", "unused"}}));
  EXPECT_EQ(bands[1]["state"], "free");
  EXPECT_NEAR(bands[1]["headroom_db"], 6.0206, 1e-3);
  EXPECT_NEAR(bands[1]["fault_headroom_db"], 12.0412, 1e-3);
  EXPECT_NEAR(bands[1]["warning_g_peak"], 23.842, 1e-3);
  EXPECT_NEAR(bands[1]["rms"], 11.921 / std::sqrt(2.0), 1e-3);
  EXPECT_NEAR(bands[1]["from_hz"], 29.5 * BinWidth(0), 0.1);
  EXPECT_THAT(TextOf(report), HasSubstr("; 6.0 dB free\n"));
  EXPECT_THAT(TextOf(report), HasSubstr("  X  band 1 is not used\n"));
  // Bins are those of all axes, thresholds of one.
  EXPECT_EQ(AxisJsonOf(report, Axis::Y)["levels"]["bands"][1]["state"], "no threshold");
}

TEST(NumberReport, BeyondAThresholdABandWarns) {
  const auto state = [](int warning, int fault) {
    const auto report =
        NumbersOf(OneLine(), Asked({"--levels"}), OneBand(Axis::X, 30, 50, warning, fault));
    return std::string(AxisJsonOf(report)["levels"]["bands"][1]["state"]);
  };
  EXPECT_EQ(state(9999, 10000), "warning");
  EXPECT_EQ(state(9000, 9999), "fault");
  EXPECT_EQ(state(10000, 10000), "free");
}

TEST(NumberReport, BandsOfAnotherOptionAreNotTaken) {
  Record record = OneLine();
  record.settings.option = 1;
  const auto report = NumbersOf(record, Asked({"--levels"}), OneBand(Axis::X, 30, 50, 9000, 9500));
  const Json axis = AxisJsonOf(report);
  for (const Json& band : axis["levels"]["bands"]) EXPECT_EQ(band["state"], "unused");
  EXPECT_THAT(TextOf(report), HasSubstr("  X  no alarm band is used\n"));
}

TEST(NumberReport, ABandAmongTheOffsetHasNoLevelButAState) {
  Record record = OneLine();
  record.Of(Axis::X).raw(0) = 500;
  const auto report =
      NumbersOf(Rescaled(record, 3), Asked({"--levels"}), OneBand(Axis::X, 0, 1, 400, 0));
  const Json band = AxisJsonOf(report)["levels"]["bands"][1];
  EXPECT_EQ(band["state"], "warning");
  EXPECT_EQ(band["holds_offset"], true);
  EXPECT_TRUE(band["rms"].is_null());
  EXPECT_TRUE(band["refusal"].is_string());
}

TEST(NumberReport, ATimeRecordTellsItsShape) {
  const NumberReport report = NumbersOf(Sine(2, 40), Asked({"--levels"}), {});
  const Json levels = AxisJsonOf(report, Axis::Z)["levels"];
  EXPECT_NEAR(levels["overall"], std::numbers::sqrt2, 1e-3);
  EXPECT_EQ(levels["unit"], "g RMS");
  EXPECT_NEAR(levels["peak"], 2, 1e-2);
  EXPECT_NEAR(levels["crest_factor"], std::numbers::sqrt2, 1e-2);
  EXPECT_NEAR(levels["kurtosis"], 1.5, 1e-3);
  EXPECT_EQ(levels["bands"], Json::array());
  EXPECT_THAT(TextOf(report), HasSubstr("  X, Y, Z  RMS 1.41 g, peak 2.00 g, crest factor 1.41 "
                                        "(noise: 2.7 to 4.0), kurtosis 1.50 (noise: 2.6 to 3.5)"));
}

TEST(NumberReport, APeakOfATimeRecordComesFromItsOwnTransform) {
  const NumberReport report = NumbersOf(Sine(2, 40.3), Asked({"--peaks", "1"}), {});
  EXPECT_TRUE(report.ownTransform);
  EXPECT_EQ(report.window, "Hanning");
  const Json peak = AxisJsonOf(report, Axis::Y)["peaks"][0];
  EXPECT_NEAR(peak["amplitude"], 2, peak["uncertainty"]);
  EXPECT_NEAR(peak["frequency_hz"], 40.3 * BinWidth(0), peak["frequency_uncertainty_hz"]);
  EXPECT_THAT(NumbersHeadJson(report)["spectrum"], "own transform of the time record");
}

TEST(NumberReport, VelocityOverTimeBeginsWhereTheRecordHoldsFivePeriods) {
  const auto choice = Asked({"--levels", "--quantity", "velocity"});
  const Json levels = AxisJsonOf(NumbersOf(Sine(2, 40), choice, {}))["levels"];
  const double rms = 9806.65 * std::sqrt(2.0) / (2 * std::numbers::pi * 40 * BinWidth(0));
  EXPECT_NEAR(levels["overall"], rms, 0.01 * rms);
  EXPECT_EQ(levels["unit"], "mm/s RMS");
  EXPECT_NEAR(levels["from_hz"], 5 * BinWidth(0), 0.01);
}

TEST(NumberReport, OtherLevelsOverTimeAreRefusedWithTheCure) {
  for (const char* quantity : {"displacement", "density"}) {
    const auto report =
        NumbersOf(Sine(2, 40), Asked({"--levels", "--peaks", "1", "--quantity", quantity}), {});
    const Json json = AxisJsonOf(report);
    EXPECT_TRUE(json["levels"]["overall"].is_null()) << quantity;
    EXPECT_THAT(std::string(json["levels"]["refusal"]),
                HasSubstr("Choose --quantity g or velocity, or capture a spectrum."));
    EXPECT_EQ(json["peaks"].size(), 1U) << quantity;
  }
}

TEST(NumberReport, AmplitudesAreWhatIsUsualUnlessChosen) {
  EXPECT_EQ(analysis::UnitOf(Asked({"--levels"}).Quantity()), "g peak");
  EXPECT_EQ(analysis::UnitOf(Asked({"--levels", "--quantity", "velocity"}).Quantity()), "mm/s RMS");
  EXPECT_EQ(analysis::UnitOf(Asked({"--levels", "--quantity", "displacement"}).Quantity()),
            "\u00B5m peak to peak");
  EXPECT_EQ(analysis::UnitOf(Asked({"--levels", "--amplitude", "rms"}).Quantity()), "g RMS");
  EXPECT_EQ(analysis::UnitOf(
                Asked({"--levels", "--quantity", "density", "--amplitude", "rms"}).Quantity()),
            "g\u00B2/Hz");
}

}  // namespace
}  // namespace kestrel
