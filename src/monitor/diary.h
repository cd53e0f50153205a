// The journal's way to the archive: on this machine's disk at once, in the archive when it can be.
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "archive/worker.h"
#include "monitor/local_store.h"

namespace kestrel::monitor {

// Names of the texts that the next start reads.
namespace past {
inline constexpr const char* kAccounted = "accounted";
inline constexpr const char* kEnded = "ended";
inline constexpr const char* kAlarms = "alarms";
inline constexpr const char* kLevels = "levels";
inline constexpr const char* kUntold = "untold";
inline constexpr const char* kRecent = "recent";
}  // namespace past

struct DiaryChoice {
  // Make connections; throw DatabaseError. The archive's is called from a thread of the diary's.
  std::function<std::unique_ptr<database::Database>()> openLocal;
  std::function<archive::Archive()> openArchive;
  std::chrono::milliseconds retry{2000};
};

// Belongs to one thread. While the disk takes nothing, what was put waits in memory.
class Diary {
 public:
  explicit Diary(DiaryChoice choice);

  struct Past {
    std::vector<archive::JournalEntry> open{};
    LocalStore::Texts texts{};
  };
  // What the last run left. Throws DatabaseError.
  [[nodiscard]] Past Read();

  // From the next Flush on on the disk; of the same entry or name only the latest.
  void Put(const archive::JournalEntry& entry);
  void Set(const std::string& name, std::string value);
  // False where the disk does not take it; what was put stays, for the next time.
  bool Flush();
  // Why it did not.
  [[nodiscard]] const std::optional<database::DatabaseError>& Trouble() const { return trouble_; }

  // Hands what waits to the thread that brings it to the archive, where that is idle.
  void Bring();
  // Whether all that was flushed is in the archive. Waits for what is under way.
  [[nodiscard]] bool BringAll(std::chrono::milliseconds patience);

 private:
  using Clock = std::chrono::steady_clock;
  struct Shared {  // with the archive's thread
    std::mutex mutex;
    bool isAtWork = false;
    std::vector<LocalStore::Waiting> brought;
    Clock::time_point nextTry{};
  };
  LocalStore& Store();
  void NoteBrought();

  DiaryChoice choice_;
  std::unique_ptr<LocalStore> store_;
  std::map<archive::Uid, std::size_t> places_;  // in entries_
  std::vector<archive::JournalEntry> entries_;
  LocalStore::Texts texts_;
  std::optional<database::DatabaseError> trouble_;
  bool mayWait_ = true;  // entries that the archive does not have
  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
  archive::Worker worker_;  // ends first
};

}  // namespace kestrel::monitor
