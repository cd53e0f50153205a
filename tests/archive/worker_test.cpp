// Jobs over an archive are done by a thread of its own, in their order, and can be cancelled.
// SPDX-License-Identifier: MIT
#include "archive/worker.h"

#include <future>

#include "support/random_records.h"
#include "support/temporary_database.h"

namespace kestrel::archive {
namespace {

using database::DatabaseError;
using database::Fault;
using testing::ElementsAre;
using Rank = Worker::Rank;

constexpr auto kPatience = std::chrono::seconds(20);
// Does not end by itself.
constexpr const char* kEndless =
    "with recursive n(i) as (select 1 union all select i + 1 from n) select count(*) from n";

class Workers : public testing::TestWithParam<DatabaseKind> {
 protected:
  void SetUp() override { place_ = GetParam().make(); }
  std::function<Archive()> Opens() {
    return [this] {
      ++opened_;
      return Archive(place_->Connect());
    };
  }
  // Whether the job has come to its end.
  static void Wait(std::promise<void>& done) {
    ASSERT_EQ(done.get_future().wait_for(kPatience), std::future_status::ready);
  }
  static void Nothing(const DatabaseError& error) { ADD_FAILURE() << error.what(); }

  std::unique_ptr<TemporaryDatabase> place_;
  std::atomic<int> opened_ = 0;
  RandomRecords records_{5};
};

TEST_P(Workers, JobsAreDoneByRankThenAsTheyCame) {
  Worker worker(Opens());
  std::promise<void> begin;
  std::promise<void> done;
  std::vector<int> order;
  const auto job = [&](Rank rank, int number) {
    worker.Do({rank, [&order, number](Archive&) { order.push_back(number); }, Nothing});
  };
  worker.Do({Rank::Change, [&](Archive&) { begin.get_future().wait(); }, Nothing});
  job(Rank::Pictures, 5);
  job(Rank::Rows, 3);
  job(Rank::Rows, 4);
  job(Rank::Find, 2);
  job(Rank::Change, 1);
  worker.Do({Rank::Pictures, [&](Archive&) { done.set_value(); }, Nothing});
  begin.set_value();
  Wait(done);
  EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5));
  EXPECT_EQ(opened_, 1);
}

TEST_P(Workers, AJobAtWorkIsCancelledAndNobodyIsToldOfIt) {
  Worker worker(Opens());
  std::promise<void> begun;
  worker.Do({Rank::Find,
             [&](Archive& archive) {
               begun.set_value();
               archive.Connection().Run(kEndless);
             },
             Nothing});
  Wait(begun);
  std::promise<void> done;
  worker.Do({Rank::Rows, [&](Archive&) { done.set_value(); }, Nothing});
  auto future = done.get_future();
  const auto end = std::chrono::steady_clock::now() + kPatience;
  while (future.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready) {
    ASSERT_LT(std::chrono::steady_clock::now(), end);
    worker.Cancel(Rank::Find);
  }
}

TEST_P(Workers, WhatWaitsOfARankIsDropped) {
  Worker worker(Opens());
  std::promise<void> begin;
  std::promise<void> done;
  worker.Do({Rank::Change, [&](Archive&) { begin.get_future().wait(); }, Nothing});
  worker.Do({Rank::Pictures, [](Archive&) { ADD_FAILURE(); }, Nothing});
  worker.Cancel(Rank::Pictures);
  worker.Do({Rank::Pictures, [&](Archive&) { done.set_value(); }, Nothing});
  begin.set_value();
  Wait(done);
}

TEST_P(Workers, AtItsEndChangesAreMadeAndReadsAreNot) {
  {
    Worker worker(Opens());
    std::promise<void> begun;
    worker.Do({Rank::Rows,
               [&](Archive& archive) {
                 begun.set_value();
                 archive.Connection().Run(kEndless);
               },
               Nothing});
    Wait(begun);
    worker.Do({Rank::Change,
               [this](Archive& archive) {
                 archive.Keep({NewUid(), records_.Next(), {}, "0.1.0", "bench"});
               },
               Nothing});
    worker.Do({Rank::Rows, [](Archive&) { ADD_FAILURE(); }, Nothing});
  }
  EXPECT_EQ(Archive(place_->Connect()).Count(), 1);
}

TEST_P(Workers, AfterAFaultTheArchiveIsOpenedAgain) {
  std::promise<void> failed;
  std::promise<void> done;
  bool isAway = true;
  Worker worker([&] {
    if (std::exchange(isAway, false)) throw DatabaseError(Fault::Lost, "away");
    return Opens()();
  });
  const auto told = [&](const DatabaseError& error) {
    EXPECT_STREQ(error.what(), "away");
    failed.set_value();
  };
  worker.Do({Rank::Find, [](Archive&) { ADD_FAILURE(); }, told});
  Wait(failed);
  worker.Do({Rank::Find, [&](Archive&) { done.set_value(); }, Nothing});
  Wait(done);
  EXPECT_EQ(opened_, 1);
}

