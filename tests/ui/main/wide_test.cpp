// A wide spectrum captured in the real windows over the simulated sensor.
// SPDX-License-Identifier: MIT
#include "device/rec_ctrl.h"
#include "ui/main/frm1.h"
#include "ui/main/repeat_bench.h"
#include "ui/repeat/repeat_text.h"

namespace kestrel {
namespace {

class WideCaptures : public RepeatBench {
 protected:
  WideRunner& Wide() { return Window().WideCaptures(); }
  bool WideEnds() {
    return QTest::qWaitFor([this] { return !Wide().Running(); }, 60'000);
  }
  // Counts the records, by option.
  std::vector<int> Options() { return options_; }
  void Listen() {
    QObject::connect(&Wide(), &WideRunner::RecordTaken, &Window(),
                     [this](const Record& record) { options_.push_back(record.settings.option); });
  }

 private:
  std::vector<int> options_;
};

TEST_F(WideCaptures, TakeOneAtEachOptionAndPutTheSettingsBack) {
  Listen();
  const int before = gRecCtrl->SampleRate();
  EXPECT_GT(Wide().ExpectedSeconds(), 3);
  ASSERT_EQ(Wide().Start(0b1111), QString());
  ASSERT_TRUE(WideEnds());
  std::vector<int> options = Options();
  EXPECT_EQ(options.front(), before);  // without a change of the settings
  std::ranges::sort(options);
  EXPECT_EQ(options, (std::vector{0, 1, 2, 3}));
  EXPECT_EQ(gRecCtrl->SampleRate(), before);
  EXPECT_EQ(WideTrouble(*Wide().Progress()), QString());
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

TEST_F(WideCaptures, StoppedKeepWhatIsCompleteAndPutTheSettingsBack) {
  Listen();
  const int before = gRecCtrl->SampleRate();
  QObject::connect(&Wide(), &WideRunner::RecordTaken, &Window(), [this] {
    if (Options().size() == 2) Wide().Stop();
  });
  ASSERT_EQ(Wide().Start(0b1111), QString());
  ASSERT_TRUE(WideEnds());
  EXPECT_EQ(Options().size(), 2U);
  EXPECT_EQ(gRecCtrl->SampleRate(), before);
  EXPECT_EQ(WideTrouble(*Wide().Progress()), QString());
}

TEST_F(WideCaptures, OfALostSensorGetTheirSettingsBackWhenItIsThereAgain) {
  const int before = gRecCtrl->SampleRate();
  QObject::connect(&Wide(), &WideRunner::RecordTaken, &Window(),
                   [this] { hardware_.Adapter().Unplug(0); });
  ASSERT_EQ(Wide().Start(0b1111), QString());
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return Wide().Progress()->state == WideState::Lost; }, 20'000));
  EXPECT_TRUE(WideLine(*Wide().Progress()).contains("the sensor is lost"));
  hardware_.Adapter().Replug(0);
  ASSERT_TRUE(WideEnds());
  EXPECT_EQ(gRecCtrl->SampleRate(), before);
  EXPECT_NE(WideTrouble(*Wide().Progress()), QString());
  EXPECT_TRUE(Wide().Progress()->notPutBack.empty()) << Wide().Progress()->notPutBack;
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

TEST_F(WideCaptures, GivenUpWhileTheSensorIsLostSayWhichSettingsAreNotPutBack) {
  QObject::connect(&Wide(), &WideRunner::RecordTaken, &Window(),
                   [this] { hardware_.Adapter().Unplug(0); });
  ASSERT_EQ(Wide().Start(0b1111), QString());
  ASSERT_TRUE(
      QTest::qWaitFor([this] { return Wide().Progress()->state == WideState::Lost; }, 20'000));
  Wide().Stop();
  EXPECT_FALSE(Wide().Running());
  EXPECT_TRUE(WideTrouble(*Wide().Progress()).contains("could not be put back"));
}

TEST_F(WideCaptures, AreRefusedBesideRepeatedOnesAndInAnotherMode) {
  BeginAtOnce("50");
  ASSERT_TRUE(Reaches(1));
  EXPECT_TRUE(Wide().Start(0b1111).contains("under way already"));
  Runner().Stop();
  ASSERT_TRUE(Ends());
  Choose("cbxRecMode", 1);
  EXPECT_TRUE(Wide().Start(0b1111).contains("Choose Manual at Mode"));
  EXPECT_FALSE(Wide().Running());
}

TEST_F(WideCaptures, TheWindowClosesWhenTheirSettingsAreBack) {
  const int before = gRecCtrl->SampleRate();
  QObject::connect(&Wide(), &WideRunner::RecordTaken, &Window(),
                   [this] { QTimer::singleShot(0, &Window(), [this] { Window().close(); }); });
  ASSERT_EQ(Wide().Start(0b1111), QString());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !Window().isVisible(); }, 60'000));
  EXPECT_EQ(gRecCtrl->SampleRate(), before);
}

TEST_F(WideCaptures, AreShownInTheAnalyserAndOneSetOfTheArchive) {
  Trigger("mnuAnalyser");
  frmAnalyser* analyser = nullptr;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* found = dynamic_cast<frmAnalyser*>(widget)) analyser = found;
  }
  ASSERT_NE(analyser, nullptr);
  analyser->ChooseView(study::View::Wide);
  auto* capture = analyser->findChild<QToolButton*>("cmdCapture");
  EXPECT_TRUE(capture->text().startsWith("Capture wide, ")) << capture->text().toStdString();
  capture->click();
  ASSERT_TRUE(QTest::qWaitFor([this] { return Wide().Running(); }, 5'000));
  ASSERT_TRUE(WideEnds());
  EXPECT_EQ(analyser->Wide().Model().Wide().records.size(), 4U);
  EXPECT_TRUE(analyser->Wide().Model().Wide().missing.empty());
  EXPECT_FALSE(analyser->Wide().Plot().Scene().panes.empty());
}

}  // namespace
}  // namespace kestrel
