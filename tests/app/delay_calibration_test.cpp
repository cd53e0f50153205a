// The trials of the delay's calibration on slow, fast and odd computers.
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "app/delay.h"
#include "numeric/runtime_error.h"
#include "support/given.h"
#include "support/recording_pointer.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::Pair;

// A computer whose trials take the given times by its timer of the day, whatever they count.
class ScriptedComputer : public Clock {
 public:
  explicit ScriptedComputer(std::deque<double> trialSeconds) : trials_(std::move(trialSeconds)) {}

  [[nodiscard]] double SecondsSinceMidnight() override { return now_; }
  [[nodiscard]] std::chrono::system_clock::time_point UtcNow() override { return {}; }
  [[nodiscard]] std::chrono::nanoseconds Monotonic() override { return {}; }
  void WaitUntil(std::chrono::nanoseconds) override { ADD_FAILURE() << "a trial waits by loops"; }
  void RunEmptyLoop(std::int32_t passes, std::int32_t iterations) override {
    loops_.emplace_back(passes, iterations);
    ASSERT_FALSE(trials_.empty()) << "one trial too many";
    now_ += trials_.front();
    trials_.pop_front();
  }

  // Passes and iterations of each trial.
  [[nodiscard]] const std::vector<std::pair<std::int32_t, std::int32_t>>& Loops() const {
    return loops_;
  }
  [[nodiscard]] bool AllTrialsDone() const { return trials_.empty(); }

 private:
  std::deque<double> trials_;
  double now_ = 0;
  std::vector<std::pair<std::int32_t, std::int32_t>> loops_;
};

class DelayCalibration : public testing::Test {
 protected:
  DelayCalibration() { ResetDelayState(); }
  ~DelayCalibration() override { ResetDelayState(); }

  void Calibrate(ScriptedComputer& computer) {
    SoftwareDelay delay(computer, pointer_);
    delay.CalibrateDelay();
    EXPECT_TRUE(computer.AllTrialsDone());
    EXPECT_THAT(pointer_.Shown(), ElementsAre("hourglass", "default"));
    EXPECT_TRUE(DelayCalibrated);
  }

  RecordingPointer pointer_;
};

TEST_F(DelayCalibration, SlowComputerNeedsOneShortTrial) {
  ScriptedComputer computer({0.75, 3.2});
  Calibrate(computer);
  EXPECT_THAT(computer.Loops(), ElementsAre(Pair(50000, 1000), Pair(300000, 667)));
  EXPECT_EQ(LoopsPer10us, 625);  // 3 / 3.2 x 667
  EXPECT_FLOAT_EQ(MinimumDelay, 0.00064F);
  EXPECT_EQ(MinimumDelayCount, 40);
  EXPECT_EQ(DelayReport,
            "First 0.5Sec delay =    0.75\r\n"
            "2nd 0.5Sec delay =   0\r\n"
            "3rd 0.5Sec delay =   0\r\n"
            "Actual 3Sec delay =  3.2\r\n"
            "10uS Delay Count =   625\r\n"
            "Minimum Delay=      0.64 uS\r\n"
            "Minimum Delay Count= 40\r\n");
}

TEST_F(DelayCalibration, FastComputerMultipliesBy40ThenBy6) {
  ScriptedComputer computer({0.002, 0.08, 0.48, 3.2});
  Calibrate(computer);
  EXPECT_THAT(computer.Loops(), ElementsAre(Pair(50000, 1000), Pair(50000, 40000),
                                            Pair(50000, 240000), Pair(300000, 250000)));
  EXPECT_EQ(LoopsPer10us, 234375);
  EXPECT_EQ(MinimumDelayCount, 40);
  EXPECT_EQ(DelayReport,
            "First 0.5Sec delay =    0.002\r\n"
            "2nd 0.5Sec delay =   0.08\r\n"
            "3rd 0.5Sec delay =   0.48\r\n"
            "Actual 3Sec delay =  3.2\r\n"
            "10uS Delay Count =   234375\r\n"
            "Minimum Delay=      0.001706667 uS\r\n"
            "Minimum Delay Count= 40\r\n");
}

