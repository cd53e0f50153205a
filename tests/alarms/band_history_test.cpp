// Steps taken back and done again.
// SPDX-License-Identifier: MIT
#include "alarms/band_history.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

class BandHistoryTest : public testing::Test {
 protected:
  void Step(std::int32_t value) {
    table(kFLowField, 1, 0) = value;
    history.Keep("step " + std::to_string(value));
  }
  [[nodiscard]] std::int32_t Value() const { return table(kFLowField, 1, 0); }

  BandTable table;
  BandHistory history{table};
};

TEST_F(BandHistoryTest, StepsAreTakenBackAndDoneAgainInTheirOrder) {
  Step(1);
  Step(2);
  EXPECT_EQ(history.NextUndo(), "step 2");
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Value(), 1);
  EXPECT_TRUE(history.Undo());
  EXPECT_EQ(Value(), 0);
  EXPECT_FALSE(history.Undo());
  EXPECT_EQ(history.NextUndo(), "");
  EXPECT_EQ(history.NextRedo(), "step 1");
  EXPECT_TRUE(history.Redo());
  EXPECT_TRUE(history.Redo());
  EXPECT_EQ(Value(), 2);
  EXPECT_FALSE(history.Redo());
  EXPECT_EQ(history.NextRedo(), "");
}

TEST_F(BandHistoryTest, WithoutAChangeThereIsNoStep) {
  EXPECT_FALSE(history.Keep("nothing"));
  Step(1);
  EXPECT_FALSE(history.Keep("nothing"));
  EXPECT_EQ(history.NextUndo(), "step 1");
}

TEST_F(BandHistoryTest, ANewStepForgetsWhatWasTakenBack) {
  Step(1);
  Step(2);
  history.Undo();
  Step(3);
  EXPECT_EQ(history.NextRedo(), "");
  history.Undo();
  EXPECT_EQ(Value(), 1);
}

TEST_F(BandHistoryTest, TheOldestStepsGoFirst) {
  const auto steps = static_cast<std::int32_t>(BandHistory::kMaxSteps);
  for (std::int32_t value = 1; value <= steps + 3; ++value) Step(value);
  while (history.Undo()) {
  }
  EXPECT_EQ(Value(), 3);
}

TEST_F(BandHistoryTest, ARestartIsANewBeginning) {
  Step(1);
  table(kFLowField, 1, 0) = 7;
  history.Restart();
  EXPECT_FALSE(history.Undo());
  EXPECT_FALSE(history.Keep("nothing"));
  EXPECT_EQ(Value(), 7);
}

}  // namespace
}  // namespace kestrel
