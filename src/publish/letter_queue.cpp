// The outbox first, the memory behind it.
// SPDX-License-Identifier: MIT
#include "publish/letter_queue.h"

#include <algorithm>

namespace kestrel::publish {
namespace {

bool& FlagOf(Receivers& receivers, Receiver receiver) {
  return receiver == Receiver::Broker ? receivers.broker : receivers.command;
}

bool FlagOf(const Receivers& receivers, Receiver receiver) {
  return receiver == Receiver::Broker ? receivers.broker : receivers.command;
}

}  // namespace

LetterQueue::LetterQueue(std::function<Outbox()> open, Receivers receivers)
    : open_(std::move(open)), receivers_(receivers) {
  Try([](Outbox&) {});
}

bool LetterQueue::Try(const std::function<void(Outbox&)>& action) {
  try {
    if (!outbox_) outbox_.emplace(open_());
    action(*outbox_);
    // While something could not be written, a read that succeeds is no proof.
    if (memory_.empty() && arrived_.empty()) trouble_.clear();
    return true;
  } catch (const database::DatabaseError& error) {
    trouble_ = error.what();
    // A full disk, or a busy file, may be written later; any other fault needs it opened anew.
    if (error.fault != database::Fault::Full && error.fault != database::Fault::Busy) {
      outbox_.reset();
    }
    return false;
  }
}

// Each step is whole in itself: whatever ends this half-way, the rest follows the next time.
void LetterQueue::BringToDisk() {
  for (auto next = arrived_.begin(); next != arrived_.end(); next = arrived_.erase(next)) {
    if (!Try([&](Outbox& outbox) { outbox.Arrived(next->first, next->second); })) return;
  }
  while (!memory_.empty()) {
    const InMemory& next = memory_.front();
    if (!Try([&](Outbox& outbox) { outbox.Put(next.letter, next.due); })) return;
    memory_.pop_front();
  }
}

bool LetterQueue::Put(const Letter& letter) {
  const std::lock_guard lock(mutex_);
  BringToDisk();
  const bool isOnDisk =
      memory_.empty() && Try([&](Outbox& outbox) { outbox.Put(letter, receivers_); });
  const auto isSame = [&](const InMemory& other) { return other.letter.id == letter.id; };
  if (!isOnDisk && std::ranges::none_of(memory_, isSame)) {
    memory_.push_back({letter, receivers_});
    memory_.back().letter.number = 0;
  }
  return isOnDisk;
}

std::optional<Letter> LetterQueue::Next(Receiver receiver) {
  const std::lock_guard lock(mutex_);
  BringToDisk();
  std::optional<Letter> next;
  std::int64_t after = 0;
  const auto isArrived = [&] { return next && arrived_.contains({receiver, next->number}); };
  do {
    if (next) after = next->number;
    next.reset();
    if (!Try([&](Outbox& outbox) { next = outbox.Next(receiver, after); })) break;
  } while (isArrived());
  return next ? next : NextInMemory(receiver);
}

std::optional<Letter> LetterQueue::NextInMemory(Receiver receiver) const {
  const auto found = std::ranges::find_if(
      memory_, [&](const InMemory& letter) { return FlagOf(letter.due, receiver); });
  return found == memory_.end() ? std::nullopt : std::optional(found->letter);
}

void LetterQueue::Arrived(Receiver receiver, const Letter& letter) {
  const std::lock_guard lock(mutex_);
  if (letter.number > 0) {
    arrived_.insert({receiver, letter.number});
  } else {
    const auto isSame = [&](const InMemory& other) { return other.letter.id == letter.id; };
    const auto found = std::ranges::find_if(memory_, isSame);
    if (found != memory_.end()) {
      FlagOf(found->due, receiver) = false;
    } else {
      // It has been brought to the disk meanwhile.
      Try([&](Outbox& outbox) { outbox.Arrived(receiver, letter.id); });
    }
  }
  BringToDisk();
}

QueueState LetterQueue::State() {
  const std::lock_guard lock(mutex_);
  QueueState state;
  BringToDisk();
  Try([&](Outbox& outbox) { state.waiting = outbox.Waiting(); });
  for (const InMemory& letter : memory_) {
    if (letter.due.broker || letter.due.command) ++state.unsafe;
  }
  state.waiting += state.unsafe;
  state.trouble = trouble_;
  return state;
}

}  // namespace kestrel::publish
