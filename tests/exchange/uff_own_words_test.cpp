// Our own words in a universal file: believed as far as they can be true.
// SPDX-License-Identifier: MIT
#include "exchange/round_trip.h"

namespace kestrel::exchange {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

std::string Whole() {
  return BytesOf({SpectrumNoted()}, ExportFormat::Uff58);
}

// The words of all three axes changed alike.
ImportedRecord With3(const std::string& from, const std::string& to) {
  std::string bytes = Whole();
  std::size_t at = 0;
  for (int i = 0; i < 3; ++i) {
    at = bytes.find(from, at);
    EXPECT_NE(at, std::string::npos) << from;
    bytes.replace(at, from.size(), to);
    at += to.size();
  }
  const auto file = Imported("f.uff", bytes);
  EXPECT_TRUE(file) << file.Why().Text();
  return file ? file->records.front() : ImportedRecord{};
}

std::string WordNamed(const std::string& name) {
  const std::string bytes = Whole();
  const std::size_t at = bytes.find(" " + name + "=");
  return bytes.substr(at, bytes.find_first_of(" \n", at + 1) - at);
}

TEST(UffOwnWords, SettingsNeedBothOfTheirWords) {
  EXPECT_NE(With3(WordNamed("INFO"), " more" + WordNamed("INFO")).settings, std::nullopt)
      << "what is no word of ours does no harm";
  EXPECT_EQ(With3(WordNamed("CTRL"), "").settings, std::nullopt);
  EXPECT_EQ(With3(WordNamed("INFO"), " INFO=xyz").settings, std::nullopt);
  EXPECT_EQ(With3("KESTREL1 ", "KESTREL2 ").settings, std::nullopt);
}

TEST(UffOwnWords, AWeightIsANumberAboveNothing) {
  EXPECT_EQ(With3(WordNamed("LSB"), " LSB=0.25").lsbWeight, 0.25);
  for (const char* none : {" LSB=0", " LSB=-1", " LSB=inf", " LSB=nan", " LSB=much", ""}) {
    EXPECT_EQ(With3(WordNamed("LSB"), none).lsbWeight, std::nullopt) << none;
  }
}

TEST(UffOwnWords, ARangeIsACodeFromNoughtToThree) {
  EXPECT_EQ(With3(WordNamed("SCALE"), " SCALE=0").scaledRange, 0);
  EXPECT_EQ(With3(WordNamed("SCALE"), " SCALE=3").scaledRange, 3);
  for (const char* none : {" SCALE=4", " SCALE=-1", " SCALE=1.5", " SCALE=", ""}) {
    EXPECT_EQ(With3(WordNamed("SCALE"), none).scaledRange, std::nullopt) << none;
  }
}

TEST(UffOwnWords, ConditionsThatCannotBeAreNotKnown) {
  EXPECT_EQ(With3(WordNamed("SUPPLY"), " SUPPLY=3.25").supplyV, 3.25F);
  EXPECT_EQ(With3(WordNamed("SUPPLY"), " SUPPLY=2e6").supplyV, std::nullopt);
  EXPECT_EQ(With3(WordNamed("SUPPLY"), " SUPPLY=nan").supplyV, std::nullopt);
  EXPECT_EQ(With3(WordNamed("TEMP"), " TEMP=-2e6").temperatureC, std::nullopt);
  EXPECT_EQ(With3(WordNamed("TEMP"), " TEMP=-40.5").temperatureC, -40.5F);
  EXPECT_EQ(With3(WordNamed("COUNT"), " COUNT=65535").recordCount, 65535);
  EXPECT_EQ(With3(WordNamed("COUNT"), " COUNT=0").recordCount, 0);
  EXPECT_EQ(With3(WordNamed("COUNT"), " COUNT=2147483647").recordCount, 2147483647);
  EXPECT_EQ(With3(WordNamed("COUNT"), " COUNT=-1").recordCount, std::nullopt);
  EXPECT_EQ(With3(WordNamed("COUNT"), " COUNT=2147483648").recordCount, std::nullopt);
  EXPECT_EQ(With3(WordNamed("STATUS"), " STATUS=FF").status, 0xFF);
  EXPECT_EQ(With3(WordNamed("STATUS"), " STATUS=12345").status, std::nullopt);
  EXPECT_EQ(With3(WordNamed("STATUS"), "").status, std::nullopt);
}

TEST(UffOwnWords, ALineOfTimeIsAMomentOnlyWhereItEndsInOurs) {
  const std::string ours = "14-MAR-24 08:26:53  2024-03-14T08:26:53.250Z";
  EXPECT_NE(With3(ours, ours).time, std::nullopt);
  for (const char* other :
       {"14-MAR-24 08:26:53", "14-MAR-24 08:26:53  at noon",
        "14-MAR-24 08:26:53  2024-03-14T08:26:53.250X", "2024-03-14T08:26:53.250Z"}) {
    const ImportedRecord record = With3(ours, other);
    EXPECT_EQ(record.time, std::nullopt) << other;
    EXPECT_EQ(record.timeText, other);
  }
  EXPECT_EQ(With3(ours, "NONE").timeText, "");
}

TEST(UffOwnWords, ANumberOfTheRecordThatCannotBeIsNone) {
  for (const char* none :
       {" REC=1", " REC=0/1", " REC=2/1", " REC=1/1e10", " REC=x/1", " REC=1/x", " REC=/", ""}) {
    EXPECT_EQ(With3(WordNamed("REC"), none).kind, RecordKind::Spectrum)
        << none << ": read as a file of others, whose records are not counted";
  }
}

// The datasets of one record of a file.
std::string RecordIn(const std::vector<NotedRecord>& records, std::size_t number) {
  const std::string bytes = BytesOf(records, ExportFormat::Uff58);
  const std::size_t length = bytes.size() / records.size();
  return bytes.substr(number * length, length);
}

TEST(UffOwnWords, RecordsThatAreMissingBetweenOthersAreNoticed) {
  const std::vector<NotedRecord> two{SpectrumNoted(), SpectrumNoted()};
  const std::vector<NotedRecord> three{SpectrumNoted(), SpectrumNoted(), SpectrumNoted()};
  ASSERT_THAT(Imported("f", RecordIn(two, 0) + RecordIn(two, 1))->records, SizeIs(2));
  EXPECT_THAT(WhyNotImported("f", RecordIn(two, 1)),
              HasSubstr("f: record 2 of 2 follows record 0: datasets are missing"));
  EXPECT_THAT(WhyNotImported("f", RecordIn(three, 0) + RecordIn(three, 2)),
              HasSubstr("record 3 of 3 follows record 1"));
  EXPECT_THAT(WhyNotImported("f", RecordIn(three, 0) + RecordIn(two, 1)),
              HasSubstr("record 2 of 2 follows record 1"));
  EXPECT_THAT(WhyNotImported("f", RecordIn(two, 0) + RecordIn(two, 0)),
              HasSubstr("it ends behind record 1 of 2"));
  const std::string one = RecordIn({SpectrumNoted()}, 0);
  EXPECT_THAT(Imported("f", one + one)->records, SizeIs(2)) << "two files one behind the other";
}

}  // namespace
}  // namespace kestrel::exchange
