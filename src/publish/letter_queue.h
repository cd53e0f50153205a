// Alarms that wait, for several threads, through a disk that takes nothing any more.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "publish/outbox.h"

namespace kestrel::publish {

struct QueueState {
  std::int64_t waiting = 0;
  std::int64_t unsafe = 0;  // of these in memory only
  std::string trouble{};    // of the disk; empty when all is well
};

// Letters are handed out in turn, each until it has arrived. Those that the disk does not take wait
// in memory and go there as soon as it does. From any thread.
class LetterQueue {
 public:
  // `open` makes the outbox; it is called again after it threw.
  LetterQueue(std::function<Outbox()> open, Receivers receivers);

  // Whether the letter is on the disk. Its number is not looked at.
  bool Put(const Letter& letter);
  [[nodiscard]] std::optional<Letter> Next(Receiver receiver);
  // Of the letter that Next gave.
  void Arrived(Receiver receiver, const Letter& letter);
  [[nodiscard]] QueueState State();

 private:
  struct InMemory {
    Letter letter;
    Receivers due;
  };

  // Whether the action on the outbox succeeded.
  bool Try(const std::function<void(Outbox&)>& action);
  void BringToDisk();
  [[nodiscard]] std::optional<Letter> NextInMemory(Receiver receiver) const;

  const std::function<Outbox()> open_;
  const Receivers receivers_;
  std::mutex mutex_;  // of all below
  std::optional<Outbox> outbox_;
  std::deque<InMemory> memory_;
  // Letters on the disk that have arrived, which could not be written there.
  std::set<std::pair<Receiver, std::int64_t>> arrived_;
  std::string trouble_;
};

}  // namespace kestrel::publish
