// Universal files of others, and what is wrong with damaged ones.
// SPDX-License-Identifier: MIT
#include <bit>
#include <cstring>

#include "exchange/round_trip.h"

namespace kestrel::exchange {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

// A file of seven values of single precision, with a dataset of units before it.
std::string Foreign() {
  return "    -1\n   164\n         1  SI: Meter (newton)         2\n"
         "  1.0000000000000000E+00  1.0000000000000000E+00\n    -1\n"
         "    -1\n    58\nPump vertical\nNONE\n14-Mar-24 08:26:53\nNONE\nNONE\n"
         "    1         1    0         0 NONE              12  -2 NONE               0   0\n"
         "         2         7         1  5.00000E-01  1.25000E-03  0.00000E+00\n"
         "        17    0    0    0 Time                 s\n"
         "        12    0    0    0 Acceleration         m/s^2\n"
         "         0    0    0    0 NONE                 NONE\n"
         "         0    0    0    0 NONE                 NONE\n"
         "  1.00000E+00-2.50000D-01  1.0000e-002  1.00000-101  0.00000E+00  4.00000E+00\n"
         "  5.00000E+00\n    -1\n";
}

ImportedRecord TheRecord(const std::string& bytes) {
  const auto file = Imported("f.uff", bytes);
  EXPECT_TRUE(file) << file.Why().Text();
  return file ? file->records.front() : ImportedRecord{};
}

TEST(UffImport, AFileOfAnotherProgramTellsWhatItTellsAndNoMore) {
  const auto file = Imported("f.uff", Foreign());
  ASSERT_TRUE(file) << file.Why().Text();
  EXPECT_THAT(file->notices, ElementsAre(HasSubstr("Datasets 164 were left out")));
  ASSERT_THAT(file->records, SizeIs(1));
  const ImportedRecord& record = file->records.front();
  EXPECT_EQ(record.kind, RecordKind::Time);
  EXPECT_EQ(record.title, "Pump vertical");
  EXPECT_EQ(record.timeText, "14-Mar-24 08:26:53");
  EXPECT_EQ(record.time, std::nullopt);
  EXPECT_EQ(record.first, 0.5);
  EXPECT_EQ(record.step, 0.00125);
  EXPECT_EQ(record.unit, "m/s^2");
  EXPECT_EQ(record.gPerUnit, 1 / 9.80665);
  EXPECT_EQ(record.settings, std::nullopt);
  ASSERT_THAT(record.traces, SizeIs(1));
  EXPECT_EQ(record.traces[0].axis, Axis::Y);
  EXPECT_TRUE(record.traces[0].reversed);
  EXPECT_THAT(record.traces[0].values, ElementsAre(1, -0.25, 0.01, 1e-101, 0, 4, 5));
  EXPECT_THAT(UnknownsOf(record), ElementsAre("range", "time"));
}

TEST(UffImport, LineEndsOfWindowsAreTheSame) {
  std::string bytes;
  for (const char c : Foreign()) bytes += c == '\n' ? "\r\n" : std::string(1, c);
  EXPECT_EQ(TheRecord(bytes).traces[0].values, TheRecord(Foreign()).traces[0].values);
  EXPECT_EQ(TheRecord(Foreign() + "\n\n  \x1A").traces[0].values.size(), 7U);
}

TEST(UffImport, BytesInEitherOrderAndPrecisionAreRead) {
  const std::vector<float> values{1.5F, -2.25F, 1e-30F};
  for (const bool highFirst : {false, true}) {
    std::string data;
    for (const float value : values) {
      std::string bytes = LittleEndian(std::bit_cast<std::uint32_t>(value), 4);
      data += highFirst ? std::string(bytes.rbegin(), bytes.rend()) : bytes;
    }
    for (const char* end : {"", "\n", "\r\n"}) {
      std::string file = Foreign();
      file.erase(0, file.find("    58\n") - 7);
      file.erase(file.find("  1.00000E+00-2.5"));
      file = With(file, "    58\n",
                  std::string("    58b     ") + (highFirst ? "2" : "1") +
                      "     2          11          12     0     0           0"
                      "           0\n");
      file = With(file, "         2         7", "         2         3");
      const ImportedRecord record = TheRecord(file + data + end + "    -1\n");
      ASSERT_THAT(record.traces, SizeIs(1));
      EXPECT_THAT(record.traces[0].values, ElementsAre(1.5, -2.25, static_cast<double>(1e-30F)));
    }
  }
}

TEST(UffImport, OnlyWhatIsAccelerationInAKnownUnitIsTakenAsG) {
  const auto factor = [](const std::string& axis) {
    return TheRecord(With(Foreign(), "        12    0    0    0 Acceleration         m/s^2", axis))
        .gPerUnit;
  };
  EXPECT_EQ(factor("        12    0    0    0 Acceleration         G"), 1);
  EXPECT_EQ(factor("        12    0    0    0 Acceleration         NONE"), std::nullopt);
  EXPECT_EQ(factor("        12    0    0    0 Acceleration         ft/s^2"), std::nullopt);
  EXPECT_EQ(factor("        16    0    0    0 Mass                 g"), std::nullopt);
  const ImportedRecord power =
      TheRecord(With(With(With(Foreign(), "    1         1", "    9         1"), "        17    0",
                          "        18    0"),
                     "m/s^2", "g    "));
  EXPECT_FALSE(power.amplitudes);
  EXPECT_EQ(power.gPerUnit, std::nullopt);
  EXPECT_EQ(power.quantity, "Acceleration, power spectral density");
}

TEST(UffImport, TextsOfOlderProgramsBecomeUtf8) {
  EXPECT_EQ(TheRecord(With(Foreign(), "Pump vertical", "K\xFChlpumpe")).title, "K\u00FChlpumpe");
  EXPECT_EQ(TheRecord(With(Foreign(), "Pump vertical", "K\u00FChlpumpe")).title, "K\u00FChlpumpe");
}

TEST(UffImport, AMomentThatNoClockTellsStaysAText) {
  const std::string bytes = BytesOf({SpectrumNoted()}, ExportFormat::Uff58b);
  EXPECT_NE(TheRecord(bytes).time, std::nullopt);
  for (const char* year : {"9999", "0000", "20x4"}) {
    std::string changed = bytes;
    for (int i = 0; i < 3; ++i) changed = With(changed, "  2024-", std::string("  ") + year + "-");
    EXPECT_EQ(TheRecord(changed).time, std::nullopt) << year;
    EXPECT_THAT(TheRecord(changed).timeText, HasSubstr(year));
  }
}

struct Damage {
  const char* from;
  const char* to;
  const char* message;
};

TEST(UffImport, WhatIsWrongIsNamedWithItsLineAndValue) {
  const std::vector<Damage> damages{
      {"         2         7", "         2        -7",
       "f.uff, line 14: the number of values is -7."},
      {"         2         7", "         2         8",
       "f.uff, line 14: there should be 8 values, and the rest of the file"},
      {"         2         7", "         2         6",
       "line 20: the end of a dataset should stand"},
      {"         2         7", "         29999999999",
       "line 14: there should be 9999999999 values"},
      {"         2         7", "         5         7",
       "line 14: the data type is 5, complex values"},
      {"         2         7", "         3         7",
       "line 14: the data type is 3, which is none"},
      {"         2         7", "         2      seven",
       "line 14: the number of values is \"seve\""},
      {"         7         1", "         7         0", "line 14: the abscissa spacing is 0"},
      {"1.25000E-03", "0.00000E+00", "line 14: the abscissa increment is 0"},
      {"1.25000E-03", "        NaN", "line 14: the abscissa increment is \"NaN\""},
      {"  4.00000E+00", "          NaN", "line 19: value 6 is \"NaN\", which is not a number."},
      {"  4.00000E+00", "     Infinity", "line 19: value 6 is \"Infinity\""},
      {"  4.00000E+00", " ************", "line 19: value 6 is \"************\""},
      {"  4.00000E+00", "  4,00000E+00", "line 19: value 6 is \"4,00000E+00\""},
      {"  1.0000e-002", "             ", "line 19: value 3 is \"\", which is not a number"},
      {"  1.0000e-002", "  1.0000e-999", "line 19: value 3 is"},
      {"        17    0", "        19    0", "line 20: the dataset's abscissa is of type 19"},
      {"        17    0", "      time    0", "line 15: the type of an axis is \"time\""},
      {"    1         1", " time         1", "line 13: the function type is \"time\""},
      {"    58\n", "    5X\n", "line 7: the number of the dataset is \"5X\""},
      {"    58\n", "    58b     3     2          11          28\n", "line 7: the byte order is 3"},
      {"    58\n", "    58b     1     1          11          28\n",
       "line 7: the floating point format is 1"},
      {"    58\n", "    58b     1     2          12          28\n",
       "line 7: there should be 11 lines"},
      {"    58\n", "    58b     1     2          11          27\n",
       "7 values of 4 bytes, and the dataset has 27"},
      {"    58\n", "    58b     1     2          11999999999999\n",
       "the dataset has 999999999999 bytes"},
      {"    58\n", "    59\n", "the file holds no dataset 58"},
      {"  5.00000E+00\n", "  5.00000E+00  6.00000E+00\n", "line 20: there is more behind"},
      {"  5.00000E+00\n    -1\n", "  5.00000E+00\n    -2\n", "line 21: the end of a dataset"}};
  for (const Damage& damage : damages) {
    EXPECT_THAT(WhyNotImported("f.uff", With(Foreign(), damage.from, damage.to)),
                HasSubstr(damage.message));
  }
}

TEST(UffImport, AValueThatIsMissingIsNotTakenFromTheNextDataset) {
  const std::string bytes = With(Foreign(), "         2         7", "         2         8");
  EXPECT_THAT(WhyNotImported("f.uff", bytes + Foreign()),
              HasSubstr("f.uff, line 20: value 8 of 8 is missing."));
}

TEST(UffImport, ABinaryValueThatIsNoNumberIsNamed) {
  std::string bytes = OneDataset(ExportFormat::Uff58b);
  const std::size_t data = bytes.size() - 7 - 256 * 8;
  const auto nan = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());
  std::memcpy(bytes.data() + data + 16, &nan, sizeof nan);
  EXPECT_THAT(WhyNotImported("f.uff", bytes), HasSubstr("value 3 is nan"));
}

