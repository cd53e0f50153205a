// What the main window shows after commands, losses and in timer mode: read again, or as of when.
// SPDX-License-Identifier: MIT
#include "ui/main/freshness.h"

#include <QGroupBox>

#include "device/rec_ctrl.h"
#include "regmap/register_table.h"
#include "ui/panels/state_chip.h"
#include "ui/window_bench.h"

namespace kestrel {
namespace {

class FreshnessOf : public WindowBench {
 protected:
  void Send(int bit) {
    Trigger("mnuCommand");
    Choose("cbxCommand", bit);
    Find<QDialog>("frmCommand").findChild<QPushButton*>("cmdWrite")->click();
  }
  QString TitleAround(const char* label) {
    auto* box = qobject_cast<QGroupBox*>(Find<QLabel>(label).parentWidget());
    return box == nullptr ? QString() : box->title();
  }
  QColor Ground(const char* light) { return Find<QLabel>(light).palette().color(QPalette::Window); }
  void LoseSensor() {
    hardware_.Adapter().Unplug(0);
    ASSERT_TRUE(QTest::qWaitFor([this] { return Find<QFrame>("lostNotice").isVisible(); }));
  }
  int Index(const char* list) { return Find<QComboBox>(list).currentIndex(); }
  bool Noticed(const char* id) {
    const auto* row = Window().findChild<QWidget*>(QString("notice_") + id);
    return row != nullptr && row->isVisible();
  }