TEST_P(Workers, AChangeIsNotCancelled) {
  Worker worker(Opens());
  std::promise<void> begin;
  std::promise<void> begun;
  std::promise<void> done;
  worker.Do({Rank::Change,
             [&](Archive& archive) {
               begun.set_value();
               begin.get_future().wait();
               archive.Keep({NewUid(), records_.Next(), {}, "0.1.0", "bench"});
             },
             Nothing});
  worker.Do({Rank::Change, [&](Archive&) { done.set_value(); }, Nothing});
  Wait(begun);
  worker.Cancel(Rank::Change);
  begin.set_value();
  Wait(done);
  EXPECT_EQ(Archive(place_->Connect()).Count(), 1);
}

TEST_P(Workers, WhatIsCancelledWhileTheArchiveIsOpenedIsNotBegun) {
  std::promise<void> opens;
  std::promise<void> mayOpen;
  std::promise<void> done;
  Worker worker([&, open = Opens()] {
    opens.set_value();
    mayOpen.get_future().wait();
    return open();
  });
  worker.Do({Rank::Find, [](Archive&) { ADD_FAILURE(); }, Nothing});
  Wait(opens);
  worker.Cancel(Rank::Find);
  worker.Do({Rank::Find, [&](Archive&) { done.set_value(); }, Nothing});
  mayOpen.set_value();
  Wait(done);
  EXPECT_EQ(opened_, 1);
}

TEST_P(Workers, CancellingARankLeavesTheOthers) {
  Worker worker(Opens());
  std::promise<void> begun;
  std::promise<void> begin;
  std::promise<void> done;
  std::vector<int> order;
  worker.Do({Rank::Find,
             [&](Archive& archive) {
               begun.set_value();
               begin.get_future().wait();
               order.push_back(static_cast<int>(archive.Count()));
             },
             Nothing});
  worker.Do({Rank::Rows, [&](Archive&) { order.push_back(1); }, Nothing});
  worker.Do({Rank::Pictures, [](Archive&) { ADD_FAILURE(); }, Nothing});
  Wait(begun);
  worker.Cancel(Rank::Pictures);
  worker.Do({Rank::Pictures, [&](Archive&) { done.set_value(); }, Nothing});
  begin.set_value();
  Wait(done);
  EXPECT_THAT(order, ElementsAre(0, 1));
}

// A cancellation that came too late for the job before.
TEST_P(Workers, WhatIsEndedByMistakeIsDoneAgain) {
  Worker worker(Opens());
  std::promise<void> done;
  int tries = 0;
  worker.Do({Rank::Find,
             [&](Archive&) {
               if (++tries < 3) throw DatabaseError(Fault::Cancelled, "ended");
               done.set_value();
             },
             Nothing});
  Wait(done);
  EXPECT_EQ(tries, 3);
  EXPECT_EQ(opened_, 1);
}

TEST_P(Workers, WhatIsEndedAgainAndAgainIsToldToHaveFailed) {
  Worker worker(Opens());
  std::promise<void> failed;
  std::promise<void> done;
  int tries = 0;
  worker.Do({Rank::Find,
             [&](Archive&) {
               ++tries;
               throw DatabaseError(Fault::Cancelled, "ended");
             },
             [&](const DatabaseError& error) {
               EXPECT_EQ(error.fault, Fault::Cancelled);
               failed.set_value();
             }});
  Wait(failed);
  EXPECT_EQ(tries, 3);
  worker.Do({Rank::Find, [&](Archive&) { done.set_value(); }, Nothing});
  Wait(done);
  EXPECT_EQ(opened_, 1) << "nothing is wrong with the connection";
}

TEST_P(Workers, TheConnectionStaysAfterARefusalAndIsMadeAnewAfterAnyOtherFault) {
  Worker worker(Opens());
  std::vector<std::pair<Fault, std::string>> told;
  std::promise<void> done;
  const auto fails = [&](const std::function<void()>& work) {
    worker.Do({Rank::Find, [work](Archive&) { work(); },
               [&](const DatabaseError& error) { told.emplace_back(error.fault, error.what()); }});
  };
  fails([] { throw DatabaseError(Fault::Constraint, "may not be"); });
  worker.Do({Rank::Find, [this](Archive&) { EXPECT_EQ(opened_, 1); }, Nothing});
  fails([] { throw DatabaseError(Fault::Lost, "away"); });
  worker.Do({Rank::Find, [this](Archive&) { EXPECT_EQ(opened_, 2); }, Nothing});
  fails([] { throw RuntimeError("a word does not fit"); });
  worker.Do({Rank::Find, [&](Archive&) { done.set_value(); }, Nothing});
  Wait(done);
  EXPECT_EQ(opened_, 3);
  EXPECT_THAT(told, ElementsAre(std::pair{Fault::Constraint, std::string("may not be")},
                                std::pair{Fault::Lost, std::string("away")},
                                std::pair{Fault::Other, std::string("a word does not fit")}));
}

KESTREL_ON_EVERY_DATABASE(Workers);

}  // namespace
}  // namespace kestrel::archive