TEST(UffImport, AnotherStepThanTheColumnsHaveIsNotBelieved) {
  const std::string bytes = BytesOf({SpectrumNoted()}, ExportFormat::Uff58);
  const std::size_t at = bytes.find("STEP=");
  const std::string step = bytes.substr(at, bytes.find('\n', at) - at);
  std::string changed = bytes;
  for (int i = 0; i < 3; ++i) changed = With(changed, step, "STEP=100");
  EXPECT_EQ(TheRecord(changed).step, 195.683);
}

TEST(UffImport, AnAbscissaOfNoKindIsThatOfItsFunction) {
  const auto withTypes = [](const char* function, const char* abscissa) {
    return With(With(Foreign(), "    1         1", function), "        17    0    0    0 Time",
                abscissa);
  };
  for (const char* open : {"         0    0    0    0 Time", "         1    0    0    0 Time"}) {
    EXPECT_EQ(TheRecord(withTypes("    1         1", open)).kind, RecordKind::Time);
    EXPECT_EQ(TheRecord(withTypes("   12         1", open)).kind, RecordKind::Spectrum);
    EXPECT_THAT(WhyNotImported("f", withTypes("    2         1", open)),
                HasSubstr("only time (17) and frequency (18) can be imported"));
  }
}

TEST(UffImport, WhatIsNoAmplitudeIsNamedByItsFunction) {
  const auto imported = [](const char* function, const char* label) {
    return TheRecord(With(With(Foreign(), "    1         1", function), "Acceleration", label));
  };
  EXPECT_TRUE(imported("    0         1", "Acceleration").amplitudes) << "a general function";
  const ImportedRecord coherence = imported("    6         1", "NONE        ");
  EXPECT_FALSE(coherence.amplitudes);
  EXPECT_EQ(coherence.quantity, "coherence");
  EXPECT_EQ(imported("   40         1", "NONE        ").quantity, "function of type 40");
  EXPECT_EQ(imported("   -1         1", "Acceleration").quantity,
            "Acceleration, function of type -1");
  EXPECT_EQ(imported("   13         1", "NONE        ").quantity, "function of type 13");
  EXPECT_EQ(imported("   11         1", "NONE        ").quantity, "probability density function");
}

