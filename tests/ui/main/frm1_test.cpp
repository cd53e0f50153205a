// The main window: captures, settings, data log and interface.
// SPDX-License-Identifier: MIT
#include "ui/main/frm1.h"

#include <QStatusBar>

#include <QAction>
#include <QProgressBar>
#include <algorithm>

#include "device/rec_ctrl.h"
#include "logging/data_log.h"
#include "record/capture_data.h"
#include "regmap/register_table.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

using Frm1 = WindowBench;

TEST_F(Frm1, LoadsWithItsTitleAndLists) {
  Start();
  EXPECT_EQ(Window().windowTitle(), "Norvale    Kestrel evaluation program");
  using Texts = std::vector<std::string>;
  EXPECT_EQ(Items(Find<QComboBox>("cbxRecMode")), (Texts{"Manual", "Timer", "Manual Time"}));
  EXPECT_EQ(Items(Find<QComboBox>("cbxWindow")), (Texts{"Rectangular", "Hanning", "Flat Top"}));
  EXPECT_EQ(Items(Find<QComboBox>("cbxSignalRange")),
            (Texts{"0 to 1g", "0 to 5g", "0 to 20g", "0 to 70g"}));
  EXPECT_EQ(Items(Find<QComboBox>("cbxStorage")), (Texts{"None", "Alarm trig", "All"}));
  EXPECT_EQ(Items(Find<QComboBox>("cbxUnits")), (Texts{"Seconds", "Minutes", "Hours"}));
  for (const auto& [name, last] :
       {std::pair{"cbxFFTAvgs", 255}, {"cbxRecPntr", 15}, {"cbxInterval", 255}}) {
    const QComboBox& list = Find<QComboBox>(name);
    ASSERT_EQ(list.count(), last + 1) << name;
    EXPECT_EQ(list.itemText(0), "0") << name;
    EXPECT_EQ(list.itemText(last), QString::number(last)) << name;
  }
}

TEST_F(Frm1, LoadsWithItsStartValues) {
  Start();
  EXPECT_EQ(Text("LbLSupply"), "noData");
  EXPECT_EQ(Text("LbLTemp"), "noData");
  EXPECT_EQ(Text("lblCursorX"), "0");
  EXPECT_EQ(Text("LblFreq"), "0 Hz");
  EXPECT_EQ(Text("lblCursorY"), "0.00");
  EXPECT_EQ(Text("lblXmin"), "0");
  EXPECT_EQ(Text("lblXmax"), "255");
  EXPECT_EQ(Find<QPushButton>("cmdPlotScale").text(), "1");
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  for (const char* box : {"ckXtrace", "ckYtrace", "ckZtrace", "ckAutoPlot"}) {
    EXPECT_TRUE(Find<QCheckBox>(box).isChecked()) << box;
  }
  EXPECT_EQ(Find<QCheckBox>("ckDataLog").text(), "Datalog   OFF");
  EXPECT_EQ(PlotScale, 1.0);
}

TEST_F(Frm1, ShowsTheSensorsSettingsAfterLoading) {
  Start();
  EXPECT_EQ(Text("lblProduct"), "31407");
  EXPECT_EQ(ProductNumber, 31407);
  EXPECT_TRUE(Window().findChild<QAction*>("mnu31407")->isChecked());
  EXPECT_EQ(Find<QComboBox>("cbxSignalRange").currentIndex(), 3);
  EXPECT_EQ(Find<QComboBox>("cbxWindow").currentIndex(), 1);
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentText(), "8");
  EXPECT_EQ(Text("lblStatusName_0"), "Supply < 3.150 V");
  EXPECT_EQ(Text("lblStatusFlag_0"), "OK");
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(Frm1, StartTakesASpectrumAndPlotsIt) {
  Start();
  ChooseShortCaptures();
  const int before = Find<PictureBox>("pic1").TracePaintCount();
  Press("cmdStart");
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  EXPECT_TRUE(Find<QLabel>("lblCapturingData").isHidden());
  EXPECT_EQ(Text("lblRecCount"), "1");
  EXPECT_EQ(Text("lblStatusFlag_7"), "SET");
  EXPECT_NE(Text("LbLSupply"), "noData");
  EXPECT_NEAR(Text("LbLSupply").toDouble(), 3.3, 0.05);
  EXPECT_EQ(Text("Label5"), "bin");
  EXPECT_EQ(Buff.width, 255);
  double peak = 0;
  for (int bin = 1; bin < 256; ++bin) peak = std::max(peak, DataX(bin));
  EXPECT_GT(peak, 0.3);
  EXPECT_LT(peak, 1.0);
  Window().grab();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Find<PictureBox>("pic1").TracePaintCount() > before; }));
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(Frm1, AProgressBarStandsInTheStatusBarDuringTheReadOut) {
  Start();
  ChooseShortCaptures();
  auto& bar = Find<QProgressBar>("prgReadout");
  std::vector<QRect> places;
  std::vector<bool> hourglass;
  QObject::connect(&bar, &QProgressBar::valueChanged, [&] {
    places.push_back(bar.geometry());
    hourglass.push_back(QApplication::overrideCursor() != nullptr);
  });
  Press("cmdStart");
  ASSERT_GE(places.size(), 10U);
  const QRect room = bar.parentWidget()->rect();
  for (const QRect& place : places) {
    EXPECT_TRUE(room.contains(place));
    EXPECT_GT(place.left(), room.center().x());
  }
  EXPECT_EQ(std::count(hourglass.begin(), hourglass.end(), false), 0);
  EXPECT_TRUE(bar.isHidden());
}

