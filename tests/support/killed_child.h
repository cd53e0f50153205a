// Something done in a process of its own that may be killed.
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <stdexcept>

namespace kestrel {

// Does something in a process of its own; returns whether that process was killed meanwhile.
inline bool IsKilledDoing(const std::function<void()>& action) {
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
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid");
  if (WIFSIGNALED(status)) return WTERMSIG(status) == SIGKILL;
  if (WEXITSTATUS(status) != 0) throw std::runtime_error("the child failed");
  return false;
}

}  // namespace kestrel