TEST(UffImport, DirectionsThatAreNoAxisOfTheSensorAreLeftOpen) {
  const auto trace = [](const char* direction) {
    return TheRecord(With(Foreign(), "  12  -2", std::string("  12") + direction)).traces.at(0);
  };
  EXPECT_EQ(trace("   1").axis, Axis::X);
  EXPECT_FALSE(trace("   1").reversed);
  EXPECT_EQ(trace("  -3").axis, Axis::Z);
  EXPECT_TRUE(trace("  -3").reversed);
  for (const char* none : {"   0", "   4", "  -5"}) {
    EXPECT_EQ(trace(none).axis, std::nullopt) << none;
    EXPECT_FALSE(trace(none).reversed) << none;
  }
}

TEST(UffImport, NumbersAreReadAsFortranWritesThem) {
  const std::string with = With(Foreign(), "  1.00000E+00-2.50000D-01  1.0000e-002",
                                "+1.000000E+00 -2.50000d-01       +1.5-3");
  EXPECT_THAT(TheRecord(with).traces[0].values, ElementsAre(1, -0.25, 0.0015, 1e-101, 0, 4, 5));
  EXPECT_EQ(TheRecord(With(Foreign(), "  5.00000E-01  1.2", "               1.2")).first, 0);
  EXPECT_EQ(TheRecord(With(Foreign(), "         2         7", "        +2         7")).first, 0.5);
}

