// What a monitor does next, decided by times and by what was told.
// SPDX-License-Identifier: MIT
#include "monitor/runner.h"

#include <gtest/gtest.h>

namespace kestrel::monitor {
namespace {

using namespace std::chrono_literals;
using Do = Next::Do;

constexpr std::chrono::nanoseconds kStart = 1000s;

Plan PlanOfSteps(std::size_t steps, StepKind kind = StepKind::Spectrum) {
  Plan plan{.every = 10s};
  plan.steps.resize(steps);
  for (Step& step : plan.steps) step.kind = kind;
  return plan;
}

// A runner of a series, with the sensor at this count.
Runner InSeries(std::int32_t count, std::chrono::seconds every = 10s) {
  Plan plan = PlanOfSteps(1, StepKind::Timer);
  plan.every = every;
  Runner runner(plan, kStart);
  runner.Connected(kStart);
  EXPECT_EQ(runner.Decide(kStart).what, Do::FetchStored);
  EXPECT_EQ(runner.StoredFetched(0, true), 0);
  EXPECT_EQ(runner.Decide(kStart).what, Do::BeginSeries);
  runner.SeriesBegan(count, kStart);
  return runner;
}

TEST(Runners, LookForTheSensorLessAndLessOftenUpToTenSeconds) {
  Runner runner(PlanOfSteps(1), kStart);
  auto now = kStart;
  std::vector<std::int64_t> waits;
  for (int i = 0; i < 6; ++i) {
    ASSERT_EQ(runner.Decide(now).what, Do::Connect);
    runner.Lost(now);
    const Next next = runner.Decide(now);
    ASSERT_EQ(next.what, Do::Wait);
    EXPECT_EQ(runner.Decide(next.until - 1ns).what, Do::Wait);
    waits.push_back(std::chrono::duration_cast<std::chrono::seconds>(next.until - now).count());
    now = next.until;
  }
  EXPECT_EQ(waits, (std::vector<std::int64_t>{1, 2, 4, 8, 10, 10}));
  runner.Connected(now);
  EXPECT_TRUE(runner.IsConnected());
  runner.Lost(now);
  EXPECT_FALSE(runner.IsConnected());
  EXPECT_EQ(runner.Decide(now).until, now + 1s) << "after it was there, soon again";
}

TEST(Runners, TakeTheStepsInTurnAndCountThoseThatWentBy) {
  Runner runner(PlanOfSteps(3), kStart);
  runner.Connected(kStart);
  for (std::size_t i = 0; i < 7; ++i) {
    const auto now = kStart + static_cast<int>(i) * 10s;
    EXPECT_EQ(runner.TakePassed(now), 0);
    EXPECT_EQ(runner.Decide(now), (Next{.what = Do::Capture, .step = i % 3}));
    runner.Began(now);
    EXPECT_EQ(runner.Decide(now), (Next{Do::Wait, now + 10s}));
    EXPECT_EQ(runner.NextCapture(), now + 10s);
  }
  EXPECT_EQ(runner.TakePassed(kStart + 100s), 3) << "number 10 can still be begun";
  EXPECT_EQ(runner.Decide(kStart + 100s), (Next{.what = Do::Capture, .step = 1}));
  EXPECT_EQ(runner.TakePassed(kStart + 100s), 0) << "each is counted once";
}

TEST(Runners, BeginNothingWhileTheyAreHeldOrStopped) {
  Runner runner(PlanOfSteps(1), kStart);
  runner.Connected(kStart);
  runner.Hold(true);
  EXPECT_TRUE(runner.IsHeld());
  EXPECT_EQ(runner.Decide(kStart), (Next{Do::Wait, kStart + 250ms}));
  runner.Hold(false);
  EXPECT_EQ(runner.Decide(kStart).what, Do::Capture);
  runner.Stop();
  EXPECT_EQ(runner.Decide(kStart).what, Do::End);
}

TEST(Runners, BeginAtTheStartAndNotBefore) {
  Runner runner(PlanOfSteps(1), kStart);
  EXPECT_EQ(runner.Decide(kStart - 1s), (Next{Do::Wait, kStart}));
  runner.Connected(kStart - 1s);
  EXPECT_EQ(runner.Decide(kStart - 1s), (Next{Do::Wait, kStart}));
  EXPECT_EQ(runner.TakePassed(kStart - 1s), 0);
  EXPECT_EQ(runner.Decide(kStart).what, Do::Capture);
}

TEST(Runners, OfASeriesLookAtTheCountTenTimesAPeriodAndFetchWhatIsNew) {
  Runner runner = InSeries(7);
  EXPECT_EQ(runner.Decide(kStart), (Next{Do::Wait, kStart + 1s}));
  EXPECT_EQ(runner.Decide(kStart + 1s).what, Do::LookAtCount);
  runner.CountSeen(7, kStart + 1s);
  EXPECT_EQ(runner.Decide(kStart + 1s), (Next{Do::Wait, kStart + 2s}));
  runner.CountSeen(8, kStart + 2s);
  EXPECT_EQ(runner.Decide(kStart + 2s).what, Do::Fetch);
  runner.Fetched(8, true, kStart + 2s);
  EXPECT_EQ(runner.Decide(kStart + 2s).what, Do::Wait);
  runner.Fetched(11, true, kStart + 3s);
  EXPECT_EQ(runner.StoredFetched(0, true), 2) << "two came and went";
  EXPECT_EQ(runner.TakePassed(kStart + 500s), 0) << "the sensor's count tells";
}

TEST(Runners, OfASeriesLookNeitherTooOftenNorTooSeldom) {
  EXPECT_EQ(InSeries(0, 1s).Decide(kStart).until, kStart + 250ms);
  EXPECT_EQ(InSeries(0, 3600s).Decide(kStart).until, kStart + 5s);
}

TEST(Runners, OfASeriesCountOnOverTheEndOfTheSensorsNumbers) {
  Runner runner = InSeries(0xFFFE);
  runner.Fetched(1, true, kStart + 1s);
  runner.Fetched(1, false, kStart + 1s);  // the same again
  EXPECT_EQ(runner.StoredFetched(0, true), 2);
  Runner restarted = InSeries(5000);
  restarted.Fetched(3, true, kStart + 1s);
  EXPECT_EQ(restarted.StoredFetched(0, true), 2) << "a sensor that began anew counts from 0";
}

TEST(Runners, BeginASeriesAnewThatHasBeenSilent) {
  Runner runner = InSeries(7);
  runner.CountSeen(7, kStart + 90s);
  EXPECT_EQ(runner.Decide(kStart + 90s).what, Do::Wait) << "not yet";
  EXPECT_EQ(runner.Decide(kStart + 90s + 1ns), (Next{Do::Wait, kStart + 90s + 1ns}));
  EXPECT_EQ(runner.Decide(kStart + 91s).what, Do::BeginSeries);
  Runner slow = InSeries(7, 3600s);
  slow.CountSeen(7, kStart + 3h);
  EXPECT_EQ(slow.Decide(kStart + 3h).what, Do::Wait);
  slow.CountSeen(7, kStart + 3h + 1s);
  EXPECT_EQ(slow.Decide(kStart + 3h + 1s), (Next{Do::Wait, kStart + 3h + 1s}));
  EXPECT_EQ(slow.Decide(kStart + 3h + 1s).what, Do::BeginSeries);
  Runner alive = InSeries(7);
  alive.CountSeen(8, kStart + 60s);
  alive.Fetched(8, true, kStart + 60s);
  alive.CountSeen(8, kStart + 140s);
  EXPECT_EQ(alive.Decide(kStart + 140s).what, Do::Wait) << "its count moved in between";
}

TEST(Runners, FetchFromTheFlashWhatCameWhileTheSensorWasAway) {
  Runner runner = InSeries(7);
  runner.Lost(kStart + 5s);
  runner.Connected(kStart + 60s);
  EXPECT_EQ(runner.Decide(kStart + 60s).what, Do::LookAtCount);
  runner.CountSeen(12, kStart + 60s);
  EXPECT_EQ(runner.Decide(kStart + 60s).what, Do::Fetch) << "the flash would take its place";
  runner.Fetched(12, true, kStart + 60s);
  EXPECT_EQ(runner.Decide(kStart + 60s).what, Do::FetchStored);
  EXPECT_EQ(runner.StoredFetched(3, true), 1) << "four were to be found: one of them is gone";
  EXPECT_EQ(runner.Decide(kStart + 60s).what, Do::Wait);
}

TEST(Runners, FetchWhatComesWhileTheyReadTheFlashAndGoOnWithIt) {
  Runner runner = InSeries(7);
  runner.Lost(kStart + 5s);
  runner.Connected(kStart + 60s);
  runner.CountSeen(12, kStart + 60s);
  runner.Fetched(12, true, kStart + 60s);
  runner.CountSeen(13, kStart + 61s);
  EXPECT_EQ(runner.StoredFetched(1, false), 0) << "not all of it was read";
  EXPECT_EQ(runner.Decide(kStart + 61s).what, Do::Fetch);
  runner.Fetched(13, false, kStart + 61s);
  EXPECT_EQ(runner.Decide(kStart + 61s).what, Do::FetchStored);
  EXPECT_EQ(runner.StoredFetched(2, true), 2) << "number 13, and one of the four";
}

TEST(Runners, LookInTheFlashForWhatTheyWereTooLateFor) {
  Runner runner = InSeries(7);
  runner.CountSeen(11, kStart + 40s);
  runner.Fetched(11, true, kStart + 40s);
  EXPECT_EQ(runner.Decide(kStart + 40s).what, Do::FetchStored);
  runner.Lost(kStart + 41s);
  runner.Connected(kStart + 42s);
  runner.CountSeen(11, kStart + 42s);
  EXPECT_EQ(runner.Decide(kStart + 42s).what, Do::FetchStored);
  EXPECT_EQ(runner.StoredFetched(0, true), 3) << "still missing after another interruption";
}

TEST(Runners, LoseNothingWhereMoreIsFoundThanWasMissed) {
  Runner runner = InSeries(7);
  runner.Lost(kStart + 5s);
  runner.Connected(kStart + 10s);
  runner.CountSeen(8, kStart + 10s);
  runner.Fetched(8, true, kStart + 10s);
  EXPECT_EQ(runner.StoredFetched(5, true), 0);
  EXPECT_EQ(runner.Decide(kStart + 10s).what, Do::Wait);
}

TEST(Runners, BeginASeriesAnewOfASensorThatHasRestarted) {
  for (const std::int32_t count : {0, 6}) {
    Runner runner = InSeries(7);
    runner.Lost(kStart + 5s);
    runner.Connected(kStart + 10s);
    runner.CountSeen(count, kStart + 10s);
    EXPECT_EQ(runner.Decide(kStart + 10s).what, Do::FetchStored) << count;
    EXPECT_EQ(runner.StoredFetched(0, true), 0);
    EXPECT_EQ(runner.Decide(kStart + 10s).what, Do::BeginSeries) << count;
  }
  Runner same = InSeries(7);
  same.Lost(kStart + 5s);
  same.Connected(kStart + 10s);
  same.CountSeen(7, kStart + 10s);
  EXPECT_EQ(same.StoredFetched(0, true), 0);
  EXPECT_EQ(same.Decide(kStart + 10s).what, Do::Wait) << "the series goes on";
}

TEST(Schedules, CountFromTheirStart) {
  Schedule schedule(kStart, 10s);
  EXPECT_EQ(schedule.Due(kStart - 1ns), std::nullopt);
  EXPECT_EQ(schedule.Due(kStart), 0);
  EXPECT_EQ(schedule.Due(kStart + 10s - 1ns), 0);
  EXPECT_EQ(schedule.TakePassed(kStart + 35s), 3);
  EXPECT_EQ(schedule.Due(kStart + 35s), 3);
  schedule.Take(3);
  EXPECT_EQ(schedule.Due(kStart + 35s), std::nullopt);
  EXPECT_EQ(schedule.Last(), 3);
  schedule.Take(1);
  EXPECT_EQ(schedule.Last(), 3) << "nothing is taken back";
  schedule.TakeUpTo(kStart + 75s);
  EXPECT_EQ(schedule.Next(), kStart + 80s);
}

}  // namespace
}  // namespace kestrel::monitor
