// The keeper's thread.
// SPDX-License-Identifier: MIT
#include "archive/keeper.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <utility>
#include <vector>

#include "numeric/hash.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using database::Fault;

constexpr std::size_t kBroughtAtOnce = 64;

std::string RefusalFor(const std::string& trouble) {
  return "A record cannot be archived: " + trouble + ".";
}

// The waiting file's, which is no reason to do without the archive. Whoever else writes to it is
// soon done.
class AsideFault : public RuntimeError {
 public:
  explicit AsideFault(const DatabaseError& error)
      : RuntimeError("Records that wait to be archived cannot be brought over: " +
                     std::string(error.what())) {}
};
template <typename Action>
auto OfAside(const Action& action) {
  try {
    return action();
  } catch (const DatabaseError& error) {
    if (error.fault == Fault::Busy) throw;
    throw AsideFault(error);
  }
}

}  // namespace

KeeperChoice ChoiceFor(const Place& place, const Place& usual) {
  KeeperChoice choice{.open = [place] { return Open(place); }};
  if (usual.text.empty()) return choice;
  std::array<char, 17> name{};
  std::snprintf(name.data(), name.size(), "%016llx",
                static_cast<unsigned long long>(HashOf(place.text)));
  const Place waiting = WaitingPlace(usual, name.data());
  choice.openWaiting = [waiting] { return Open(waiting); };
  choice.hasWaiting = [waiting] { return std::filesystem::exists(PathOf(waiting)); };
  return choice;
}

Keeper::Keeper(KeeperChoice choice) : choice_(std::move(choice)), thread_([this] { Work(); }) {}

Keeper::~Keeper() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void Keeper::Keep(NewRecord record) {
  {
    const std::lock_guard lock(mutex_);
    // The first may be at work.
    if (queue_.size() > 1 && queue_.back().uid == record.uid) {
      queue_.back() = std::move(record);
    } else {
      queue_.push_back(std::move(record));
    }
    state_.unsafe = Unsafe();
  }
  wake_.notify_all();
}

std::int64_t Keeper::Unsafe() const {
  const bool isAmended = queue_.size() > 1 && queue_[0].uid == queue_[1].uid;
  return static_cast<std::int64_t>(queue_.size()) - (isAmended ? 1 : 0);
}

bool Keeper::Finish(std::chrono::milliseconds patience) {
  std::unique_lock lock(mutex_);
  // One may be under way already, and have begun before the place came back.
  const int hopeless = failedTries_ + 2;
  safe_.wait_for(lock, patience, [&] { return queue_.empty() || failedTries_ >= hopeless; });
  return queue_.empty();
}

KeeperState Keeper::State() {
  const std::lock_guard lock(mutex_);
  return state_;
}

void Keeper::Tell(const std::function<void(KeeperState&)>& change) {
  KeeperState state;
  {
    const std::lock_guard lock(mutex_);
    const KeeperState before = state_;
    change(state_);
    state_.unsafe = Unsafe();
    if (before == state_) return;
    state = state_;
  }
  choice_.told(state);
}

void Keeper::Work() {
  while (WaitForWork()) {
    if (!archive_ && std::chrono::steady_clock::now() >= nextTry_) Open();
    archive_ ? KeepNext(*archive_) : PutNextAside();
    Rest();
  }
}

// Between two records nothing is held: what a program takes does not depend on how long it runs.
void Keeper::Rest() {
  if (Next() != nullptr) return;
  for (std::optional<Archive>* archive : {&archive_, &aside_}) {
    if (*archive) (*archive)->Connection().ReleaseMemory();
  }
}

bool Keeper::WaitForWork() {
  std::unique_lock lock(mutex_);
  const auto canWork = [&] { return !queue_.empty() && (archive_ || canPutAside_); };
  const auto hasReason = [&] { return canWork() || isEnding_; };
  if (archive_) {
    wake_.wait(lock, hasReason);
  } else {
    wake_.wait_until(lock, nextTry_, hasReason);
  }
  return !isEnding_ || canWork();
}

void Keeper::Open() {
  canPutAside_ = true;
  try {
    const std::string obstacle = BringOver(archive_.emplace(choice_.open()));
    Tell([&](KeeperState& state) {
      state.trouble = obstacle;
      state.fault.reset();
      if (obstacle.empty()) state.waiting = 0;
    });
  } catch (const RuntimeError& error) {
    GiveUp(error);
  }
}

void Keeper::GiveUp(const RuntimeError& error) {
  archive_.reset();
  nextTry_ = std::chrono::steady_clock::now() + choice_.retry;
  const auto* told = dynamic_cast<const DatabaseError*>(&error);
  Tell([&](KeeperState& state) {
    state.trouble = error.what();
    state.fault = told == nullptr ? std::nullopt : std::optional{told->fault};
  });
}