TEST_F(Frm1, ManualTimeModeTakesATimeRecord) {
  Start();
  Choose("cbxRecMode", 2);
  Press("cmdStart");
  EXPECT_EQ(Buff.width, 511);
  EXPECT_EQ(Text("Label5"), "sample");
  EXPECT_EQ(Text("lblXmax"), "511");
  EXPECT_EQ(Text("lblYmin"), "-1");
  EXPECT_EQ(Text("LbLYmid"), "0");
  EXPECT_TRUE(Find<QLabel>("LblFreq").isHidden());
  bool negative = false;
  for (int i = 0; i < 512; ++i) negative = negative || DataX(i) < 0;
  EXPECT_TRUE(negative);
}

TEST_F(Frm1, StopEndsACapture) {
  Start();
  Choose("cbxFFTAvgs", 255);
  QString captionDuring;
  bool labelDuring = false;
  During(80, [&] {
    captionDuring = Find<QPushButton>("cmdStart").text();
    labelDuring = Find<QLabel>("lblCapturingData").isVisible();
    Press("cmdStart");
  });
  Press("cmdStart");
  EXPECT_EQ(captionDuring, "Stop");
  EXPECT_TRUE(labelDuring);
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  EXPECT_EQ(Text("lblStatusFlag_4"), "FAIL") << "the sensor was told to stop recording";
  EXPECT_TRUE(Find<QLabel>("lblCapturingData").isHidden());
}

TEST_F(Frm1, EscapeEndsACaptureWhateverControlHasTheFocus) {
  Start();
  Choose("cbxFFTAvgs", 255);
  QWidget& list = Find<QComboBox>("cbxWindow");
  During(80, [&] { QTest::keyClick(&list, Qt::Key_Escape); });
  Press("cmdStart");
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  EXPECT_EQ(Text("lblStatusFlag_4"), "FAIL");
}

TEST_F(Frm1, ADoubleClickOnStopDoesNotStartAnotherCapture) {
  Start();
  Choose("cbxFFTAvgs", 255);
  During(80, [&] {
    Press("cmdStart");
    Press("cmdStart");
  });
  Press("cmdStart");
  EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
  EXPECT_EQ(Text("lblRecCount"), "0");
}

TEST_F(Frm1, ClosingDuringACaptureEndsItAtOnceAndTouchesNothingAfterwards) {
  Start();
  Choose("cbxFFTAvgs", 255);
  int requestsAtClose = 0;
  During(80, [&] {
    EXPECT_TRUE(Window().close());
    requestsAtClose = usb_.Requests();
  });
  usb_.FailFrom(0);
  Press("cmdStart");  // returns once the capture has unwound
  EXPECT_FALSE(Window().isVisible());
  EXPECT_EQ(usb_.Requests(), requestsAtClose);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(Frm1, WithoutAutoPlotTheRecordStaysInTheSensorUntilTheBufferIsRead) {
  Start();
  ChooseShortCaptures();
  Find<QCheckBox>("ckAutoPlot").click();
  Press("cmdStart");
  EXPECT_EQ(Text("LbLSupply"), "noData");
  EXPECT_EQ(RawX, RecordArray{});
  Press("cmdReadBuffer");
  EXPECT_NE(Text("LbLSupply"), "noData");
  EXPECT_FALSE(RawX == RecordArray{});
}

TEST_F(Frm1, ASettingIsWrittenAndReadBack) {
  Start();
  Choose("cbxSignalRange", 1);
  Choose("cbxWindow", 2);
  core_.registers.ReadReg(row::REC_CTRL);
  EXPECT_EQ(RegValue, 0x2010);
  Find<QCheckBox>("ckBW1").click();
  core_.registers.ReadReg(row::REC_CTRL);
  EXPECT_EQ(RegValue, 0x2210);
  EXPECT_EQ(Text("lblSampleRate"), "2: 1,565 samples/s");
  Choose("cbxInterval", 10);
  Choose("cbxUnits", 1);
  core_.registers.ReadReg(row::REC_PRD);
  EXPECT_EQ(RegValue, 0x010A);
  Choose("cbxRecPntr", 7);
  core_.registers.ReadReg(row::REC_PNTR);
  EXPECT_EQ(RegValue, 7);
}

TEST_F(Frm1, ZeroAveragesCountAsOne) {
  Start();
  Choose("cbxFFTAvgs", 0);
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentText(), "1");
  core_.registers.ReadReg(row::FFT_AVG);
  EXPECT_EQ(RegValue, 1);
}

