// Threads that take no signals.
// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <thread>
#include <utility>

namespace kestrel::publish {

// Threads that begin while one exists take no signals: these are for the program's own threads, and
// a connection that breaks is an error, no signal.
class NoSignals {
 public:
  NoSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before_);
  }
  ~NoSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  NoSignals(const NoSignals&) = delete;
  NoSignals& operator=(const NoSignals&) = delete;

 private:
  sigset_t before_{};
};

// One such thread.
template <typename Work>
[[nodiscard]] std::thread ThreadWithoutSignals(Work work) {
  const NoSignals none;
  return std::thread(std::move(work));
}

}  // namespace kestrel::publish
