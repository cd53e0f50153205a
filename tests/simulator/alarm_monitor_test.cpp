// Which alarms single spectra raise, band by band.
// SPDX-License-Identifier: MIT
#include "simulator/sensor/alarm_monitor.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

constexpr AlarmControl kAllAxes{0x0007};
constexpr std::uint16_t kXAlarms = 1 << 8 | 1 << 11;

// Ten bins a band, warnings above 100, faults above 200.
AlarmBands::Band TenBins(unsigned first) {
  const auto low = static_cast<std::uint16_t>(first);
  return {low, static_cast<std::uint16_t>(low + 9), 100, 100, 100, 200, 200, 200};
}

// Bands 1 to 6 of every option at bins 10, 20, ... 60.
class Monitor : public ::testing::Test {
 protected:
  Monitor() {
    for (std::uint16_t option = 0; option < 4; ++option) {
      for (std::uint16_t number = 1; number <= 6; ++number)
        Of(number, option) = TenBins(10U * number);
    }
  }
  AlarmBands::Band& Of(unsigned number, unsigned option = 0) {
    return *bands_.At(static_cast<std::uint16_t>(option << 8U | number));
  }
  void SetX(std::size_t bin, std::uint16_t magnitude) { spectrum_.words[0].at(bin) = magnitude; }
  void Judge(AlarmControl control = kAllAxes) { monitor_.Judge(spectrum_, bands_, control); }
  // ALM_X_STAT after the spectrum has been judged once more.
  std::uint16_t XStat(AlarmControl control = kAllAxes) {
    Judge(control);
    return monitor_.Stat(0);
  }

  AlarmBands bands_;
  CapturedRecord spectrum_{
      .settings = {},
      .words = {std::vector<std::uint16_t>(256), std::vector<std::uint16_t>(256),
                std::vector<std::uint16_t>(256)}};
  AlarmMonitor monitor_;
};

TEST_F(Monitor, ThresholdMustBeExceededNotMerelyReached) {
  SetX(25, 100);
  EXPECT_EQ(XStat(), 0);
  SetX(25, 101);
  EXPECT_EQ(XStat(), 1 << 6 | 2);
  SetX(25, 200);
  EXPECT_EQ(XStat(), 1 << 6 | 2);
  SetX(25, 201);
  EXPECT_EQ(XStat(), 1 << 7 | 1 << 6 | 2);
}

TEST_F(Monitor, BandReachesFromItsFirstBinToItsLast) {
  Of(3) = {};
  for (std::size_t bin = 18; bin < 32; ++bin) {
    spectrum_.words[0].assign(256, 0);
    SetX(bin, 150);
    EXPECT_EQ(XStat() & 7, bin < 20 ? 1 : bin < 30 ? 2 : 0) << bin;
  }
}

TEST_F(Monitor, BandOfOneBinAndBandsAtTheEndsCount) {
  Of(1) = {0, 0, 100, 0, 0, 0, 0, 0};
  Of(2) = {255, 255, 100, 0, 0, 0, 0, 0};
  SetX(0, 101);
  EXPECT_EQ(XStat(), 1 << 4 | 1);
  SetX(0, 0);
  SetX(255, 101);
  EXPECT_EQ(XStat(), 1 << 6 | 2);
}

TEST_F(Monitor, BandThatReachesBeyondTheSpectrumEndsWithIt) {
  Of(6) = {250, 0xFFFF, 100, 0, 0, 0, 0, 0};
  SetX(255, 101);
  EXPECT_EQ(XStat(), 1 << 14 | 6);
  Of(6) = {256, 0xFFFF, 100, 0, 0, 0, 0, 0};
  EXPECT_EQ(XStat(), 0);
}