TEST_F(Frm1, ThePowerDownBoxFallsBackToWhatTheSensorHolds) {
  Start();
  Find<QCheckBox>("ckPowerDown").click();
  EXPECT_FALSE(Find<QCheckBox>("ckPowerDown").isChecked());
}

TEST_F(Frm1, ReadingTheSensorWritesNothing) {
  Start();
  core_.registers.WriteReg(row::REC_CTRL, 0x1230);
  core_.registers.WriteReg(row::REC_PRD, 0x0205);
  core_.registers.WriteReg(row::FFT_AVG, 17);
  Press("CmdReadStatus");
  EXPECT_EQ(Find<QComboBox>("cbxUnits").currentText(), "Hours");
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentText(), "17");
  core_.registers.ReadReg(row::REC_CTRL);
  EXPECT_EQ(RegValue, 0x1230);
  core_.registers.ReadReg(row::REC_PRD);
  EXPECT_EQ(RegValue, 0x0205);
}

TEST_F(Frm1, PlotScaleStepsAndTheLastTraceStaysOn) {
  Start();
  Press("cmdPlotScale");
  EXPECT_EQ(Find<QPushButton>("cmdPlotScale").text(), "0.5");
  EXPECT_EQ(Text("lblYmax"), "0.5");
  EXPECT_EQ(Text("LbLYmid"), "0.25");
  for (const char* box : {"ckXtrace", "ckYtrace", "ckZtrace"}) Find<QCheckBox>(box).click();
  EXPECT_TRUE(Find<QCheckBox>("ckXtrace").isChecked());
  EXPECT_FALSE(Find<QCheckBox>("ckZtrace").isChecked());
}

TEST_F(Frm1, AnAdapterLostDuringACaptureGivesOneMessageAndTheNextCaptureFindsItAgain) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  RecordArray shown = DataX;
  // Requests are a handful while the capture is waited for, hundreds during the read-out.
  for (const int request : {1, 8, 60, 61, 62, 400, 1200, 3000}) {
    messages_.Clear();
    usb_.FailFrom(request);
    Press("cmdStart");
    ASSERT_EQ(messages_.Texts().size(), 1U) << "request " << request;
    EXPECT_TRUE(messages_.Texts()[0] == "Error Writing SPI" ||
                messages_.Texts()[0] == "Error Reading SPI")
        << messages_.Texts()[0];
    EXPECT_EQ(Find<QPushButton>("cmdStart").text(), "Start");
    EXPECT_TRUE(Find<QLabel>("lblCapturingData").isHidden());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(Text("lblInterface"), "USB adapter lost");
    EXPECT_EQ(DataX, shown) << "the record on the screen stays";
    usb_.Mend();
    messages_.Clear();
    Press("cmdReadBuffer");
    EXPECT_TRUE(messages_.Texts().empty());
    shown = DataX;
  }
}

TEST_F(Frm1, ASensorThatIsFoundAgainAtStartShowsItsOwnSettings) {
  Start();
  ChooseShortCaptures();
  Choose("cbxRecMode", 2);
  hardware_.Adapter().Unplug(0);
  Press("CmdReadStatus");
  EXPECT_FALSE(UsbPresent);
  hardware_.Adapter().Replug(0);  // with the settings it starts with: spectra
  loop_.SkipWaits(10'000, [this] { Window().close(); });
  Press("cmdStart");
  EXPECT_TRUE(UsbPresent);
  EXPECT_EQ(Find<QComboBox>("cbxRecMode").currentIndex(), 0);
  EXPECT_EQ(CaptureType, "FFT");
}

}  // namespace
}  // namespace kestrel
