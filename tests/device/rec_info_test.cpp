// The model of REC_INFO and its texts.
// SPDX-License-Identifier: MIT
#include "device/rec_info.h"

#include "support/register_bench.h"

namespace kestrel {
namespace {

void ExpectField(const cBitFieldProp& field, const char* bits, const char* title, int value,
                 const char* setting) {
  EXPECT_EQ(field.BFRange(), bits);
  EXPECT_EQ(field.BFTitle(), title);
  EXPECT_EQ(field.BFValue(), value);
  EXPECT_EQ(field.SettingDecription(), setting);
}

class RecInfo : public RegisterBench {
 protected:
  void Read(int word) {
    sensor.Set(address::kRecInfo, word);
    gRecInfo->ReadRec_Info();
  }

  static void ExpectWordZero() {
    ExpectField(gRecInfo->SampleRateOption(), "15:14", "Sample Rate Option", 0, "SR0 (FS / 1)");
    ExpectField(gRecInfo->Windowing(), "13:12", "Windowing", 0, "Rectangular");
    ExpectField(gRecInfo->SignalRange(), "11:10", "Signal Range", 0, "0 - 1g");
    ExpectField(gRecInfo->FFTAverages(), "8:0", "FFT Averages", 1, "0");
  }
};

TEST_F(RecInfo, IsEmptyBeforeTheFirstRead) {
  EXPECT_EQ(gRecInfo->DecimalReadWord(), 0);
  ExpectField(gRecInfo->FFTAverages(), "", "", 0, "");
}

TEST_F(RecInfo, ReadTakesOneRegisterReadAndKeepsTheWord) {
  Read(0xFFFF);
  EXPECT_EQ(TakeFrames(), ReadFrames(address::kRecInfo));
  EXPECT_EQ(gRecInfo->DecimalReadWord(), 65535);
}

// No averages counts as one, beside the setting that was read.
TEST_F(RecInfo, WordZero) {
  Read(0x0000);
  ExpectWordZero();
}

TEST_F(RecInfo, Bit9IsNotDecoded) {
  Read(0xFFFF);
  Read(0x0200);
  ExpectWordZero();
  EXPECT_EQ(gRecInfo->DecimalReadWord(), 512);
}

TEST_F(RecInfo, AllBitsSet) {
  Read(0xFFFF);
  ExpectField(gRecInfo->SampleRateOption(), "15:14", "Sample Rate Option", 3, "SR0 (FS / 512)");
  ExpectField(gRecInfo->Windowing(), "13:12", "Windowing", 3, "UK  v=3");
  ExpectField(gRecInfo->SignalRange(), "11:10", "Signal Range", 3, "0 - 70g [default]");
  ExpectField(gRecInfo->FFTAverages(), "8:0", "FFT Averages", 511, "511");
}

TEST_F(RecInfo, TextsOfEveryCode) {
  struct Row {
    const char* rate;
    const char* window;
    const char* range;
  };
  const Row rows[] = {{"SR0 (FS / 1)", "Rectangular", "0 - 1g"},
                      {"SR0 (FS / 8)", "Hanning [default]", "0 - 5g"},
                      {"SR0 (FS / 64)", "Flat Top", "0 - 20g"},
                      {"SR0 (FS / 512)", "UK  v=3", "0 - 70g [default]"}};
  int code = 0;
  for (const Row& row : rows) {
    SCOPED_TRACE(code);
    Read(code << 14 | 1);
    ExpectField(gRecInfo->SampleRateOption(), "15:14", "Sample Rate Option", code, row.rate);
    ExpectField(gRecInfo->FFTAverages(), "8:0", "FFT Averages", 1, "1");
    Read(code << 12);
    ExpectField(gRecInfo->Windowing(), "13:12", "Windowing", code, row.window);
    Read(code << 10);
    ExpectField(gRecInfo->SignalRange(), "11:10", "Signal Range", code, row.range);
    ++code;
  }
}

TEST_F(RecInfo, DescriptionsAreCopies) {
  Read(0x0008);
  const cBitFieldProp before = gRecInfo->FFTAverages();
  Read(0x0010);
  ExpectField(before, "8:0", "FFT Averages", 8, "8");
  ExpectField(gRecInfo->FFTAverages(), "8:0", "FFT Averages", 16, "16");
}

}  // namespace
}  // namespace kestrel
