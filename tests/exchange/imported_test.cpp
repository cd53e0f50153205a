// What is exported comes back; what is cut, damaged or foreign is refused with its place.
// SPDX-License-Identifier: MIT
#include "exchange/imported.h"

#include <cmath>

#include "exchange/exported.h"
#include "exchange/noted_records.h"
#include "exchange/round_trip.h"
#include "support/seeds.h"

namespace kestrel::exchange {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

void ExpectTheSame(const Record& found, const Record& wanted) {
  EXPECT_EQ(found.kind, wanted.kind);
  EXPECT_EQ(found.settings, wanted.settings);
  EXPECT_EQ(found.lsbWeight, wanted.lsbWeight);
  EXPECT_EQ(found.scaledRange, wanted.scaledRange);
  for (const Axis axis : kAxes) {
    EXPECT_TRUE(std::ranges::equal(found.Values(axis), wanted.Values(axis))) << Letter(axis);
    EXPECT_TRUE(std::ranges::equal(found.Of(axis).raw.First(wanted.Points()),
                                   wanted.Of(axis).raw.First(wanted.Points())))
        << Letter(axis);
  }
}

TEST(Imported, RecordsComeBackFromUniversalFilesWordForWord) {
  for (const ExportFormat format : {ExportFormat::Uff58, ExportFormat::Uff58b}) {
    const std::vector<NotedRecord> records{SpectrumNoted(1), TimeNoted(), SpectrumNoted(3)};
    const auto file = Imported("pump.uff", BytesOf(records, format));
    ASSERT_TRUE(file) << file.Why().Text();
    EXPECT_EQ(file->file, "pump.uff");
    EXPECT_THAT(file->notices, IsEmpty());
    ASSERT_THAT(file->records, SizeIs(3));
    for (std::size_t i = 0; i < records.size(); ++i) {
      const ImportedRecord& imported = file->records[i];
      EXPECT_THAT(UnknownsOf(imported), IsEmpty());
      EXPECT_EQ(imported.unit, "g");
      EXPECT_EQ(imported.time, records[i].note.time);
      EXPECT_THAT(imported.note, HasSubstr("Pump 3"));
      const auto record = RecordOf(imported, {});
      ASSERT_TRUE(record) << record.Why().Text();
      ExpectTheSame(*record, records[i].record);
      EXPECT_EQ(record->conditions, records[i].record.conditions);
      EXPECT_EQ(record->status, records[i].record.status);
    }
  }
}

TEST(Imported, DatasetsThatAreMissingAtTheEndAreNoticed) {
  const std::string bytes = BytesOf({SpectrumNoted(), SpectrumNoted(2)}, ExportFormat::Uff58);
  std::size_t sets = 0;
  for (std::size_t at = bytes.find("    -1\n    -1\n"); at != std::string::npos;
       at = bytes.find("    -1\n    -1\n", at + 1)) {
    ++sets;
    const auto file = Imported("cut.uff", bytes.substr(0, at + 7));
    ASSERT_FALSE(file) << "behind dataset " << sets;
    EXPECT_THAT(file.Why().Text(), HasSubstr("cut.uff: "));
    EXPECT_THAT(file.Why().Text(), HasSubstr("datasets are missing"));
  }
  EXPECT_EQ(sets, 5U);
}

TEST(Imported, TimeRecordsComeBackFromWavWordForWord) {
  if (!IsBuiltIn(ExportFormat::Wav)) {
    EXPECT_THAT(WhyNotImported("pump.wav", PlainWav()), HasSubstr("without libsndfile"));
    return;
  }
  for (int option = 0; option < 4; ++option) {
    const NotedRecord noted = TimeNoted(option);
    const auto file = Imported("pump.wav", BytesOf({noted}, ExportFormat::Wav));
    ASSERT_TRUE(file) << file.Why().Text();
    const ImportedRecord& imported = file->records.front();
    EXPECT_EQ(imported.step, 1 / SampleFrequency(option));
    EXPECT_THAT(UnknownsOf(imported), ElementsAre("time"));
    const auto record = RecordOf(imported, {});
    ASSERT_TRUE(record) << record.Why().Text();
    ExpectTheSame(*record, noted.record);
  }
}

TEST(Imported, AFileOfAnotherKindIsToldWhatCanBeImported) {
  EXPECT_EQ(WhyNotImported("a", ""), "a: The file is empty.");
  EXPECT_THAT(WhyNotImported("a.txt", "hello"),
              HasSubstr("a.txt, byte 0: The file begins with \"hello\""));
  EXPECT_THAT(WhyNotImported("a.txt", "hello"), HasSubstr("universal files with datasets 58"));
  EXPECT_THAT(WhyNotImported("a.csv", std::string("\xFF\xFE\x46\x00", 4)), HasSubstr("UTF-16"));
  EXPECT_THAT(WhyNotImported("a", std::string("\0\x1\x2\xFF", 4)), HasSubstr("byte 0"));
  EXPECT_THAT(WhyNotImported("a\nb\xE9", "x"), testing::StartsWith("a b\xEF\xBF\xBD, byte 0"));
}

TEST(Imported, OtherExportsOfThisProgramAreNamed) {
  for (const ExportFormat format : {ExportFormat::Csv, ExportFormat::Json}) {
    EXPECT_THAT(WhyNotImported("a", BytesOf({SpectrumNoted()}, format)),
                HasSubstr("exported as uff58, uff58b or wav can be imported"));
  }
}

// What may be left of a file without a loss: its last line end.
void ExpectCutsAreNoticed(const std::string& bytes, std::size_t harmless) {
  const auto whole = Imported("f", bytes);
  ASSERT_TRUE(whole) << whole.Why().Text();
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    const auto cut = Imported("f", bytes.substr(0, size));
    if (size + harmless >= bytes.size() && cut) {
      EXPECT_EQ(cut->records.front().traces.front().values,
                whole->records.front().traces.front().values);
      continue;
    }
    ASSERT_FALSE(cut) << "cut to " << size << " of " << bytes.size();
    ASSERT_GT(cut.Why().Text().size(), 10U);
    ASSERT_THAT(cut.Why().Text(), testing::StartsWith("f"));
  }
}

