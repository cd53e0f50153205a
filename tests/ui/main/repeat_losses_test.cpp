// The sensor is lost while captures are repeated, and comes back.
// SPDX-License-Identifier: MIT

#include "regmap/register_table.h"
#include "ui/main/repeat_bench.h"

namespace kestrel {
namespace {

class RepeatedCapturesOfALostSensor : public RepeatBench {
 protected:
  void Lose() {
    hardware_.Adapter().Unplug(0);
    ASSERT_TRUE(Pauses());
  }
};

TEST_F(RepeatedCapturesOfALostSensor, PauseAndGoOnByThemselvesWithTheGapShown) {
  BeginEvery("2");
  ASSERT_TRUE(Reaches(2));
  Lose();
  EXPECT_TRUE(State().contains("paused: ")) << State().toStdString();
  EXPECT_TRUE(Gaps().startsWith("since ")) << Gaps().toStdString();
  EXPECT_TRUE(Find<QFrame>("lostNotice").isVisible());
  const int before = Progress().done;
  QTest::qWait(500);
  EXPECT_EQ(Progress().done, before);
  hardware_.Adapter().Replug(0);
  EXPECT_TRUE(Reaches(before + 2));
  EXPECT_FALSE(Find<QFrame>("lostNotice").isVisible());
  ASSERT_EQ(Progress().gaps.size(), 1U);
  EXPECT_TRUE(Progress().gaps[0].to);
  EXPECT_TRUE(Gaps().contains(" to ")) << Gaps().toStdString();
  EXPECT_TRUE(State().contains("1 gap")) << State().toStdString();
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

// Nobody may be there to dismiss a box.
TEST_F(RepeatedCapturesOfALostSensor, LostDuringACaptureShowNoBox) {
  Choose("cbxFFTAvgs", 30);
  AtCapture([this] { hardware_.Adapter().Unplug(0); });
  BeginAtOnce("2");
  ASSERT_TRUE(Pauses());
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
  ASSERT_EQ(Progress().gaps.size(), 1U);
  EXPECT_TRUE(Gaps().contains(": the sensor was lost (Error ")) << Gaps().toStdString();
  hardware_.Adapter().Replug(0);
  EXPECT_TRUE(Ends());
  EXPECT_EQ(Progress().done, 2);
  EXPECT_EQ(Progress().missed, 1);
}

// Its adapter never noticed; the capture that was under way would never end.
TEST_F(RepeatedCapturesOfALostSensor, GoOnAfterAResetInTheMiddleOfOne) {
  AtCapture([this] {
    hardware_.Sensor().CutPower();
    hardware_.Sensor().RestorePower();
    clock_.WaitUntil(clock_.Monotonic() + std::chrono::seconds{31});
  });
  BeginAtOnce("2");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(Progress().done, 2);
  EXPECT_EQ(Progress().missed, 1);
  EXPECT_TRUE(Gaps().contains("may have been reset")) << Gaps().toStdString();
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentIndex(), 1) << "the settings that they had";
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

TEST_F(RepeatedCapturesOfALostSensor, GoOnWithTheSettingsThatTheyHad) {
  Choose("cbxSignalRange", 1);
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  Lose();
  hardware_.Adapter().Replug(0);
  ASSERT_TRUE(Reaches(Progress().done + 1));
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentIndex(), 1);
  EXPECT_EQ(Find<QComboBox>("cbxSignalRange").currentIndex(), 1);
  EXPECT_EQ(core_.record.Get().settings.range, 1);
  EXPECT_EQ(core_.record.Get().settings.averages, 1);
  EXPECT_EQ(Window().findChild<QWidget*>("notice_restore"), nullptr);
}

TEST_F(RepeatedCapturesOfALostSensor, WaitForTheSameBoard) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  Lose();
  const std::size_t before = starts.size();
  hardware_.Adapter().SetBoard(1, {});
  QTest::qWait(500);
  EXPECT_EQ(starts.size(), before) << "that may be another sensor";
  hardware_.Adapter().Replug(0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return starts.size() > before; }));
}