TEST_F(DelayCalibration, SecondTrialThatIsLongEnoughIsTheLast) {
  ScriptedComputer computer({0.004, 0.16, 3.0});
  Calibrate(computer);
  EXPECT_THAT(computer.Loops(),
              ElementsAre(Pair(50000, 1000), Pair(50000, 40000), Pair(300000, 125000)));
  EXPECT_EQ(LoopsPer10us, 125000);
}

TEST_F(DelayCalibration, FirstTrialOfMediumLengthIsMultipliedBy6Alone) {
  ScriptedComputer computer({0.05, 0.3, 3.0});
  Calibrate(computer);
  EXPECT_THAT(computer.Loops(),
              ElementsAre(Pair(50000, 1000), Pair(50000, 6000), Pair(300000, 10000)));
  EXPECT_THAT(DelayReport, testing::HasSubstr("2nd 0.5Sec delay =   0\r\n"));
  EXPECT_THAT(DelayReport, testing::HasSubstr("3rd 0.5Sec delay =   0.3\r\n"));
}

TEST_F(DelayCalibration, CountsAreRoundedHalfToEven) {
  ScriptedComputer down({8.0, 4.0});  // 62.5, then 46.5
  Calibrate(down);
  EXPECT_THAT(down.Loops(), ElementsAre(Pair(50000, 1000), Pair(300000, 62)));
  EXPECT_EQ(LoopsPer10us, 46);
}

TEST_F(DelayCalibration, CountsAreRoundedHalfToEvenUpwards) {
  ScriptedComputer up({8.0, 12.0});  // 62.5, then 15.5
  Calibrate(up);
  EXPECT_EQ(LoopsPer10us, 16);
}

TEST_F(DelayCalibration, TimerThatStandsStillInTheLastTrialCountsAsATenthOfASecond) {
  ScriptedComputer computer({0.5, 0.0});
  Calibrate(computer);
  EXPECT_EQ(LoopsPer10us, 30000);
  EXPECT_THAT(DelayReport, testing::HasSubstr("Actual 3Sec delay =  0.1\r\n"));
}

TEST_F(DelayCalibration, TimerThatStandsStillThroughoutOverflows) {
  ScriptedComputer computer({0.0, 0.0, 0.0, 0.0});
  SoftwareDelay delay(computer, pointer_);
  try {
    delay.CalibrateDelay();
    FAIL() << "no overflow";
  } catch (const RuntimeError& error) {
    EXPECT_STREQ(error.what(), "Overflow");
  }
  // The floor of 0.0005 s kept the count finite; 30 times that leaves 32 bits.
  EXPECT_THAT(computer.Loops(), ElementsAre(Pair(50000, 1000), Pair(50000, 40000),
                                            Pair(50000, 240000), Pair(300000, 239999989)));
  EXPECT_THAT(pointer_.Shown(), ElementsAre("hourglass", "default"));
}

TEST_F(DelayCalibration, MidnightInTheFirstTrialCountsAsAFastComputer) {
  ScriptedComputer computer({-86399.5, 20.0, 3.0});
  Calibrate(computer);
  EXPECT_THAT(computer.Loops(),
              ElementsAre(Pair(50000, 1000), Pair(50000, 40000), Pair(300000, 1000)));
  EXPECT_EQ(LoopsPer10us, 1000);
  EXPECT_THAT(DelayReport, testing::StartsWith("First 0.5Sec delay =    -86399.5\r\n"));
}

TEST_F(DelayCalibration, MidnightInTheLastTrialCountsAsATenthOfASecond) {
  ScriptedComputer computer({0.5, -86397.0});
  Calibrate(computer);
  EXPECT_EQ(LoopsPer10us, 30000);
}

TEST_F(DelayCalibration, StartsFromTheSameGuessEachTime) {
  Given(LoopsPer10us) = 77;
  Given(DelayReport) = "earlier";
  ScriptedComputer computer({0.5, 3.0});
  Calibrate(computer);
  EXPECT_EQ(computer.Loops().front(), (std::pair<std::int32_t, std::int32_t>{50000, 1000}));
  EXPECT_EQ(LoopsPer10us, 1000);
  EXPECT_THAT(DelayReport, testing::StartsWith("First 0.5Sec delay =    0.5\r\n"));
}

}  // namespace
}  // namespace kestrel