TEST(Imported, AUniversalFileCutAtAnyByteIsRefused) {
  ExpectCutsAreNoticed(OneDataset(ExportFormat::Uff58), 1);
}

TEST(Imported, ABinaryUniversalFileCutAtAnyByteIsRefused) {
  ExpectCutsAreNoticed(OneDataset(ExportFormat::Uff58b), 1);
}

TEST(Imported, ADataLogFileCutAtAnyByteIsRefused) {
  ExpectCutsAreNoticed(DataLogOf(SpectrumNoted().record), 1);
}

TEST(Imported, AWavFileCutAtAnyByteIsRefused) {
  if (!IsBuiltIn(ExportFormat::Wav)) return;
  ExpectCutsAreNoticed(BytesOf({TimeNoted()}, ExportFormat::Wav), 0);
}

TEST(Imported, BytesThatAreDamagedAnywhereAreReadAsNumbersOrRefusedWithTheirPlace) {
  std::vector<std::string> files{OneDataset(ExportFormat::Uff58), OneDataset(ExportFormat::Uff58b),
                                 DataLogOf(SpectrumNoted().record), PlainWav()};
  int refused = 0;
  WithSeeds(400, [&](Random& random) {
    std::string bytes = random.Of(files);
    for (int change = random.Between(1, 4); change > 0; --change) {
      bytes[static_cast<std::size_t>(random.Below(static_cast<int>(bytes.size())))] =
          static_cast<char>(random.Below(256));
    }
    const auto file = Imported("f", bytes);
    if (!file) {
      ++refused;
      EXPECT_THAT(file.Why().Text(), testing::StartsWith("f"));
      EXPECT_EQ(file.Why().Text().find('\n'), std::string::npos);
      return;
    }
    for (const ImportedRecord& record : file->records) {
      for (const ImportedTrace& trace : record.traces) {
        EXPECT_THAT(trace.values,
                    testing::Each(testing::Truly([](double v) { return std::isfinite(v); })));
      }
    }
  });
  EXPECT_GT(refused, 50);
}

TEST(Imported, FilesOfOtherEncodingsAndOtherWavesAreToldWhatHelps) {
  EXPECT_THAT(WhyNotImported("a.csv", std::string("\xFE\xFF\x00\x46", 4)), HasSubstr("UTF-16"));
  EXPECT_THAT(WhyNotImported("a.wav", "RF64 and more"), HasSubstr("save it as a plain one"));
  EXPECT_THAT(WhyNotImported("a.json", "{\"other\": 1}"), HasSubstr("The file begins with"));
  EXPECT_THAT(WhyNotImported("a.uff", "-1x\n"), HasSubstr("The file begins with \"-1x\""));
  EXPECT_THAT(WhyNotImported("a.uff", "-1"), HasSubstr("line 2: the file ends in the middle"));
  EXPECT_THAT(WhyNotImported("a.uff", "-1 \t\n"), HasSubstr("line 2: the file ends in the middle"));
}

TEST(Imported, OfARecordWithItsSettingsTheRateIsKnown) {
  ImportedRecord record{.settings = RecordSettings{}};
  EXPECT_THAT(UnknownsOf(record), ElementsAre("unit", "time"));
  record.settings.reset();
  record.unit = "counts";
  EXPECT_THAT(UnknownsOf(record),
              ElementsAre("sample rate", "unit in g", "range", "window", "time"));
}

}  // namespace
}  // namespace kestrel::exchange
