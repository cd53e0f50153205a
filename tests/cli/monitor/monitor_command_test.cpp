// Tests of the monitor's command: plans checked and printed.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "cli/program_bench.h"
#include "monitor/plan/plan.h"
#include "support/temporary_folder.h"

namespace kestrel {
namespace {

constexpr const char* kPlan =
    "bench = Hall 3\nsensor = Pump 7\nconnect = simulated\nevery = 10 s\n[capture]\nrange = 5\n";

class MonitorCommandTest : public ProgramBench {
 protected:
  ExitCode Check(const std::string& text, std::vector<std::string> more = {}) {
    files.contents["/data/pump.plan"] = text;
    more.insert(more.end(), {"monitor", "/data/pump.plan", "--check"});
    return Run(more);
  }
};

TEST_F(MonitorCommandTest, AGoodPlanIsSaidToBeGood) {
  EXPECT_EQ(Check(kPlan), ExitCode::Success);
  EXPECT_EQ(out.str(),
            "The plan is good: Hall 3, Pump 7, every 10 s; option 0, 5 g, hanning, 1 average.\n");
  EXPECT_EQ(error.str(), "");
}

TEST_F(MonitorCommandTest, EachMistakeIsALineWithFileAndLine) {
  EXPECT_EQ(Check("bench = Hall 3\nsensor = Pump 7\nevery = x\n[capture]\nrange = 7\n"),
            ExitCode::Failure);
  EXPECT_EQ(error.str(),
            "/data/pump.plan:3: every: \"x\" is not a time like 10 s, 5 min, 1 h or 1 d\n"
            "/data/pump.plan:5: range: \"7\" is not one of 1, 5, 20, 70 (g)\n");
  EXPECT_EQ(out.str(), "");
}

TEST_F(MonitorCommandTest, MistakesAreToldAsJsonToo) {
  EXPECT_EQ(
      Check("bench = Hall 3\nsensor = Pump 7\nevery = 1 s\n[capture]\nrange = 7\n", {"--json"}),
      ExitCode::Failure);
  const auto json = nlohmann::json::parse(out.str());
  EXPECT_FALSE(json["good"].get<bool>());
  ASSERT_EQ(json["mistakes"].size(), 1U);
  EXPECT_EQ(json["mistakes"][0]["line"], 5);
}

TEST_F(MonitorCommandTest, APlanThatIsNotThereIsNamed) {
  EXPECT_EQ(Run({"monitor", "/data/none.plan", "--check"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "The plan /data/none.plan cannot be read.\n");
}

TEST_F(MonitorCommandTest, NeedsAPlan) {
  EXPECT_EQ(Run({"monitor"}), ExitCode::Usage);
  EXPECT_EQ(error.str(), "monitor: a plan is needed; --from-sensor prints one.\n");
}

TEST_F(MonitorCommandTest, PrintsAPlanOfThePresentSettings) {
  EXPECT_EQ(
      Simulate({"--scenario", "bearing-fault", "monitor", "--from-sensor", "--sensor", "Pump"}),
      ExitCode::Success)
      << error.str();
  const auto read = monitor::PlanOf(out.str());
  ASSERT_TRUE(std::holds_alternative<monitor::Plan>(read)) << out.str();
  const auto& plan = std::get<monitor::Plan>(read);
  EXPECT_EQ(plan.bench, "bench 1");
  EXPECT_EQ(plan.sensor, "Pump");
  EXPECT_TRUE(plan.road.simulated);
  EXPECT_EQ(plan.road.scenario, "bearing-fault");
  ASSERT_EQ(plan.steps.size(), 1U);
  const std::string text = out.str();
  EXPECT_EQ(Check(text), ExitCode::Success);
}

TEST_F(MonitorCommandTest, RunsUntilItIsToldToEndAndKeepsWhatItCaptured) {
  const TemporaryFolder folder;
  usualArchive = {(folder.path() / "archive.db").string()};
  files.contents["/data/pump.plan"] = kPlan;
  const auto start = clock.Monotonic();
  ending = [&] { return clock.Monotonic() - start > std::chrono::seconds{35}; };
  EXPECT_EQ(Run({"monitor", "/data/pump.plan"}), ExitCode::Success) << error.str();
  EXPECT_TRUE(out.str().starts_with("Monitoring Pump 7 at Hall 3, into ")) << out.str();
  EXPECT_NE(out.str().find("Kept record "), std::string::npos);
  auto archive = archive::Open(usualArchive);
  EXPECT_EQ(archive.Count(), 4);
}

TEST_F(MonitorCommandTest, NeedsAnArchive) {
  files.contents["/data/pump.plan"] = kPlan;
  EXPECT_EQ(Run({"monitor", "/data/pump.plan"}), ExitCode::Failure);
  EXPECT_EQ(error.str(), "monitor: records need an archive; name one with --archive.\n");
}

TEST_F(MonitorCommandTest, BandsThatCannotBeReadAreAMistakeOfTheirStep) {
  EXPECT_EQ(Check(std::string(kPlan) + "bands = none.csv\n"), ExitCode::Failure);
  EXPECT_TRUE(error.str().starts_with("/data/pump.plan:5: bands: ")) << error.str();
  EXPECT_NE(error.str().find("/data/none.csv"), std::string::npos) << error.str();
}

}  // namespace
}  // namespace kestrel
