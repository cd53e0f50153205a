// The model of REC_CTRL, its scales and its codes.
// SPDX-License-Identifier: MIT
#include "device/rec_ctrl.h"

#include "support/register_bench.h"

namespace kestrel {
namespace {

class RecCtrl : public RegisterBench {
 protected:
  void Read(int word) {
    sensor.Set(address::kRecCtrl, word);
    gRecCtrl->ReadRecCtrl();
  }
  void SetFields(std::int16_t windowing, std::int16_t rate, std::int16_t range,
                 std::int16_t storage, std::int16_t mode) {
    gRecCtrl->Windowing(windowing);
    gRecCtrl->SampleRate(rate);
    gRecCtrl->RangeFS(range);
    gRecCtrl->StrogeMethod(storage);
    gRecCtrl->RecModeCode(mode);
  }
};

TEST_F(RecCtrl, EverythingIsZeroOrEmptyBeforeTheFirstRead) {
  EXPECT_EQ(gRecCtrl->RecModeCode(), 0);
  EXPECT_EQ(gRecCtrl->PowerDown(), 0);
  EXPECT_EQ(gRecCtrl->RecordStorageMethod(), 0);
  EXPECT_EQ(gRecCtrl->SampleRate(), 0);
  EXPECT_EQ(gRecCtrl->Windowing(), 0);
  EXPECT_EQ(gRecCtrl->RangeFS(), 0);
  EXPECT_EQ(gRecCtrl->RangeString(), "");
  EXPECT_EQ(gRecCtrl->gLsb(), 0);
  EXPECT_EQ(gRecCtrl->gMax(), 0);
  EXPECT_EQ(TakeFrames(), Frames{});
}

TEST_F(RecCtrl, ReadTakesOneRegisterRead) {
  Read(0);
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecCtrl));
}

TEST_F(RecCtrl, WordZeroIsManualModeInTheSmallestRange) {
  Read(0x3FFF);
  Read(0x0000);
  EXPECT_EQ(gRecCtrl->RecModeCode(), 0);
  EXPECT_EQ(gRecCtrl->RangeString(), "0 - 1g");
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.000015259);
  EXPECT_DOUBLE_EQ(gRecCtrl->gMax(), 0.999998565);
}

TEST_F(RecCtrl, FieldsComeFromTheirBitsAlone) {
  struct Row {
    int word, windowing, rate, powerDown, range, storage, mode;
  };
  const Row rows[] = {
      {0x0001, 0, 0, 0, 0, 0, 1},  {0x0003, 0, 0, 0, 0, 0, 3}, {0x0004, 0, 0, 0, 0, 1, 0},
      {0x000C, 0, 0, 0, 0, 3, 0},  {0x0010, 0, 0, 0, 1, 0, 0}, {0x0030, 0, 0, 0, 3, 0, 0},
      {0x0080, 0, 0, 1, 0, 0, 0},  {0x0100, 0, 1, 0, 0, 0, 0}, {0x0F00, 0, 15, 0, 0, 0, 0},
      {0x1000, 1, 0, 0, 0, 0, 0},  {0x3000, 3, 0, 0, 0, 0, 0}, {0xC040, 0, 0, 0, 0, 0, 0},
      {0xFFFF, 3, 15, 1, 3, 3, 3}, {0x25A6, 2, 5, 1, 2, 1, 2}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.word);
    Read(row.word);
    EXPECT_EQ(gRecCtrl->Windowing(), row.windowing);
    EXPECT_EQ(gRecCtrl->SampleRate(), row.rate);
    EXPECT_EQ(gRecCtrl->PowerDown(), row.powerDown);
    EXPECT_EQ(gRecCtrl->RangeFS(), row.range);
    EXPECT_EQ(gRecCtrl->RecModeCode(), row.mode);
    EXPECT_EQ(gRecCtrl->StrogeMethod(), row.storage);
  }
}

// Both scales are taken in double precision from the constants in milli-g.
TEST_F(RecCtrl, ScaleFollowsRangeAndIsDoubledForTimeRecordsOnly) {
  struct Row {
    int word;
    const char* text;
    double gLsb;
  };
  const Row rows[] = {{0x0000, "0 - 1g", 0.015259 / 1000}, {0x0010, "0 - 5g", 0.0763 / 1000},
                      {0x0020, "0 - 20g", 0.3052 / 1000},  {0x0030, "0 - 70g", 1.1921 / 1000},
                      {0x0031, "0 - 70g", 1.1921 / 1000},  {0x0033, "0 - 70g", 1.1921 / 1000},
                      {0x0002, "0 - 1g", 0.000030518},     {0x0012, "0 - 5g", 0.0001526},
                      {0x0022, "0 - 20g", 0.0006104},      {0x0032, "0 - 70g", 0.0023842}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.word);
    Read(row.word);
    EXPECT_EQ(gRecCtrl->RangeString(), row.text);
    EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), row.gLsb);
    EXPECT_DOUBLE_EQ(gRecCtrl->gMax(), row.gLsb * 65535);
  }
}

