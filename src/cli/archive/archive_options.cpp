// Filters and remarks from the command line.
// SPDX-License-Identifier: MIT
#include "cli/archive/archive_options.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "analysis/horizontal.h"
#include "numeric/number_parse.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

constexpr const char* kAny = "any";
constexpr const char* kWhich = "Which records";
constexpr const char* kBeside = "What the archive keeps beside the record";

std::string SpeedProblem(const std::string& text) {
  const auto rpm = WholeTextNumber(text);
  if (rpm && analysis::IsSpeed(*rpm)) return {};
  return "\"" + text + "\" is not a speed: a number above 0 to 10000000 rpm";
}

}  // namespace

std::string TimeProblem(const std::string& text) {
  if (UtcFrom(text)) return {};
  return "\"" + text + "\" is not a time in UTC like 2026-03-14 or 2026-03-14T08:26";
}

std::string RecordNumberProblem(const std::string& text) {
  constexpr std::size_t kMostDigits = 18;
  const bool isNumber = !text.empty() && text.size() <= kMostDigits &&
                        text.find_first_not_of("0123456789") == std::string::npos;
  if (isNumber) return {};
  return "\"" + text + "\" is not the number of a record, as \"archive list\" shows it";
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
  add("--from", from_, "Taken at this time (UTC, 2026-03-14T08:26) or later")->check(TimeProblem);
  add("--until", until_, "Taken before this time (UTC)")->check(TimeProblem);
  add("--machine", filter_.machine, "Of this machine");
  add("--point", filter_.point, "At this point");
  add("--bench", filter_.bench, "Of this bench or computer");
  add("--tag", filter_.tag, "With this tag");
  add("--text", filter_.text, "With this in machine, point, note or a tag");
  add("--kind", kind_, "Spectra or time records")->check(CLI::IsMember({"spectrum", "time"}));
  add("--option", filter_.option, "Sample-rate option, 0 to 3")->check(CLI::Range(0, 3));
  add("--wide", wide_, "Part of this wide spectrum, or of any")
      ->check([](const std::string& text) { return WideProblem(text, kAny); })
      ->type_name("NAME");
  app.add_flag("--alarm", alarm_, "With an alarm")->group(kWhich);
  app.add_flag("--deleted", filter_.deleted, "Deleted records that can still be brought back")
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
  app.add_option("--rpm", rpm_, "Speed of the shaft, above 0 to 10000000 rpm")
      ->group(kBeside)
      ->check(SpeedProblem);
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
