// A plan written as its text.
// SPDX-License-Identifier: MIT
#include "archive/place.h"
#include "exchange/texts.h"
#include "monitor/plan/plan.h"
#include "monitor/plan/plan_words.h"
#include "numeric/number_format.h"
#include "numeric/number_parse.h"

namespace kestrel::monitor {
namespace {

std::string WordOf(std::span<const WordCode> words, std::int16_t code) {
  for (const auto& [word, value] : words) {
    if (value == code) return word;
  }
  return words.front().first;
}

std::string Line(const char* key, const std::string& value) {
  return value.empty() ? "" : std::string(key) + " = " + value + "\n";
}

std::string RoadText(const Road& road) {
  if (road.simulated) return road.scenario.empty() ? "simulated" : "simulated " + road.scenario;
  if (!road.portDevice.empty()) return "port " + road.portDevice;
  if (road.parallelAddress) return "parallel " + Hex(*road.parallelAddress);
  return road.adapter ? "usb Ezusb-" + std::to_string(*road.adapter) : "usb";
}

// As people write it, and where that is not all of it, every digit.
std::string NumberText(double value) {
  const std::string text = GeneralNumber(value);
  return WholeTextNumber(text) == value ? text : exchange::ExactText(value);
}

const char* SectionOf(StepKind kind) {
  if (kind == StepKind::Wide) return "wide";
  return kind == StepKind::Timer ? "timer" : "capture";
}

std::string TextOf(const Step& step) {
  std::string text = std::string("\n[") + SectionOf(step.kind) + "]\n";
  if (step.kind == StepKind::TimeRecord) text += "mode = time\n";
  text += Line("range", WordOf(kRanges, step.range));
  if (step.kind != StepKind::Wide) text += Line("option", std::to_string(step.option));
  text += Line("window", WordOf(kWindows, step.window));
  text += Line("averages", std::to_string(step.averages));
  return text + Line("bands", step.bands);
}

std::string TextOf(const Judging& judging) {
  std::string text = "\n[judge]\n";
  text += Line("alarm", std::to_string(judging.rule.m) + " of " + std::to_string(judging.rule.n));
  text += Line("hysteresis", NumberText(judging.rule.hysteresisDb));
  if (judging.severity) text += Line("severity", judging.severity->name);
  const Judging usual;
  if (judging.severity || judging.severityWarning != usual.severityWarning ||
      judging.severityFault != usual.severityFault) {
    text += Line("warning", std::string(1, analysis::Letter(judging.severityWarning)));
    text += Line("fault", std::string(1, analysis::Letter(judging.severityFault)));
  }
  return text;
}

}  // namespace

std::string NameOf(const Step& step) {
  std::string name =
      step.kind == StepKind::Wide ? "all options" : "option " + std::to_string(step.option);
  name += ", " + WordOf(kRanges, step.range) + " g";
  if (step.kind == StepKind::TimeRecord) return "time record, " + name;
  name += ", " + WordOf(kWindows, step.window) + ", " + std::to_string(step.averages) +
          (step.averages == 1 ? " average" : " averages");
  return name;
}

std::string TextOf(const Plan& plan) {
  std::string text = "# A plan for the monitor. Sections [capture], [wide] are taken in turn.\n";
  text += Line("bench", plan.bench);
  text += Line("sensor", plan.sensor);
  text += Line("connect", RoadText(plan.road));
  text += Line("archive", plan.archive);
  text += Line("every", PeriodText(plan.every));
  text += Line("machine", plan.remarks.machine);
  text += Line("point", plan.remarks.point);
  text += Line("orientation", plan.remarks.orientation);
  if (plan.remarks.rpm) text += Line("rpm", NumberText(*plan.remarks.rpm));
  text += Line("note", plan.remarks.note);
  for (const Step& step : plan.steps) text += TextOf(step);
  if (plan.judging != Judging{}) text += TextOf(plan.judging);
  if (!plan.publish.empty()) text += "\n[publish]\n";
  for (const PlanLine& line : plan.publish) text += Line(line.key.c_str(), line.value);
  return text;
}

archive::Place ArchiveOf(const Plan& plan, const archive::Place& usual) {
  return plan.archive.empty() ? usual : archive::Place{plan.archive};
}

}  // namespace kestrel::monitor
