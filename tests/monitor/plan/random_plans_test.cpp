// Plans with anything in them, written as text and read again.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "archive/place.h"
#include "monitor/plan/plan.h"
#include "simulator/signal/scenario.h"
#include "support/seeds.h"

namespace kestrel::monitor {
namespace {

// What can stand in a line, with what would mean something elsewhere in a plan.
std::string RandomName(Random& random) {
  static const std::vector<std::string> kParts{
      "Pump", "#", " ", "=", "[wide]", "\"", "'", "K\u00FChl", "7", ",", "\u05D0", "\\n", "%", ";"};
  std::string name = random.OneIn(4) ? "#" : "x";
  for (int parts = random.Below(8); parts > 0; --parts) name += random.Of(kParts);
  while (name.back() == ' ') name.pop_back();
  return name;
}

double RandomNumber(Random& random, int most) {
  return random.OneIn(3) ? random.Below(most) : random.Below(most) + random.Word() / 65537.0;
}

Road RandomRoad(Random& random) {
  switch (random.Below(5)) {
    case 0:
      return {};
    case 1:
      return {.simulated = true};
    case 2: {
      const auto names = ScenarioNames();
      return {.simulated = true,
              .scenario =
                  names[static_cast<std::size_t>(random.Below(static_cast<int>(names.size())))]};
    }
    case 3:
      return {.adapter = random.Below(4)};
    default:
      return random.OneIn(2) ? Road{.parallelAddress = static_cast<std::int16_t>(random.Word())}
                             : Road{.portDevice = "/dev/" + RandomName(random)};
  }
}

Step RandomStep(Random& random) {
  Step step{.kind = static_cast<StepKind>(random.Below(3)),
            .range = static_cast<std::int16_t>(random.Below(4)),
            .window = static_cast<std::int16_t>(random.Below(3)),
            .averages = static_cast<std::int16_t>(random.Between(1, 255))};
  if (step.kind != StepKind::Wide) step.option = static_cast<std::int16_t>(random.Below(4));
  if (step.kind == StepKind::Spectrum && random.OneIn(2)) step.bands = RandomName(random);
  return step;
}

Judging RandomJudging(Random& random) {
  Judging judging;
  judging.rule.n = random.Between(1, 100);
  judging.rule.m = random.Between(1, static_cast<int>(judging.rule.n));
  judging.rule.hysteresisDb = RandomNumber(random, 59);
  judging.severityWarning = static_cast<analysis::Zone>(random.Between(1, 3));
  judging.severityFault =
      static_cast<analysis::Zone>(random.Between(static_cast<int>(judging.severityWarning), 3));
  if (random.OneIn(2)) {
    const auto rows = analysis::SeverityTables().front().rows;
    judging.severity = rows[static_cast<std::size_t>(random.Below(static_cast<int>(rows.size())))];
  } else if (random.OneIn(2)) {
    judging.severity =
        analysis::ZoneLimits{.name = "0.25 4.5 100", .ab = 0.25, .bc = 4.5, .cd = 100};
  }
  return judging;
}

Plan RandomPlan(Random& random) {
  Plan plan{.bench = RandomName(random), .sensor = RandomName(random), .road = RandomRoad(random)};
  if (random.OneIn(2)) plan.archive = RandomName(random);
  plan.every = std::chrono::seconds(random.Between(21'600, 2'678'400));  // longer than any step
  for (std::string* text : {&plan.remarks.machine, &plan.remarks.point, &plan.remarks.orientation,
                            &plan.remarks.note}) {
    if (random.OneIn(2)) *text = RandomName(random);
  }
  if (random.OneIn(2)) plan.remarks.rpm = RandomNumber(random, 99'999);
  for (int steps = random.Between(1, 5); steps > 0; --steps) {
    plan.steps.push_back(RandomStep(random));
  }
  if (random.OneIn(10)) plan.steps = {{.kind = StepKind::Timer, .bands = "bands.csv"}};
  if (plan.FollowsTimer()) plan.every = std::chrono::seconds(random.Between(1, 255) * 60);
  if (random.OneIn(2)) plan.judging = RandomJudging(random);
  if (random.OneIn(2)) plan.publish = {{0, "broker", "localhost"}, {0, "user", RandomName(random)}};
  return plan;
}

void ForgetLines(Plan& plan) {
  for (Step& step : plan.steps) step.line = 0;
  for (PlanLine& line : plan.publish) line.line = 0;
}

TEST(RandomPlans, AreReadAsTheyWereWritten) {
  WithSeeds(1000, [](Random& random) {
    const Plan plan = RandomPlan(random);
    const std::string text = TextOf(plan);
    auto read = PlanOf(text);
    if (const auto* mistakes = std::get_if<Mistakes>(&read)) {
      FAIL() << mistakes->front().Text("plan") << "\n" << text;
    }
    ForgetLines(std::get<Plan>(read));
    ASSERT_EQ(std::get<Plan>(read), plan) << text;
  });
}

TEST(ArchiveOf, IsThePlansOwnOrElseTheUsualOne) {
  const archive::Place usual{"/data/archive.db"};
  EXPECT_EQ(ArchiveOf({}, usual), usual);
  EXPECT_EQ(ArchiveOf({.archive = "postgresql://db/kestrel"}, usual).text,
            "postgresql://db/kestrel");
}

}  // namespace
}  // namespace kestrel::monitor
