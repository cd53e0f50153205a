// Arbitrary text read as the plan of a monitor.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "exchange/texts.h"
#include "monitor/plan/plan.h"
#include "require.h"

namespace kestrel::monitor {
namespace {

void CheckMistakes(const Mistakes& mistakes, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
  Require(!mistakes.empty(), "what is refused has a reason");
  for (const Mistake& mistake : mistakes) {
    const std::string told = mistake.Text("f");
    Require(mistake.line <= lines, "the line is there");
    Require(told.starts_with("f") && !mistake.what.empty() && told.size() < 800,
            "a mistake is a short text that names the file");
    Require(exchange::IsUtf8(told), "of characters");
    for (const char c : told) Require(static_cast<unsigned char>(c) >= ' ', "on one line");
  }
}

// Written anew its lines have other numbers.
Plan WithoutLines(Plan plan) {
  for (Step& step : plan.steps) step.line = 0;
  for (PlanLine& line : plan.publish) line.line = 0;
  return plan;
}

void CheckPlan(const Plan& plan) {
  Require(!plan.steps.empty() && plan.steps.size() <= kMostSteps, "there is something to capture");
  Require(plan.every >= kShortestPeriod && plan.every <= kLongestPeriod, "now and then");
  for (const Step& step : plan.steps) {
    Require(step.range >= 0 && step.range <= 3 && step.option >= 0 && step.option <= 3 &&
                step.window >= 0 && step.window <= 2 && step.averages >= 1 && step.averages <= 255,
            "with settings that the sensor has");
    Require(!NameOf(step).empty() && ShortestTimeOf(step).count() > 0, "that take their time");
  }
  const auto again = PlanOf(TextOf(plan));
  const auto* same = std::get_if<Plan>(&again);
  Require(same != nullptr, "what is written is read again");
  Require(WithoutLines(*same) == WithoutLines(plan), "as the same plan");
}

}  // namespace
}  // namespace kestrel::monitor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel::monitor;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto read = PlanOf(text);
  if (const auto* mistakes = std::get_if<Mistakes>(&read)) {
    CheckMistakes(*mistakes, text);
  } else {
    CheckPlan(std::get<Plan>(read));
  }
  return 0;
}
