// Alarm state and peaks of the axes, as read and as shown.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_status.h"

#include "device/rec_ctrl.h"
#include "support/fake_alarm_view.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

constexpr double kGreen = 0x00D200;
constexpr double kYellow = 0x00F0F0;
constexpr double kRed = 0x0000E6;

class AlarmDisplay : public RegisterBench {
 protected:
  Journal journal;
  FakeAlarmView view{journal};
  AlarmStatus alarms{core.registers, view};
};

TEST_F(AlarmDisplay, ReadsTheThreeAxesInOrder) {
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(TakeFrames(), AlarmStatusFrames());
}

TEST_F(AlarmDisplay, NoFlagIsNoneAndGreen) {
  alarms.DisplaySpectralALarmsStatus();
  for (const Axis axis : kAxes) {
    EXPECT_EQ(view.alarm[Index(axis)], " None");
    EXPECT_EQ(view.band[Index(axis)], "0");
    for (int band = 1; band <= 6; ++band) {
      EXPECT_EQ(view.indicator.at({axis, band}), kGreen) << AxisName(axis) << band;
    }
  }
  EXPECT_EQ(view.indicator.size(), 18U);
}

TEST_F(AlarmDisplay, BothFlagsOfABandAreAFault) {
  sensor.Set(address::kAlmXStat, 0x0030);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.alarm[0], " Fault");
  EXPECT_EQ(view.indicator.at({Axis::X, 1}), kRed);
  EXPECT_EQ(view.indicator.at({Axis::X, 2}), kGreen);
  EXPECT_EQ(WarningsOf(alarms.State().Of(Axis::X))[1], 1);
  EXPECT_EQ(FaultsOf(alarms.State().Of(Axis::X))[1], 1);
  EXPECT_EQ(view.alarm[1], " None");
  EXPECT_EQ(view.alarm[2], " None");
}

TEST_F(AlarmDisplay, BandNumberAndWarning) {
  sensor.Set(address::kAlmYStat, 0x1003);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.band[1], "3");
  EXPECT_EQ(view.alarm[1], " Warning");
  EXPECT_EQ(view.indicator.at({Axis::Y, 5}), kYellow);
  EXPECT_EQ(WarningsOf(alarms.State().Of(Axis::Y)), (AlarmFlags{0, 0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(FaultsOf(alarms.State().Of(Axis::Y)), AlarmFlags{});
}

TEST_F(AlarmDisplay, EveryFlagBitBelongsToOneBand) {
  for (int band = 1; band <= 6; ++band) {
    SCOPED_TRACE(band);
    AlarmFlags only{};
    only[static_cast<std::size_t>(band)] = 1;

    sensor.Set(address::kAlmZStat, 1 << (2 * band + 2));
    alarms.DisplaySpectralALarmsStatus();
    EXPECT_EQ(WarningsOf(alarms.State().Of(Axis::Z)), only);
    EXPECT_EQ(FaultsOf(alarms.State().Of(Axis::Z)), AlarmFlags{});
    EXPECT_EQ(view.alarm[2], " Warning");
    EXPECT_EQ(view.indicator.at({Axis::Z, band}), kYellow);

    sensor.Set(address::kAlmZStat, 1 << (2 * band + 3));
    alarms.DisplaySpectralALarmsStatus();
    EXPECT_EQ(WarningsOf(alarms.State().Of(Axis::Z)), AlarmFlags{});
    EXPECT_EQ(FaultsOf(alarms.State().Of(Axis::Z)), only);
    EXPECT_EQ(view.alarm[2], " Fault");
    EXPECT_EQ(view.indicator.at({Axis::Z, band}), kRed);
  }
}

TEST_F(AlarmDisplay, AFaultOfOneBandOutranksTheWarningOfALaterOne) {
  sensor.Set(address::kAlmXStat, 1 << 5 | 1 << 14);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.alarm[0], " Fault");
  EXPECT_EQ(view.indicator.at({Axis::X, 1}), kRed);
  EXPECT_EQ(view.indicator.at({Axis::X, 6}), kYellow);
}

TEST_F(AlarmDisplay, Bit3IsNotShown) {
  sensor.Set(address::kAlmXStat, 0x000F);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.band[0], "7");
  EXPECT_EQ(view.alarm[0], " None");
}

TEST_F(AlarmDisplay, PeaksAreReadAxisByAxisMagnitudeFirst) {
  alarms.DisplayPeakAlarms();
  EXPECT_EQ(TakeFrames(), PeakFrames());
}

