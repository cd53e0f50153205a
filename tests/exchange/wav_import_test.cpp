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

// A WAV file of these parts.
std::string WavOf(const std::string& parts) {
  return "RIFF" + LittleEndian(static_cast<unsigned>(parts.size()) + 4, 4) + "WAVE" + parts;
}

std::string Part(const std::string& name, const std::string& data) {
  return name + LittleEndian(static_cast<unsigned>(data.size()), 4) + data;
}

std::string FormatOf(unsigned code, unsigned channels, unsigned bits) {
  const unsigned frame = channels * bits / 8;
  return LittleEndian(code, 2) + LittleEndian(channels, 2) + LittleEndian(8000, 4) +
         LittleEndian(8000 * frame, 4) + LittleEndian(frame, 2) + LittleEndian(bits, 2);
}

// Samples of one channel; the fault's text where there are none.
std::vector<double> SamplesIn(const std::string& bytes) {
  const auto file = Imported("f.wav", bytes);
  EXPECT_TRUE(file) << file.Why().Text();
  return file ? file->records.front().traces.at(0).values : std::vector<double>{};
}

TEST(WavImport, SamplesOfEveryWidthAreReadAsTheyAre) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  const auto read = [](unsigned code, unsigned bits, const std::string& data) {
    return SamplesIn(WavOf(Part("fmt ", FormatOf(code, 1, bits)) + Part("data", data)));
  };
  EXPECT_THAT(read(1, 8, "\xC0\x40"), ElementsAre(0.5, -0.5));
  EXPECT_THAT(read(1, 16, std::string("\x00\x40\x00\xC0", 4)), ElementsAre(0.5, -0.5));
  EXPECT_THAT(read(1, 24, std::string("\x00\x00\x40\x00\x00\xC0", 6)), ElementsAre(0.5, -0.5));
  EXPECT_THAT(read(1, 32, LittleEndian(0x40000000, 4)), ElementsAre(0.5));
  EXPECT_THAT(read(3, 32, LittleEndian(0x3F000000, 4)), ElementsAre(0.5));
  EXPECT_THAT(read(3, 64, LittleEndian(0, 4) + LittleEndian(0x3FE00000, 4)), ElementsAre(0.5));
}

TEST(WavImport, WidthsThatAreNoneOfTheirFormatAreNamed) {
  const auto why = [](unsigned code, unsigned bits) {
    return WhyNotImported("f.wav", WavOf(Part("fmt ", FormatOf(code, 1, bits)) +
                                         Part("data", std::string(16, '\0'))));
  };
  EXPECT_THAT(why(3, 16), HasSubstr("byte 34: a sample has 16 bits"));
  EXPECT_THAT(why(1, 64), HasSubstr("byte 34: a sample has 64 bits"));
  EXPECT_THAT(why(0xFFFE, 16), HasSubstr("byte 20: the format's code is 65534"));
}

TEST(WavImport, TheCodeOfALongFormatStandsInItsExtension) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  const std::string rest("\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71", 14);
  const auto extensible = [&](unsigned code) {
    return WavOf(Part("fmt ", FormatOf(0xFFFE, 1, 16) + LittleEndian(22, 2) + LittleEndian(16, 2) +
                                  LittleEndian(0, 4) + LittleEndian(code, 2) + rest) +
                 Part("data", std::string("\x00\x40", 2)));
  };
  EXPECT_THAT(SamplesIn(extensible(1)), ElementsAre(0.5));
  EXPECT_THAT(WhyNotImported("f.wav", extensible(2)), HasSubstr("the format's code is 2"));
}

TEST(WavImport, PartsMayBeOddAndOfOtherKindsAndTheLastNeedsNoFill) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  const std::string format = Part("fmt ", FormatOf(1, 1, 8));
  EXPECT_THAT(SamplesIn(WavOf(Part("note", "abc") + std::string(1, '\0') + format +
                              Part("data", "\xC0\x40"))),
              ElementsAre(0.5, -0.5));
  const std::string odd = WavOf(format + Part("data", "\xC0"));
  EXPECT_THAT(SamplesIn(odd), ElementsAre(0.5));
  EXPECT_THAT(SamplesIn(odd + std::string(1, '\0')), ElementsAre(0.5)) << "its fill not counted";
  EXPECT_THAT(WhyNotImported("f.wav", odd + std::string(2, '\0')),
              HasSubstr("byte 4: the file should have 45 bytes and has 47"));
}

TEST(WavImport, PartsThatAreThereTwiceOrEmptyAreNamed) {
  const std::string format = Part("fmt ", FormatOf(1, 1, 16));
  const std::string data = Part("data", std::string("\x00\x40", 2));
  EXPECT_THAT(WhyNotImported("f.wav", WavOf(format + format + data)),
              HasSubstr("byte 44: there are two formats"));
  EXPECT_THAT(WhyNotImported("f.wav", WavOf(format + data + data)),
              HasSubstr("byte 54: there are two parts of data"));
  EXPECT_THAT(WhyNotImported("f.wav", WavOf(format + Part("data", ""))),
              HasSubstr("byte 40: the data have 0 bytes"));
}

TEST(WavImport, WhatTheLibraryCannotReadIsSaidToBeSo) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  const std::string bytes =
      WavOf(Part("fmt ", FormatOf(1, 2000, 16)) + Part("data", std::string(4000, '\0')));
  EXPECT_THAT(WhyNotImported("f.wav", bytes), HasSubstr("f.wav: libsndfile cannot read it: "));
}

}  // namespace
}  // namespace kestrel::exchange
