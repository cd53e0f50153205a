// Filters and remarks from the command line.
// SPDX-License-Identifier: MIT
#include "cli/archive/archive_options.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "numeric/number_parse.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

constexpr const char* kAny = "any";
constexpr const char* kWhich = "Which records";
constexpr const char* kBeside = "What the archive keeps beside the record";

std::string SpeedProblem(const std::string& text) {
  const auto rpm = WholeTextNumber(text);
  if (rpm && *rpm > 0 && *rpm <= 1e6) return {};
  return "\"" + text + "\" is no speed in revolutions a minute";
}

}  // namespace

std::string TimeProblem(const std::string& text) {
  if (UtcFrom(text)) return {};
  return "\"" + text + "\" is no time in UTC like 2026-03-14 or 2026-03-14T08:26";
}

std::string WideProblem(const std::string& text, const std::string& other) {
  if (text == other || archive::UidFrom(text)) return {};
  return "\"" + text +
         "\" is neither the name of a wide spectrum, of 32 hexadecimal digits, nor \"" + other +
         "\"; wide --list tells what there is";
}

void FilterOptions::AddTo(CLI::App& app) {
  const auto add = [&](const char* name, auto& value, const char* text) {
    return app.add_option(name, value, text)->group(kWhich);
  };
  add("--from", from_, "Taken then (UTC) or later")->check(TimeProblem);
  add("--until", until_, "Taken before (UTC)")->check(TimeProblem);
  add("--machine", filter_.machine, "Of this machine");
  add("--point", filter_.point, "At this point");
  add("--bench", filter_.bench, "Kept by this computer");
  add("--tag", filter_.tag, "With this tag");
  add("--text", filter_.text, "With this in machine, point, note or a tag");
  add("--kind", kind_, "spectrum or time")->check(CLI::IsMember({"spectrum", "time"}));
  add("--option", filter_.option, "Sample-rate option, 0 to 3")->check(CLI::Range(0, 3));
  add("--wide", wide_, "Of this wide spectrum, or of any")
      ->check([](const std::string& text) { return WideProblem(text, kAny); })
      ->type_name("NAME");
  app.add_flag("--alarm", alarm_, "With an alarm")->group(kWhich);
  app.add_flag("--deleted", filter_.deleted, "Those that are deleted, but not for good")
      ->group(kWhich);
}

archive::Filter FilterOptions::Filter() const {
  archive::Filter filter = filter_;
  if (!from_.empty()) filter.from = UtcFrom(from_);
  if (!until_.empty()) filter.until = UtcFrom(until_);
  if (alarm_) filter.alarm = true;
  if (wide_ == kAny) filter.wide = true;
  filter.set = archive::UidFrom(wide_);
  if (!kind_.empty()) filter.kind = kind_ == "time" ? RecordKind::Time : RecordKind::Spectrum;
  return filter;
}

void RemarkOptions::AddTo(CLI::App& app) {
  app.add_option("--machine", told_.machine, "What is measured")->group(kBeside);
  app.add_option("--point", told_.point, "Where on it the sensor sits")->group(kBeside);
  app.add_option("--orientation", told_.orientation, "Where its axes point")->group(kBeside);
  app.add_option("--rpm", rpm_, "Speed of the shaft, 1/min")->group(kBeside)->check(SpeedProblem);
  app.add_option("--note", told_.note, "A note")->group(kBeside);
  app.add_option("--tag", told_.tags, "A tag; may be given several times")
      ->group(kBeside)
      ->expected(1)
      ->take_all();
}

archive::RemarksChange RemarkOptions::Change() const {
  archive::RemarksChange change = told_;
  if (rpm_) change.rpm = rpm_;
  return change;
}

}  // namespace kestrel
