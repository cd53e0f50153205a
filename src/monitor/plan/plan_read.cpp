// A plan's text read line by line, with every mistake it holds.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <functional>
#include <set>

#include "analysis/horizontal.h"
#include "exchange/texts.h"
#include "monitor/plan/plan.h"
#include "monitor/plan/plan_words.h"
#include "publish/settings.h"
#include "record/frequency.h"

namespace kestrel::monitor {
namespace {

using Read = std::function<std::string(std::string_view)>;  // what is wrong; "" where nothing is

struct Key {
  const char* name;
  Read read;
};

class Reader {
 public:
  std::variant<Plan, Mistakes> Take(std::string_view text);

 private:
  enum class Section { Head, Capture, Wide, Timer, Judge, Publish, Unknown };

  void TakeLine(std::string_view line);
  void Begin(std::string_view name);
  void BeginStep(StepKind kind);
  void TakeValue(std::string_view key, std::string_view value);
  [[nodiscard]] std::vector<Key> Keys();
  [[nodiscard]] std::vector<Key> HeadKeys();
  [[nodiscard]] std::vector<Key> StepKeys();
  [[nodiscard]] std::vector<Key> JudgeKeys();
  void CheckWhole();
  void CheckStep(const Step& step);
  void Say(std::size_t line, std::string what) { mistakes_.push_back({line, std::move(what)}); }
  [[nodiscard]] std::string ReadMode(std::string_view text);
  [[nodiscard]] std::string ReadRpm(std::string_view text);

