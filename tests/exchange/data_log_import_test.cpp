// Data-log files come back; what they do not tell stays unknown.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "exchange/round_trip.h"

namespace kestrel::exchange {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

ImportedRecord TheRecord(const std::string& bytes) {
  const auto file = Imported("pump_1.csv", bytes);
  EXPECT_TRUE(file) << file.Why().Text();
  return file ? file->records.front() : ImportedRecord{};
}

std::string Replaced(const std::string& text, const std::string& from, const std::string& to) {
  std::string replaced;
  for (std::size_t at = 0; at < text.size();) {
    const bool here = text.compare(at, from.size(), from) == 0;
    replaced += here ? to : text.substr(at, 1);
    at += here ? from.size() : 1;
  }
  return replaced;
}

void ExpectValuesOf(const ImportedRecord& imported, const Record& record) {
  ASSERT_THAT(imported.traces, SizeIs(3));
  EXPECT_EQ(imported.kind, record.kind);
  for (const Axis axis : kAxes) {
    const auto& values = imported.traces[Index(axis)].values;
    ASSERT_EQ(values.size(), record.Points());
    for (std::size_t i = 0; i < values.size(); ++i) {
      EXPECT_NEAR(values[i], record.Values(axis)[i], 1e-14 * std::abs(values[i]));
    }
  }
}

TEST(DataLogImport, TellsWhatTheFileTells) {
  for (const NotedRecord& noted : {SpectrumNoted(), TimeNoted()}) {
    for (const char mark : {'.', ','}) {
      const ImportedRecord imported = TheRecord(DataLogOf(noted.record, mark));
      ExpectValuesOf(imported, noted.record);
      EXPECT_EQ(imported.title, mark == '.' ? "pump.csv" : "pump.txt");
      EXPECT_EQ(imported.timeText, "3/14/24 8:26:53");
      EXPECT_EQ(imported.averages, 8);
      EXPECT_EQ(imported.supplyV, 3.2999F);
      EXPECT_EQ(imported.temperatureC, 24.6F);
      EXPECT_EQ(imported.status, 0x80);
    }
  }
}

TEST(DataLogImport, NeitherRangeNorRateNorMomentIsGuessed) {
  const ImportedRecord imported = TheRecord(DataLogOf(TimeNoted().record));
  EXPECT_EQ(imported.step, std::nullopt);
  EXPECT_EQ(imported.settings, std::nullopt);
  EXPECT_EQ(imported.time, std::nullopt);
  EXPECT_EQ(imported.unit, "g");  // values with fractions are no words
  EXPECT_THAT(UnknownsOf(imported), ElementsAre("sample rate", "range", "time"));
}

TEST(DataLogImport, WholeNumbersMayBeWordsOrGAndAreNeitherUntilSaid) {
  const NotedRecord noted = SpectrumNoted();
  const ImportedRecord imported = TheRecord(DataLogOf(noted.record, '.', DataLogValues::RawWords));
  EXPECT_EQ(imported.unit, "");
  EXPECT_EQ(imported.gPerUnit, std::nullopt);
  EXPECT_THAT(UnknownsOf(imported), ElementsAre("sample rate", "unit", "range", "window", "time"));
  Said said{.option = 0, .range = 2, .window = 1};
  EXPECT_THAT(RecordOf(imported, said).Why().Text(), HasSubstr("words of the sensor or g"));
  said.words = true;
  const auto record = RecordOf(imported, said);
  ASSERT_TRUE(record) << record.Why().Text();
  EXPECT_EQ(record->axes[2].raw(255), noted.record.axes[2].raw(255));
  EXPECT_EQ(record->Values(Axis::X)[20], noted.record.Values(Axis::X)[20]);
}

TEST(DataLogImport, ScaledValuesBecomeWordsAtTheRangeThatIsSaidAndAtNoOtherThatCannotBe) {
  const NotedRecord noted = TimeNoted();
  const ImportedRecord imported = TheRecord(DataLogOf(noted.record));
  EXPECT_THAT(RecordOf(imported, {}).Why().Text(), HasSubstr("option has to be given"));
  EXPECT_THAT(RecordOf(imported, {.option = 0}).Why().Text(), HasSubstr("range has to be given"));
  EXPECT_THAT(RecordOf(imported, {.option = 0, .range = 3}).Why().Text(),
              HasSubstr("not a word of the sensor at this range"));
  const auto record = RecordOf(imported, {.option = 0, .range = 2});
  ASSERT_TRUE(record) << record.Why().Text();
  for (const Axis axis : kAxes) {
    EXPECT_TRUE(std::ranges::equal(record->Values(axis), noted.record.Values(axis)));
  }
}

TEST(DataLogImport, WhatSpreadsheetsMakeOfItIsReadTheSame) {
  const Record record = SpectrumNoted().record;
  const std::string text = DataLogOf(record);
  ExpectValuesOf(TheRecord(Replaced(text, "\r\n", "\n")), record);
  ExpectValuesOf(TheRecord(Replaced(text, "\r\n", "\r")), record);
  ExpectValuesOf(TheRecord("\xEF\xBB\xBF" + text), record);
  ExpectValuesOf(TheRecord(Replaced(text, "\r\n", ",,,,,\r\n")), record);
  ExpectValuesOf(TheRecord(Replaced(text, "Date,", "\"Date\",")), record);
  const std::string german =
      Replaced(Replaced(DataLogOf(record, ','), "\t", ";"), "Name,", "Name;");
  ExpectValuesOf(TheRecord(german), record);
  ExpectValuesOf(TheRecord(text + "\r\n,,,\r\n"), record);
}

TEST(DataLogImport, AStatusThatWasNeverReadIsNotKnown) {
  Record record = SpectrumNoted().record;
  record.status = {};
  EXPECT_EQ(TheRecord(DataLogOf(record)).status, std::nullopt);
}

TEST(DataLogImport, NamesOfOtherEncodingsBecomeUtf8) {
  const std::string text = DataLogOf(SpectrumNoted().record);
  EXPECT_EQ(TheRecord(With(text, "pump.csv", "K\xFChlpumpe.csv")).title, "K\u00FChlpumpe.csv");
}

struct Damage {
  const char* from;
  const char* to;
  const char* message;
};

TEST(DataLogImport, WhatIsWrongIsNamedWithItsLineAndValue) {
  Record record = SpectrumNoted().record;
  for (AxisRecord& axis : record.axes) {
    axis.data(254) = 0.5;
    axis.data(255) = 1.5;
  }
  const std::string text = DataLogOf(record);
  const std::vector<Damage> damages{
      {"\r\n254,0.5,", "\r\n254,nan,", "pump_1.csv, line 267: X of point 254 is \"nan\""},
      {"\r\n254,0.5,", "\r\n254,inf,", "line 267: X of point 254 is \"inf\""},
      {"\r\n254,0.5,", "\r\n254,1e999,", "line 267: X of point 254 is \"1e999\""},
      {"\r\n254,0.5,", "\r\n254,0.5g,", "line 267: X of point 254 is \"0.5g\""},
      {"\r\n254,0.5,", "\r\n254,,", "line 267: X of point 254 is \"\""},
      {"\r\n254,0.5,", "\r\n254,\"0,5\",", "line 267: X of point 254 is \"0,5\""},
      {"\r\n254,0.5,", "\r\n254,0.5,0.5,", "line 267: a point is four numbers, and here are 5"},
      {"\r\n254,0.5,", "\r\n255,0.5,", "the number of the point should be 254 and is \"255\""},
      {"\r\n255,1.5,1.5,1.5\r\n", "\r\n", "line 267: the file ends behind 255 of 256 points"},
      {"\r\n255,1.5,1.5,1.5\r\n", "\r\n255,1.5,1.5,1.5\r\n256,1,1,1\r\n",
       "line 269: there is more behind the last point: \"256\""},
      {"X axis,", "X Acc.,", "line 12: the titles of the columns"},
      {"Staus", "Status", "line 8: the line should begin with \"Staus  Register\""},
      {"DR,", "XX,", "line 9: the name of a flag should be \"DR\" and is \"XX\""},
      {"SET", "FAIL", "line 10: flag \"DR\" is \"FAIL\", which is not one of its states"},
      {"SET", "", "line 10: flag \"DR\" is \"\""},
      {"AVG_Cnt,8", "AVG_Cnt,eight", "line 4: the number of averages is \"eight\""},
      {"Capt_Supply,3.2999", "Capt_Supply,3.2.9", "line 5: the supply voltage is \"3.2.9\""},
      {"Date", "Datum", "line 2: the line should begin with \"Date\""}};
  for (const Damage& damage : damages) {
    EXPECT_THAT(WhyNotImported("pump_1.csv", With(text, damage.from, damage.to)),
                HasSubstr(damage.message));
  }
}

TEST(DataLogImport, TwoDecimalMarksInOneFileAreRefused) {
  const std::string text = DataLogOf(SpectrumNoted().record, ',');
  EXPECT_THAT(WhyNotImported("f.txt", With(text, "24,6", "24.6")),
              HasSubstr("line 6: the temperature is \"24.6\", with another decimal mark"));
}

TEST(DataLogImport, AQuotedBeginningAndSeveralCellsOfAValueAreRead) {
  const Record record = SpectrumNoted().record;
  const std::string text = DataLogOf(record);
  ExpectValuesOf(TheRecord(With(text, "File Name", "\"File Name\"")), record);
  EXPECT_EQ(TheRecord(With(text, "Date,3/14/24", "Date,3/14/24,Thursday")).timeText,
            "3/14/24 Thursday 8:26:53");
}

TEST(DataLogImport, LinesThatShouldHoldSomethingOrNothingAreNamed) {
  const std::string text = DataLogOf(SpectrumNoted().record);
  const std::size_t third = text.find("Time,");
  const std::string without = text.substr(0, third) + ",,,\r\n" + text.substr(third);
  EXPECT_THAT(WhyNotImported("f", without),
              HasSubstr("line 3: the line should begin with \"Time\" and begins with \"\""));
  const std::size_t eighth = text.find("Staus");
  EXPECT_THAT(WhyNotImported("f", text.substr(0, eighth - 2) + "x\r\n" + text.substr(eighth)),
              HasSubstr("line 7: the line should be empty and holds \"x\""));
}

}  // namespace
}  // namespace kestrel::exchange
