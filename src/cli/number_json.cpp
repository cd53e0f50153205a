// One object a peak, one a band; digits as far as the bounds carry them.
// SPDX-License-Identifier: MIT
#include "cli/number_json.h"

#include <cmath>

#include "numeric/number_texts.h"

namespace kestrel {
namespace {

using Json = nlohmann::ordered_json;
using analysis::BandState;
using analysis::QuantityLevel;
using analysis::QuantityPeak;

constexpr int kDigits = 6;

// A number without a bound; null where there is none.
Json Plain(const std::optional<double>& value) {
  return value && std::isfinite(*value) ? Json(analysis::RoundedTo(*value, kDigits)) : Json();
}

Json PeakJson(const QuantityPeak& peak, const std::string& unit) {
  const auto& line = peak.peak.line;
  const auto hz = analysis::RoundedByBound(line.hz, line.hzBound);
  Json json{{"frequency_hz", hz.value}, {"frequency_uncertainty_hz", hz.bound}};
  if (peak.value.bound) {
    const auto value = analysis::RoundedByBound(peak.value.value, *peak.value.bound);
    json["amplitude"] = value.value;
    json["unit"] = unit;
    json["uncertainty"] = value.bound;
  } else {
    json["amplitude"] = Plain(peak.value.value);
    json["unit"] = unit;
    json["uncertainty"] = nullptr;
  }
  json["unresolved"] = line.unresolved;
  return json;
}

void AddLevel(Json& json, const char* name, const QuantityLevel& level) {
  json[name] = Plain(level.rms);
  json["unit"] = level.rmsUnit;
  json["from_hz"] = Plain(level.fromHz);
  json["to_hz"] = Plain(level.toHz);
  json["whole"] = level.whole;
  json["largest"] = Plain(level.largest);
  json["largest_unit"] = level.largestUnit;
  json["largest_hz"] = level.largestHz > 0 ? Plain(level.largestHz) : Json();
  if (level.edgeShare > 0) json["edge_share"] = Plain(level.edgeShare);
}

// A value as told, or null with the reason.
template <typename Value, typename Add>
void AddTold(Json& json, const char* name, const analysis::Told<Value>& told, Add add) {
  if (told) {
    add(*told);
  } else {
    json[name] = nullptr;
    json["refusal"] = AsLine(told.Why());
  }
}

void AddShape(Json& json, const ShapeNumbers& shape) {
  json["overall"] = Plain(shape.levels.rmsG);
  json["unit"] = shape.unit + " RMS";
  json["peak"] = Plain(shape.levels.peakG);
  json["peak_unit"] = shape.unit + " peak";
  json["mean"] = Plain(shape.levels.meanG);
  json["crest_factor"] = Plain(shape.levels.crest);
  json["crest_factor_of_noise"] = {analysis::kCrestOfNoise.low, analysis::kCrestOfNoise.high};
  json["kurtosis"] = Plain(shape.levels.kurtosis);
  json["kurtosis_of_noise"] = {analysis::kKurtosisOfNoise.low, analysis::kKurtosisOfNoise.high};
  if (shape.fromHz > 0) json["from_hz"] = Plain(shape.fromHz);
}

const char* StateText(BandState state) {
  switch (state) {
    case BandState::Free:
      return "free";
    case BandState::Warning:
      return "warning";
    case BandState::Fault:
      return "fault";
    default:
      return "no threshold";
  }
}

// Thresholds, and how far the largest bin is from the first of them, as the sensor judges.
void AddLimits(Json& json, const analysis::SensorBandLevel& limits) {
  const auto orNull = [](double thresholdG) { return thresholdG > 0 ? Plain(thresholdG) : Json(); };
  json["warning_g_peak"] = orNull(limits.warningG);
  json["fault_g_peak"] = orNull(limits.faultG);
  json["headroom_db"] = Plain(limits.toWarningDb ? limits.toWarningDb : limits.toFaultDb);
  json["warning_headroom_db"] = Plain(limits.toWarningDb);
  json["fault_headroom_db"] = Plain(limits.toFaultDb);
  if (limits.holdsOffset) json["holds_offset"] = true;
}

Json BandJson(const BandNumbers& band) {
  Json json{{"band", band.limits.number}};
  const bool isUsed = band.limits.state != BandState::Unused;
  json["state"] = isUsed || band.level ? StateText(band.limits.state) : "unused";
  if (band.level || isUsed) {
    json["low_bin"] = band.band.lowBin;
    json["high_bin"] = band.band.highBin;
  }
  if (band.level) {
    AddTold(json, "rms", *band.level,
            [&](const QuantityLevel& level) { AddLevel(json, "rms", level); });
  }
  if (isUsed) AddLimits(json, band.limits);
  return json;
}

Json LevelsJson(const AxisNumbers& numbers) {
  Json json;
  if (numbers.shape) {
    AddTold(json, "overall", *numbers.shape,
            [&](const ShapeNumbers& shape) { AddShape(json, shape); });
  } else {
    AddTold(json, "overall", *numbers.overall,
            [&](const QuantityLevel& level) { AddLevel(json, "overall", level); });
  }
  Json& bands = json["bands"] = Json::array();
  for (const BandNumbers& band : numbers.bands) bands.push_back(BandJson(band));
  return json;
}

}  // namespace

Json NumbersHeadJson(const NumberReport& report) {
  return {{"quantity", analysis::TitleOf(report.quantity)},
          {"spectrum", report.ownTransform ? "own transform of the time record" : "sensor"},
          {"window", report.window},
          {"magnitudes", "peak of a sine, gain of the window taken out"},
          {"valid_from_hz", Plain(report.validFromHz)},
          {"notices", report.notices}};
}

void AddNumbers(Json& axis, const NumberReport& report, Axis which) {
  const AxisNumbers& numbers = report.axes[Index(which)];
  if (numbers.peaks) {
    AddTold(axis, "peaks", *numbers.peaks, [&](const std::vector<QuantityPeak>& peaks) {
      Json& all = axis["peaks"] = Json::array();
      for (const QuantityPeak& peak : peaks) {
        all.push_back(PeakJson(peak, analysis::UnitOf(report.quantity)));
      }
    });
  }
  if (numbers.overall || numbers.shape) axis["levels"] = LevelsJson(numbers);
}

}  // namespace kestrel
