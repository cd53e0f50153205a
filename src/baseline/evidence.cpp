// What a baseline was made of and what it found, section by section.
// SPDX-License-Identifier: MIT
#include "baseline/evidence.h"

#include <cmath>

#include "baseline/texts.h"
#include "numeric/number_format.h"
#include "numeric/number_texts.h"
#include "record/utc_time.h"

namespace kestrel::baseline {
namespace {

using analysis::NumberText;
using analysis::SignificantText;
using report::Column;
using report::Section;
using report::Table;

Column Text(const char* head) {
  return {.head = head};
}
Column Number(const std::string& head, const char* unit = "") {
  return {.head = head, .unit = unit, .isNumber = true};
}

std::string Whole(std::size_t count) {
  return GroupedWholeNumber(static_cast<double>(count));
}

std::string AxisText(Axis axis) {
  return std::string(1, Letter(axis));
}

Section Records(const Workbench& bench, const EvidenceOrigin& origin) {
  const Sets& sets = bench.TheSets();
  Section section{.heading = "Records"};
  section.facts = {{"Archive", origin.archive}, {"Settings", TextOf(sets.settings)}};
  Table parts{.columns = {Text("Set"), Text("Called"), Number("Records"), Text("Taken"),
                          Text("Time, UTC"), Text("Of")}};
  for (const PartTaken& part : sets.parts) {
    std::string places;
    for (const std::string& place : part.places) places += (places.empty() ? "" : "; ") + place;
    parts.rows.push_back({part.verdict == Verdict::Good ? "known good" : "known bad", part.name,
                          Whole(part.taken), ThinningText(part),
                          part.taken > 0 ? SpanText(part.first, part.last) : "", places});
  }
  Table left{.columns = {Text("Left out"), Text("Why"), Number("Records")}};
  for (const LeftOut& group : sets.leftOut) {
    left.rows.push_back({group.title, group.reason, Whole(group.ids.size())});
  }
  section.tables = {std::move(parts), std::move(left)};
  return section;
}

Section RuleUsed(const Workbench& bench) {
  Section section{.heading = "Rule"};
  const bool peaks = bench.Kind() == LevelKind::BandPeak;
  section.facts = {
      {"Thresholds", bench.UsesPresent() ? "those present" : TextOf(bench.TheRule())},
      {"Judged", TextOf(bench.TheJudgement())},
      {"Levels", peaks ? "largest magnitude of a band, g peak, which the sensor compares"
                       : "RMS of a band, g RMS, which the sensor does not compare"}};
  if (peaks) {
    section.facts.push_back({"Codes", "steps of " + SignificantText(bench.StepInG()) +
                                          " g, range " +
                                          RangeText(bench.TheSets().settings.range)});
  }
  return section;
}

// Now, proposed, change and code.
void AddThreshold(std::vector<std::string>& row, double now, double threshold,
                  const Workbench& bench) {
  const auto inG = [&](double steps) {
    return steps > 0 ? SignificantText(steps * bench.StepInG()) : "";
  };
  row.push_back(inG(now));
  row.push_back(inG(threshold));
  row.push_back(now > 0 && threshold > 0
                    ? analysis::SignedDecibelText(20 * std::log10(threshold / now))
                    : "");
  if (bench.CanBeWritten()) row.push_back(threshold > 0 ? NumberText(threshold, 0) : "");
}

Section Thresholds(const Workbench& bench) {
  Section section{.heading = "Thresholds"};
  const char* unit = bench.CanBeWritten() ? "g" : "g RMS";
  Table table{.columns = {Text("Band"), Text("Axis"), Text("Bins"), Text("Hz")}};
  for (const char* name : {"Warning", "Fault"}) {
    table.columns.push_back(Number(std::string(name) + " now", unit));
    table.columns.push_back(Number(name, unit));
    table.columns.push_back(Number("Change", "dB"));
    if (bench.CanBeWritten()) table.columns.push_back(Number("Code"));
  }
  for (const CellPlace& place : AllCells()) {
    const CellState& cell = bench.At(place);
    if (!cell.levels.refusal.empty()) continue;
    std::vector<std::string> row{
        std::to_string(place.band), AxisText(place.axis), BinsText(bench.BandAt(place.band)),
        HertzRangeText(bench.BandAt(place.band), bench.TheSets().settings.option)};
    AddThreshold(row, cell.proposal.warning.now, cell.warning, bench);
    AddThreshold(row, cell.proposal.fault.now, cell.fault, bench);
    table.rows.push_back(std::move(row));
  }
  table.instead = "No band can be judged.";
  section.tables.push_back(std::move(table));
  section.remarks = RemarksOn(bench);
  return section;
}

void AddCount(std::vector<std::string>& row, const Count& count) {
  row.push_back(std::to_string(count.counted));
  row.push_back(NumberText(100 * count.Share(), 1));
  row.push_back(BoundsText(count));
}

Table ReplayTable(const Workbench& bench, const char* caption, Counts CellState::*counts) {
  Table table{.caption = caption,
              .columns = {Text("Band"), Text("Axis"), Number("False alarms"), Number("Share", "%"),
                          Number("95 % bounds", "%"), Number("Caught"), Number("Share", "%"),
                          Number("95 % bounds", "%")}};
  for (const CellPlace& place : AllCells()) {
    const CellState& cell = bench.At(place);
    if (!cell.levels.refusal.empty()) continue;
    std::vector<std::string> row{std::to_string(place.band), AxisText(place.axis)};
    AddCount(row, (cell.*counts).falseAlarms);
    AddCount(row, (cell.*counts).caught);
    table.rows.push_back(std::move(row));
  }
  return table;
}

Section Replays(const Workbench& bench) {
  const Overall& all = bench.Everything();
  Section section{.heading = "Replay"};
  section.facts = {{"False alarms, a warning of any band", CountText(all.falseAlarms)},
                   {"Misses, all bands silent", CountText(all.misses)}};
  section.tables = {ReplayTable(bench, "Warnings", &CellState::warnings),
                    ReplayTable(bench, "Faults", &CellState::faults)};
  section.remarks.push_back(
      "Bounds are those of Clopper and Pearson with 95 % confidence, for records that do not "
      "depend "
      "on one another.");
  if (!bench.TheJudgement().IsSingle()) {
    section.remarks.push_back(
        "Records judged several at a time do depend on one another: the true bounds are wider.");
  }
  return section;
}

void AddDistribution(Table& table, const CellPlace& place, const char* set,
                     std::span<const double> steps, const Workbench& bench) {
  const auto usual = DistributionOf(steps, bench.StepInG());
  if (!usual) return;
  const auto inG = [](double db) { return SignificantText(std::pow(10, db / 20)); };
  table.rows.push_back({std::to_string(place.band), AxisText(place.axis), set, inG(usual->meanDb),
                        NumberText(usual->sigmaDb, 2), inG(usual->smallestDb),
                        inG(usual->largestDb), Whole(usual->silent)});
}

Section Distributions(const Workbench& bench) {
  Section section{.heading = "Distributions"};
  const char* unit = bench.CanBeWritten() ? "g" : "g RMS";
  Table table{.columns = {Text("Band"), Text("Axis"), Text("Set"), Number("Mean of dB", unit),
                          Number("\u03c3", "dB"), Number("Smallest", unit), Number("Largest", unit),
                          Number("Reading 0")}};
  for (const CellPlace& place : AllCells()) {
    AddDistribution(table, place, "good", bench.At(place).levels.good, bench);
    AddDistribution(table, place, "bad", bench.At(place).levels.bad, bench);
  }
  section.tables.push_back(std::move(table));
  section.remarks.emplace_back("A level that reads 0 counts as half a step of the magnitude word.");
  return section;
}

}  // namespace

report::Report EvidenceOf(const Workbench& workbench, const EvidenceOrigin& origin) {
  const Sets& sets = workbench.TheSets();
  report::Report report{.title = "Alarm thresholds from a baseline",
                        .line = "Option " + std::to_string(sets.settings.option) + ", " +
                                Whole(sets.good.size()) + " records known to be good, " +
                                Whole(sets.bad.size()) + " known to be bad",
                        .foot = origin.program + ", " + UtcText(origin.time).substr(0, 16) + " UTC",
                        .time = origin.time};
  report.sections = {Records(workbench, origin), RuleUsed(workbench), Thresholds(workbench),
                     Replays(workbench), Distributions(workbench)};
  return report;
}

}  // namespace kestrel::baseline