TEST_F(Monitor, BandWithItsEndsReversedIsEmpty) {
  spectrum_.words[0].assign(256, 0xFFFF);
  for (unsigned number = 1; number <= 6; ++number) Of(number) = {31, 30, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(XStat(), 0);
}

TEST_F(Monitor, ThresholdOfZeroIsOff) {
  spectrum_.words[0].assign(256, 0xFFFF);
  Of(2) = {20, 29, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(XStat() & (3 << 6), 0);
  Of(2) = {20, 29, 0, 0, 0, 5, 0, 0};
  EXPECT_EQ(XStat() & (3 << 6), 1 << 7) << "the fault alone";
  bands_.Clear();
  EXPECT_EQ(XStat(), 0);
}

TEST_F(Monitor, LargestThresholdIsOutOfReach) {
  spectrum_.words[0].assign(256, 0xFFFF);
  for (unsigned number = 1; number <= 6; ++number)
    Of(number) = {0, 255, 0xFFFF, 0, 0, 0xFFFF, 0, 0};
  EXPECT_EQ(XStat(), 0);
  for (unsigned number = 1; number <= 6; ++number) Of(number)[5] = 0xFFFE;
  EXPECT_EQ(XStat(), 0xAAA1);
}

TEST_F(Monitor, AFaultIsGraverThanAnyWarning) {
  Of(2) = {20, 29, 1, 0, 0, 0, 0, 0};
  SetX(25, 0xFFFF);
  SetX(45, 201);
  EXPECT_EQ(XStat() & 7, 4);
}

TEST_F(Monitor, OfEqualLevelsTheLargestRelativeToItsThresholdIsTheGravest) {
  Of(2) = {20, 29, 1000, 0, 0, 0, 0, 0};
  SetX(25, 1500);
  SetX(45, 151);
  EXPECT_EQ(XStat() & 7, 4);
  SetX(45, 149);
  EXPECT_EQ(XStat() & 7, 2);
  SetX(45, 150);
  EXPECT_EQ(XStat() & 7, 2) << "the first of equals";

  SetX(35, 500);
  SetX(55, 501);
  EXPECT_EQ(XStat() & 7, 5);
}

TEST_F(Monitor, EveryAxisHasThresholdsAndFlagsOfItsOwn) {
  Of(1) = {10, 19, 100, 200, 300, 110, 210, 310};
  for (auto& words : spectrum_.words) words[15] = 205;
  Judge();
  EXPECT_EQ(monitor_.Stat(0), 3 << 4 | 1);
  EXPECT_EQ(monitor_.Stat(1), 1 << 4 | 1);
  EXPECT_EQ(monitor_.Stat(2), 0);
  EXPECT_EQ(monitor_.Flags(), 1 << 8 | 1 << 11 | 1 << 9);
}

TEST_F(Monitor, DelayOfNHoldsAnAlarmBackForNRecords) {
  for (unsigned delay = 0; delay < 16; ++delay) {
    monitor_.Restart();
    SetX(25, 250);
    const AlarmControl control(static_cast<std::uint16_t>(delay << 8U | 7U));
    for (unsigned record = 0; record < delay; ++record) {
      EXPECT_EQ(XStat(control), 0) << delay << ", " << record;
      EXPECT_EQ(monitor_.Flags(), 0);
    }
    for (unsigned record = 0; record < 40; ++record) {
      EXPECT_EQ(XStat(control), 3 << 6 | 2) << delay << ", " << record;
      EXPECT_EQ(monitor_.Flags(), kXAlarms);
    }
    SetX(25, 0);
    EXPECT_EQ(XStat(control), 0) << "the end is not held back";
    SetX(25, 250);
    EXPECT_EQ(XStat(control) == 0, delay > 0) << "the row begins anew";
  }
}

TEST_F(Monitor, RowsAreCountedForEachAxisBandAndLevel) {
  const AlarmControl delayed{0x0107};
  SetX(25, 150);
  EXPECT_EQ(XStat(delayed), 0);
  SetX(25, 250);
  SetX(35, 150);
  EXPECT_EQ(XStat(delayed), 1 << 6 | 2) << "neither the fault nor the other band";
  spectrum_.words[1][25] = 150;
  EXPECT_EQ(XStat(delayed), 3 << 6 | 1 << 8 | 2);
  EXPECT_EQ(monitor_.Stat(1), 0);
}

TEST_F(Monitor, RecordsOfAnotherOptionInterruptTheRow) {
  const AlarmControl delayed{0x0107};
  SetX(25, 150);
  EXPECT_EQ(XStat(delayed), 0);
  spectrum_.settings.sampleRateOption = 1;
  EXPECT_EQ(XStat(delayed), 0);
  EXPECT_NE(XStat(delayed), 0);
  spectrum_.settings.sampleRateOption = 0;
  EXPECT_EQ(XStat(delayed), 0);
}

TEST_F(Monitor, AxisThatWasOffStartsItsRowsAnew) {
  SetX(25, 150);
  EXPECT_EQ(XStat(AlarmControl{0x0107}), 0);
  EXPECT_EQ(XStat(AlarmControl{0x0106}), 0);
  EXPECT_EQ(XStat(AlarmControl{0x0107}), 0);
  EXPECT_NE(XStat(AlarmControl{0x0107}), 0);
}

TEST_F(Monitor, ClearedFlagsComeBackWithTheNextSpectrumAndRowsGoOn) {
  SetX(25, 150);
  Judge(AlarmControl{0x0107});
  monitor_.ClearFlags();
  Judge(AlarmControl{0x0107});
  EXPECT_EQ(monitor_.Flags(), 1 << 8);
  monitor_.ClearFlags();
  EXPECT_EQ(monitor_.Flags(), 0);
  EXPECT_EQ(monitor_.Stat(0), 1 << 6 | 2) << "the record is what it was";
  Judge(AlarmControl{0x0107});
  EXPECT_EQ(monitor_.Flags(), 1 << 8);
}

TEST_F(Monitor, SystemAlarmAndSpectralAlarmsLeaveEachOtherAlone) {
  SetX(25, 150);
  monitor_.JudgeSystem(true);
  Judge(AlarmControl{0x000F});
  EXPECT_EQ(monitor_.Flags(), 1 << 14 | 1 << 8);
  monitor_.JudgeSystem(false);
  EXPECT_EQ(monitor_.Flags(), 1 << 8);
  monitor_.JudgeSystem(true);
  SetX(25, 0);
  Judge(AlarmControl{0x000F});
  EXPECT_EQ(monitor_.Flags(), 1 << 14);
}

}  // namespace
}  // namespace kestrel