TEST_F(RepeatedCapturesOfALostSensor, GoOnWhenTheUserFindsTheSensorFirst) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  Lose();
  hardware_.Adapter().Replug(0);
  Press("cmdLostRetry");
  EXPECT_TRUE(Reaches(Progress().done + 1));
  EXPECT_EQ(Find<QComboBox>("cbxFFTAvgs").currentIndex(), 1);
}

TEST_F(RepeatedCapturesOfALostSensor, CanBeStoppedMeanwhile) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  Lose();
  Press("cmdRepeatStop");
  EXPECT_FALSE(Runner().Running());
  const std::size_t before = starts.size();
  hardware_.Adapter().Replug(0);
  QTest::qWait(400);
  EXPECT_EQ(starts.size(), before);
}

TEST_F(RepeatedCapturesOfALostSensor, EndWithTheMainWindow) {
  BeginEvery("1");
  ASSERT_TRUE(Reaches(1));
  Lose();
  EXPECT_TRUE(Window().close());
  hardware_.Adapter().Replug(0);
  const std::size_t before = starts.size();
  QTest::qWait(400);
  EXPECT_EQ(starts.size(), before);
  windows_.reset();
}

// The sensor's own captures, in timer mode.
class FollowedSeries : public RepeatedCapturesOfALostSensor {
 protected:
  void SetUp() override {
    RepeatedCapturesOfALostSensor::SetUp();
    Choose("cbxUnits", 0);
    Choose("cbxInterval", 5);
    Choose("cbxRecMode", 1);
    Press("cmdStart");
    starts.clear();
    first_ = core_.record.Get().conditions.recordCount;
  }
  void Follow(const char* times) {
    Find<QRadioButton>("optFollow").click();
    Type("txtTimes", times);
    Press("cmdRepeatStart");
  }
  // REC_CNT of the records that were read since.
  CurrentRecord::Listener NoteCounts() {
    return core_.record.OnChange([this] {
      const std::int32_t count = core_.record.Get().conditions.recordCount;
      if (counts_.empty() || counts_.back() != count) counts_.push_back(count);
    });
  }

  std::int32_t first_ = 0;
  std::vector<std::int32_t> counts_;
};

TEST_F(FollowedSeries, IsFetchedAsTheCountMovesAndNothingIsStarted) {
  const auto listener = NoteCounts();
  Follow("3");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(Progress().done, 3);
  EXPECT_EQ(starts.size(), 0U);
  ASSERT_EQ(counts_.size(), 3U);
  EXPECT_GT(counts_[0], first_);
  EXPECT_EQ(counts_[2] - first_, 3 + Progress().missed);
  EXPECT_EQ(Text("lblRecCount"), QString::number(counts_[2]));
  EXPECT_TRUE(messages_.Texts().empty());
}

TEST_F(FollowedSeries, IsLoggedToo) {
  Find<QCheckBox>("ckDataLog").click();
  Follow("2");
  EXPECT_TRUE(Ends());
  EXPECT_EQ(files_.contents.count("/program/Datalog_2.csv"), 1U);
}

TEST_F(FollowedSeries, GoesOnWhenTheSensorIsBackFromALossOfPower) {
  Follow("100");
  ASSERT_TRUE(Reaches(1));
  Lose();
  hardware_.Adapter().Replug(0);
  ASSERT_TRUE(Reaches(Progress().done + 2));
  EXPECT_EQ(starts.size(), 1U) << "its series had ended and was begun anew";
  EXPECT_EQ(Find<QComboBox>("cbxRecMode").currentIndex(), 1);
  EXPECT_EQ(Progress().gaps.size(), 1U);
  EXPECT_TRUE(messages_.Texts().empty()) << messages_.Texts().front();
}

TEST_F(FollowedSeries, EndsWhenAnotherModeIsChosen) {
  Follow("100");
  ASSERT_TRUE(Reaches(1));
  Choose("cbxRecMode", 0);
  EXPECT_TRUE(Ends());
  EXPECT_TRUE(State().contains("not in timer mode")) << State().toStdString();
}

}  // namespace
}  // namespace kestrel
