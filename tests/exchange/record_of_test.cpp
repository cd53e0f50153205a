// What an imported record has to be before it is one of the sensor.
// SPDX-License-Identifier: MIT
#include "exchange/round_trip.h"

namespace kestrel::exchange {
namespace {

using testing::HasSubstr;

constexpr std::int16_t kRange20 = 2;

ImportedRecord Good() {
  return Imported("f", BytesOf({SpectrumNoted()}, ExportFormat::Uff58b))->records.front();
}

// Why it is no record after `change`; empty where it is one.
template <typename Change>
std::string WhyNone(Change change, const Said& said = {}) {
  ImportedRecord imported = Good();
  change(imported);
  const auto record = RecordOf(imported, said);
  return record ? "" : record.Why().Text();
}

// As a file of others tells it.
void Forget(ImportedRecord& imported) {
  imported.settings.reset();
  imported.lsbWeight.reset();
  imported.scaledRange.reset();
}

TEST(RecordOf, ThreeAxesOfWholeWordsAreARecord) {
  EXPECT_EQ(WhyNone([](ImportedRecord&) {}), "");
  EXPECT_EQ(WhyNone(Forget, {.range = kRange20, .window = 1}), "");
}

TEST(RecordOf, AnotherNumberOfTracesOrPointsIsNone) {
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.traces.pop_back(); }),
              HasSubstr("here are 2 traces"));
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.traces[1].values.pop_back(); }),
              HasSubstr("256 points, and trace Y has 255"));
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.kind = RecordKind::Time; }),
              HasSubstr("512 points"));
}

TEST(RecordOf, AxesInAnotherOrderOrDirectionAreNone) {
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { std::swap(it.traces[0], it.traces[1]); }),
              HasSubstr("+X, +Y and +Z, in this order"));
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.traces[2].reversed = true; }),
              HasSubstr("+X, +Y and +Z"));
}

TEST(RecordOf, OtherQuantitiesAndUnitsAreNone) {
  EXPECT_THAT(WhyNone([](ImportedRecord& it) {
                it.amplitudes = false;
                it.quantity = "power spectral density";
              }),
              HasSubstr("not amplitudes (power spectral density)"));
  EXPECT_THAT(WhyNone(
                  [](ImportedRecord& it) {
                    it.gPerUnit.reset();
                    it.unit = "ft/s^2";
                  },
                  {.words = false}),
              HasSubstr("The values are in \"ft/s^2\", which is not an acceleration in g"));
}

TEST(RecordOf, PlacesThatAreNotTheSensorsAreNone) {
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.first = 10; }),
              HasSubstr("first value is at 10"));
  EXPECT_THAT(WhyNone(
                  [](ImportedRecord& it) {
                    Forget(it);
                    it.step = 200;
                  },
                  {.range = kRange20, .window = 1}),
              HasSubstr("200 Hz apart, at which the sensor takes no records"));
}

TEST(RecordOf, WhatIsNotToldIsAskedForAndNotAssumed) {
  EXPECT_THAT(WhyNone(Forget), HasSubstr("The range has to be given"));
  EXPECT_THAT(WhyNone(Forget, {.range = kRange20}), HasSubstr("The window has to be given"));
  const auto forgetStep = [](ImportedRecord& it) {
    Forget(it);
    it.step.reset();
  };
  EXPECT_THAT(WhyNone(forgetStep, {.range = kRange20, .window = 1}),
              HasSubstr("option has to be given"));
}

TEST(RecordOf, AValueBetweenTwoWordsOrBeyondThemIsNamed) {
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.traces[1].values[7] = *it.lsbWeight * 3.5; }),
              HasSubstr("Y of point 7 is"));
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.traces[1].values[7] = *it.lsbWeight * 65536; }),
              HasSubstr("not a word of the sensor at this range"));
  EXPECT_THAT(WhyNone([](ImportedRecord& it) { it.traces[1].values[7] = -*it.lsbWeight; }),
              HasSubstr("not a word of the sensor at this range"));
}

