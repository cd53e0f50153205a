// The model of ALM_CTRL, field by field.
// SPDX-License-Identifier: MIT
#include "device/alm_ctrl.h"

#include "support/register_bench.h"

namespace kestrel {
namespace {

using Fields = std::vector<int>;

class AlmCtrl : public RegisterBench {
 protected:
  void Read(int word) {
    sensor.Set(address::kAlmCtrl, word);
    gAlmCtrl->ReadAlmCtrl();
  }

  // In the order of the register's bits, high to low.
  static Fields All() {
    return {gAlmCtrl->ResponseDelay(),
            gAlmCtrl->LatchSTATUSRegisterAlarmFlagsEnable(),
            gAlmCtrl->EnableAlarm1Alarm2onDIO1DIO2(),
            gAlmCtrl->SystemAlarmComparisonPolarity(),
            gAlmCtrl->SystemAlarmSource(),
            gAlmCtrl->SystemAlarmEnable(),
            gAlmCtrl->SpectralAlarmZEnable(),
            gAlmCtrl->SpectralAlarmYEnable(),
            gAlmCtrl->SpectralAlarmXEnable()};
  }
};

TEST_F(AlmCtrl, StartsAtZeroAndSendsNothing) {
  EXPECT_EQ(All(), Fields(9, 0));
  EXPECT_EQ(gAlmCtrl->ReadWord(), 0);
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(AlmCtrl, FieldsComeFromTheirBitsAlone) {
  struct Row {
    int word;
    Fields fields;
  };
  const Row rows[] = {
      {0x0F00, {15, 0, 0, 0, 0, 0, 0, 0, 0}}, {0x0100, {1, 0, 0, 0, 0, 0, 0, 0, 0}},
      {0x0080, {0, 1, 0, 0, 0, 0, 0, 0, 0}},  {0x0040, {0, 0, 1, 0, 0, 0, 0, 0, 0}},
      {0x0020, {0, 0, 0, 1, 0, 0, 0, 0, 0}},  {0x0010, {0, 0, 0, 0, 1, 0, 0, 0, 0}},
      {0x0008, {0, 0, 0, 0, 0, 1, 0, 0, 0}},  {0x0004, {0, 0, 0, 0, 0, 0, 1, 0, 0}},
      {0x0002, {0, 0, 0, 0, 0, 0, 0, 1, 0}},  {0x0001, {0, 0, 0, 0, 0, 0, 0, 0, 1}},
      {0xF000, {0, 0, 0, 0, 0, 0, 0, 0, 0}},  {0x0FFF, {15, 1, 1, 1, 1, 1, 1, 1, 1}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.word);
    Read(row.word);
    EXPECT_EQ(All(), row.fields);
  }
}

TEST_F(AlmCtrl, ReadTakesOneRegisterReadAndKeepsTheWord) {
  Read(0x0A5C);
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kAlmCtrl));
  EXPECT_EQ(gAlmCtrl->ReadWord(), 0x0A5C);
}

TEST_F(AlmCtrl, AWordWithBit15IsKeptAsANegative16BitNumber) {
  Read(0xFFFE);
  EXPECT_EQ(gAlmCtrl->ReadWord(), -2);
}

TEST_F(AlmCtrl, WriteComposesEachFieldAtItsPlace) {
  gAlmCtrl->ResponseDelay(10);
  gAlmCtrl->EnableAlarm1Alarm2onDIO1DIO2(1);
  gAlmCtrl->SystemAlarmSource(1);
  gAlmCtrl->SpectralAlarmZEnable(1);
  gAlmCtrl->SpectralAlarmXEnable(1);
  gAlmCtrl->WriteAlmCtrl();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kAlmCtrl, 0x0A55));
  gAlmCtrl->LatchSTATUSRegisterAlarmFlagsEnable(1);
  gAlmCtrl->SystemAlarmComparisonPolarity(1);
  gAlmCtrl->SystemAlarmEnable(1);
  gAlmCtrl->SpectralAlarmYEnable(1);
  gAlmCtrl->WriteAlmCtrl();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kAlmCtrl, 0x0AFF));
}

TEST_F(AlmCtrl, WriteSendsTheUndefinedBitsAsZeroAndKeepsReadWord) {
  Read(0xFA5C);
  gAlmCtrl->WriteAlmCtrl();
  EXPECT_EQ(sensor.Word(address::kAlmCtrl), 0x0A5C);
  EXPECT_EQ(gAlmCtrl->ReadWord(), static_cast<std::int16_t>(0xFA5C));
}

TEST_F(AlmCtrl, TheLatchSurvivesAnEditOfTheOtherFields) {
  Read(0x0F80);
  gAlmCtrl->ResponseDelay(2);
  gAlmCtrl->SpectralAlarmYEnable(1);
  gAlmCtrl->WriteAlmCtrl();
  EXPECT_EQ(sensor.Word(address::kAlmCtrl), 0x0282);
}

// A greyed check box has the value 2.
TEST_F(AlmCtrl, FieldsAreNotMaskedAndSpillOver) {
  gAlmCtrl->SpectralAlarmXEnable(2);
  gAlmCtrl->WriteAlmCtrl();
  EXPECT_EQ(sensor.Word(address::kAlmCtrl), 0x0002);
  gAlmCtrl->SpectralAlarmXEnable(0);
  gAlmCtrl->EnableAlarm1Alarm2onDIO1DIO2(2);
  gAlmCtrl->ResponseDelay(16);
  gAlmCtrl->WriteAlmCtrl();
  EXPECT_EQ(sensor.Word(address::kAlmCtrl), 0x1080);
}

}  // namespace
}  // namespace kestrel
