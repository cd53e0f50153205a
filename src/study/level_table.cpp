// The levels of what is shown: overall, free bands, shape of time records; and the alarm bands.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "analysis/levels.h"
#include "numeric/number_texts.h"
#include "study/scene.h"
#include "study/tables.h"

namespace kestrel::study {
namespace {

using analysis::SignificantText;

template <typename Text>
LevelRow RowOf(const std::string& name, const Text& text, const std::string& note = "") {
  LevelRow row{.name = name, .note = note};
  for (const Axis axis : kAxes) row.values[Index(axis)] = text(axis);
  return row;
}

std::string BandText(const Study& study, Axis axis, const FreeBand& band) {
  const MeasuredSpectrum* measured = study.SpectrumOf(axis);
  if (measured == nullptr) return "";
  const auto level = analysis::LevelBetween(measured->spectrum, band.fromHz, band.toHz);
  if (!level) return "";
  return SignificantText(level->rmsG) + (level->whole ? "" : " (part)");
}

LevelTable SpectrumLevels(const Study& study) {
  LevelTable table;
  const auto overall = [&](Axis axis, const auto& text) -> std::string {
    const MeasuredSpectrum* measured = study.SpectrumOf(axis);
    if (measured == nullptr) return "";
    const auto level = analysis::OverallLevel(measured->spectrum);
    return level ? text(*level) : "";
  };
  if (const auto* focus = study.SpectrumOf(study.Choice().focus)) {
    if (const auto level = analysis::OverallLevel(focus->spectrum)) {
      table.summary =
          analysis::HertzText(level->fromHz) + " to " + analysis::HertzText(level->toHz);
    } else {
      table.summary = level.Why().title;
    }
  }
  using analysis::BandLevel;
  table.rows.push_back(RowOf("Overall, g RMS", [&](Axis axis) {
    return overall(axis, [](const BandLevel& level) { return SignificantText(level.rmsG); });
  }));
  table.rows.push_back(RowOf("Largest, g peak", [&](Axis axis) {
    return overall(axis, [](const BandLevel& level) { return SignificantText(level.peakG); });
  }));
  table.rows.push_back(RowOf("at, Hz", [&](Axis axis) {
    return overall(axis,
                   [](const BandLevel& level) { return analysis::NumberText(level.peakHz, 0); });
  }));
  for (const FreeBand& band : study.Choice().bands) {
    table.rows.push_back(RowOf(
        band.name + ", g RMS", [&](Axis axis) { return BandText(study, axis, band); },
        analysis::HertzText(band.fromHz) + " to " + analysis::HertzText(band.toHz)));
  }
  return table;
}

LevelTable TimeLevels(const Study& study) {
  const Record& record = *study.Shown()->record;
  LevelTable table{.summary = std::to_string(record.Points()) + " samples"};
  const auto of = [&](Axis axis, const auto& text) -> std::string {
    const auto values = analysis::ValuesInG(record, axis, true);
    const auto levels = analysis::LevelsOf(values);
    return levels ? text(*levels) : "";
  };
  const auto band = [](const analysis::StatisticalBand& noise) {
    return "noise: " + analysis::NumberText(noise.low, 1) + " to " +
           analysis::NumberText(noise.high, 1);
  };
  using analysis::TimeLevels;
  table.rows.push_back(RowOf("RMS, g", [&](Axis axis) {
    return of(axis, [](const TimeLevels& levels) { return SignificantText(levels.rmsG); });
  }));
  table.rows.push_back(RowOf("Peak, g", [&](Axis axis) {
    return of(axis, [](const TimeLevels& levels) { return SignificantText(levels.peakG); });
  }));
  table.rows.push_back(RowOf("Mean, g", [&](Axis axis) {
    return of(axis, [](const TimeLevels& levels) { return SignificantText(levels.meanG); });
  }));
  table.rows.push_back(RowOf(
      "Crest factor",
      [&](Axis axis) {
        return of(axis, [](const TimeLevels& levels) {
          return levels.crest ? analysis::NumberText(*levels.crest, 1) : "";
        });
      },
      band(analysis::kCrestOfNoise)));
  table.rows.push_back(RowOf(
      "Kurtosis",
      [&](Axis axis) {
        return of(axis, [](const TimeLevels& levels) {
          return levels.kurtosis ? analysis::NumberText(*levels.kurtosis, 1) : "";
        });
      },
      band(analysis::kKurtosisOfNoise)));
  return table;
}

}  // namespace

LevelTable LevelsOf(const Study& study) {
  if (study.Shown() == nullptr) return {.summary = "No record yet"};
  const bool isTime = study.Shown()->record->kind == RecordKind::Time;
  return isTime && study.Choice().view == View::Time ? TimeLevels(study) : SpectrumLevels(study);
}

analysis::TextTable LevelTable::AsText() const {
  analysis::TextTable text{.heads = {"", "X", "Y", "Z", ""}};
  for (const LevelRow& row : rows) {
    text.rows.push_back({row.name, row.values[0], row.values[1], row.values[2], row.note});
  }
  return text;
}

std::vector<BandRow> BandsOf(const Study& study) {
  const MeasuredSpectrum* measured = study.SpectrumOf(study.Choice().focus);
  if (measured == nullptr) return {};
  const auto* bands = study.BandsOf(measured->spectrum.option, study.Choice().focus);
  if (bands == nullptr) return {};
  std::vector<BandRow> rows;
  for (const auto& band : analysis::LevelsOf(measured->spectrum, *bands)) {
    if (band.state == analysis::BandState::Unused) continue;
    const double most = std::max({band.largestG, band.warningG, band.faultG});
    const double scale = most > 0 ? 1 / most : 0;
    rows.push_back(
        {.number = band.number,
         .range =
             analysis::NumberText(band.fromHz, 0) + " to " + analysis::NumberText(band.toHz, 0),
         .largest = SignificantText(band.largestG),
         .state = analysis::TextOf(band),
         .headroom = band.toWarningDb ? analysis::SignedDecibelText(*band.toWarningDb) : "",
         .kind = band.state,
         .level = band.largestG * scale,
         .warning = band.warningG * scale,
         .fault = band.faultG * scale});
  }
  return rows;
}

}  // namespace kestrel::study
