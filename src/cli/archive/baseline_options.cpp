// Sets, rule and judgement from the command line.
// SPDX-License-Identifier: MIT
#include "cli/archive/baseline_options.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "cli/archive/archive_options.h"
#include "cli/word_choice.h"
#include "numeric/number_parse.h"
#include "numeric/runtime_error.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

using baseline::LevelKind;
using baseline::RuleKind;
using baseline::Verdict;

constexpr const char* kBoth = "Which records, good and bad";
constexpr const char* kRule = "Rule and judgement";
const WordCodes<LevelKind> kLevels{{"peak", LevelKind::BandPeak}, {"rms", LevelKind::BandRms}};
const WordCodes<int> kWindows{{"rectangular", 0}, {"hanning", 1}, {"flattop", 2}};
const WordCodes<int> kRanges{{"1", 0}, {"5", 1}, {"20", 2}, {"70", 3}};

// "90s", "30min", "2h" or "1d".
std::optional<std::chrono::seconds> Duration(const std::string& text) {
  const WordCodes<int> units{{"min", 60}, {"s", 1}, {"h", 3600}, {"d", 86400}};
  for (const auto& [unit, seconds] : units) {
    if (!text.ends_with(unit)) continue;
    const auto number = WholeTextNumber(text.substr(0, text.size() - unit.size()));
    if (!number || !(*number > 0) || *number * seconds > 1e9) return std::nullopt;
    return std::chrono::seconds(static_cast<std::int64_t>(*number * seconds));
  }
  return std::nullopt;
}

std::string DurationProblem(const std::string& text) {
  if (Duration(text)) return {};
  return "\"" + text + "\" is not a time like 90s, 30min, 2h or 1d";
}

CLI::Validator DecibelsTo(double most) {
  return CLI::Validator(
      [most](const std::string& text) -> std::string {
        const auto number = WholeTextNumber(text);
        if (number && *number >= 0 && *number <= most) return {};
        return "\"" + text + "\" is not a number from 0 to " +
               std::to_string(static_cast<int>(most));
      },
      "");
}

}  // namespace

void SetOptions::AddTo(CLI::App& app) {
  const bool good = verdict_ == Verdict::Good;
  const std::string word = good ? "good" : "bad";
  const auto add = [&](const char* name, auto& value, const std::string& text) {
    return app.add_option("--" + word + name, value, text)
        ->group("Which records are known to be " + word);
  };
  add("-from", from_, "Taken at this time (UTC, 2026-03-14T08:26) or later")->check(TimeProblem);
  add("-until", until_, "Taken before this time (UTC)")->check(TimeProblem);
  add("-tag", tag_, "With this tag");
  add("-text", text_, "With this in machine, point, note or a tag");
  add("-id", ids_, "These records, by number")->check(RecordNumberProblem);
  add("-every", every_, "At most one in this time, for example 2h or 30min")
      ->check(DurationProblem);
}

bool SetOptions::Any() const {
  return !from_.empty() || !until_.empty() || !tag_.empty() || !text_.empty() || !ids_.empty() ||
         !every_.empty();
}

baseline::Part SetOptions::Part(archive::Filter filter) const {
  if (!from_.empty()) filter.from = UtcFrom(from_);
  if (!until_.empty()) filter.until = UtcFrom(until_);
  filter.tag = tag_;
  filter.text = text_;
  baseline::Part part{.verdict = verdict_, .name = tag_, .filter = filter, .ids = ids_};
  if (!every_.empty()) part.every = *Duration(every_);
  return part;
}

void BaselineOptions::AddTo(CLI::App& app) {
  good_.AddTo(app);
  bad_.AddTo(app);
  AddRecords(app);
  AddRule(app);
}

void BaselineOptions::AddRecords(CLI::App& app) {
  const auto add = [&](const char* name, auto& value, const char* text) {
    return app.add_option(name, value, text)->group(kBoth);
  };
  add("--machine", filter_.machine, "Of this machine");
  add("--point", filter_.point, "At this point");
  add("--bench", filter_.bench, "Of this bench or computer");
  add("--option", wanted_.option, "Sample-rate option, 0 to 3")->check(CLI::Range(0, 3));
  AddChoice(app, "--window", window_, kWindows, "Window")->group(kBoth);
  AddChoice(app, "--range", rangeG_, kRanges, "Range in g")->group(kBoth);
  add("--averages", wanted_.averages, "FFT averages")->check(CLI::Range(1, 511));
}

void BaselineOptions::AddRule(CLI::App& app) {
  const auto add = [&](const char* name, auto& value, const char* text) {
    return app.add_option(name, value, text)->group(kRule);
  };
  auto* sigma =
      add("--sigma", rule_.k,
          "Warning this many standard deviations above the mean of the good records' decibels; 3 "
          "if not given")
          ->check(DecibelsTo(20));
  add("--percentile", percentile_,
      "Warning at the level that 95 or 99 % of all records stay below, with 95 % confidence")
      ->check(CLI::IsMember({95, 99}))
      ->excludes(sigma);
  add("--at-least", rule_.atLeastDb,
      "Warning at least this many dB above the mean; 1.5 if not given")
      ->check(DecibelsTo(60));
  add("--fault-above", rule_.faultAboveDb, "Fault this many dB above the warning; 3 if not given")
      ->check(DecibelsTo(60));
  AddChoice(app, "--level", kind_, kLevels, "What is judged; the sensor compares only peaks")
      ->group(kRule);
  add("--m", judgement_.m,
      "An alarm takes this many of the last --n records above the threshold; 1 if not given")
      ->check(CLI::Range(1, 100));
  add("--n", judgement_.n,
      "Number of last records that --m is counted in; 1 if not given, as in the sensor")
      ->check(CLI::Range(1, 100));
  add("--hysteresis", judgement_.hysteresisDb,
      "An alarm of several records ends this many dB below the threshold; 1 if not given")
      ->check(DecibelsTo(60));
}

std::vector<baseline::Part> BaselineOptions::Parts() const {
  if (!good_.Any()) {
    throw RuntimeError(
        "Say which records are known to be good: --good-tag, --good-from, --good-until, "
        "--good-text, --good-id or --good-every.");
  }
  if (judgement_.m > judgement_.n) {
    throw RuntimeError("--m " + std::to_string(judgement_.m) + " is more than --n " +
                       std::to_string(judgement_.n) + ".");
  }
  std::vector<baseline::Part> parts{good_.Part(filter_)};
  if (bad_.Any()) parts.push_back(bad_.Part(filter_));
  return parts;
}

baseline::Wanted BaselineOptions::Wanted() const {
  baseline::Wanted wanted = wanted_;
  wanted.window = window_;
  wanted.range = rangeG_;
  return wanted;
}

baseline::Rule BaselineOptions::Rule() const {
  baseline::Rule rule = rule_;
  if (percentile_) rule.kind = *percentile_ == 95 ? RuleKind::Limit95 : RuleKind::Limit99;
  return rule;
}

LevelKind BaselineOptions::Kind() const {
  return kind_.value_or(LevelKind::BandPeak);
}

}  // namespace kestrel
