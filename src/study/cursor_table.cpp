// The cursor's table: values of all traces, differences, members found and missing.
// SPDX-License-Identifier: MIT
#include <cmath>

#include "analysis/cursors.h"
#include "numeric/number_texts.h"
#include "study/scene.h"
#include "study/tables.h"

namespace kestrel::study {
namespace {

using analysis::NumberText;
using analysis::SignificantText;

struct Tracks {
  std::vector<Axis> axes;
  std::vector<std::vector<double>> values;
  std::vector<analysis::TraceView> views;
  std::string unit;
  bool isTime = false;
};

// Axes whose values can be told, in the unit shown.
Tracks TracksOf(const Study& study) {
  Tracks tracks;
  const StudyChoice& choice = study.Choice();
  tracks.isTime = choice.view == View::Time;
  tracks.unit = tracks.isTime ? UnitOfTime(choice) : analysis::UnitOf(choice.quantity);
  tracks.values.reserve(3);
  for (const Axis axis : ShownAxes(choice)) {
    analysis::TraceView view;
    if (tracks.isTime) {
      const auto curve = study.TimeCurveOf(axis);
      if (!curve) continue;
      tracks.values.push_back(curve->values);
      view.step = curve->stepS;
    } else {
      const MeasuredSpectrum* measured = study.SpectrumOf(axis);
      if (measured == nullptr || !measured->curve) continue;
      tracks.values.push_back(measured->curve->values);
      view.step = measured->spectrum.binWidthHz;
      view.firstValid = measured->curve->firstValid;
      view.decibel = choice.quantity.quantity == analysis::Quantity::Level;
    }
    view.values = &tracks.values.back();
    tracks.axes.push_back(axis);
    tracks.views.push_back(view);
  }
  return tracks;
}

std::string PlaceText(const Tracks& tracks, double x) {
  return tracks.isTime ? analysis::SecondsText(x) : NumberText(x, 1) + " Hz";
}

CursorTable SingleTable(const Tracks& tracks, double at) {
  CursorTable table{.summary = "Single, " + PlaceText(tracks, at),
                    .table = {.heads = {"Axis", tracks.unit}}};
  for (std::size_t i = 0; i < tracks.axes.size(); ++i) {
    const auto value = analysis::ReadAt(tracks.views[i], at);
    table.table.rows.push_back(
        {std::string(1, Letter(tracks.axes[i])), value ? SignificantText(*value) : "offset"});
  }
  return table;
}

std::string Text(const std::optional<double>& value) {
  return value ? SignificantText(*value) : "";
}

CursorTable DeltaTable(const Tracks& tracks, double from, double to) {
  const analysis::DeltaReading reading = analysis::ReadDelta(tracks.views, from, to);
  CursorTable table{.summary = "Delta, " + PlaceText(tracks, reading.dx),
                    .table = {.heads = {"Axis", "A, " + tracks.unit, "B, " + tracks.unit, "B − A",
                                        "B re A, dB"}}};
  if (reading.reciprocal) {
    const double reciprocal = *reading.reciprocal;
    table.summary += "; reciprocal " + (tracks.isTime ? analysis::HertzText(reciprocal)
                                                      : analysis::SecondsText(reciprocal));
  }
  for (std::size_t i = 0; i < tracks.axes.size(); ++i) {
    const auto& row = reading.rows[i];
    table.table.rows.push_back({std::string(1, Letter(tracks.axes[i])), Text(row.from),
                                Text(row.to), Text(row.difference),
                                row.ratioDb ? analysis::SignedDecibelText(*row.ratioDb) : ""});
  }
  return table;
}

CursorTable HarmonicTable(const MeasuredSpectrum& measured, double f0, int members) {
  const auto reading = analysis::ReadHarmonics(measured.spectrum, measured.peaks, f0, members);
  const auto text = analysis::WithBound(reading.f0, reading.f0Bound);
  CursorTable table{.summary = std::string("Harmonic on ") + Letter(measured.spectrum.axis) +
                               ", f₀ " + text.value + " Hz " + text.bound,
                    .table = analysis::TableOf(reading)};
  if (reading.used > 0) {
    table.summary += ", least squares over " + std::to_string(reading.used) +
                     (reading.used == 1 ? " member" : " members");
  }
  return table;
}

CursorTable SidebandTable(const MeasuredSpectrum& measured, double centre, double spacing,
                          int pairs) {
  const auto reading =
      analysis::ReadSidebands(measured.spectrum, measured.peaks, centre, spacing, pairs);
  const auto text = analysis::WithBound(reading.spacingHz, reading.spacingBound);
  CursorTable table{.summary = std::string("Sidebands on ") + Letter(measured.spectrum.axis) +
                               ", spacing " + text.value + " Hz " + text.bound,
                    .table = analysis::TableOf(reading)};
  if (reading.sidebandsDb) {
    table.summary +=
        ", together " + analysis::SignedDecibelText(*reading.sidebandsDb) + " dB re centre";
  }
  return table;
}

}  // namespace

CursorTable CursorTableOf(const Study& study) {
  const StudyChoice& choice = study.Choice();
  const CursorPlaces& places = choice.Places();
  if (study.Shown() == nullptr) return {.summary = "No record yet"};
  if (choice.cursor == CursorKind::None || !places.at) {
    return {.summary = "No cursor. C single, D delta, H harmonic, S sideband."};
  }
  const Tracks tracks = TracksOf(study);
  const MeasuredSpectrum* measured = tracks.isTime ? nullptr : study.SpectrumOf(choice.focus);
  if (choice.cursor == CursorKind::Delta && places.second) {
    return DeltaTable(tracks, *places.at, *places.second);
  }
  if (choice.cursor == CursorKind::Harmonic && measured != nullptr) {
    return HarmonicTable(*measured, *places.at, choice.cursorMembers);
  }
  if (choice.cursor == CursorKind::Sideband && measured != nullptr) {
    return SidebandTable(*measured, *places.at,
                         places.second.value_or(10 * measured->spectrum.binWidthHz),
                         choice.cursorMembers / 2);
  }
  return SingleTable(tracks, *places.at);
}

}  // namespace kestrel::study
