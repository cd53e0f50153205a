// Alarms that wait, through restarts, kills and full disks.
// SPDX-License-Identifier: MIT
#include "publish/letter_queue.h"

#include <algorithm>

#include "sender_bench.h"
#include "support/killed_child.h"
#include "support/seeds.h"

namespace kestrel::publish {
namespace {

using database::DatabaseError;
using database::Fault;

constexpr Receivers kBoth{.broker = true, .command = true};

// A disk that can be full: reads succeed, writes do not.
class Full : public database::SqliteDatabase {
 public:
  Full(const std::string& file, const bool& isFull)
      : SqliteDatabase({.file = file}), isFull_(isFull) {}
  using Database::Run;
  void Run(const std::string& sql, const database::Values& values,
           const database::OnRow& row) override {
    const bool isWrite = !sql.starts_with("select") && !sql.starts_with("rollback");
    if (isFull_ && isWrite) throw DatabaseError(Fault::Full, "the disk is full");
    SqliteDatabase::Run(sql, values, row);
  }

 private:
  const bool& isFull_;
};

class LetterQueues : public testing::Test {
 protected:
  std::string File() { return (folder_.path() / "outbox.db").string(); }
  std::unique_ptr<LetterQueue> Open(Receivers receivers = kBoth) {
    return std::make_unique<LetterQueue>(
        [this, receivers] { return Outbox(std::make_unique<Full>(File(), isFull_), receivers); },
        receivers);
  }
  // Everything that a receiver gets, in turn.
  static std::vector<int> Drain(LetterQueue& queue, Receiver receiver) {
    std::vector<std::string> payloads;
    while (const auto letter = queue.Next(receiver)) {
      payloads.push_back(letter->payload);
      queue.Arrived(receiver, *letter);
    }
    return NumbersOf(payloads);
  }

  TemporaryFolder folder_;
  bool isFull_ = false;
};

TEST_F(LetterQueues, ALetterStaysUntilItHasArrivedEverywhere) {
  const auto queue = Open();
  EXPECT_TRUE(queue->Put(LetterOf(0)));
  EXPECT_EQ(queue->State().waiting, 1);
  EXPECT_EQ(queue->Next(Receiver::Broker), queue->Next(Receiver::Broker));
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector{0});
  EXPECT_EQ(queue->State().waiting, 1);
  EXPECT_EQ(Drain(*queue, Receiver::Command), std::vector{0});
  EXPECT_EQ(queue->State().waiting, 0);
  EXPECT_EQ(queue->Next(Receiver::Broker), std::nullopt);
}

TEST_F(LetterQueues, ALetterIsTakenOnceEvenAfterItHasArrived) {
  auto queue = Open();
  queue->Put(LetterOf(0));
  queue->Put(LetterOf(0));
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector{0});
  queue = Open();
  EXPECT_TRUE(queue->Put(LetterOf(0)));
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector<int>{});
}

TEST_F(LetterQueues, LettersSurviveARestartInTurn) {
  {
    const auto queue = Open();
    for (int i = 0; i < 20; ++i) queue->Put(LetterOf(i));
  }
  EXPECT_EQ(FaultsOf(Drain(*Open(), Receiver::Broker), 20), "");
}

TEST_F(LetterQueues, AReceiverThatIsNotAskedForKeepsNothingWaiting) {
  Open({.broker = true})->Put(LetterOf(0));
  const auto queue = Open({.command = true});
  EXPECT_EQ(queue->State().waiting, 0);
  queue->Put(LetterOf(1));
  EXPECT_EQ(Drain(*queue, Receiver::Command), std::vector{1});
}

TEST_F(LetterQueues, AFullDiskLosesAndDoublesNothing) {
  const auto queue = Open({.broker = true});
  EXPECT_TRUE(queue->Put(LetterOf(0)));
  isFull_ = true;
  EXPECT_FALSE(queue->Put(LetterOf(1)));
  EXPECT_FALSE(queue->Put(LetterOf(1)));
  EXPECT_FALSE(queue->Put(LetterOf(2)));
  EXPECT_EQ(queue->State().unsafe, 2);
  EXPECT_EQ(queue->State().waiting, 3);
  EXPECT_EQ(queue->State().trouble, "the disk is full");
  // The first is on the disk, where nothing can be written of its arrival.
  for (int number = 0; number < 2; ++number) {
    const auto letter = queue->Next(Receiver::Broker);
    EXPECT_EQ(letter->payload, LetterOf(number).payload);
    queue->Arrived(Receiver::Broker, *letter);
  }
  isFull_ = false;
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector{2});
  EXPECT_EQ(queue->State().waiting, 0);
  EXPECT_EQ(queue->State().trouble, "");
  // All ids are remembered, those of the full disk too.
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(queue->Put(LetterOf(i)));
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector<int>{});
}

