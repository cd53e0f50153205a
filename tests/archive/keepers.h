// Keepers for an archive and a waiting file that can be taken away.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "archive/keeper.h"
#include "archive/wrapped_database.h"
#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {

inline constexpr auto kPatience = std::chrono::seconds(20);

class Keepers : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override { place_ = GetParam().make(); }

  KeeperChoice Choice() {
    return {.open = [this] { return Archive(Connection(*place_, isAway_)); },
            .openWaiting = [this] { return Archive(Connection(waiting_, isWaitingAway_)); },
            .hasWaiting = [this] { return std::filesystem::exists(waiting_.Name()); },
            .retry = std::chrono::milliseconds(5)};
  }
  std::unique_ptr<database::Database> Connection(TemporaryDatabase& place,
                                                 const std::atomic<bool>& isAway) {
    if (isAway) throw database::DatabaseError(database::Fault::Lost, "the server is away");
    return std::make_unique<WrappedDatabase>(place.Connect(), [&isAway](const std::string&) {
      if (isAway) throw database::DatabaseError(database::Fault::Lost, "the server is away");
    });
  }
  NewRecord Made() { return {NewUid(), records_.Next(), {}, "0.1.0", "bench 1"}; }
  bool Gets(Keeper& keeper, const std::function<bool(const KeeperState&)>& state) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < end) {
      if (state(keeper.State())) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
  }
  std::int64_t Count() { return Archive(place_->Connect()).Count(); }
  std::int64_t Waiting() { return Archive(waiting_.Connect()).Count(); }

  std::unique_ptr<TemporaryDatabase> place_;
  TemporaryFile waiting_;
  std::atomic<bool> isAway_ = false;
  std::atomic<bool> isWaitingAway_ = false;
  RandomRecords records_{2};
};

}  // namespace kestrel::archive
