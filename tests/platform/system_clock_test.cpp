// The system's clocks: never back, never early, hardly late.
// SPDX-License-Identifier: MIT
#include "platform/linux/system_clock.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <ctime>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "support/environment.h"

namespace kestrel {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

nanoseconds ThreadTime() {
  timespec used{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return std::chrono::seconds{used.tv_sec} + nanoseconds{used.tv_nsec};
}

TEST(SystemClock, MonotonicNeverGoesBackAndResolvesMicroseconds) {
  SystemClock clock;
  std::set<nanoseconds> seen;
  nanoseconds earlier = clock.Monotonic();
  for (int i = 0; i < 10000; ++i) {
    const nanoseconds now = clock.Monotonic();
    ASSERT_GE(now, earlier);
    seen.insert(now);
    earlier = now;
  }
  EXPECT_GT(seen.size(), 100U);
}

TEST(SystemClock, WaitNeverEndsEarly) {
  SystemClock clock;
  for (const int us : {0, 1, 10, 79, 80, 81, 100, 300, 2000, 5000}) {
    for (int round = 0; round < 20; ++round) {
      const nanoseconds deadline = clock.Monotonic() + microseconds{us};
      clock.WaitUntil(deadline);
      ASSERT_GE(clock.Monotonic(), deadline) << us;
    }
  }
}

TEST(SystemClock, WaitEndsWithinMicrosecondsOfItsDeadline) {
  SystemClock clock;
  for (const int us : {100, 1500}) {
    std::vector<nanoseconds> late;
    for (int round = 0; round < 201; ++round) {
      const nanoseconds deadline = clock.Monotonic() + microseconds{us};
      clock.WaitUntil(deadline);
      late.push_back(clock.Monotonic() - deadline);
    }
    std::sort(late.begin(), late.end());
    EXPECT_LT(late[late.size() / 2], microseconds{10}) << us;
  }
}

TEST(SystemClock, DeadlineThatHasPassedReturnsAtOnce) {
  SystemClock clock;
  const nanoseconds start = clock.Monotonic();
  for (int i = 0; i < 100; ++i) clock.WaitUntil(start - milliseconds{10000});
  clock.WaitUntil(nanoseconds{0});
  EXPECT_LT(clock.Monotonic() - start, milliseconds{5000});
}

TEST(SystemClock, LongWaitLeavesTheProcessorToOthers) {
  SystemClock clock;
  const nanoseconds used = ThreadTime();
  clock.WaitUntil(clock.Monotonic() + milliseconds{200});
  EXPECT_LT(ThreadTime() - used, milliseconds{4});
}

std::atomic<int> alarms{0};

TEST(SystemClock, SignalsDoNotShortenAWait) {
  SystemClock clock;
  struct sigaction counting {};
  counting.sa_handler = [](int) { ++alarms; };  // without SA_RESTART: system calls are interrupted
  struct sigaction earlier {};
  ASSERT_EQ(sigaction(SIGALRM, &counting, &earlier), 0);
  const itimerval every5Ms{{0, 5000}, {0, 5000}};
  ASSERT_EQ(setitimer(ITIMER_REAL, &every5Ms, nullptr), 0);

  const nanoseconds used = ThreadTime();
  const nanoseconds deadline = clock.Monotonic() + milliseconds{200};
  clock.WaitUntil(deadline);
  EXPECT_GE(clock.Monotonic(), deadline);
  EXPECT_LT(ThreadTime() - used, milliseconds{4});  // it went back to sleep
  EXPECT_GE(alarms.load(), 2);

  const itimerval none{};
  setitimer(ITIMER_REAL, &none, nullptr);
  sigaction(SIGALRM, &earlier, nullptr);
}

TEST(SystemClock, SecondsSinceMidnightAreLocal) {
  Environment environment;
  environment.Set("TZ", "TST-5:30");  // 5.5 hours ahead
  tzset();
  SystemClock clock;
  const std::time_t now = std::time(nullptr);
  const double seconds = clock.SecondsSinceMidnight();
  const double expected = static_cast<double>((now + 19800) % 86400);
  EXPECT_GE(seconds, 0);
  EXPECT_LT(seconds, 86400);
  const double passed = std::fmod(seconds - expected + 86400, 86400);
  EXPECT_LT(passed, 3);
  environment.Set("TZ", std::nullopt);
  tzset();
}

TEST(SystemClock, TheMomentIsTheSystemsInUtc) {
  SystemClock clock;
  const std::time_t before = std::time(nullptr);
  const std::time_t told = std::chrono::system_clock::to_time_t(clock.UtcNow());
  EXPECT_LE(before, told);
  EXPECT_LE(told, std::time(nullptr) + 1);
}

TEST(SystemClock, SecondsSinceMidnightResolveFarLessThanAMillisecond) {
  SystemClock clock;
  double smallestStep = 1;
  double earlier = clock.SecondsSinceMidnight();
  for (int i = 0; i < 2000; ++i) {
    const double now = clock.SecondsSinceMidnight();
    if (now > earlier) smallestStep = std::min(smallestStep, now - earlier);
    earlier = now;
  }
  EXPECT_LT(smallestStep, 1e-4);
}

nanoseconds LoopTime(SystemClock& clock, std::int32_t passes, std::int32_t iterations) {
  const nanoseconds start = ThreadTime();
  clock.RunEmptyLoop(passes, iterations);
  return ThreadTime() - start;
}

// In turns, the least of each: the processor's pace may change in between.
TEST(SystemClock, EmptyLoopTakesTimeInProportionToItsCounts) {
  SystemClock clock;
  nanoseconds once = nanoseconds::max();
  nanoseconds passes = once;
  nanoseconds iterations = once;
  for (int round = 0; round < 40; ++round) {
    once = std::min(once, LoopTime(clock, 500, 2000));
    passes = std::min(passes, LoopTime(clock, 2000, 2000));
    iterations = std::min(iterations, LoopTime(clock, 500, 8000));
  }
  EXPECT_GT(once, microseconds{50});
  const auto ofOnce = [&](nanoseconds time) {
    return static_cast<double>(time.count()) / static_cast<double>(once.count());
  };
  EXPECT_NEAR(ofOnce(passes), 4, 2);
  EXPECT_NEAR(ofOnce(iterations), 4, 2);
}

TEST(SystemClock, EmptyLoopOfNothingReturnsAtOnce) {
  SystemClock clock;
  for (const auto& [passes, iterations] :
       {std::pair{0, 2000000000}, std::pair{1000, 0}, std::pair{1000, -5}}) {
    nanoseconds best = nanoseconds::max();
    for (int round = 0; round < 5; ++round) {
      best = std::min(best, LoopTime(clock, passes, iterations));
    }
    EXPECT_LT(best, milliseconds{1}) << passes << " of " << iterations;
  }
}

}  // namespace
}  // namespace kestrel
