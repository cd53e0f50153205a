// Threads that take no signals.
// SPDX-License-Identifier: MIT
#include "publish/no_signals.h"

#include <gtest/gtest.h>

#include <array>

namespace kestrel::publish {
namespace {

constexpr std::array kUsual{SIGINT, SIGTERM, SIGPIPE, SIGCHLD, SIGUSR1};

// How many of the usual signals the thread that asks does not take.
int Blocked() {
  sigset_t mask;
  EXPECT_EQ(pthread_sigmask(SIG_BLOCK, nullptr, &mask), 0);
  int blocked = 0;
  for (const int signal : kUsual) blocked += sigismember(&mask, signal);
  return blocked;
}

TEST(ThreadsWithoutSignals, TakeNoneFromTheirFirstMomentAndLeaveThoseOfOthersAlone) {
  int within = 0;
  ThreadWithoutSignals([&] { within = Blocked(); }).join();
  EXPECT_EQ(within, static_cast<int>(kUsual.size()));
  EXPECT_EQ(Blocked(), 0);
}

}  // namespace
}  // namespace kestrel::publish
