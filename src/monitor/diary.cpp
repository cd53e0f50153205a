// Entries saved, brought over, and noted as brought.
// SPDX-License-Identifier: MIT
#include "monitor/diary.h"

#include <thread>
#include <utility>

namespace kestrel::monitor {
namespace {

using database::DatabaseError;

constexpr std::int64_t kAtOnce = 200;

}  // namespace

Diary::Diary(DiaryChoice choice) : choice_(std::move(choice)), worker_(choice_.openArchive) {}

LocalStore& Diary::Store() {
  if (!store_) store_ = std::make_unique<LocalStore>(choice_.openLocal());
  return *store_;
}

Diary::Past Diary::Read() {
  return {.open = Store().Open(), .texts = Store().AllTexts()};
}

void Diary::Put(const archive::JournalEntry& entry) {
  const auto [place, isNew] = places_.try_emplace(entry.uid, entries_.size());
  if (isNew) {
    entries_.push_back(entry);
  } else {
    entries_[place->second] = entry;
  }
}

void Diary::Set(const std::string& name, std::string value) {
  texts_[name] = std::move(value);
}

bool Diary::Flush() {
  if (entries_.empty() && texts_.empty()) return true;
  try {
    Store().Save(entries_, texts_);
  } catch (const DatabaseError& error) {
    store_.reset();
    trouble_ = error;
    return false;
  }
  mayWait_ = mayWait_ || !entries_.empty();
  entries_.clear();
  places_.clear();
  texts_.clear();
  trouble_.reset();
  return true;
}

void Diary::NoteBrought() {
  std::vector<LocalStore::Waiting> brought;
  {
    const std::lock_guard lock(shared_->mutex);
    brought.swap(shared_->brought);
  }
  if (!brought.empty()) Store().Brought(brought);
}

void Diary::Bring() {
  try {
    NoteBrought();
    {
      const std::lock_guard lock(shared_->mutex);
      if (!mayWait_ || shared_->isAtWork || Clock::now() < shared_->nextTry) return;
    }
    auto waiting = Store().NotBrought(kAtOnce);
    mayWait_ = !waiting.empty();
    if (!mayWait_) return;
    {
      const std::lock_guard lock(shared_->mutex);
      shared_->isAtWork = true;
    }
    const auto shared = shared_;
    const auto retry = choice_.retry;
    worker_.Do({.rank = archive::Worker::Rank::Change,
                .work =
                    [shared, waiting = std::move(waiting)](archive::Archive& archive) {
                      std::vector<archive::JournalEntry> entries;
                      for (const auto& one : waiting) entries.push_back(one.entry);
                      PutEntries(archive, entries);
                      const std::lock_guard lock(shared->mutex);
                      shared->brought = waiting;
                      shared->isAtWork = false;
                    },
                .failed =
                    [shared, retry](const DatabaseError&) {
                      const std::lock_guard lock(shared->mutex);
                      shared->isAtWork = false;
                      shared->nextTry = Clock::now() + retry;
                    }});
  } catch (const DatabaseError& error) {
    store_.reset();
    trouble_ = error;
  }
}

bool Diary::BringAll(std::chrono::milliseconds patience) {
  const auto end = Clock::now() + patience;
  while (Clock::now() < end) {
    Bring();
    {
      const std::lock_guard lock(shared_->mutex);
      if (!mayWait_ && !shared_->isAtWork && shared_->brought.empty()) return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds{2});
  }
  return false;
}

}  // namespace kestrel::monitor
