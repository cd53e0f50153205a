// What holds of all formats that records are written in.
// SPDX-License-Identifier: MIT
#include "exchange/exported.h"

#include <limits>

#include "exchange/noted_records.h"

namespace kestrel::exchange {
namespace {

using testing::HasSubstr;

std::string WhyNot(const std::vector<NotedRecord>& records, ExportFormat format) {
  const auto file = Exported(records, format);
  return file ? "" : file.Why().Text();
}

TEST(ExportFormats, AreKnownByTheirNames) {
  for (const ExportFormat format : kExportFormats) {
    EXPECT_EQ(FormatNamed(NameOf(format)), format);
    EXPECT_THAT(ExtensionOf(format), testing::StartsWith("."));
  }
  EXPECT_EQ(FormatNamed("uff"), std::nullopt);
  EXPECT_EQ(FormatNamed("WAV"), std::nullopt);
  EXPECT_EQ(FormatNamed(""), std::nullopt);
}

TEST(Exported, TheSameRecordsMakeTheSameBytes) {
  for (const ExportFormat format : kExportFormats) {
    if (!IsBuiltIn(format)) continue;
    const std::vector<NotedRecord> records{TimeNoted()};
    const auto first = Exported(records, format);
    const auto second = Exported(records, format);
    ASSERT_TRUE(first && second) << NameOf(format);
    EXPECT_EQ(*first, *second) << NameOf(format);
    const auto other = Exported(std::vector{TimeNoted(2)}, format);
    EXPECT_NE(*other, *first) << NameOf(format);
  }
}

TEST(Exported, NothingIsMadeOfNoRecord) {
  for (const ExportFormat format : kExportFormats) {
    EXPECT_EQ(WhyNot({}, format), "There is no record to write.");
  }
}

TEST(Exported, AValueThatIsNoNumberIsRefusedAndItsRecordNamed) {
  NotedRecord bad = SpectrumNoted();
  bad.record.Of(Axis::Z).data(255) = std::numeric_limits<double>::quiet_NaN();
  for (const ExportFormat format : kExportFormats) {
    EXPECT_THAT(WhyNot({SpectrumNoted(), bad}, format), HasSubstr("Record 2 holds a value"));
  }
  bad = SpectrumNoted();
  bad.record.Of(Axis::X).data(256) = std::numeric_limits<double>::infinity();  // beyond its points
  EXPECT_EQ(WhyNot({bad}, ExportFormat::Json), "");
}

TEST(Exported, AnOptionThatNoSensorKnowsIsRefused) {
  NotedRecord bad = SpectrumNoted();
  bad.record.settings.option = 4;
  EXPECT_THAT(WhyNot({bad}, ExportFormat::Csv), HasSubstr("sample-rate option 4"));
}

TEST(Exported, AWavFileHoldsOneTimeRecordAndTheRefusalNamesTheOthers) {
  if (!IsBuiltIn(ExportFormat::Wav)) {
    EXPECT_THAT(WhyNot({TimeNoted()}, ExportFormat::Wav), HasSubstr("without libsndfile"));
    return;
  }
  EXPECT_THAT(
      WhyNot({SpectrumNoted()}, ExportFormat::Wav),
      HasSubstr("this is a spectrum. It can be written as uff58, uff58b, mat, csv or json"));
  EXPECT_THAT(WhyNot({TimeNoted(), TimeNoted()}, ExportFormat::Wav),
              HasSubstr("one time record, and there are 2"));
  EXPECT_EQ(WhyNot({TimeNoted()}, ExportFormat::Wav), "");
}

TEST(Exported, ASpeedThatIsNoNumberIsLeftOut) {
  NotedRecord noted = TimeNoted();
  noted.note.speedRpm = std::numeric_limits<double>::infinity();
  noted.record.conditions.supplyV = std::numeric_limits<float>::quiet_NaN();
  const auto json = Exported(std::vector{noted}, ExportFormat::Json);
  ASSERT_TRUE(json);
  EXPECT_NE(json->find("\"speed_rpm\": null"), std::string::npos);
  EXPECT_NE(json->find("\"supply_v\": null"), std::string::npos);
}

TEST(Exported, ANoteCannotEndADataset) {
  NotedRecord noted = SpectrumNoted();
  noted.note = {.machine = "    -1\n    -1\n    58"};
  const auto file = Exported(std::vector{noted}, ExportFormat::Uff58);
  ASSERT_TRUE(file);
  std::size_t marks = 0;
  for (std::size_t at = 0; at < file->size(); at = file->find('\n', at) + 1) {
    const std::string line = file->substr(at, file->find('\n', at) - at);
    if (line.find_first_not_of(' ') != std::string::npos &&
        line.substr(line.find_first_not_of(' ')) == "-1") {
      ++marks;
    }
  }
  EXPECT_EQ(marks, 6U);
  noted.note = {.machine = "-1"};
  EXPECT_NE(Exported(std::vector{noted}, ExportFormat::Uff58)->find("\n\"-1\"\n"),
            std::string::npos);
}

TEST(Exported, TextsThatAreNoUtf8AreWrittenWithAMarkWhereTheyAreDamaged) {
  NotedRecord noted = TimeNoted();
  noted.note.machine = "caf\xE9";
  for (const ExportFormat format : {ExportFormat::Json, ExportFormat::Csv, ExportFormat::Uff58}) {
    const auto file = Exported(std::vector{noted}, format);
    ASSERT_TRUE(file);
    EXPECT_NE(file->find("caf\xEF\xBF\xBD"), std::string::npos) << NameOf(format);
    EXPECT_EQ(file->find('\xE9'), std::string::npos) << NameOf(format);
  }
}

TEST(Exported, AWordThatIsNoNumberIsRefusedLikeAValue) {
  NotedRecord bad = SpectrumNoted();
  bad.record.Of(Axis::X).raw(0) = std::numeric_limits<double>::infinity();
  EXPECT_THAT(WhyNot({bad}, ExportFormat::Csv), HasSubstr("Record 1 holds a value"));
  bad = SpectrumNoted();
  bad.record.settings.option = -1;
  EXPECT_THAT(WhyNot({bad}, ExportFormat::Csv), HasSubstr("sample-rate option -1"));
  bad.record.settings.option = 3;
  EXPECT_EQ(WhyNot({bad}, ExportFormat::Csv), "");
}

TEST(Exported, WhatIsNotKnownOfARecordIsLeftEmpty) {
  NotedRecord noted = SpectrumNoted();
  noted.note = {};
  noted.record.time = {};
  noted.record.settings.window = 3;
  noted.record.settings.range = 4;
  const auto json = Exported(std::vector{noted}, ExportFormat::Json);
  ASSERT_TRUE(json) << json.Why().Text();
  for (const char* unknown : {"time", "window", "range_g", "machine", "speed_rpm"}) {
    EXPECT_THAT(*json, HasSubstr("\"" + std::string(unknown) + "\": null")) << unknown;
  }
  noted.record.settings.range = -1;
  EXPECT_THAT(*Exported(std::vector{noted}, ExportFormat::Json), HasSubstr("\"range_g\": null"));
  const auto universal = Exported(std::vector{noted}, ExportFormat::Uff58);
  EXPECT_THAT(*universal, HasSubstr("in g\nNONE\nNONE\nKESTREL1 "));
}

TEST(Exported, AWordWithAFractionKeepsIt) {
  NotedRecord noted = SpectrumNoted();
  noted.record.Of(Axis::X).raw(0) = 0.5;
  noted.record.Of(Axis::X).raw(1) = 1e17;
  const auto json = Exported(std::vector{noted}, ExportFormat::Json);
  EXPECT_THAT(*json, testing::ContainsRegex("\"raw\": \\[\n *0.5,\n *1e\\+17,"));
}

TEST(Exported, ATableOfBothKindsHasAColumnOfFrequenciesAndOneOfTimes) {
  const auto csv = Exported(std::vector{SpectrumNoted(), TimeNoted()}, ExportFormat::Csv);
  ASSERT_TRUE(csv);
  EXPECT_THAT(*csv, HasSubstr("record,point,frequency_hz,time_s,x_g,"));
  EXPECT_THAT(*csv, HasSubstr("\r\n1,1,195.6833984375,,"));
  EXPECT_THAT(*csv, HasSubstr("\r\n2,0,,0,"));
}

}  // namespace
}  // namespace kestrel::exchange