TEST_F(RecCtrl, ReadingATimeModeTwiceDoublesOnce) {
  Read(0x0032);
  Read(0x0032);
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.0023842);
}

TEST_F(RecCtrl, WriteComposesTheWordHighByteFirst) {
  Read(0x0080);
  TakeFrames();
  SetFields(2, 5, 2, 1, 2);
  gRecCtrl->WriteRecCtrl();
  EXPECT_EQ(TakeFrames(), WriteFrames(address::kRecCtrl, 0x25A6));
}

TEST_F(RecCtrl, WriteSendsTheUndefinedBitsAsZero) {
  Read(0xFFFF);
  gRecCtrl->WriteRecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x3FBF);
}

TEST_F(RecCtrl, FieldsAreNotMaskedAndSpillOver) {
  struct Row {
    std::int16_t windowing, rate, range, storage, mode;
    int word;
  };
  const Row rows[] = {{0, 16, 0, 0, 0, 0x1000}, {4, 0, 0, 0, 0, 0x4000}, {0, 0, 4, 0, 0, 0x0040},
                      {0, 0, 8, 0, 0, 0x0080},  {0, 0, 0, 4, 0, 0x0010}, {0, 0, 0, 0, 4, 0x0004},
                      {1, 16, 0, 0, 0, 0x2000}, {0, 0, 0, 0, -1, 0x00FF}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.word);
    SetFields(row.windowing, row.rate, row.range, row.storage, row.mode);
    gRecCtrl->WriteRecCtrl();
    EXPECT_EQ(sensor.Word(address::kRecCtrl), row.word);
  }
}

TEST_F(RecCtrl, WriteLeavesScaleAndTextsAsLastRead) {
  Read(0x0000);
  SetFields(0, 0, 3, 0, 2);
  gRecCtrl->WriteRecCtrl();
  EXPECT_EQ(gRecCtrl->RangeString(), "0 - 1g");
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.000015259);
  gRecCtrl->ReadRecCtrl();
  EXPECT_EQ(gRecCtrl->RangeString(), "0 - 70g");
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.0023842);
}

TEST_F(RecCtrl, AskingForTheStorageMethodReadsTheWholeRegisterAgain) {
  Read(0x0000);
  sensor.Set(address::kRecCtrl, 0x1538);
  TakeFrames();
  EXPECT_EQ(gRecCtrl->StrogeMethod(), 2);
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecCtrl));
  EXPECT_EQ(gRecCtrl->Windowing(), 1);
  EXPECT_EQ(gRecCtrl->SampleRate(), 5);
  EXPECT_EQ(gRecCtrl->RangeString(), "0 - 70g");
  EXPECT_DOUBLE_EQ(gRecCtrl->gLsb(), 0.0011921);
}

TEST_F(RecCtrl, SettingTheStorageMethodSendsNothingAndIsLostOnTheNextRead) {
  gRecCtrl->StrogeMethod(3);
  EXPECT_EQ(TakeFrames(), Frames{});
  EXPECT_EQ(gRecCtrl->StrogeMethod(), 0);
}

TEST_F(RecCtrl, PowerDownOfTheSharedModelCannotBeSet) {
  Read(0x0080);
  gRecCtrl->PowerDown(0);
  EXPECT_EQ(gRecCtrl->PowerDown(), 1);
  gRecCtrl->WriteRecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x0080);

  Read(0x0000);
  gRecCtrl->PowerDown(1);
  EXPECT_EQ(gRecCtrl->PowerDown(), 0);
  gRecCtrl->WriteRecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0x0000);
}

TEST_F(RecCtrl, PowerDownOfAnotherModelFollowsTheSharedOne) {
  Read(0x0080);
  cRecCtrl other(core.registers);
  other.PowerDown(0);
  EXPECT_EQ(other.PowerDown(), 1);
  Read(0x0000);
  other.PowerDown(1);
  EXPECT_EQ(other.PowerDown(), 0);
}

TEST_F(RecCtrl, RecordStorageMethodNeverReachesTheRegister) {
  Read(0x0000);
  gRecCtrl->RecordStorageMethod(3);
  gRecCtrl->WriteRecCtrl();
  EXPECT_EQ(sensor.Word(address::kRecCtrl), 0);
  Read(0x000C);
  EXPECT_EQ(gRecCtrl->RecordStorageMethod(), 3);
}

TEST_F(RecCtrl, PlainFieldsKeepWhatTheyAreGiven) {
  gRecCtrl->RangeFS(-7);
  gRecCtrl->SampleRate(32767);
  gRecCtrl->Windowing(99);
  gRecCtrl->RecModeCode(-32768);
  EXPECT_EQ(gRecCtrl->RangeFS(), -7);
  EXPECT_EQ(gRecCtrl->SampleRate(), 32767);
  EXPECT_EQ(gRecCtrl->Windowing(), 99);
  EXPECT_EQ(gRecCtrl->RecModeCode(), -32768);
}

}  // namespace
}  // namespace kestrel
