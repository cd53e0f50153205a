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

}  // namespace
}  // namespace kestrel::exchange
