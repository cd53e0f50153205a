// The sensor's codes as a plan's words.
// SPDX-License-Identifier: MIT
#include "monitor/plan/plan_from.h"

#include <algorithm>

#include "acquisition/repeat_settings.h"
#include "exchange/texts.h"
#include "monitor/plan/plan_words.h"

namespace kestrel::monitor {
namespace {

constexpr std::int16_t kTimerMode = 1;
constexpr std::int16_t kTimeMode = 2;

StepKind KindOf(std::int16_t mode) {
  if (mode == kTimerMode) return StepKind::Timer;
  return mode == kTimeMode ? StepKind::TimeRecord : StepKind::Spectrum;
}

// A text that a plan's line can hold; never empty.
std::string Fitting(const std::string& text, const char* otherwise) {
  std::string clean = exchange::CleanUtf8(text);
  std::ranges::replace_if(
      clean, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  clean = Trimmed(clean);
  while (clean.size() > kLongestName || !exchange::IsUtf8(clean)) clean.pop_back();
  return clean.empty() ? otherwise : clean;
}

}  // namespace

Plan PlanFrom(const PresentSettings& present) {
  Step step{.kind = KindOf(present.setup.mode.value_or(0))};
  step.range = std::clamp<std::int16_t>(present.setup.range.value_or(3), 0, 3);
  step.option = std::clamp<std::int16_t>(present.setup.option.value_or(0), 0, 3);
  step.window = std::clamp<std::int16_t>(present.setup.window.value_or(1), 0, 2);
  step.averages = std::clamp<std::int16_t>(present.setup.averages.value_or(1), 1, 255);
  Plan plan{.bench = Fitting(present.bench, "bench"),
            .sensor = Fitting(present.sensor, "sensor"),
            .road = present.road,
            .every = present.every,
            .remarks = present.remarks,
            .steps = {step}};
  const auto timer = TimerPeriod(present.timerWord.value_or(0));
  if (step.kind == StepKind::Timer && timer) {
    plan.every = std::chrono::duration_cast<std::chrono::seconds>(*timer);
  }
  plan.every = std::max(
      {plan.every, kShortestPeriod, std::chrono::ceil<std::chrono::seconds>(ShortestTimeOf(step))});
  return plan;
}

}  // namespace kestrel::monitor
