// Alarm state and peaks of the axes, as read and as shown.
// SPDX-License-Identifier: MIT
#include "alarms/alarm_status.h"

#include "device/rec_ctrl.h"
#include "support/fake_plot_views.h"
#include "support/register_bench.h"

namespace kestrel {
namespace {

constexpr double kGreen = 0x00D200;
constexpr double kYellow = 0x00F0F0;
constexpr double kRed = 0x0000E6;

class AlarmState : public RegisterBench {
 protected:
  Journal journal;
  FakeAlarmView view{journal};
  AlarmStatus alarms{core.registers, view};
};

TEST_F(AlarmState, ReadsTheThreeAxesInOrder) {
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(TakeFrames(), AlarmStatusFrames());
}

TEST_F(AlarmState, NoFlagIsNoneAndGreen) {
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

TEST_F(AlarmState, BothFlagsOfABandAreAFault) {
  sensor.Set(address::kAlmXStat, 0x0030);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.alarm[0], " Fault");
  EXPECT_EQ(view.indicator.at({Axis::X, 1}), kRed);
  EXPECT_EQ(view.indicator.at({Axis::X, 2}), kGreen);
  EXPECT_EQ(alarms.Warnings(Axis::X)[1], 1);
  EXPECT_EQ(alarms.Faults(Axis::X)[1], 1);
  EXPECT_EQ(view.alarm[1], " None");
  EXPECT_EQ(view.alarm[2], " None");
}

TEST_F(AlarmState, BandNumberAndWarning) {
  sensor.Set(address::kAlmYStat, 0x1003);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.band[1], "3");
  EXPECT_EQ(view.alarm[1], " Warning");
  EXPECT_EQ(view.indicator.at({Axis::Y, 5}), kYellow);
  EXPECT_EQ(alarms.Warnings(Axis::Y), (AlarmFlags{0, 0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(alarms.Faults(Axis::Y), AlarmFlags{});
}

TEST_F(AlarmState, EveryFlagBitBelongsToOneBand) {
  for (int band = 1; band <= 6; ++band) {
    SCOPED_TRACE(band);
    AlarmFlags only{};
    only[static_cast<std::size_t>(band)] = 1;

    sensor.Set(address::kAlmZStat, 1 << (2 * band + 2));
    alarms.DisplaySpectralALarmsStatus();
    EXPECT_EQ(alarms.Warnings(Axis::Z), only);
    EXPECT_EQ(alarms.Faults(Axis::Z), AlarmFlags{});
    EXPECT_EQ(view.alarm[2], " Warning");
    EXPECT_EQ(view.indicator.at({Axis::Z, band}), kYellow);

    sensor.Set(address::kAlmZStat, 1 << (2 * band + 3));
    alarms.DisplaySpectralALarmsStatus();
    EXPECT_EQ(alarms.Warnings(Axis::Z), AlarmFlags{});
    EXPECT_EQ(alarms.Faults(Axis::Z), only);
    EXPECT_EQ(view.alarm[2], " Fault");
    EXPECT_EQ(view.indicator.at({Axis::Z, band}), kRed);
  }
}

TEST_F(AlarmState, AFaultOfOneBandOutranksTheWarningOfALaterOne) {
  sensor.Set(address::kAlmXStat, 1 << 5 | 1 << 14);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.alarm[0], " Fault");
  EXPECT_EQ(view.indicator.at({Axis::X, 1}), kRed);
  EXPECT_EQ(view.indicator.at({Axis::X, 6}), kYellow);
}

TEST_F(AlarmState, Bit3IsNotShown) {
  sensor.Set(address::kAlmXStat, 0x000F);
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.band[0], "7");
  EXPECT_EQ(view.alarm[0], " None");
}

TEST_F(AlarmState, PeaksAreReadAxisByAxisMagnitudeFirst) {
  alarms.DisplayPeakAlarms();
  EXPECT_EQ(TakeFrames(), PeakFrames());
}

TEST_F(AlarmState, PeaksAreShownInG) {
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

TEST_F(AlarmState, ALostSensorChangesNothingFromThereOn) {
  alarms.DisplaySpectralALarmsStatus();
  sensor.Set(address::kAlmXStat, 0x0010);
  sensor.Set(address::kAlmYStat, 0x0010);
  sensor.UnplugAtRequest(4);  // three requests a register: the second axis fails
  alarms.DisplaySpectralALarmsStatus();
  EXPECT_EQ(view.alarm, (std::array<std::string, 3>{" Warning", " None", " None"}));
  EXPECT_EQ(messages.Texts(), std::vector<std::string>{"Error Writing SPI"});
}

TEST_F(AlarmState, ALostSensorKeepsThePeaksThatWereNotRead) {
  alarms.DisplayPeakAlarms();
  sensor.Set(address::kRecCtrl, 0x0030);
  gRecCtrl->ReadRecCtrl();
  for (const int peak : {address::kAlmXPeak, address::kAlmYPeak}) sensor.Set(peak, 1000);
  sensor.UnplugAtRequest(3 * 2 + 3);
  alarms.DisplayPeakAlarms();
  EXPECT_EQ(view.peak, (std::array<std::string, 3>{" 1.192", " 0.000", " 0.000"}));
  EXPECT_EQ(messages.Texts(), std::vector<std::string>{"Error Reading SPI"});
}

}  // namespace
}  // namespace kestrel
