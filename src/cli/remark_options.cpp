// Remarks from the command line.
// SPDX-License-Identifier: MIT
#include "cli/remark_options.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include "numeric/number_parse.h"

namespace kestrel {
namespace {

constexpr const char* kGroup = "What the archive keeps beside the record";

std::string SpeedProblem(const std::string& text) {
  const auto rpm = WholeTextNumber(text);
  if (rpm && *rpm > 0 && *rpm <= 1e6) return {};
  return "\"" + text + "\" is no speed in revolutions a minute";
}

}  // namespace

void RemarkOptions::AddTo(CLI::App& app) {
  app.add_option("--machine", machine_, "What is measured")->group(kGroup);
  app.add_option("--point", point_, "Where on it the sensor sits")->group(kGroup);
  app.add_option("--orientation", orientation_, "Where its axes point")->group(kGroup);
  app.add_option("--rpm", rpm_, "Speed of the shaft, 1/min")->group(kGroup)->check(SpeedProblem);
  app.add_option("--note", note_, "A note")->group(kGroup);
  app.add_option("--tag", tags_, "A tag; may be given several times")
      ->group(kGroup)
      ->expected(1)
      ->take_all();
}

bool RemarkOptions::Any() const {
  return machine_ || point_ || orientation_ || rpm_ || note_ || tags_;
}

archive::Remarks RemarkOptions::Over(archive::Remarks remarks) const {
  remarks.machine = machine_.value_or(remarks.machine);
  remarks.point = point_.value_or(remarks.point);
  remarks.orientation = orientation_.value_or(remarks.orientation);
  if (rpm_) remarks.rpm = rpm_;
  remarks.note = note_.value_or(remarks.note);
  remarks.tags = archive::CleanTags(tags_.value_or(remarks.tags));
  return remarks;
}

}  // namespace kestrel
