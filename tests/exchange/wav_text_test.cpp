// The text in which a WAV file says its scale, and what is believed of it.
// SPDX-License-Identifier: MIT
#include "exchange/wav/text.h"

#include "exchange/round_trip.h"
#include "exchange/writers.h"
#include "record/frequency.h"
#ifdef KESTREL_SNDFILE
#include "exchange/wav/memory.h"
#endif

namespace kestrel::exchange {
namespace {

using testing::HasSubstr;

// The text of a record with one of its lines changed.
std::optional<WavTold> ToldWith(const std::string& name, const std::string& value) {
  std::string text = WavText(TimeNoted());
  const std::size_t at = text.find("\n" + name + ": ") + 1;
  EXPECT_NE(at, 0U) << name;
  return WavToldBy(text.replace(at, text.find('\n', at) - at, name + ": " + value));
}

TEST(WavText, TellsScaleRateAndSettings) {
  const NotedRecord noted = TimeNoted(1);
  const auto told = WavToldBy(WavText(noted));
  ASSERT_TRUE(told);
  EXPECT_EQ(told->gPerUnit, 32768 * noted.record.lsbWeight);
  EXPECT_EQ(told->rateHz, SampleFrequency(1));
  EXPECT_EQ(told->settings, noted.record.settings);
  EXPECT_EQ(told->lsbWeight, noted.record.lsbWeight);
  EXPECT_EQ(told->scaledRange, noted.record.scaledRange);
}

TEST(WavText, WithoutAScaleOrARateItIsNoneOfOurs) {
  for (const char* none : {"0", "-1", "nan", "inf", "much", ""}) {
    EXPECT_FALSE(ToldWith("g_per_unit", none)) << none;
    EXPECT_FALSE(ToldWith("true_rate_hz", none)) << none;
  }
  EXPECT_FALSE(WavToldBy("recorded in the yard"));
  EXPECT_FALSE(WavToldBy("kestrel time record 1\n"));
  EXPECT_FALSE(WavToldBy("kestrel time record 1\ng_per_unit: 2"));
  EXPECT_EQ(WavToldBy("kestrel time record 1\ng_per_unit: 2\ntrue_rate_hz: 8000")->gPerUnit, 2);
}

TEST(WavText, WordsThatCannotBeAreNotBelieved) {
  EXPECT_TRUE(ToldWith("rec_info", "65535")->settings);
  for (const char* none : {"65536", "-1", "1.5", "nan"}) {
    EXPECT_EQ(ToldWith("rec_info", none)->settings, std::nullopt) << none;
    EXPECT_EQ(ToldWith("rec_ctrl", none)->settings, std::nullopt) << none;
  }
  EXPECT_EQ(ToldWith("scaled_range_code", "3")->scaledRange, 3);
  EXPECT_EQ(ToldWith("scaled_range_code", "4")->scaledRange, std::nullopt);
  for (const char* none : {"0", "-0.001", "inf"}) {
    EXPECT_EQ(ToldWith("lsb_weight_g", none)->lsbWeight, std::nullopt) << none;
  }
}

TEST(WavText, OfTwoLinesOfOneNameTheFirstCounts) {
  const auto told =
      WavToldBy("kestrel time record 1\ng_per_unit: 2\ntrue_rate_hz: 8000\ng_per_unit: 5");
  EXPECT_EQ(told->gPerUnit, 2);
}

TEST(WavText, WhatWasNotedComesLastAndIsCutWhereThereIsNoRoom) {
  NotedRecord noted = TimeNoted();
  noted.note.note = std::string(3000, 'n');
  const std::string text = WavText(noted);
  EXPECT_EQ(text.size(), kWavText);
  EXPECT_THAT(text, testing::EndsWith("n..."));
  EXPECT_EQ(WavToldBy(text)->lsbWeight, noted.record.lsbWeight);
}

TEST(WavScale, IsThatOfTheWordsOrOfWhatIsLarger) {
  NotedRecord noted = TimeNoted();
  EXPECT_EQ(WavScale(noted.record), 32768 * noted.record.lsbWeight);
  for (const double weight : {0.0, 1e-9, -1.0, std::numeric_limits<double>::infinity()}) {
    noted.record.lsbWeight = weight;
    EXPECT_EQ(WavScale(noted.record), 4) << weight << ": the values go beyond 2 g";
  }
  for (AxisRecord& axis : noted.record.axes) axis.data = {};
  noted.record.lsbWeight = 0;
  EXPECT_EQ(WavScale(noted.record), 1);
}

TEST(WavScale, ARecordWithoutAWeightComesBackAsItsValues) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  NotedRecord noted = TimeNoted();
  noted.record.lsbWeight = 0;
  const auto file = Imported("f.wav", BytesOf({noted}, ExportFormat::Wav));
  ASSERT_TRUE(file) << file.Why().Text();
  EXPECT_EQ(file->records[0].lsbWeight, std::nullopt);
  EXPECT_EQ(file->records[0].gPerUnit, 4);
  const auto& samples = file->records[0].traces[0].values;
  const auto values = noted.record.Values(Axis::X);
  EXPECT_TRUE(std::ranges::equal(samples, values, [](double sample, double value) {
    return std::abs(sample * 4 - value) < 1e-6;
  }));
}

#ifdef KESTREL_SNDFILE
TEST(WavFiles, ARateThatNoFileHoldsIsToldByTheLibrary) {
  NotedRecord noted = TimeNoted();
  noted.record.settings.option = 12;
  const auto file = WavFile(noted);
  ASSERT_FALSE(file);
  EXPECT_THAT(file.Why().Text(), HasSubstr("libsndfile could not make the WAV file: "));
}

TEST(WavMemory, APlaceOutsideTheFileIsRefusedAndTheOldOneKept) {
  struct WavMemory memory {
    .bytes = "0123456789", .place = 4
  };
  EXPECT_EQ(WavSeek(2, SEEK_CUR, &memory), 6);
  EXPECT_EQ(WavSeek(-7, SEEK_CUR, &memory), -1);
  EXPECT_EQ(WavSeek(5, SEEK_CUR, &memory), -1);
  EXPECT_EQ(WavSeek(-1, SEEK_SET, &memory), -1);
  EXPECT_EQ(WavSeek(11, SEEK_SET, &memory), -1);
  EXPECT_EQ(WavSeek(1, SEEK_END, &memory), -1);
  EXPECT_EQ(WavTell(&memory), 6);
  EXPECT_EQ(WavSeek(10, SEEK_SET, &memory), 10);
  EXPECT_EQ(WavSeek(-10, SEEK_END, &memory), 0);
  EXPECT_EQ(WavSeek(0, SEEK_SET, &memory), 0);
}

TEST(WavMemory, ReadsAsMuchAsThereIsAndGrowsWithWhatIsWritten) {
  struct WavMemory memory {
    .bytes = "0123456789", .place = 7
  };
  std::string read(8, '.');
  EXPECT_EQ(WavRead(read.data(), 8, &memory), 3);
  EXPECT_EQ(read, "789.....");
  EXPECT_EQ(WavRead(read.data(), 8, &memory), 0);
  memory.place = 8;
  EXPECT_EQ(WavWrite("abcd", 4, &memory), 4);
  EXPECT_EQ(memory.bytes, "01234567abcd");
  EXPECT_EQ(WavTell(&memory), 12);
  memory.place = 0;
  EXPECT_EQ(WavWrite("x", 1, &memory), 1);
  EXPECT_EQ(memory.bytes, "x1234567abcd");
  EXPECT_EQ(WavLength(&memory), 12);
}
#endif

}  // namespace
}  // namespace kestrel::exchange
