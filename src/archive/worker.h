// A thread that reads and changes an archive for somebody who must not wait.
// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "archive/archive.h"

namespace kestrel::archive {

// Has a connection of its own, made at the first job and made anew after a fault.
class Worker {
 public:
  // What goes first, and what can be cancelled together.
  enum class Rank { Change, Load, Find, Rows, Pictures };
  struct Job {
    Rank rank = Rank::Find;
    std::function<void(Archive&)> work;                          // throws DatabaseError
    std::function<void(const database::DatabaseError&)> failed;  // not of what is cancelled
  };

  // `open` is called from the worker's thread, as all functions of jobs are.
  explicit Worker(std::function<Archive()> open);
  // Changes that wait are made, all else is cancelled.
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  void Do(Job job);
  // Drops what waits of a rank but Change, and ends what is at work of it.
  void Cancel(Rank rank);

 private:
  void Work();
  [[nodiscard]] bool TakeNext();
  void Run();
  // False where the job has been cancelled meanwhile.
  [[nodiscard]] bool Connect();
  void Interrupt();

  const std::function<Archive()> open_;
  std::mutex mutex_;  // of the next eight
  std::condition_variable wake_;
  std::condition_variable ended_;
  std::deque<Job> jobs_;                         // by rank, then as they came
  Rank rank_ = Rank::Find;                       // of the job at work
  database::Database* interruptible_ = nullptr;  // the connection, while a job is at work
  bool isCancelled_ = false;                     // the job at work
  bool isEnding_ = false;
  bool hasEnded_ = false;
  // Of the thread alone.
  std::optional<Job> job_;
  std::optional<Archive> archive_;
  std::thread thread_;  // begins last
};

}  // namespace kestrel::archive