TEST_F(LetterQueues, AFullDiskKeepsNeitherReceiverFromItsLetters) {
  const auto queue = Open();
  isFull_ = true;
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(queue->Put(LetterOf(i)));
  const auto first = queue->Next(Receiver::Command);
  ASSERT_TRUE(first);
  queue->Arrived(Receiver::Command, *first);
  EXPECT_EQ(queue->State().unsafe, 2) << "the broker has neither";
  EXPECT_EQ(queue->Next(Receiver::Command)->payload, LetterOf(1).payload);
  EXPECT_EQ(queue->Next(Receiver::Broker)->payload, LetterOf(0).payload);
  queue->Arrived(Receiver::Broker, *queue->Next(Receiver::Broker));
  EXPECT_EQ(queue->State().unsafe, 1);
  isFull_ = false;
  EXPECT_EQ(Drain(*queue, Receiver::Command), std::vector{1});
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector{1});
}

TEST_F(LetterQueues, ALetterThatCameToTheDiskMeanwhileIsKnownToHaveArrived) {
  const auto queue = Open({.broker = true});
  isFull_ = true;
  queue->Put(LetterOf(0));
  const auto letter = queue->Next(Receiver::Broker);
  isFull_ = false;
  queue->Put(LetterOf(1));
  queue->Arrived(Receiver::Broker, *letter);
  EXPECT_EQ(Drain(*queue, Receiver::Broker), std::vector{1});
}

TEST_F(LetterQueues, WithoutAPlaceLettersWaitInMemory) {
  bool isThere = false;
  LetterQueue queue(
      [&] {
        if (!isThere) throw DatabaseError(Fault::Lost, "no folder");
        return Outbox(std::make_unique<Full>(File(), isFull_), {.broker = true});
      },
      {.broker = true});
  EXPECT_FALSE(queue.Put(LetterOf(0)));
  EXPECT_EQ(queue.State().trouble, "no folder");
  isThere = true;
  EXPECT_TRUE(queue.Put(LetterOf(1)));
  EXPECT_EQ(queue.State().unsafe, 0);
  EXPECT_EQ(FaultsOf(Drain(queue, Receiver::Broker), 2), "");
}

TEST_F(LetterQueues, OldLettersAreForgottenWhenTheyHaveArrived) {
  Outbox outbox(std::make_unique<Full>(File(), isFull_), kBoth);
  outbox.Put(LetterOf(0), {.broker = true});
  database::SqliteDatabase other({.file = File()});
  other.Run("update letter set number = 1");
  other.Run(
      "insert into letter(number, id, topic, payload, broker, command) "
      "values($1, 'x', '', '', 0, 0)",
      {1 + kRememberedLetters});
  outbox.Put(LetterOf(1), {});
  EXPECT_EQ(Number(other, "select count(*) from letter where number = 1"), 1) << "still due";
  outbox.Arrived(Receiver::Broker, 1);
  outbox.Put(LetterOf(2), {});
  EXPECT_EQ(Number(other, "select count(*) from letter where number = 1"), 0);
}

// A letter that Put said is on the disk is there, whenever the process is killed.
TEST_F(LetterQueues, AKillLosesNothingThatWasPutIn) {
  const char* wanted = std::getenv("KESTREL_KILLS");
  const int kills = wanted == nullptr ? 20 : std::atoi(wanted);
  const std::string said = (folder_.path() / "said").string();
  Random random(1);
  for (int i = 0; i < kills; ++i) {
    const auto delay = std::chrono::microseconds(random.Below(20'000));
    (void)IsKilledDoing([&] {
      // One half while it opens, the other half while it is in use, however slow the machine.
      if (i % 2 == 0) KillThisProcessIn(delay);
      const auto queue = Open({.broker = true});
      if (i % 2 == 1) KillThisProcessIn(delay);
      for (int number = i * 1000; number < (i + 1) * 1000; ++number) {
        if (queue->Put(LetterOf(number))) {
          std::ofstream(said, std::ios::app) << number << std::endl;
        }
      }
    });
  }
  const std::vector<int> kept = Drain(*Open({.broker = true}), Receiver::Broker);
  EXPECT_TRUE(std::ranges::is_sorted(kept));
  EXPECT_EQ(std::ranges::adjacent_find(kept), kept.end());
  std::ifstream lines(said);
  int count = 0;
  for (int number = 0; lines >> number; ++count) {
    EXPECT_TRUE(std::ranges::binary_search(kept, number)) << number;
  }
  EXPECT_GT(count, kills / 4);
}

}  // namespace
}  // namespace kestrel::publish
