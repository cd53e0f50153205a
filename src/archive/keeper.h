// Keeps records in the background: what waits, what is kept, what stands in the way.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>

#include "archive/archive.h"
#include "archive/place.h"

namespace kestrel::archive {

struct KeeperState {
  std::int64_t kept = 0;                 // records and amendments of this keeper that are archived
  std::optional<std::int64_t> lastId{};  // of the last of them
  std::int64_t waiting = 0;              // in the waiting file until the archive takes them
  std::int64_t unsafe = 0;               // in memory only
  std::int64_t refused = 0;              // could never be kept; `trouble` says why
  std::string trouble{};                 // with the cure; empty when all is well
  std::optional<database::Fault> fault{};  // its kind, where the database told one
  Pruned pruned{};                         // what the size limit has removed since the start
  bool operator==(const KeeperState&) const = default;
};

struct KeeperChoice {
  // Make connections; throw DatabaseError. Called from the keeper's own thread.
  std::function<Archive()> open;
  // Of records that wait while the archive cannot be had. Empty: they wait in memory.
  std::function<Archive()> openWaiting{};
  // Whether the waiting file is there.
  std::function<bool()> hasWaiting = [] { return false; };
  // After every change, from the keeper's thread; never after the destructor.
  std::function<void(const KeeperState&)> told = [](const KeeperState&) {};
  std::chrono::milliseconds retry{2000};
  std::optional<std::int64_t> limit{};  // bytes; see Archive::Prune
};

inline constexpr int kKeptBetweenPrunes = 32;

// For an archive at `place`; what waits for it has a file of its own beside the usual one.
[[nodiscard]] KeeperChoice ChoiceFor(const Place& place, const Place& usual);

// A writer of its own: a record is handed over at once, and is archived as soon as it can be, in
// turn. While the archive cannot be had, records go into the waiting file, and are brought over
// when it can, each exactly once.
class Keeper {
 public:
  explicit Keeper(KeeperChoice choice);
  // What is only in memory then is lost: see Finish.
  ~Keeper();
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;

  // The same uid again amends what is kept.
  void Keep(NewRecord record);
  // Waits until every record is on a disk, here or there; false when the time is over first, or
  // when no place could be had while it waited.
  [[nodiscard]] bool Finish(std::chrono::milliseconds patience);
  [[nodiscard]] KeeperState State();

 private:
  using Moment = std::chrono::steady_clock::time_point;

  void Work();
  // False at the end.
  [[nodiscard]] bool WaitForWork();
  void Open();
  // Why some of what waits stays where it is; empty where all was brought over.
  [[nodiscard]] std::string BringOver(Archive& archive);
  [[nodiscard]] std::string BringPart(Archive& archive, std::span<const std::int64_t> ids);
  void LimitSize(Archive& archive);
  void KeepNext(Archive& archive);
  void Rest();
  void PutNextAside();
  Archive& Aside();
  // The first of the queue; null where it is empty.
  [[nodiscard]] const NewRecord* Next();
  // It has been dealt with.
  void Done(const std::function<void(KeeperState&)>& change);
  void Refuse(const std::string& trouble);
  // Until the next try.
  void GiveUp(const RuntimeError& error);
  // Records of the queue; a record and its amendment are one.
  [[nodiscard]] std::int64_t Unsafe() const;
  // Changes the state and tells it.
  void Tell(const std::function<void(KeeperState&)>& change);

  const KeeperChoice choice_;
  std::mutex mutex_;  // of the next five
  std::condition_variable wake_;
  std::condition_variable safe_;
  std::deque<NewRecord> queue_;
  KeeperState state_;
  bool isEnding_ = false;
  int failedTries_ = 0;  // to put a record anywhere
  // Of the thread alone.
  std::optional<Archive> archive_;
  std::optional<Archive> aside_;
  Moment nextTry_{};
  bool canPutAside_ = true;  // until the next try
  int keptSincePrune_ = kKeptBetweenPrunes;
  std::thread thread_;  // begins last
};

}  // namespace kestrel::archive
