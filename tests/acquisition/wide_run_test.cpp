// The captures of a wide spectrum, decided over scripted time.
// SPDX-License-Identifier: MIT
#include "acquisition/wide_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_clock.h"

namespace kestrel {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using Do = WideStep::Do;

class WideRunning : public testing::Test {
 protected:
  void Begin(const WideWish& wish) { run.emplace(clock, wish); }
  // Does what is next, in this time; returns what it was.
  WideStep Done(nanoseconds lasting = 0s) {
    const WideStep step = run->Next();
    run->Began();
    EXPECT_EQ(run->Next().what, Do::Nothing);
    clock.Advance(lasting);
    if (step.what == Do::Set) run->SetDone();
    if (step.what == Do::Capture) run->CaptureDone();
    if (step.what == Do::PutBack) run->PutBackDone();
    return step;
  }
  void DoNext(int steps) {
    for (int i = 0; i < steps; ++i) Done(1s);
  }

  FakeClock clock;
  std::optional<WideRun> run;
};

TEST_F(WideRunning, CapturesAtEveryOptionAndPutsTheSettingsBack) {
  Begin({.present = 0});
  EXPECT_EQ(Done(), (WideStep{Do::Capture, 0}));
  for (const int option : {1, 2, 3}) {
    EXPECT_EQ(Done(), (WideStep{Do::Set, option}));
    EXPECT_EQ(Done(), (WideStep{Do::Capture, option}));
  }
  EXPECT_EQ(run->Progress().state, WideState::PuttingBack);
  EXPECT_EQ(Done().what, Do::PutBack);
  EXPECT_TRUE(run->Ended());
  const WideProgress end = run->Progress();
  EXPECT_EQ(end.state, WideState::Ended);
  EXPECT_THAT(end.done, ElementsAre(0, 1, 2, 3));
  EXPECT_EQ(end.share, 1);
  EXPECT_EQ(end.reason, "");
  EXPECT_EQ(end.notPutBack, "");
}

// One change of settings an option that is not set yet, and one to put back: no order has fewer.
TEST_F(WideRunning, TheOrderHasTheFewestChanges) {
  for (int present = 0; present < 6; ++present) {
    for (const bool changesMore : {false, true}) {
      Begin({.present = present, .changesMore = changesMore});
      int changes = 0;
      while (!run->Ended()) changes += Done().what == Do::Capture ? 0 : 1;
      EXPECT_EQ(changes, changesMore || present > 3 ? 5 : 4) << present;
    }
  }
  EXPECT_THAT(WideOrder({.present = 2}), ElementsAre(2, 0, 1, 3));
  EXPECT_THAT(WideOrder({.present = 2, .changesMore = true}), ElementsAre(0, 1, 2, 3));
  EXPECT_THAT(WideOrder({.options = 0b1010, .present = 0}), ElementsAre(1, 3));
}

TEST_F(WideRunning, WhatChangesNothingPutsNothingBack) {
  Begin({.options = 0b0100, .present = 2});
  EXPECT_EQ(Done(), (WideStep{Do::Capture, 2}));
  EXPECT_TRUE(run->Ended());
}

TEST_F(WideRunning, TellsTheTimeThatRemainsAndLearnsFromTheFirstCapture) {
  Begin({.present = 0, .averages = 16, .readOut = 2s});
  const auto seconds = [](nanoseconds time) { return std::chrono::duration<double>(time).count(); };
  double samples = 0;
  for (int option = 0; option < 4; ++option) samples += seconds(SamplesOf(option, 16));
  EXPECT_NEAR(samples, 16 * 512 / 100189.9 * (1 + 8 + 64 + 512), 1e-3);
  EXPECT_NEAR(*run->Progress().remaining, samples + 4 * (2 + 16 * 0.04), 1e-6);
  Done(SamplesOf(0, 16) + 5s);  // the read-out takes longer than was thought
  const double left = samples - seconds(SamplesOf(0, 16)) + 3 * 5;
  EXPECT_NEAR(*run->Progress().remaining, left, 1e-6);
  Done();
  run->Began();
  clock.Advance(1s);
  EXPECT_NEAR(*run->Progress().remaining, left - 1, 1e-6);
  EXPECT_GT(run->Progress().share, 0);
  clock.Advance(3600s);
  const double later = samples - seconds(SamplesOf(0, 16) + SamplesOf(1, 16)) + 2 * 5;
  EXPECT_NEAR(*run->Progress().remaining, later, 1e-6) << "never less than what comes after";
}

TEST_F(WideRunning, StopKeepsWhatIsCompleteAndPutsTheSettingsBack) {
  Begin({.present = 0});
  DoNext(2);
  run->Began();
  run->UserStopped();
  EXPECT_EQ(run->Next().what, Do::Nothing) << "the capture under way is ended by whoever does it";
  EXPECT_EQ(run->Progress().state, WideState::Capturing);
  run->CaptureStopped();
  EXPECT_EQ(Done().what, Do::PutBack);
  EXPECT_TRUE(run->Ended());
  EXPECT_THAT(run->Progress().done, ElementsAre(0));
  EXPECT_EQ(run->Progress().reason, "stopped");
}

TEST_F(WideRunning, ACaptureThatWasCompleteWhenStoppedCounts) {
  Begin({.present = 0});
  DoNext(2);
  run->Began();
  run->UserStopped();
  run->CaptureDone();
  EXPECT_THAT(run->Progress().done, ElementsAre(0, 1));
  EXPECT_EQ(run->Next().what, Do::PutBack);
}

TEST_F(WideRunning, StoppedBeforeAnythingWasChangedItEnds) {
  Begin({.present = 3});
  run->UserStopped();
  EXPECT_TRUE(run->Ended());
  EXPECT_THAT(run->Progress().done, IsEmpty());
}

TEST_F(WideRunning, AFaultEndsItAndTheSettingsArePutBack) {
  Begin({.present = 1, .changesMore = true});
  run->Began();
  run->Failed("it did not take option 0");
  EXPECT_EQ(Done().what, Do::PutBack) << "a change that failed may have changed something";
  EXPECT_TRUE(run->Ended());
  EXPECT_EQ(run->Progress().reason, "it did not take option 0");
}

TEST_F(WideRunning, ALostSensorIsSoughtAndItsSettingsArePutBackWhenItIsThere) {
  Begin({.present = 0});
  run->Began();
  run->SensorLost("unplugged");
  EXPECT_EQ(run->Progress().state, WideState::Lost);
  for (int look = 0; look < 3; ++look) {
    EXPECT_EQ(run->Next().what, Do::SeekSensor);
    run->Began();
    run->StillLost();
  }
  run->Began();
  run->SensorBack();
  EXPECT_EQ(run->Next().what, Do::PutBack);
  run->Began();
  run->SensorLost("again");
  EXPECT_EQ(run->Next().what, Do::SeekSensor);
  run->SensorBack();
  EXPECT_EQ(Done().what, Do::PutBack);
  EXPECT_TRUE(run->Ended());
  EXPECT_EQ(run->Progress().reason, "unplugged");
}

TEST_F(WideRunning, WhatCouldNotBePutBackIsTold) {
  Begin({.present = 0});
  run->SensorLost("unplugged");
  run->Began();
  run->PutBackFailed("it did not come back");
  EXPECT_TRUE(run->Ended());
  EXPECT_EQ(run->Progress().state, WideState::Ended);
  EXPECT_EQ(run->Progress().notPutBack, "it did not come back");
}

}  // namespace
}  // namespace kestrel
