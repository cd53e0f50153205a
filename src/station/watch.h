// How the owner of a station follows a long step, and how a step ends.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "station/noted_messages.h"
#include "station/result.h"

namespace kestrel {

// What is being done, and how far it is: `done` of `total`; with total 0 `done` is in seconds and
// nobody knows how many there will be.
struct Progress {
  std::string activity;
  int done = 0;
  int total = 0;
};

struct Watch {
  std::function<void(const Progress&)> progress;  // none: nobody looks
  // Whether an end was asked for since it was last called; none: nobody asks.
  std::function<bool()> interrupted;

  void Tell(const Progress& now) const {
    if (progress) progress(now);
  }
};

// Makes the failures of steps, with the messages that were noted on the way.
class StepEnd {
 public:
  explicit StepEnd(NotedMessages& messages) : messages_(messages) {}

  // `text` follows on the messages; without either, what the kind says.
  [[nodiscard]] Failure Failed(FailureKind kind, const std::string& text = {});
  [[nodiscard]] Failure Lost(const std::string& text = {}) {
    return Failed(FailureKind::NoSensor, text);
  }

 private:
  NotedMessages& messages_;
};

}  // namespace kestrel
