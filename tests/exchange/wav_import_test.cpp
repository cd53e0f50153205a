// WAV files of others, and what is wrong with damaged ones.
// SPDX-License-Identifier: MIT
#include "exchange/round_trip.h"

namespace kestrel::exchange {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

std::string At(std::string bytes, std::size_t at, const std::string& other) {
  return bytes.replace(at, other.size(), other);
}

TEST(WavImport, AFileOfASoundRecorderTellsItsRateAndNoUnit) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  const auto file = Imported("f.wav", PlainWav());
  ASSERT_TRUE(file) << file.Why().Text();
  const ImportedRecord& record = file->records.front();
  EXPECT_EQ(record.kind, RecordKind::Time);
  ASSERT_THAT(record.traces, SizeIs(2));
  EXPECT_THAT(record.traces[0].values, ElementsAre(0, -1));
  EXPECT_THAT(record.traces[1].values, ElementsAre(0.5, 32767.0 / 32768));
  EXPECT_EQ(record.traces[0].axis, std::nullopt);
  EXPECT_EQ(record.step, 1.0 / 8000);
  EXPECT_EQ(record.gPerUnit, std::nullopt);
  EXPECT_THAT(UnknownsOf(record), ElementsAre("axis of each trace", "unit", "range", "time"));
  EXPECT_THAT(file->notices, ElementsAre(HasSubstr("neither unit nor scale")));
}

TEST(WavImport, OurTextWithAnotherRateThanTheFilesIsNotBelieved) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  const std::string bytes = BytesOf({TimeNoted()}, ExportFormat::Wav);
  const auto file = Imported("f.wav", At(bytes, 24, LittleEndian(44100, 4)));
  ASSERT_TRUE(file) << file.Why().Text();
  EXPECT_EQ(file->records.front().gPerUnit, std::nullopt);
  EXPECT_EQ(file->records.front().step, 1.0 / 44100);
}

TEST(WavImport, WhatIsWrongIsNamedWithItsByteAndValue) {
  const std::string bytes = PlainWav();
  const auto message = [&bytes](std::size_t at, const std::string& other) {
    return WhyNotImported("f.wav", At(bytes, at, other));
  };
  EXPECT_THAT(message(0, "RIFX"), HasSubstr("f.wav, byte 0: this kind of WAV file, \"RIFX\""));
  EXPECT_THAT(message(4, LittleEndian(1000, 4)),
              HasSubstr("byte 4: the file should have 1008 bytes and has 52"));
  EXPECT_THAT(message(4, LittleEndian(0xFFFFFFFF, 4)),
              HasSubstr("byte 4: the file should have 4294967303"));
  EXPECT_THAT(message(8, "AVI "), HasSubstr("byte 8: the file is of the kind \"AVI\""));
  EXPECT_THAT(message(16, LittleEndian(14, 4)), HasSubstr("the format takes 14 bytes"));
  EXPECT_THAT(message(16, LittleEndian(0xFFFFFFF0, 4)),
              HasSubstr("byte 16: the part \"fmt\" should have 4294967280 bytes"));
  EXPECT_THAT(message(20, LittleEndian(85, 2)), HasSubstr("byte 20: the format's code is 85"));
  EXPECT_THAT(message(22, LittleEndian(0, 2)), HasSubstr("byte 22: the number of channels is 0"));
  EXPECT_THAT(message(22, LittleEndian(65535, 2)),
              HasSubstr("byte 32: the bytes of a frame are 4, and 65535"));
  EXPECT_THAT(message(24, LittleEndian(0, 4)), HasSubstr("byte 24: the sample rate is 0"));
  EXPECT_THAT(message(32, LittleEndian(6, 2)), HasSubstr("byte 32: the bytes of a frame are 6"));
  EXPECT_THAT(message(34, LittleEndian(12, 2)), HasSubstr("byte 34: a sample has 12 bits"));
  EXPECT_THAT(message(40, LittleEndian(7, 4)),
              HasSubstr("byte 40: the data have 7 bytes, and a frame has 4"));
  EXPECT_THAT(message(40, LittleEndian(12, 4)),
              HasSubstr("byte 40: the part \"data\" should have 12 bytes"));
  EXPECT_THAT(message(36, "date"), HasSubstr("the file holds no data"));
  EXPECT_THAT(message(12, "fmX "), HasSubstr("byte 44: the data come before their format"));
}

TEST(WavImport, ASampleThatIsNoNumberIsNamed) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  std::string bytes = BytesOf({TimeNoted()}, ExportFormat::Wav);
  const std::size_t data = bytes.find("data", bytes.find("ICMT") + 1000) + 8;
  bytes = At(bytes, data + 4 * (3 * 9 + 1), LittleEndian(0x7FC00000, 4));
  EXPECT_THAT(WhyNotImported("f.wav", bytes), HasSubstr("f.wav: sample 10 of channel 2 is nan"));
}

}  // namespace
}  // namespace kestrel::exchange
