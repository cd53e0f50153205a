// Three clocks compared.
// SPDX-License-Identifier: MIT
#include "monitor/clock_watch.h"

#include <utility>

namespace kestrel::monitor {

using std::chrono::nanoseconds;
using std::chrono::system_clock;

ClockWatch::ClockWatch(Clock& clock, SinceBoot sinceBoot)
    : clock_(clock),
      sinceBoot_(std::move(sinceBoot)),
      last_(Read()),
      lastMonotonic_(clock.Monotonic()) {}

Now ClockWatch::Read() const {
  return {clock_.UtcNow(), sinceBoot_()};
}

ClockNews ClockWatch::Look() {
  const Now now = Read();
  const nanoseconds monotonic = clock_.Monotonic();
  const nanoseconds passed = now.boot - last_.boot;
  const nanoseconds asleep = passed - (monotonic - lastMonotonic_);
  const auto expected = last_.wall + std::chrono::duration_cast<system_clock::duration>(passed);
  ClockNews news;
  if (asleep >= kLeast) news.sleep = Sleep{last_.wall, asleep};
  if (now.wall - expected >= kLeast || expected - now.wall >= kLeast) {
    news.step = ClockStep{expected, now.wall};
  }
  last_ = now;
  lastMonotonic_ = monotonic;
  return news;
}

}  // namespace kestrel::monitor
