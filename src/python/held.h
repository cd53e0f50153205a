// What Python holds of something that one thread of one process uses at a time.
// SPDX-License-Identifier: MIT
#pragma once

#include <pybind11/pybind11.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>

#include "database/database.h"
#include "numeric/runtime_error.h"
#include "python/interpreter_lock.h"
#include "python/raise.h"

namespace kestrel::python {

// Everything here is called with the lock of the interpreter held; the lock is what guards the
// marks. In a process that was forked off the content belongs to the parent: it is never touched
// there.
template <typename Content>
class Held {
 public:
  // `what` as texts name it: "sensor".
  Held(std::string what, std::unique_ptr<Content> content)
      : what_(std::move(what)), content_(std::move(content)) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { Drop(); }

  // The content for as long as this stands. Raises ClosedError, BusyError.
  class Use {
   public:
    explicit Use(Held& held) : held_(held) { held_.Enter(); }
    ~Use() { held_.isBusy_ = false; }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    // Work without the lock of the interpreter. What it throws becomes an exception of Python.
    template <typename Work>
    auto Do(Work work) {
      try {
        const Unlocked unlocked;
        return work(*held_.content_);
      } catch (const database::DatabaseError& error) {
        Raise("ArchiveError", error.what());
      } catch (const RuntimeError& error) {
        Raise("Error", error.what());
      }
    }

   private:
    Held& held_;
  };

  template <typename Work>
  auto Do(Work work) {
    Use use(*this);
    return use.Do(std::move(work));
  }

  [[nodiscard]] bool IsOpen() const { return content_ != nullptr && pid_ == getpid(); }
  [[nodiscard]] bool IsBusy() const { return isBusy_; }

  // Once more does nothing. Raises BusyError.
  void Close() {
    if (!content_ || pid_ != getpid()) return;
    Use use(*this);
    Drop();
  }

  // Lets no use begin any more, waits for the one at work, and closes. False where that takes
  // longer than so many seconds; it is as it was then.
  [[nodiscard]] bool End(double seconds) {
    isEnding_ = true;
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (isBusy_ && std::chrono::steady_clock::now() < end) {
      const Unlocked unlocked;
      std::this_thread::sleep_for(kGlance);
    }
    if (isBusy_) return false;
    if (pid_ == getpid()) Drop();
    return true;
  }
  [[nodiscard]] bool IsEnding() const { return isEnding_; }

 private:
  static constexpr std::chrono::milliseconds kGlance{2};

  void Enter() {
    if (pid_ != getpid()) {
      Raise("ClosedError", "This " + what_ +
                               " was opened before the fork and belongs to the parent process. "
                               "Open another one in this process.");
    }
    if (!content_) {
      Raise("ClosedError", "This " + what_ + " is closed. Open it again.");
    }
    if (isEnding_) Raise("ClosedError", "This " + what_ + " is being closed: the program ends.");
    if (isBusy_) {
      Raise("BusyError", "This " + what_ +
                             " is in use: another thread uses it, or it was called by the "
                             "callback of a step that still runs. Use it from one thread at a "
                             "time.");
    }
    isBusy_ = true;
  }

  void Drop() {
    if (pid_ != getpid()) {
      // Its devices and locks are the parent's.
      static_cast<void>(content_.release());
      return;
    }
    std::unique_ptr<Content> last = std::move(content_);
    const Unlocked unlocked;
    last.reset();
  }

  std::string what_;
  std::unique_ptr<Content> content_;
  pid_t pid_ = getpid();
  bool isBusy_ = false;
  std::atomic<bool> isEnding_ = false;
};

}  // namespace kestrel::python
