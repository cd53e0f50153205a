// What holds of every word, every option and any moment: there and back is the same.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "record/frequency.h"
#include "record/record.h"
#include "record/utc_time.h"
#include "support/seeds.h"

namespace kestrel {
namespace {

TEST(EveryWord, OfInformationIsItsFieldsAndBitNine) {
  for (int word = 0; word < 0x10000; ++word) {
    const RecordSettings settings = SettingsFromWords(word, 0xFFFF - word);
    ASSERT_EQ(settings.option << 14 | settings.window << 12 | settings.range << 10 |
                  (word & 0x200) | settings.averages,
              word);
    ASSERT_EQ(settings.recInfo, word);
    ASSERT_EQ(settings.recCtrl, 0xFFFF - word);
  }
}

TEST(EveryWord, IsFoundAgainInItsPhysicalValueAtEveryRange) {
  for (const RecordKind kind : {RecordKind::Spectrum, RecordKind::Time}) {
    const bool isTime = kind == RecordKind::Time;
    for (std::int16_t range = 0; range < 4; ++range) {
      const double weight = LsbWeightOf(range, kind);
      for (int word = isTime ? -32768 : 0; word <= (isTime ? 32767 : 65535); ++word) {
        const double value = word * weight;
        ASSERT_EQ(std::round(value / weight), word);
        ASSERT_LE(std::abs(value / weight - word), 1e-11 * std::abs(word));
      }
      // The full scale is the largest word within a step or two of it.
      const double largest = (isTime ? 32767 : 65535) * weight;
      EXPECT_NEAR(largest, FullScaleOf(range), FullScaleOf(range) * 0.12) << range;
    }
  }
}

TEST(EveryRange, RescaledThereAndBackIsTheSameRecord) {
  WithSeeds(8, [](Random& random) {
    Record record;
    record.kind = random.OneIn(2) ? RecordKind::Time : RecordKind::Spectrum;
    for (AxisRecord& axis : record.axes) {
      for (int i = 0; i <= record.Width(); ++i) {
        axis.raw(i) = random.Word() - (record.kind == RecordKind::Time ? 0x8000 : 0);
      }
    }
    for (std::int16_t from = 0; from < 4; ++from) {
      const Record scaled = Rescaled(record, from);
      EXPECT_EQ(scaled.lsbWeight, LsbWeightOf(from, record.kind));
      for (std::int16_t to = 0; to < 4; ++to) {
        EXPECT_EQ(Rescaled(Rescaled(scaled, to), from), scaled);
      }
    }
  });
}

TEST(EveryOption, HasAFrequencyFromWhichItIsKnown) {
  for (int option = 0; option < 4; ++option) {
    EXPECT_EQ(BinWidth(option) * 512, SampleFrequency(option));
    EXPECT_EQ(std::round(std::log2(SampleFrequency(0) / SampleFrequency(option)) / 3), option);
  }
}

TEST(AnyMoment, IsReadAsItWasWrittenToTheMillisecond) {
  using namespace std::chrono;
  WithSeeds(2000, [](Random& random) {
    // Of the years 1678 to 2261, which the clock's nanoseconds can tell.
    const std::int64_t days = random.Between(-106'000, 106'000);
    const system_clock::time_point moment{
        hours{24} * days + milliseconds{random.Below(86'400'000)} + nanoseconds{random.Word()}};
    const std::string text = UtcText(moment);
    ASSERT_EQ(text.size(), 24U);
    EXPECT_EQ(UtcFrom(text), floor<milliseconds>(moment)) << text;
    const system_clock::time_point later = moment + milliseconds{random.Between(1, 1'000'000)};
    EXPECT_LT(text, UtcText(later)) << "texts are in the order of their moments";
  });
}

}  // namespace
}  // namespace kestrel
