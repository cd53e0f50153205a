// Something done in a process of its own that may be killed.
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <thread>

namespace kestrel {

// A copy of a process that has other threads may wait for ever for a lock that one of them held.
// Those of an earlier test are waited for.
inline void AwaitLoneThread() {
#ifndef __SANITIZE_THREAD__  // which has a thread of its own
  const auto threads = [] {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
  };
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (threads() > 1) {
    if (std::chrono::steady_clock::now() > limit) throw std::runtime_error("threads are left");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
#endif
}

// Does something in a process of its own; returns whether that process was killed meanwhile. To be
// called while no other thread runs.
inline bool IsKilledDoing(const std::function<void()>& action) {
  AwaitLoneThread();
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    try {
      action();
    } catch (...) {
      _exit(2);
    }
    _exit(0);
  }
  int status = 0;
  const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(3);
  for (pid_t ended = 0; ended != child;) {
    ended = waitpid(child, &status, WNOHANG);
    if (ended < 0) throw std::runtime_error("waitpid");
    if (ended == 0 && std::chrono::steady_clock::now() > limit) {
      kill(child, SIGKILL);
      waitpid(child, nullptr, 0);
      throw std::runtime_error("the child does not end");
    }
    if (ended == 0) std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  if (WIFSIGNALED(status)) return WTERMSIG(status) == SIGKILL;
  if (WEXITSTATUS(status) != 0) throw std::runtime_error("the child failed");
  return false;
}

// To be called in such a process.
inline void KillThisProcessIn(std::chrono::microseconds delay) {
  std::thread([delay] {
    std::this_thread::sleep_for(delay);
    kill(getpid(), SIGKILL);
  }).detach();
}

}  // namespace kestrel
