// A wide spectrum as JSON: the curve of each axis, where options overlap, lines, severity, bands.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "analysis/severity.h"
#include "analysis/third_octaves.h"
#include "cli/wide/wide_report.h"
#include "numeric/number_texts.h"
#include "record/utc_time.h"

namespace kestrel {
namespace {

using analysis::Joined;
using analysis::Quantity;

Json RecordsJson(const WideReport& report) {
  Json all = Json::array();
  for (const Record& record : report.wide.records) {
    const RecordSettings& settings = record.settings;
    Json json{{"option", settings.option}};
    const auto name = std::ranges::find(report.names, settings.option, &WideRecordName::option);
    if (name != report.names.end()) {
      json["uid"] = archive::TextOf(name->uid);
      if (name->id) json["id"] = *name->id;
    }
    json["time"] = UtcText(record.time);
    json["window"] = settings.window;
    json["range_g"] = FullScaleOf(settings.range);
    json["averages"] = std::max<int>(settings.averages, 1);
    all.push_back(std::move(json));
  }
  return all;
}

Json OverlapJson(const analysis::Overlap& overlap) {
  return {{"options", {overlap.fineOption, overlap.coarseOption}},
          {"from_hz", overlap.fromHz},
          {"to_hz", overlap.toHz},
          {"fine_rms_g", overlap.fineRmsG},
          {"coarse_rms_g", overlap.coarseRmsG},
          {"disagreement_db", overlap.differenceDb},
          {"unsteady", overlap.unsteady}};
}

Json OverlapsJson(const Joined& joined) {
  Json all = Json::array();
  for (const analysis::Overlap& overlap : joined.overlaps) all.push_back(OverlapJson(overlap));
  return all;
}

Json SegmentsJson(const Joined& joined) {
  Json all = Json::array();
  for (std::size_t i = 0; i < joined.segments.size(); ++i) {
    const analysis::Segment& segment = joined.segments[i];
    all.push_back({{"option", segment.option},
                   {"bin_width_hz", segment.binWidthHz},
                   {"used_from_hz", segment.usedFromHz},
                   {"used_to_hz", segment.usedToHz},
                   {"step_g", joined.captures[i].stepG}});
  }
  return all;
}

void AddCurve(Json& json, const Joined& joined, const analysis::QuantityChoice& quantity) {
  Json frequency = Json::array();
  Json density = Json::array();
  Json options = Json::array();
  for (const analysis::JoinedPoint& point : joined.points) {
    frequency.push_back(point.hz);
    density.push_back(point.density);
    options.push_back(point.option);
  }
  json["frequency"] = std::move(frequency);
  json["density"] = std::move(density);
  json["options"] = std::move(options);
  if (quantity.quantity == Quantity::Density) return;
  const analysis::WideCurve curve = CurveOf(joined, quantity);
  json["values"] = curve.values;
  json["unit"] = curve.unit;
}

const analysis::Spectrum& CaptureOf(const Joined& joined, int option) {
  return *std::ranges::find(joined.captures, option, &analysis::Spectrum::option);
}

Json BoundJson(double value, const std::optional<double>& bound) {
  return bound ? Json(analysis::RoundedByBound(value, *bound).bound) : Json();
}

Json LinesJson(const Joined& joined, const analysis::QuantityChoice& quantity) {
  Json all = Json::array();
  analysis::QuantityChoice amplitude = quantity;
  if (quantity.quantity == Quantity::Density) amplitude = {};
  for (const analysis::JoinedLine& line : LinesOf(joined)) {
    const analysis::Line& found = line.peak.line;
    const auto value = ValueOf(CaptureOf(joined, line.option), amplitude, found);
    const auto hz = analysis::RoundedByBound(found.hz, found.hzBound);
    const double told =
        value.bound ? analysis::RoundedByBound(value.value, *value.bound).value : value.value;
    all.push_back({{"frequency_hz", hz.value},
                   {"frequency_uncertainty_hz", hz.bound},
                   {"amplitude", told},
                   {"unit", UnitOf(amplitude)},
                   {"uncertainty", BoundJson(value.value, value.bound)},
                   {"option", line.option},
                   {"unresolved", found.unresolved}});
  }
  return all;
}

Json SeverityJson(const Joined& joined) {
  const auto severity = EstimateSeverity(joined, analysis::SeverityTables().front().rows.front());
  if (severity) {
    return {{"velocity_mm_per_s_rms", severity->mmPerS}, {"uncertain", severity->uncertain}};
  }
  return {{"velocity_mm_per_s_rms", nullptr},
          {"refusal", AsLine(severity.Why())},
          {"missing", MissingForSeverity(joined.segments, joined.captures.front().window)}};
}

Json ThirdOctavesJson(const Joined& joined) {
  Json all = Json::array();
  for (const analysis::ThirdOctave& band : analysis::ThirdOctavesOf(joined.power)) {
    all.push_back({{"nominal_hz", band.nominalHz},
                   {"from_hz", band.fromHz},
                   {"to_hz", band.toHz},
                   {"rms_g", band.rmsG},
                   {"option", band.option}});
  }
  return all;
}

Json AxisJson(const analysis::Told<Joined>& told, const analysis::QuantityChoice& quantity) {
  if (!told) return {{"refusal", AsLine(told.Why())}};
  Json json;
  AddCurve(json, *told, quantity);
  json["segments"] = SegmentsJson(*told);
  json["overlaps"] = OverlapsJson(*told);
  json["steady"] = told->Steady();
  json["lines"] = LinesJson(*told, quantity);
  json["severity_10_to_1000_hz"] = SeverityJson(*told);
  json["third_octaves"] = ThirdOctavesJson(*told);
  return json;
}

}  // namespace

Json WideJson(const WideReport& report) {
  Json json{{"set", archive::TextOf(report.set)}};
  json["complete"] = report.wide.missing.empty();
  json["stopped"] = report.stopped;
  json["missing"] = report.wide.missing;
  json["deleted"] = report.deleted;
  json["steady"] = report.wide.Steady();
  json["records"] = RecordsJson(report);
  json["notices"] = Json::array();
  Json overlaps = Json::array();
  for (const Axis axis : kAxes) {
    const std::string letter(1, Letter(axis));
    const auto& told = report.wide.axes[Index(axis)];
    json["axes"][letter] = AxisJson(told, report.quantity);
    if (!told) continue;
    for (const analysis::Overlap& overlap : told->overlaps) {
      Json each{{"axis", letter}};
      each.update(OverlapJson(overlap));
      overlaps.push_back(std::move(each));
    }
  }
  json["overlaps"] = std::move(overlaps);
  const auto& first = report.wide.axes.front();
  if (first && !NoiseNotice(*first).empty()) json["notices"].push_back(NoiseNotice(*first));
  return json;
}

}  // namespace kestrel
