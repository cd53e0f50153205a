// The real command-line program, run as the window runs it.
// SPDX-License-Identifier: MIT
#include "archive/journal.h"
#include "archive/place.h"
#include "support/fake_clock.h"
#include "support/temporary_folder.h"
#include "ui/watch/cli_process.h"
#include "ui/watch/monitor_runner.h"

namespace kestrel {
namespace {

constexpr const char* kPlan =
    "bench = Hall 3\nsensor = Pump 7\nconnect = simulated\nevery = 2 s\n[capture]\naverages = 1\n";

class RealMonitor : public testing::Test {
 protected:
  RealMonitor() {
    qputenv("XDG_DATA_HOME", folder_.path().c_str());
    qputenv("KESTREL_LOCKS", folder_.path().c_str());
  }
  MonitorRunner::Wish Wish(const std::string& text = kPlan) {
    const auto file = folder_.Write("pump.plan", text);
    return {.plan = std::get<monitor::Plan>(monitor::PlanOf(kPlan)),
            .file = QString::fromStdString(file.string()),
            .archive = {(folder_.path() / "archive.db").string()}};
  }
  static bool Gets(const std::function<bool()>& state) { return QTest::qWaitFor(state, 60'000); }
  bool Keeps(std::int64_t records) {
    return Gets([&] { return runner_->Account() && runner_->Account()->records >= records; });
  }
  bool Ends() {
    return Gets([&] { return !runner_->Running(); });
  }
  std::vector<archive::JournalEntry> Journal() {
    auto archive = archive::Open(Wish().archive);
    return EntriesOf(archive);
  }
  std::unique_ptr<MonitorRunner> MakeRunner(const QString& program) {
    return std::make_unique<MonitorRunner>(clock_, MonitorRunner::Deeds{.make = [program] {
                                             return std::make_unique<CliProcess>(program);
                                           }});
  }

  TemporaryFolder folder_;
  FakeClock clock_;
  std::unique_ptr<MonitorRunner> runner_ = MakeRunner(KESTREL_CLI);
};

TEST_F(RealMonitor, CapturesByThePlanAndEndsInOrderWhenAsked) {
  ASSERT_EQ(runner_->Start(Wish()), QString());
  ASSERT_TRUE(Keeps(2)) << runner_->Trouble().toStdString();
  EXPECT_TRUE(runner_->Account()->isConnected);
  EXPECT_TRUE(runner_->Account()->lastRecord);
  runner_->Stop();
  ASSERT_TRUE(Ends());
  EXPECT_EQ(runner_->Trouble(), QString());
  auto archive = archive::Open(runner_->Place());
  EXPECT_EQ(archive.Count(), runner_->Account()->records);
}

TEST_F(RealMonitor, ASecondOneEndsByItselfAndSaysWhoRuns) {
  ASSERT_EQ(runner_->Start(Wish()), QString());
  ASSERT_TRUE(Keeps(1));
  const auto second = MakeRunner(KESTREL_CLI);
  ASSERT_EQ(second->Start(Wish()), QString());
  ASSERT_TRUE(Gets([&] { return !second->Running(); }));
  EXPECT_TRUE(second->Trouble().contains("A monitor of Pump 7 at Hall 3 runs already: kestrel-cli"))
      << second->Trouble().toStdString();
  runner_->Stop();
  ASSERT_TRUE(Ends());
}

TEST_F(RealMonitor, LeftToItselfItEndsInOrder) {
  ASSERT_EQ(runner_->Start(Wish()), QString());
  ASSERT_TRUE(Keeps(1));
  runner_ = MakeRunner(KESTREL_CLI);  // as the window goes
  // The next one begins once the first has ended, and tells how that was.
  ASSERT_TRUE(Gets([&] {
    if (!runner_->Running()) {
      EXPECT_EQ(runner_->Start(Wish()), QString());
    }
    return runner_->Account() && runner_->Account()->records >= 1;
  }));
  runner_->Stop();
  ASSERT_TRUE(Ends());
  const auto journal = Journal();
  ASSERT_FALSE(journal.empty());
  EXPECT_EQ(journal.back().text, "The monitor was stopped and started again.");
}

TEST_F(RealMonitor, AProgramThatIsNotThereIsToldAsSuch) {
  runner_ = MakeRunner(QString::fromStdString((folder_.path() / "nothing").string()));
  ASSERT_EQ(runner_->Start(Wish()), QString());
  ASSERT_TRUE(Ends());
  EXPECT_TRUE(runner_->Trouble().contains("cannot be run")) << runner_->Trouble().toStdString();
}

TEST_F(RealMonitor, APlanThatIsNoneIsToldWithTheProgramsOwnWords) {
  ASSERT_EQ(runner_->Start(Wish("bench = x\n")), QString());
  ASSERT_TRUE(Ends());
  EXPECT_TRUE(runner_->Trouble().contains("pump.plan")) << runner_->Trouble().toStdString();
}

}  // namespace
}  // namespace kestrel
