// A filter from the command line.
// SPDX-License-Identifier: MIT
#include "cli/filter_options.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include "record/utc_time.h"

namespace kestrel {
namespace {

constexpr const char* kGroup = "Which records";

std::string TimeProblem(const std::string& text) {
  if (UtcFrom(text)) return {};
  return "\"" + text + "\" is no time in UTC like 2026-03-14 or 2026-03-14T08:26";
}

}  // namespace

void FilterOptions::AddTo(CLI::App& app) {
  const auto add = [&](const char* name, auto& value, const char* text) {
    return app.add_option(name, value, text)->group(kGroup);
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
  app.add_flag("--alarm", filter_.alarm, "With an alarm")->group(kGroup);
  app.add_flag("--deleted", filter_.deleted, "Those that are deleted, but not for good")
      ->group(kGroup);
}

archive::Filter FilterOptions::Filter() const {
  archive::Filter filter = filter_;
  if (!from_.empty()) filter.from = UtcFrom(from_);
  if (!until_.empty()) filter.until = UtcFrom(until_);
  if (!kind_.empty()) filter.kind = kind_ == "time" ? RecordKind::Time : RecordKind::Spectrum;
  return filter;
}

}  // namespace kestrel