  const QColor green_{0, 210, 0};
};

TEST_F(FreshnessOf, AFactoryResetShowsTheSensorsSettingsWhenTheCommandIsDone) {
  Start();
  Choose("cbxFFTAvgs", 77);
  Choose("cbxSignalRange", 1);
  Choose("cbxInterval", 10);
  Send(3);
  EXPECT_EQ(Index("cbxFFTAvgs"), 8);
  EXPECT_EQ(Index("cbxSignalRange"), 3);
  EXPECT_EQ(gRecCtrl->RangeFS(), 3) << "the scale of the next record";
  EXPECT_NE(Index("cbxInterval"), 10);
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FreshnessOf, ARegisterWrittenByHandShowsInTheSettings) {
  Start();
  Trigger("mnuRegisters");
  Choose("cmboRegister", row::FFT_AVG);
  Find<QLineEdit>("txtDataWrite").setText("20");
  Find<QDialog>("frmManualReg").findChild<QPushButton*>("cmdWrite")->click();
  EXPECT_EQ(Index("cbxFFTAvgs"), 32);
}

TEST_F(FreshnessOf, OtherOpenWindowsReadAgainAfterACommand) {
  Start();
  core_.registers.WriteReg(row::ALM_CTRL, 0x0584);
  Trigger("mnuAlarmCtrl");
  QApplication::processEvents();
  ASSERT_TRUE(Find<QCheckBox>("ckZenable").isChecked());
  Send(3);
  EXPECT_FALSE(Find<QCheckBox>("ckZenable").isChecked());
}

// STATUS is not read after a command: its lights are what they were before.
TEST_F(FreshnessOf, AfterACommandTheLightsAreAsOfTheirTimeUntilTheyAreRead) {
  Start();
  ASSERT_EQ(Ground("lblStatusFlag_0"), green_);
  locale_.time = "2:03:00 PM";
  Send(4);
  EXPECT_NE(Ground("lblStatusFlag_0"), green_);
  EXPECT_NE(Ground("lblBA_11"), green_);
  EXPECT_EQ(TitleAround("lblStatusFlag_0"), "Sensor status, as of 9:26:53 AM");
  Press("CmdReadStatus");
  EXPECT_EQ(Ground("lblStatusFlag_0"), green_);
  EXPECT_EQ(TitleAround("lblStatusFlag_0"), "Sensor status");
  EXPECT_EQ(Ground("lblBA_11"), green_);
}

TEST_F(FreshnessOf, ASleepingSensorIsNotWokenByReadingAndTheWindowSaysSo) {
  Start();
  Trigger("mnuCommand");
  int reads = 0;
  usb_.OnBlock([&](std::span<const std::uint8_t> block) {
    if (block[0] == 13 && block.size() > 3 && (block[3] & 0x80) == 0) ++reads;
  });
  Send(1);
  EXPECT_EQ(reads, 0);
  EXPECT_TRUE(Noticed("asleep"));
  Press("cmdNotice_asleep");
  EXPECT_FALSE(Noticed("asleep"));
  EXPECT_EQ(Ground("lblStatusFlag_0"), green_);
}

TEST_F(FreshnessOf, ALostSensorLeavesNoGreenLight) {
  Start();
  ChooseShortCaptures();
  Press("cmdStart");
  LoseSensor();
  const auto lights = Window().findChildren<StateChip*>();
  EXPECT_EQ(lights.size(), 15 + 3 * 6);
  for (const StateChip* light : lights) {
    EXPECT_NE(light->palette().color(QPalette::Window), green_)
        << light->objectName().toStdString();
    EXPECT_FALSE(light->StandsOut()) << light->objectName().toStdString();
  }
  EXPECT_EQ(TitleAround("lblStatusFlag_0"), "Sensor status, as of 9:26:53 AM");
  EXPECT_EQ(TitleAround("LbLSupply"), "Sensor, as of 9:26:53 AM");
  EXPECT_EQ(TitleAround("lblBA_11"), "Spectral alarms, as of 9:26:53 AM");
  EXPECT_EQ(Text("lblStatusFlag_7"), "SET") << "what was read last stays";
  EXPECT_TRUE(messages_.Texts().empty());
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  EXPECT_EQ(Ground("lblStatusFlag_0"), green_);
  EXPECT_EQ(TitleAround("lblStatusFlag_0"), "Sensor status");
}

TEST_F(FreshnessOf, WithoutAnInterfaceFromTheStartNothingIsAsOf) {
  files_.contents.clear();
  Start();
  EXPECT_EQ(TitleAround("lblStatusFlag_0"), "Sensor status");
}

// The window that becomes active would read, and meet the loss with a message.
TEST_F(FreshnessOf, ALossThatAWindowMeetsByBecomingActiveShowsTheStripAlone) {
  Start();
  Trigger("mnuAlarmCtrl");
  QApplication::processEvents();
  hardware_.Adapter().Unplug(0);
  QEvent activate(QEvent::WindowActivate);
  QApplication::sendEvent(&Find("frmALM_CTRL"), &activate);
  EXPECT_TRUE(Find<QFrame>("lostNotice").isVisible());
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FreshnessOf, AfterReplugTheStripOffersTheSettingsThatWereOnTheScreen) {
  Start();
  Choose("cbxFFTAvgs", 77);
  Choose("cbxSignalRange", 1);
  Choose("cbxInterval", 10);
  Choose("cbxUnits", 1);
  Choose("cbxRecPntr", 5);
  Find<QCheckBox>("ckBW1").click();
  LoseSensor();
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  EXPECT_EQ(Index("cbxFFTAvgs"), 8) << "the sensor has started anew";
  ASSERT_TRUE(Noticed("restore"));
  Press("cmdNotice_restore");
  EXPECT_EQ(Index("cbxFFTAvgs"), 77);
  EXPECT_EQ(Index("cbxSignalRange"), 1);
  EXPECT_EQ(Index("cbxInterval"), 10);
  EXPECT_EQ(Index("cbxUnits"), 1);
  EXPECT_EQ(Index("cbxRecPntr"), 5);
  EXPECT_TRUE(Find<QCheckBox>("ckBW1").isChecked());
  core_.registers.ReadReg(row::FFT_AVG);
  EXPECT_EQ(RegValue, 77);
  core_.registers.ReadReg(row::REC_PRD);
  EXPECT_EQ(RegValue, 0x010A);
  EXPECT_FALSE(Noticed("restore"));
}

TEST_F(FreshnessOf, ASensorThatComesBackWithTheSameSettingsIsNoOffer) {
  Start();
  LoseSensor();
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  EXPECT_FALSE(Noticed("restore"));
}

TEST_F(FreshnessOf, AnOfferThatIsClosedIsGone) {
  Start();
  Choose("cbxFFTAvgs", 77);
  LoseSensor();
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  Find<QAbstractButton>("cmdNoticeClose_restore").click();
  EXPECT_FALSE(Noticed("restore"));
  EXPECT_EQ(Index("cbxFFTAvgs"), 8);
}

TEST_F(FreshnessOf, TimerModeSaysThatTheSensorGoesOnAndHowToStopIt) {
  Start();
  EXPECT_FALSE(Noticed("timer"));
  ChooseShortCaptures();
  Choose("cbxInterval", 10);
  Choose("cbxRecMode", 1);
  ASSERT_TRUE(Noticed("timer"));
  EXPECT_TRUE(Text("lblNotice_timer").contains("every 10 seconds"));
  Press("cmdStart");
  EXPECT_TRUE(Noticed("timer"));
  Press("cmdNotice_timer");
  EXPECT_FALSE(Noticed("timer"));
  core_.registers.ReadReg(row::REC_CNT);
  const std::int32_t taken = RegValue;
  clock_.WaitUntil(clock_.Monotonic() + std::chrono::minutes(5));
  core_.registers.ReadReg(row::REC_CNT);
  EXPECT_EQ(RegValue, taken) << "the series has ended";
  Press("cmdStart");
  EXPECT_TRUE(Noticed("timer")) << "a new series";
  Choose("cbxRecMode", 0);
  EXPECT_FALSE(Noticed("timer"));
}

TEST_F(FreshnessOf, TheGravestNoticeShowsAndOneMoreIsSaid) {
  Start();
  Choose("cbxFFTAvgs", 77);
  Choose("cbxRecMode", 1);
  LoseSensor();
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  ASSERT_TRUE(Noticed("restore"));
  Press("cmdNotice_restore");
  ASSERT_TRUE(Noticed("timer"));
  EXPECT_TRUE(Find("cmdMore_noticeStrip").isHidden());
  Send(1);
  EXPECT_TRUE(Noticed("asleep"));
  EXPECT_FALSE(Noticed("timer"));
  EXPECT_EQ(Find<QPushButton>("cmdMore_noticeStrip").text(), "1 more");
  Press("cmdMore_noticeStrip");
  EXPECT_TRUE(Noticed("timer"));
  Press("cmdMore_noticeStrip");
  EXPECT_FALSE(Noticed("timer"));
}

}  // namespace
}  // namespace kestrel