TEST(RecordOf, WithAWeightThatIsHardlyAnyEvenNothingIsNoWord) {
  EXPECT_THAT(WhyNone([](ImportedRecord& it) {
                for (ImportedTrace& trace : it.traces) trace.values.assign(256, 0.0);
                it.lsbWeight = 1e-320;
              }),
              HasSubstr("X of point 0 is 0, which is not a word of the sensor"));
}

TEST(RecordOf, TheLastWordsOfEitherKindAreWords) {
  const auto withWords = [](RecordKind kind, double low, double high) {
    return WhyNone([=](ImportedRecord& it) {
      it.kind = kind;
      it.lsbWeight = it.gPerUnit = 1;
      for (ImportedTrace& trace : it.traces) {
        trace.values.assign(kind == RecordKind::Time ? 512 : 256, 0.0);
        trace.values.front() = low;
        trace.values.back() = high;
      }
    });
  };
  EXPECT_EQ(withWords(RecordKind::Spectrum, 0, 65535), "");
  EXPECT_EQ(withWords(RecordKind::Time, -32768, 32767), "");
  EXPECT_THAT(withWords(RecordKind::Spectrum, 0, 65536), HasSubstr("X of point 255 is 65536"));
  EXPECT_THAT(withWords(RecordKind::Spectrum, -1, 0), HasSubstr("X of point 0 is -1"));
  EXPECT_THAT(withWords(RecordKind::Time, -32769, 0), HasSubstr("X of point 0 is -32769"));
  EXPECT_THAT(withWords(RecordKind::Time, 0, 32768), HasSubstr("X of point 511 is 32768"));
  EXPECT_EQ(withWords(RecordKind::Time, 1e-7, 0), "") << "digits of a file leave as much";
  EXPECT_THAT(withWords(RecordKind::Time, 1e-5, 0), HasSubstr("X of point 0 is 1e-05"));
}

TEST(RecordOf, TracesWithoutAxesOrAFirstPlaceAreTakenInTheirOrder) {
  EXPECT_EQ(WhyNone([](ImportedRecord& it) {
              for (ImportedTrace& trace : it.traces) trace.axis.reset();
              it.first.reset();
            }),
            "");
}

TEST(RecordOf, OfATimeRecordTheStepTellsTheOption) {
  const NotedRecord noted = TimeNoted(2);
  ImportedRecord imported = Imported("f", BytesOf({noted}, ExportFormat::Uff58b))->records.front();
  Forget(imported);
  const auto record = RecordOf(imported, {.option = 0, .range = kRange20});
  ASSERT_TRUE(record) << record.Why().Text();
  EXPECT_EQ(record->settings.option, 2) << "what the file tells counts more";
  EXPECT_EQ(record->settings.window, 0);
  imported.step = 0.25;
  EXPECT_THAT(RecordOf(imported, {.range = kRange20}).Why().Text(), HasSubstr("0.25 s apart"));
}

TEST(RecordOf, ValuesWithoutAUnitAreWhatIsSaidOfThem) {
  ImportedRecord imported = Good();
  const Record wanted = SpectrumNoted().record;
  imported.gPerUnit.reset();
  imported.unit.clear();
  const auto asG = RecordOf(imported, {.words = false});
  ASSERT_TRUE(asG) << asG.Why().Text();
  EXPECT_EQ(asG->Of(Axis::X).raw(20), wanted.Of(Axis::X).raw(20));
  EXPECT_THAT(RecordOf(imported, {}).Why().Text(), HasSubstr("words of the sensor or g"));
  imported.unit = "counts";
  EXPECT_THAT(RecordOf(imported, {}).Why().Text(), HasSubstr("The values are in \"counts\""));
}

TEST(RecordOf, AveragesThatNoSensorTakesAreTheMostThatItTells) {
  ImportedRecord imported = Good();
  Forget(imported);
  for (const auto& [told, taken] : {std::pair{1000.0, 511}, {-3.0, 0}, {8.0, 8}}) {
    imported.averages = told;
    const auto record = RecordOf(imported, {.range = kRange20, .window = 1});
    ASSERT_TRUE(record) << record.Why().Text();
    EXPECT_EQ(record->settings.averages, taken);
    EXPECT_EQ(record->settings.window, 1);
    EXPECT_EQ(record->settings.range, kRange20);
  }
}

}  // namespace
}  // namespace kestrel::exchange