  Plan plan_;
  Mistakes mistakes_;
  std::size_t line_ = 0;
  Section section_ = Section::Head;
  std::set<std::string, std::less<>> seen_;  // keys of the section
  std::set<std::string, std::less<>> once_;  // keys of the head, and sections that stand once
};

std::variant<Plan, Mistakes> Reader::Take(std::string_view text) {
  if (text.size() > kLargestPlan) {
    return Mistakes{{0, "the file has more than " + std::to_string(kLargestPlan) + " bytes"}};
  }
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    ++line_;
    TakeLine(Trimmed(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  CheckWhole();
  std::ranges::stable_sort(mistakes_, {}, &Mistake::line);
  if (!mistakes_.empty()) return mistakes_;
  return plan_;
}

void Reader::TakeLine(std::string_view line) {
  if (line.empty() || line.front() == '#') return;
  if (line.front() == '[') {
    if (line.back() != ']') return Say(line_, Quoted(line) + " lacks its closing bracket");
    return Begin(Trimmed(line.substr(1, line.size() - 2)));
  }
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || equals == 0) {
    return Say(line_, Quoted(line) + " is neither \"key = value\" nor a [section]");
  }
  TakeValue(Trimmed(line.substr(0, equals)), Trimmed(line.substr(equals + 1)));
}

void Reader::Begin(std::string_view name) {
  struct Named {
    const char* name;
    Section section;
  };
  static constexpr std::array<Named, 5> kSections{{{"capture", Section::Capture},
                                                   {"wide", Section::Wide},
                                                   {"timer", Section::Timer},
                                                   {"judge", Section::Judge},
                                                   {"publish", Section::Publish}}};
  seen_.clear();
  const auto* found =
      std::ranges::find_if(kSections, [&](const Named& n) { return name == n.name; });
  section_ = found == kSections.end() ? Section::Unknown : found->section;
  if (section_ == Section::Capture) return BeginStep(StepKind::Spectrum);
  if (section_ == Section::Wide) return BeginStep(StepKind::Wide);
  if (section_ == Section::Unknown) {
    return Say(line_, "[" + Quoted(name) +
                          "] is not one of [capture], [wide], [timer], [judge], [publish]");
  }
  if (!once_.insert("[" + std::string(name)).second) {
    Say(line_, "the section [" + std::string(name) + "] stands here a second time");
  }
  if (section_ == Section::Timer) BeginStep(StepKind::Timer);
}

void Reader::BeginStep(StepKind kind) {
  plan_.steps.push_back({.kind = kind, .line = line_});
}

void Reader::TakeValue(std::string_view key, std::string_view value) {
  if (section_ == Section::Unknown) return;  // told at its head
  if (!seen_.insert(std::string(key)).second) {
    return Say(line_, Quoted(key) + " stands here a second time");
  }
  if (value.empty()) return Say(line_, Quoted(key) + ": there is no value");
  if (section_ == Section::Publish) {
    plan_.publish.push_back({line_, std::string(key), {}});
    const std::string wrong = ReadText(value, kLongestNote, plan_.publish.back().value);
    if (!wrong.empty()) Say(line_, Quoted(key) + ": " + wrong);
    return;
  }
  std::string names;
  for (const Key& known : Keys()) {
    names += (names.empty() ? "" : ", ") + std::string(known.name);
    if (key != known.name) continue;
    const std::string wrong = known.read(value);
    if (!wrong.empty()) Say(line_, std::string(key) + ": " + wrong);
    return;
  }
  Say(line_, Quoted(key) + " is not one of the keys here: " + names);
}

std::vector<Key> Reader::Keys() {
  if (section_ == Section::Head) return HeadKeys();
  return section_ == Section::Judge ? JudgeKeys() : StepKeys();
}

std::vector<Key> Reader::HeadKeys() {
  const auto text = [](std::string& into, std::size_t longest) {
    return [&into, longest](std::string_view value) { return ReadText(value, longest, into); };
  };
  archive::Remarks& remarks = plan_.remarks;
  return {{"bench", text(plan_.bench, kLongestName)},
          {"sensor", text(plan_.sensor, kLongestName)},
          {"connect", [this](std::string_view value) { return ReadRoad(value, plan_.road); }},
          {"archive", text(plan_.archive, kLongestNote)},
          {"every", [this](std::string_view value) { return ReadPeriod(value, plan_.every); }},
          {"machine", text(remarks.machine, kLongestName)},
          {"point", text(remarks.point, kLongestName)},
          {"orientation", text(remarks.orientation, kLongestName)},
          {"rpm", [this](std::string_view value) { return ReadRpm(value); }},
          {"note", text(remarks.note, kLongestNote)}};
}

std::string Reader::ReadRpm(std::string_view text) {
  double rpm = 0;
  std::string wrong = ReadNumber(text, 0, analysis::kFastestRpm, rpm);
  if (!wrong.empty()) return wrong;
  if (!analysis::IsSpeed(rpm)) {
    return Quoted(text) + " is no speed; leave it out for a shaft at rest";
  }
  plan_.remarks.rpm = rpm;
  return {};
}

std::vector<Key> Reader::StepKeys() {
  Step& step = plan_.steps.back();
  std::vector<Key> keys{
      {"range", [&](std::string_view text) { return ReadWord(text, kRanges, " (g)", step.range); }},
      {"window", [&](std::string_view text) { return ReadWord(text, kWindows, "", step.window); }},
      {"averages", [&](std::string_view text) { return ReadWhole(text, 1, 255, step.averages); }}};
  if (step.kind == StepKind::Wide) return keys;
  keys.push_back(
      {"option", [&](std::string_view text) { return ReadWhole(text, 0, 3, step.option); }});
  keys.push_back(
      {"bands", [&](std::string_view text) { return ReadText(text, kLongestNote, step.bands); }});
  if (step.kind != StepKind::Timer) {
    keys.push_back({"mode", [this](std::string_view text) { return ReadMode(text); }});
  }
  return keys;
}

std::string Reader::ReadMode(std::string_view text) {
  static constexpr std::array<WordCode, 2> kModes{{{"spectrum", 0}, {"time", 1}}};
  std::int16_t code = 0;
  std::string wrong = ReadWord(text, kModes, "", code);
  if (wrong.empty()) {
    plan_.steps.back().kind = code == 0 ? StepKind::Spectrum : StepKind::TimeRecord;
  }
  return wrong;
}

std::vector<Key> Reader::JudgeKeys() {
  Judging& judging = plan_.judging;
  return {
      {"alarm", [&](std::string_view text) { return ReadRule(text, judging.rule); }},
      {"hysteresis",
       [&](std::string_view text) { return ReadNumber(text, 0, 60, judging.rule.hysteresisDb); }},
      {"severity", [&](std::string_view text) { return ReadSeverity(text, judging.severity); }},
      {"warning", [&](std::string_view text) { return ReadZone(text, judging.severityWarning); }},
      {"fault", [&](std::string_view text) { return ReadZone(text, judging.severityFault); }}};
}

void Reader::CheckWhole() {
  const auto isUntold = [this](const char* key) {
    return std::ranges::none_of(mistakes_, [&](const Mistake& mistake) {
      return mistake.what.starts_with(std::string(key) + ":");
    });
  };
  if (plan_.bench.empty() && isUntold("bench")) Say(0, "bench: there is none; name the bench");
  if (plan_.sensor.empty() && isUntold("sensor")) Say(0, "sensor: there is none; name the sensor");
  if (plan_.every.count() == 0 && isUntold("every")) {
    Say(0, "every: there is none; \"every = 10 s\" takes a capture every 10 s");
  }
  if (plan_.steps.empty()) {
    Say(0, "there is nothing to capture; add a section [capture], [wide] or [timer]");
  }
  if (plan_.steps.size() > kMostSteps) {
    Say(plan_.steps[kMostSteps].line,
        "there are more than " + std::to_string(kMostSteps) + " steps");
  }
  if (plan_.judging.severityFault < plan_.judging.severityWarning) {
    Say(0, "fault: its zone is below that of the warning");
  }
  for (const Step& step : plan_.steps) CheckStep(step);
  std::vector<publish::SettingLine> lines;
  lines.reserve(plan_.publish.size());
  for (const PlanLine& line : plan_.publish) lines.push_back({line.line, line.key, line.value});
  const auto settings = publish::SettingsOf(lines);
  if (const auto* wrong = std::get_if<std::vector<publish::SettingMistake>>(&settings)) {
    for (const publish::SettingMistake& one : *wrong) Say(one.line, one.what);
  }
}

void Reader::CheckStep(const Step& step) {
  if (step.kind == StepKind::Timer) {
    if (plan_.steps.size() > 1) {
      Say(step.line, "[timer] stands alone: while the sensor captures by itself nothing else can");
    }
    const bool fits = plan_.every.count() < 256 || plan_.every.count() % 60 == 0;
    if (!fits || plan_.every > std::chrono::hours{255}) {
      Say(step.line, "the sensor's timer counts up to 255 seconds, minutes or hours; every = " +
                         PeriodText(plan_.every) + " is not one of these");
    }
  }
  if (!step.bands.empty() && step.kind == StepKind::TimeRecord) {
    Say(step.line, "bands: a time record has no bands; they are of spectra");
  }
  const auto takes = std::chrono::ceil<std::chrono::seconds>(ShortestTimeOf(step));
  if (plan_.every.count() > 0 && takes > plan_.every) {
    Say(step.line, "its capture takes at least " + std::to_string(takes.count()) +
                       " s, which is longer than every = " + PeriodText(plan_.every));
  }
}

}  // namespace

std::string Mistake::Text(const std::string& file) const {
  return file + (line > 0 ? ":" + std::to_string(line) : "") + ": " + what;
}

std::variant<Plan, Mistakes> PlanOf(std::string_view text) {
  return Reader().Take(text);
}

std::chrono::nanoseconds ShortestTimeOf(const Step& step) {
  const auto sampling = [&](int option) {
    const int blocks = step.kind == StepKind::TimeRecord ? 1 : step.averages;
    return std::chrono::duration<double>{blocks / BinWidth(option)};
  };
  std::chrono::duration<double> all{0};
  if (step.kind == StepKind::Wide) {
    for (int option = 0; option < 4; ++option) all += sampling(option);
  } else {
    all = sampling(step.option);
  }
  return std::chrono::duration_cast<std::chrono::nanoseconds>(all);
}

}  // namespace kestrel::monitor
