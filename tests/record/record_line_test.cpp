// What is said of a record in one line, and in full.
// SPDX-License-Identifier: MIT
#include "record/record_line.h"

#include <gmock/gmock.h>

namespace kestrel {
namespace {

using testing::Contains;
using testing::IsEmpty;

Record Taken(RecordKind kind, std::int32_t recInfo) {
  Record record;
  record.kind = kind;
  record.settings = SettingsFromWords(recInfo, 0);
  record.lsbWeight = LsbWeightOf(record.settings.range, kind);
  record.time = std::chrono::system_clock::from_time_t(1'700'000'000);
  return record;
}

TEST(RecordLineOf, ASpectrumSaysHowItWasTaken) {
  EXPECT_EQ(RecordLine(Taken(RecordKind::Spectrum, 0x1C08), "18:34:16"),
            "Spectrum, 0 to 70 g, Hanning, 8 averages, option 0, Δf 195.7 Hz, 18:34:16");
}

TEST(RecordLineOf, EveryOptionHasItsWidthOfABinInFourDigits) {
  const std::array widths{"195.7", "24.46", "3.058", "0.3822"};
  for (int option = 0; option < 4; ++option) {
    const std::string line = RecordLine(Taken(RecordKind::Spectrum, option << 14), "");
    EXPECT_THAT(line, testing::EndsWith("option " + std::to_string(option) + ", Δf " +
                                        widths[static_cast<std::size_t>(option)] + " Hz"));
  }
}

TEST(RecordLineOf, ItsPartsAreThoseOfTheLine) {
  const Record record = Taken(RecordKind::Spectrum, 0x1C08);
  EXPECT_EQ(KindAndSettings(record), RecordLine(record, ""));
  EXPECT_EQ(SettingsName(record.settings), "0 to 70 g, Hanning, 8 averages");
}

TEST(RecordLineOf, ATimeRecordHasASampleIntervalAndNeitherWindowNorAverages) {
  EXPECT_EQ(RecordLine(Taken(RecordKind::Time, 0x1408), "9:05:00"),
            "Time record, 0 to 5 g, option 0, Δt 9.981 µs, 9:05:00");
  EXPECT_EQ(RecordLine(Taken(RecordKind::Time, 0xC000), ""),
            "Time record, 0 to 1 g, option 3, Δt 5.110 ms");
}

TEST(RecordLineOf, WindowsAveragesAndRangesAreNamed) {
  const auto line = [](int word) { return RecordLine(Taken(RecordKind::Spectrum, word), ""); };
  EXPECT_EQ(line(0x0000), "Spectrum, 0 to 1 g, Rectangular, 1 average, option 0, Δf 195.7 Hz");
  EXPECT_EQ(line(0x2801), "Spectrum, 0 to 20 g, Flat top, 1 average, option 0, Δf 195.7 Hz");
  EXPECT_EQ(line(0x31FF), "Spectrum, 0 to 1 g, window code 3, 511 averages, option 0, Δf 195.7 Hz");
}

TEST(RecordLineOf, NothingIsSaidOfARecordThatWasNeverTaken) {
  EXPECT_EQ(RecordLine(Record{}, "18:34:16"), "");
  EXPECT_THAT(RecordDetails(Record{}, "18:34:16"), IsEmpty());
}

TEST(RecordDetailsOf, ACaptureTellCountConditionsStatusAndSensor) {
  Record record = Taken(RecordKind::Spectrum, 0x1C08);
  record.conditions = {.supplyV = 3.2996F, .temperatureC = 24.34F, .recordCount = 17};
  record.status = {.word = 0x0081, .known = true};
  record.sensor = {.product = 31407, .interface = "Ezusb-0", .adapter = "", .simulated = true};
  EXPECT_THAT(
      RecordDetails(record, "18:34:16"),
      testing::ElementsAre(
          RecordLine(record, "18:34:16"), "Bins 0 to 255, 0.0011921 g a step", "Record count 17",
          "Supply 3.300 V, temperature 24.3 °C", "Status: Supply < 3.150 V, Data Ready",
          "Record information 1C08 hexadecimal", "Sensor 31407, simulated, Ezusb-0"));
}

TEST(RecordDetailsOf, AnAdapterStandsInBracketsBehindItsInterface) {
  EXPECT_EQ(SensorText({.product = 31407, .interface = "Ezusb-0", .adapter = "Board 2.1"}),
            "31407, Ezusb-0 (Board 2.1)");
  EXPECT_EQ(SensorText({.product = 31407, .interface = "", .adapter = ""}), "31407");
}

TEST(RecordDetailsOf, AStoredTimeRecordTellsItsNumber) {
  Record record = Taken(RecordKind::Time, 0);
  record.origin.stored = 4;
  const auto lines = RecordDetails(record, "");
  EXPECT_THAT(lines, Contains("Stored record 4"));
  EXPECT_THAT(lines, Contains("Samples 0 to 511, 3.06E-05 g a step"));
}

TEST(RecordDetailsOf, AStatusWithoutFlagsSaysSoAndOneNeverReadIsLeftOut) {
  Record record = Taken(RecordKind::Spectrum, 0);
  EXPECT_THAT(RecordDetails(record, ""), testing::Not(Contains(testing::StartsWith("Status"))));
  record.status.known = true;
  EXPECT_THAT(RecordDetails(record, ""), Contains("Status: no flag set"));
}

TEST(RangeNames, AreThoseOfTheSettings) {
  EXPECT_EQ(RangeName(0), "0 to 1g");
  EXPECT_EQ(RangeName(3), "0 to 70g");
}

}  // namespace
}  // namespace kestrel
