// Sets, thresholds and counts field by field.
// SPDX-License-Identifier: MIT
#include "cli/archive/baseline_report.h"

#include "baseline/texts.h"
#include "record/frequency.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

using namespace baseline;

Json CountJson(const Count& count) {
  const analysis::ShareBounds bounds = count.Bounds();
  return {{"count", count.counted}, {"of", count.of}, {"low", bounds.low}, {"high", bounds.high}};
}

Json CountsJson(const Counts& counts) {
  return {{"false_alarms", CountJson(counts.falseAlarms)}, {"caught", CountJson(counts.caught)}};
}

Json SetsJson(const Sets& sets) {
  Json json{{"good", sets.good.size()}, {"bad", sets.bad.size()}};
  json["parts"] = Json::array();
  for (const PartTaken& part : sets.parts) {
    Json each{{"set", part.verdict == Verdict::Good ? "good" : "bad"},
              {"name", part.name},
              {"taken", part.taken},
              {"found", part.found}};
    if (part.taken > 0) {
      each["first"] = UtcText(part.first);
      each["last"] = UtcText(part.last);
    }
    json["parts"].push_back(each);
  }
  json["left_out"] = Json::array();
  for (const LeftOut& group : sets.leftOut) {
    json["left_out"].push_back(
        {{"title", group.title}, {"reason", group.reason}, {"ids", group.ids}});
  }
  return json;
}

// `threshold` is that which is replayed.
Json ThresholdJson(const Threshold& rule, double threshold, const Workbench& bench) {
  Json json;
  if (threshold > 0) json["g"] = threshold * bench.StepInG();
  if (bench.CanBeWritten()) {
    json["code"] = static_cast<int>(threshold);
    json["code_now"] = static_cast<int>(rule.now);
    json["beyond_the_codes"] = rule.isBeyond;
  }
  return json;
}

Json DistributionJson(std::span<const double> steps, const Workbench& bench) {
  const auto usual = DistributionOf(steps, bench.StepInG());
  if (!usual) return nullptr;
  return {{"mean_db", usual->meanDb},
          {"sigma_db", usual->sigmaDb},
          {"smallest_db", usual->smallestDb},
          {"largest_db", usual->largestDb},
          {"silent", usual->silent}};
}

Json CellJson(const CellPlace& place, const Workbench& bench) {
  const CellState& cell = bench.At(place);
  const Band& band = bench.BandAt(place.band);
  const double width = BinWidth(bench.TheSets().settings.option);
  Json json{{"band", place.band},
            {"axis", std::string(1, Letter(place.axis))},
            {"f_low", band.lowBin},
            {"f_high", band.highBin},
            {"f_low_hz", band.lowBin * width},
            {"f_high_hz", band.highBin * width}};
  if (!cell.proposal.refusal.empty()) json["refusal"] = cell.proposal.refusal;
  if (!cell.levels.refusal.empty()) return json;
  json["good"] = DistributionJson(cell.levels.good, bench);
  json["bad"] = DistributionJson(cell.levels.bad, bench);
  json["warning"] = ThresholdJson(cell.proposal.warning, cell.warning, bench);
  json["fault"] = ThresholdJson(cell.proposal.fault, cell.fault, bench);
  json["warnings"] = CountsJson(cell.warnings);
  json["faults"] = CountsJson(cell.faults);
  return json;
}

}  // namespace

Json BaselineJson(const Workbench& bench) {
  const Settings& settings = bench.TheSets().settings;
  Json json{{"settings",
             {{"sample_rate_option", settings.option},
              {"window", settings.window},
              {"range", settings.range},
              {"averages", settings.averages},
              {"g_per_code", bench.StepInG()}}},
            {"sets", SetsJson(bench.TheSets())},
            {"level", bench.Kind() == LevelKind::BandPeak ? "peak" : "rms"},
            {"rule", bench.UsesPresent() ? "present" : TextOf(bench.TheRule())},
            {"judgement", TextOf(bench.TheJudgement())},
            {"false_alarms", CountJson(bench.Everything().falseAlarms)},
            {"misses", CountJson(bench.Everything().misses)}};
  json["bands"] = Json::array();
  for (const CellPlace& place : AllCells()) json["bands"].push_back(CellJson(place, bench));
  return json;
}

}  // namespace kestrel
