// The program-wide names of STATUS and of the number of averages.
// SPDX-License-Identifier: MIT
#include "record/capture_data.h"

#include <gmock/gmock.h>

namespace kestrel {
namespace {

using testing::Each;

class CaptureNames : public testing::Test {
 protected:
  ~CaptureNames() override { ResetCaptureData(); }
};

TEST_F(CaptureNames, EveryWordOfStatusIsToldBitByBit) {
  EXPECT_THAT(StatusFlagText, Each("")) << "it was never read";
  for (int word = 0; word < 0x10000; word += 0x0101) {
    NameStatus({.word = word, .known = true});
    for (std::size_t bit = 0; bit < kStatusFlags; ++bit) {
      const bool isEvent = bit >= 7;
      const char* whenSet = isEvent ? "SET" : "FAIL";
      ASSERT_EQ(StatusFlagText.at(bit), (word >> bit & 1) != 0 ? whenSet : "OK") << word;
    }
  }
  NameStatus({.word = 0xFFFF, .known = false});
  EXPECT_THAT(StatusFlagText, Each(""));
}

TEST_F(CaptureNames, AveragesAreAPowerOfTwo) {
  for (const int exponent : {0, 1, 7}) {
    NoteAverages(1 << exponent);
    EXPECT_EQ(AvgExponent, exponent);
  }
  NoteAverages(0);
  EXPECT_EQ(AvgExponent, 0);
}

TEST_F(CaptureNames, AfterAResetNothingIsKnown) {
  Record record;
  record.kind = RecordKind::Time;
  record.settings.option = 2;
  record.conditions = {.supplyV = 3.3F, .temperatureC = 24, .recordCount = 7};
  record.Of(Axis::Z).raw(511) = 100;
  NameRecord(Rescaled(record, 3));
  NameStatus({.word = 1, .known = true});
  NoteAverages(8);
  EXPECT_EQ(LsbWeight, LsbWeightOf(3, RecordKind::Time));
  EXPECT_EQ(DataZ(511), 100 * LsbWeight);
  EXPECT_EQ(RangeSetting, 3);
  EXPECT_EQ(CaptSupply, 3.3F);
  EXPECT_EQ(CaptTemp, 24);
  EXPECT_EQ(Buff.sampleRateOption, 2);
  ResetCaptureData();
  EXPECT_EQ(CaptureType, "FFT");
  EXPECT_EQ(LsbWeight, 0);
  EXPECT_EQ(RangeSetting, 0);
  EXPECT_EQ(CaptSupply, 0);
  EXPECT_EQ(CaptTemp, 0);
  EXPECT_EQ(AvgExponent, 0);
  EXPECT_EQ(DataZ, RecordArray());
  EXPECT_EQ(RawZ, RecordArray());
  EXPECT_THAT(StatusFlagText, Each(""));
}

}  // namespace
}  // namespace kestrel