// Whatever ends this half-way: what was brought over twice is one record, by its uid. Another
// program may bring over the same ones at the same time, and put others in their place.
std::string Keeper::BringOver(Archive& archive) {
  if (!aside_ && !choice_.hasWaiting()) return {};
  std::string obstacle;
  try {
    std::vector<std::int64_t> ids = OfAside([&] { return Aside().Find({}); });
    std::ranges::reverse(ids);  // the oldest first
    for (std::size_t from = 0; from < ids.size(); from += kBroughtAtOnce) {
      const auto part = std::span(ids).subspan(from, std::min(kBroughtAtOnce, ids.size() - from));
      if (BringPart(archive, part).empty()) continue;
      for (const std::int64_t& id : part) {
        const std::string why = BringPart(archive, std::span(&id, 1));
        if (!why.empty()) obstacle = why;
      }
    }
  } catch (const AsideFault& fault) {
    obstacle = fault.what();
  }
  if (!obstacle.empty()) aside_.reset();
  return obstacle;
}

// All of them or none; why none.
std::string Keeper::BringPart(Archive& archive, std::span<const std::int64_t> ids) {
  std::vector<NewRecord> records;
  try {
    std::vector<std::pair<std::int64_t, Uid>> brought;
    for (const std::int64_t id : ids) {
      auto record = OfAside([&] { return aside_->Get(id); });
      if (!record) continue;
      brought.emplace_back(id, record->uid);
      records.push_back(std::move(*record));
    }
    archive.KeepAll(records);
    OfAside([&] { aside_->RemoveKnown(brought); });
  } catch (const AsideFault& fault) {
    return fault.what();
  } catch (const DatabaseError& error) {
    if (error.fault != Fault::Constraint) throw;
    return RefusalFor(error.what());
  }
  Tell([&](KeeperState& state) { state.kept += static_cast<std::int64_t>(records.size()); });
  return {};
}

void Keeper::LimitSize(Archive& archive) {
  if (!choice_.limit || ++keptSincePrune_ < kKeptBetweenPrunes) return;
  keptSincePrune_ = 0;
  const Pruned pruned = archive.Prune(*choice_.limit);
  Tell([&](KeeperState& state) {
    if (pruned.count > 0) {
      if (state.pruned.count == 0) state.pruned.oldest = pruned.oldest;
      state.pruned.newest = pruned.newest;
      state.pruned.count += pruned.count;
    }
    state.pruned.isEnough = pruned.isEnough;
  });
}

void Keeper::KeepNext(Archive& archive) {
  const NewRecord* next = Next();
  if (next == nullptr) return;
  try {
    const std::int64_t id = archive.Keep(*next);
    Done([&](KeeperState& state) {
      ++state.kept;
      state.lastId = id;
    });
    LimitSize(archive);
  } catch (const DatabaseError& error) {
    error.fault == Fault::Constraint ? Refuse(error.what()) : GiveUp(error);
  } catch (const RuntimeError& error) {
    Refuse(error.what());
  }
}

void Keeper::PutNextAside() {
  const NewRecord* next = Next();
  if (next == nullptr) return;
  try {
    if (!choice_.openWaiting) throw RuntimeError("there is no place for a waiting file");
    Aside().Keep(*next);
    const std::int64_t waiting = Aside().Count();
    Done([&](KeeperState& state) { state.waiting = waiting; });
  } catch (const RuntimeError&) {
    // The state tells that it is in memory only; the trouble with the archive itself stays told.
    aside_.reset();
    canPutAside_ = false;
    {
      const std::lock_guard lock(mutex_);
      ++failedTries_;
    }
    safe_.notify_all();
    Tell([](KeeperState&) {});
  }
}

Archive& Keeper::Aside() {
  if (!aside_) aside_.emplace(choice_.openWaiting());
  return *aside_;
}

// Others add at the end only, which moves nothing.
const NewRecord* Keeper::Next() {
  const std::lock_guard lock(mutex_);
  return queue_.empty() ? nullptr : &queue_.front();
}

void Keeper::Done(const std::function<void(KeeperState&)>& change) {
  Tell([&](KeeperState& state) {
    queue_.pop_front();
    change(state);
  });
  safe_.notify_all();
}

void Keeper::Refuse(const std::string& trouble) {
  Done([&](KeeperState& state) {
    ++state.refused;
    state.trouble = RefusalFor(trouble);
  });
}

}  // namespace kestrel::archive