TEST(UffImport, TheFormOfBinaryDataIsCheckedBeforeAnyIsRead) {
  const auto why = [](const char* kind) {
    return WhyNotImported("f.uff", With(Foreign(), "    58\n", kind));
  };
  EXPECT_THAT(why("    58b     1     2          11         -28\n"),
              HasSubstr("line 7: the number of bytes of data is -28"));
  EXPECT_THAT(why("    58b     1     2          11          29\n"),
              HasSubstr("7 values of 4 bytes, and the dataset has 29"));
  EXPECT_THAT(why("    58b     0     2          11          28\n"),
              HasSubstr("the byte order is 0"));
  EXPECT_THAT(
      WhyNotImported("f.uff", With(Foreign(), "         2         7", "         6         7")),
      HasSubstr("the data type is 6, complex values"));
}

// Three axes of a spectrum as another program would write them.
std::string ThreeAxes() {
  std::string bytes = BytesOf({SpectrumNoted()}, ExportFormat::Uff58);
  for (int i = 0; i < 3; ++i) {
    for (const char* own : {"KESTREL1", "MEASURED"}) bytes = With(bytes, own, "whatever");
  }
  return bytes;
}

// The same with the first `from` behind the `number`-th dataset's beginning replaced.
std::string ChangedIn(int number, const std::string& from, const std::string& to) {
  std::string bytes = ThreeAxes();
  std::size_t at = 0;
  for (int i = 0; i < number; ++i) at = bytes.find("    58\n", at + 1);
  return bytes.substr(0, at) + With(bytes.substr(at), from, to);
}

TEST(UffImport, ThreeAxesThatBelongTogetherAreOneRecordAndOthersAreNot) {
  ASSERT_THAT(Imported("f", ThreeAxes())->records, SizeIs(1));
  ASSERT_THAT(Imported("f", ThreeAxes())->records[0].traces, SizeIs(3));
  const std::vector<std::pair<const char*, const char*>> changes{
      {"   12         2", "    1         2"},                    // function
      {"NONE               1   2", "HERE               1   2"},  // place
      {"NONE               1   2", "NONE               9   2"},  // node
      {"NONE               1   2", "NONE               1   3"},  // direction
      {"         1  0.00000E+00", "         1  1.00000E+00"},    // first
      {"  1.95683E+02", "  1.95684E+02"},                        // step
      {"Frequency ", "frequency "},
      {"Acceleration", "acceleration"},
      {"whatever INFO", "Whatever INFO"}};
  for (const auto& [from, to] : changes) {
    const auto file = Imported("f", ChangedIn(2, from, to));
    ASSERT_TRUE(file) << to << ": " << file.Why().Text();
    EXPECT_THAT(file->records, SizeIs(3)) << to;
  }
  EXPECT_THAT(Imported("f", ChangedIn(3, "Acceleration", "acceleration"))->records, SizeIs(3));
  EXPECT_THAT(
      Imported("f", ChangedIn(1, "NONE               1   1", "NONE               1   4"))->records,
      SizeIs(3))
      << "the first is not X";
}

TEST(UffImport, AxesOfAnotherLengthAreARecordOfTheirOwn) {
  std::string two = Foreign();
  two += With(With(Foreign(), "         2         7", "         2         6"),
              "\n  5.00000E+00\n    -1", "\n    -1");
  for (int i = 0; i < 2; ++i) two = With(two, "  12  -2", "  12   1");
  const auto file = Imported("f", two);
  ASSERT_TRUE(file) << file.Why().Text();
  EXPECT_THAT(file->records, SizeIs(2));
  EXPECT_THAT(file->notices, SizeIs(1)) << "datasets of one kind are told once";
}

TEST(UffImport, AFunctionOfOneValueIsOne) {
  const std::string one = With(With(Foreign(), "         2         7", "         2         1"),
                               "-2.50000D-01  1.0000e-002  1.00000-101  0.00000E+00  4.00000E+00\n"
                               "  5.00000E+00\n",
                               "\n");
  EXPECT_THAT(TheRecord(one).traces.at(0).values, ElementsAre(1));
}

}  // namespace
}  // namespace kestrel::exchange
