// Tests of the main window while the monitor has its sensor.
// SPDX-License-Identifier: MIT
#include "regmap/register_table.h"
#include "ui/watch/watch_bench.h"

namespace kestrel {
namespace {

class Watched : public WatchBench {
 protected:
  int Averages() { return Find<QComboBox>("cbxFFTAvgs").currentIndex(); }
  bool Has(const char* text) { return MainNotices().find(text) != std::string::npos; }
};

TEST_F(Watched, TheSensorIsGivenAwayAndTheMainWindowSaysWhoHasIt) {
  StartWatching();
  BeginMonitoring();
  EXPECT_EQ(letGo_, 1);
  EXPECT_EQ(InterfaceType, kNoInterface);
  EXPECT_TRUE(Window().Watch().HasLent());
  EXPECT_TRUE(Has("The monitor has the sensor (sensor.plan)")) << MainNotices();
  EXPECT_EQ(Text("lblInterface"), "The monitor has the sensor");
  EXPECT_TRUE(NoBoxes());
}

TEST_F(Watched, NothingOfTheWindowUsesTheSensorMeanwhile) {
  StartWatching();
  Press("cmdStart");
  BeginMonitoring();
  int transfers = 0;
  usb_.OnBlock([&](std::span<const std::uint8_t>) { ++transfers; });
  const Record before = core_.record.Get();
  for (const char* button : {"cmdStart", "cmdReadBuffer", "CmdReadStatus", "cmdClearStatus"}) {
    Press(button);
  }
  Choose("cbxFFTAvgs", 9);
  for (const char* item : {"mnuRegisters", "mnuUsb", "mnuSimulated"}) Trigger(item);
  Click("cmdRepeat");
  Settle();
  EXPECT_EQ(transfers, 0);
  EXPECT_EQ(core_.record.Get(), before);
  EXPECT_TRUE(Window().statusBar()->currentMessage().startsWith("The monitor has the sensor"));
  EXPECT_TRUE(NoBoxes()) << messages_.Texts().front();
}

TEST_F(Watched, TheSensorComesBackWithTheSettingsThatItHad) {
  StartWatching();
  const int averages = Averages();
  BeginMonitoring();
  // As the monitor sets it meanwhile, in its own process.
  core_.registers.Use(kUsbAdapter);
  ASSERT_TRUE(core_.registers.Write(row::FFT_AVG, 0x0909));
  core_.registers.Use(kNoInterface);
  Runner().Stop();
  fake_.End();
  EXPECT_FALSE(Window().Watch().HasLent());
  EXPECT_EQ(InterfaceType, kUsbAdapter);
  EXPECT_TRUE(core_.registers.Reachable());
  EXPECT_EQ(Averages(), averages);
  EXPECT_FALSE(Has("The monitor has the sensor"));
  Press("cmdStart");
  EXPECT_TRUE(core_.record.Get().Taken());
  EXPECT_TRUE(NoBoxes());
}

TEST_F(Watched, ASensorThatIsNotThereAgainIsLookedForWithoutABox) {
  StartWatching();
  BeginMonitoring();
  hardware_.Adapter().Unplug(0);
  fake_.End();
  EXPECT_FALSE(Window().Watch().HasLent());
  EXPECT_EQ(InterfaceType, kNoInterface);
  hardware_.Adapter().Replug(0);
  EXPECT_TRUE(Gets([] { return InterfaceType == kUsbAdapter; }));
  EXPECT_TRUE(core_.registers.Reachable());
  EXPECT_TRUE(NoBoxes()) << messages_.Texts().front();
}

TEST_F(Watched, DuringACaptureNothingIsStarted) {
  StartWatching();
  NewPlan();
  AtCapture([this] {
    Click("cmdCapture");
    EXPECT_EQ(fake_.begun, 0);
    EXPECT_NE(Notices().find("A capture is under way"), std::string::npos) << Notices();
  });
  Press("cmdStart");
  EXPECT_TRUE(core_.record.Get().Taken());
  EXPECT_EQ(InterfaceType, kUsbAdapter);
}

TEST_F(Watched, APlanOfAnotherRoadLeavesTheWindowItsSensor) {
  StartWatching();
  NewPlan();
  auto& text = In<QPlainTextEdit>("txtPlan");
  text.setPlainText(text.toPlainText().replace("connect = simulated", "connect = parallel 378"));
  Click("cmdCapture");
  ASSERT_EQ(fake_.begun, 1) << Notices();
  EXPECT_FALSE(Window().Watch().HasLent());
  Press("cmdStart");
  EXPECT_TRUE(core_.record.Get().Taken());
}

TEST_F(Watched, TheProgramClosesWhenTheMonitorHasEnded) {
  StartWatching();
  BeginMonitoring();
  EXPECT_FALSE(Window().close());
  EXPECT_EQ(fake_.askedToEnd, 1);
  EXPECT_TRUE(Window().isVisible());
  EXPECT_TRUE(Has("then the program closes")) << MainNotices();
  fake_.End();
  EXPECT_TRUE(Gets([this] { return !Window().isVisible(); }));
  EXPECT_EQ(fake_.left, 0);
  EXPECT_TRUE(NoBoxes());
}

TEST_F(Watched, ClosedAgainTheProgramLeavesTheMonitorToItself) {
  StartWatching();
  BeginMonitoring();
  EXPECT_FALSE(Window().close());
  EXPECT_TRUE(Window().close());
  windows_.reset();
  EXPECT_EQ(fake_.left, 1);
  EXPECT_TRUE(NoBoxes());
}

TEST_F(Watched, TheNoticeLeadsToTheMonitor) {
  StartWatching();
  BeginMonitoring();
  Analyser().ChooseView(study::View::Spectrum);
  for (auto* button : Window().findChild<QWidget*>("noticeStrip")->findChildren<QPushButton*>()) {
    if (button->text() == "Show the monitor") button->click();
  }
  EXPECT_EQ(Choice().view, study::View::Monitor);
}

}  // namespace
}  // namespace kestrel
