// The worker's thread.
// SPDX-License-Identifier: MIT
#include "archive/worker.h"

#include <algorithm>
#include <utility>

namespace kestrel::archive {

using database::DatabaseError;
using database::Fault;

Worker::Worker(std::function<Archive()> open)
    : open_(std::move(open)), thread_([this] { Work(); }) {}

Worker::~Worker() {
  {
    std::unique_lock lock(mutex_);
    isEnding_ = true;
    std::erase_if(jobs_, [](const Job& job) { return job.rank != Rank::Change; });
    wake_.notify_all();
    // Again and again: an interruption between two statements ends neither.
    while (!ended_.wait_for(lock, std::chrono::milliseconds(5), [this] { return hasEnded_; })) {
      if (rank_ != Rank::Change) Interrupt();
    }
  }
  thread_.join();
}

void Worker::Do(Job job) {
  {
    const std::lock_guard lock(mutex_);
    const auto after = std::ranges::upper_bound(jobs_, job.rank, {}, &Job::rank);
    jobs_.insert(after, std::move(job));
  }
  wake_.notify_all();
}

void Worker::Cancel(Rank rank) {
  const std::lock_guard lock(mutex_);
  if (rank == Rank::Change) return;
  std::erase_if(jobs_, [rank](const Job& job) { return job.rank == rank; });
  if (rank_ == rank) Interrupt();
}

// With the mutex held: the connection stays while this is at work.
void Worker::Interrupt() {
  isCancelled_ = true;
  if (interruptible_ != nullptr) interruptible_->Cancel();
}

void Worker::Work() {
  while (TakeNext()) Run();
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  ended_.notify_all();
}

bool Worker::TakeNext() {
  std::unique_lock lock(mutex_);
  wake_.wait(lock, [this] { return isEnding_ || !jobs_.empty(); });
  if (jobs_.empty()) return false;
  job_ = std::move(jobs_.front());
  jobs_.pop_front();
  rank_ = job_->rank;
  isCancelled_ = false;
  return true;
}

bool Worker::Connect() {
  if (!archive_) archive_.emplace(open_());
  const std::lock_guard lock(mutex_);
  if (isCancelled_) return false;
  interruptible_ = &archive_->Connection();
  return true;
}

// A cancellation that came too late for its job may end the next one, which is then done again.
void Worker::Run() {
  constexpr int kTries = 3;
  for (int i = 1; i <= kTries; ++i) {
    std::optional<DatabaseError> error;
    try {
      if (!Connect()) return;
      job_->work(*archive_);
      // Those who only change it do so now and then; readers soon read the same again.
      if (job_->rank == Rank::Change) archive_->Connection().ReleaseMemory();
    } catch (const DatabaseError& thrown) {
      error = thrown;
    } catch (const RuntimeError& thrown) {
      error = DatabaseError(Fault::Other, thrown.what());
    }
    bool isCancelled = false;
    {
      const std::lock_guard lock(mutex_);
      interruptible_ = nullptr;
      isCancelled = isCancelled_;
    }
    if (!error || isCancelled) return;
    if (error->fault == Fault::Cancelled && i < kTries) continue;
    if (error->fault != Fault::Constraint && error->fault != Fault::Cancelled) archive_.reset();
    job_->failed(*error);
    return;
  }
}

}  // namespace kestrel::archive
