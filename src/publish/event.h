// Wakes a thread that waits with poll.
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "numeric/runtime_error.h"

namespace kestrel::publish {

// Set from any thread; it stays set until it is reset.
class Event {
 public:
  Event() : number_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (number_ < 0) {
      throw RuntimeError(std::string("the system has no room to publish (") + std::strerror(errno) +
                         "): end other programs, or raise the limit of open files");
    }
  }
  ~Event() { close(number_); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void Set() const { eventfd_write(number_, 1); }
  void Reset() const {
    eventfd_t count = 0;
    eventfd_read(number_, &count);
  }
  [[nodiscard]] int Number() const { return number_; }  // can be read while it is set

 private:
  const int number_;
};

}  // namespace kestrel::publish
