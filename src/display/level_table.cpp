// The levels of a spectrum: overall, free bands, and over the reference.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "analysis/levels.h"
#include "analysis/trace_set.h"
#include "display/scene.h"
#include "display/tables.h"
#include "display/track.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

using analysis::BandLevel;
using analysis::SignificantText;

// RMS that bins which read nothing may hide: each up to half a step.
double HiddenRms(const analysis::Spectrum& spectrum, double fromHz, double toHz) {
  const double bins = std::max(spectrum.BinOf(toHz - fromHz), 0.0);
  const double bandwidth = spectrum.window.noiseBandwidth;
  return bandwidth > 0 ? spectrum.stepG / 2 * std::sqrt(bins / 2 / bandwidth) : 0;
}

template <typename Text>
LevelRow RowOf(const std::string& name, const Text& text, const std::string& note = "") {
  LevelRow row{.name = name, .note = note};
  for (const Axis axis : kAxes) row.values[Index(axis)] = text(axis);
  return row;
}

// Overall levels of the axes, none where there are none.
struct Overall {
  const MeasuredSpectrum* measured = nullptr;
  std::optional<BandLevel> level = {};
};
using OverallLevels = std::array<Overall, 3>;

OverallLevels OverallOf(const Study& study) {
  OverallLevels levels;
  for (const Axis axis : kAxes) {
    Overall& overall = levels[Index(axis)];
    overall.measured = study.SpectrumOf(axis);
    if (overall.measured == nullptr) continue;
    if (const auto level = analysis::OverallLevel(overall.measured->spectrum)) {
      overall.level = *level;
    }
  }
  return levels;
}

std::string RmsText(const Overall& overall) {
  return overall.level ? LevelText(overall.measured->spectrum, *overall.level) : "";
}

std::string PeakText(const Overall& overall) {
  if (!overall.level) return "";
  const double step = overall.measured->spectrum.stepG;
  if (overall.level->peakG < step * (1 - 1e-9)) {
    return "below " + SignificantText(analysis::RoundedUp(step, 2), 2);
  }
  return SignificantText(overall.level->peakG);
}

std::string PlaceOfPeak(const Overall& overall) {
  if (!overall.level || !(overall.level->peakG > 0)) return "";
  const double halfBin = overall.measured->spectrum.binWidthHz / 2;
  return analysis::WithBound(overall.level->peakHz, halfBin).value;
}

LevelRow FreeBandRow(const Study& study, const FreeBand& band) {
  std::string note = analysis::HertzText(band.fromHz) + " to " + analysis::HertzText(band.toHz);
  std::string cure;
  const auto text = [&](Axis axis) -> std::string {
    const MeasuredSpectrum* measured = study.SpectrumOf(axis);
    if (measured == nullptr) return "";
    const auto level = analysis::LevelBetween(measured->spectrum, band.fromHz, band.toHz);
    if (!level) {
      cure = level.Why().cure;
      return "";
    }
    return LevelText(measured->spectrum, *level) + (level->whole ? "" : " (part)");
  };
  LevelRow row = RowOf(band.name + ", g RMS", text);
  row.note = cure.empty() ? note : note + "; " + cure;
  return row;
}

// Overall level over the reference's; the note says why where they may not be compared.
LevelRow ReferenceRow(const OverallLevels& levels, const Measured& reference) {
  LevelRow row{.name = "re reference, dB"};
  for (const Axis axis : kAxes) {
    const Overall& overall = levels[Index(axis)];
    if (!overall.level || !reference.Of(axis)) continue;
    const analysis::Spectrum& other = reference.Of(axis)->spectrum;
    if (const auto why = analysis::WhyNotWith(overall.measured->spectrum, other)) {
      row.note = "reference has " + *why;
      continue;
    }
    const auto level = analysis::OverallLevel(other);
    if (!level) continue;
    row.values[Index(axis)] =
        LevelOverText(overall.measured->spectrum, *overall.level, other, *level);
  }
  return row;
}

LevelTable SpectrumLevels(const Study& study) {
  const OverallLevels levels = OverallOf(study);
  const MeasuredAxis& focus = study.Shown()->Of(study.Choice().focus);
  LevelTable table;
  if (!focus) {
    table.summary = focus.Why().title;
  } else if (const auto& level = levels[Index(study.Choice().focus)].level) {
    table.summary = analysis::HertzText(level->fromHz) + " to " + analysis::HertzText(level->toHz);
  } else {
    table.summary = analysis::OverallLevel(focus->spectrum).Why().title;
  }
  const auto add = [&](const std::string& name, std::string (*text)(const Overall&)) {
    table.rows.push_back(RowOf(name, [&](Axis axis) { return text(levels[Index(axis)]); }));
  };
  add("Overall, g RMS", RmsText);
  add("Largest, g peak", PeakText);
  add("at, Hz", PlaceOfPeak);
  if (study.Reference() != nullptr && study.Choice().Has(Extra::Reference)) {
    table.rows.push_back(ReferenceRow(levels, *study.Reference()));
  }
  for (const FreeBand& band : study.Choice().bands) table.rows.push_back(FreeBandRow(study, band));
  return table;
}

}  // namespace

std::string LevelText(const analysis::Spectrum& spectrum, const BandLevel& level) {
  const double hidden = HiddenRms(spectrum, level.fromHz, level.toHz);
  if (level.rmsG >= hidden && level.rmsG > 0) return SignificantText(level.rmsG);
  return "below " + SignificantText(analysis::RoundedUp(std::hypot(level.rmsG, hidden), 2), 2);
}

std::string LevelOverText(const analysis::Spectrum& spectrum, const BandLevel& level,
                          const analysis::Spectrum& other, const BandLevel& otherLevel) {
  const bool isTold = level.rmsG > HiddenRms(spectrum, level.fromHz, level.toHz) &&
                      otherLevel.rmsG > HiddenRms(other, otherLevel.fromHz, otherLevel.toHz);
  return isTold ? analysis::SignedDecibelText(20 * std::log10(level.rmsG / otherLevel.rmsG)) : "";
}

LevelTable LevelsOf(const Study& study) {
  if (study.Shown() == nullptr) return {.summary = "No record yet"};
  const bool isTime = study.Shown()->record->kind == RecordKind::Time;
  return isTime && study.Choice().view == View::Time ? TimeLevelsOf(study) : SpectrumLevels(study);
}

analysis::TextTable LevelTable::AsText() const {
  analysis::TextTable text{.heads = {"", "X", "Y", "Z", ""}};
  for (const LevelRow& row : rows) {
    text.rows.push_back({row.name, row.values[0], row.values[1], row.values[2], row.note});
  }
  return text;
}

}  // namespace kestrel::study