TEST_F(AlarmDisplay, PeaksAreShownInG) {
  sensor.Set(address::kRecCtrl, 0x0030);
  gRecCtrl->ReadRecCtrl();
  sensor.Set(address::kAlmXPeak, 1000);
  sensor.Set(address::kAlmYPeak, 0xFFFF);
  sensor.Set(address::kAlmXFreq, 42);
  sensor.Set(address::kAlmZFreq, 255);
  alarms.DisplayPeakAlarms();
  EXPECT_EQ(view.peak, (std::array<std::string, 3>{" 1.192", " 78.124", " 0.000"}));
  EXPECT_EQ(view.peakBin, (std::array<std::string, 3>{" 42", " 0", " 255"}));
}

// Flags of two moments side by side would be a state that never was.
TEST_F(AlarmDisplay, ALostSensorLeavesTheFlagsOfAllAxesAsTheyWere) {
  alarms.DisplaySpectralALarmsStatus();
  const ::kestrel::AlarmState earlier = alarms.State();
  for (int request = 1; request <= 3 * 3; ++request) {
    SCOPED_TRACE(request);
    messages.Clear();
    for (const int flags : {address::kAlmXStat, address::kAlmYStat, address::kAlmZStat}) {
      sensor.Set(flags, 0x0010);
    }
    sensor.UnplugAtRequest(request);
    alarms.DisplaySpectralALarmsStatus();
    EXPECT_EQ(alarms.State(), earlier);
    EXPECT_EQ(view.alarm, (std::array<std::string, 3>{" None", " None", " None"}));
    EXPECT_EQ(messages.Texts().size(), 1U);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

TEST_F(AlarmDisplay, ALostSensorLeavesThePeaksOfAllAxesAsTheyWere) {
  alarms.DisplayPeakAlarms();
  for (int request = 1; request <= 3 * 6; ++request) {
    SCOPED_TRACE(request);
    messages.Clear();
    for (const int peak : {address::kAlmXPeak, address::kAlmYPeak}) sensor.Set(peak, 1000);
    sensor.UnplugAtRequest(request);
    alarms.DisplayPeakAlarms();
    EXPECT_EQ(view.peak, (std::array<std::string, 3>{" 0.000", " 0.000", " 0.000"}));
    EXPECT_EQ(messages.Texts().size(), 1U);
    sensor.PlugInAgain();
    core.usb.SelectUsbAdapter();
  }
}

class PeaksOfARecord : public AlarmDisplay {
 protected:
  PeaksOfARecord() {
    SetControl(0x0030);
    sensor.Set(address::kAlmXPeak, 1000);
    sensor.Set(address::kAlmXFreq, 42);
    alarms.DisplayPeakAlarms();
    EXPECT_EQ(view.peak[0], " 1.192");
  }
  void SetControl(int word) {
    sensor.Set(address::kRecCtrl, word);
    gRecCtrl->ReadRecCtrl();
  }
  std::string Shown() {
    alarms.DisplayPeakAlarms();
    return view.peak[0];
  }
};

TEST_F(PeaksOfARecord, KeepTheirValueWhenTheRangeOrTheModeChanges) {
  for (const int word : {0x0000, 0x0010, 0x0020, 0x0032, 0x0030}) {
    SetControl(word);
    EXPECT_EQ(Shown(), " 1.192") << word;
    EXPECT_DOUBLE_EQ(alarms.State().PeakG(Axis::X), 1.1921);
  }
}

TEST_F(PeaksOfARecord, ThatDifferInCodeOrBinBelongToTheRangeThatIsSet) {
  SetControl(0x0010);
  sensor.Set(address::kAlmXFreq, 43);
  EXPECT_EQ(Shown(), " 0.076");
  SetControl(0x0030);
  sensor.Set(address::kAlmXPeak, 1001);
  EXPECT_EQ(Shown(), " 1.193");
}

TEST_F(PeaksOfARecord, OfTheSameCodesInANewRecordAreScaledByItsRange) {
  SetControl(0x0010);
  alarms.ExpectPeaks(0.0003052);
  EXPECT_EQ(Shown(), " 0.305");
  EXPECT_EQ(Shown(), " 0.305") << "and stay so";
}

TEST_F(PeaksOfARecord, AnnouncedToALostSensorAreStillExpected) {
  alarms.ExpectPeaks(0.0003052);
  sensor.UnplugAtRequest(1);
  alarms.DisplayPeakAlarms();
  EXPECT_EQ(view.peak[0], " 1.192");
  sensor.PlugInAgain();
  core.usb.SelectUsbAdapter();
  EXPECT_EQ(Shown(), " 0.305");
}

}  // namespace
}  // namespace kestrel
