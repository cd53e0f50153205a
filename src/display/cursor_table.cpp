// The cursor's table: values of all traces, differences, members found and missing.
// SPDX-License-Identifier: MIT
#include <cmath>
#include <utility>

#include "analysis/cursors.h"
#include "display/cursors.h"
#include "display/scene.h"
#include "display/tables.h"
#include "display/track.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

struct AxisTrack {
  Axis axis = Axis::X;
  Track track;
};

// Axes whose values can be told, in the unit shown.
std::vector<AxisTrack> TracksOf(const Study& study) {
  std::vector<AxisTrack> tracks;
  for (const Axis axis : ShownAxes(study.Choice())) {
    Track track = TrackOf(study, axis);
    if (!track.Empty()) tracks.push_back({axis, std::move(track)});
  }
  return tracks;
}

CursorTable SingleTable(const Study& study, const std::vector<AxisTrack>& tracks, double at) {
  CursorTable table{.summary = "Single, " + PlaceText(study, at)};
  if (tracks.empty()) return table;
  table.table.heads = {"Axis", tracks.front().track.unit};
  for (const AxisTrack& each : tracks) {
    table.table.rows.push_back({std::string(1, Letter(each.axis)), CellAt(each.track, at)});
  }
  return table;
}

// What is below one step has neither difference nor ratio.
std::vector<std::string> DeltaRow(const AxisTrack& each, double from, double to) {
  const Track& track = each.track;
  std::vector<std::string> row{std::string(1, Letter(each.axis)), CellAt(track, from),
                               CellAt(track, to), "", ""};
  if (!track.ToldAt(from) || !track.ToldAt(to)) return row;
  const auto reading = analysis::ReadDelta({track.View()}, from, to).rows.front();
  if (reading.difference) row[3] = NumberIn(track, *reading.difference);
  if (reading.ratioDb) row[4] = analysis::SignedDecibelText(*reading.ratioDb);
  return row;
}

CursorTable DeltaTable(const Study& study, const std::vector<AxisTrack>& tracks, double from,
                       double to) {
  CursorTable table{.summary = "Delta, " + PlaceText(study, to - from)};
  const double apart = std::abs(to - from);
  const bool isTime = study.Choice().view == View::Time;
  if (apart > 0) {
    table.summary += "; reciprocal " +
                     (isTime ? analysis::HertzText(1 / apart) : analysis::SecondsText(1 / apart));
  }
  if (tracks.empty()) return table;
  const std::string& unit = tracks.front().track.unit;
  table.table.heads = {"Axis", "A, " + unit, "B, " + unit, "B − A", "B re A, dB"};
  for (const AxisTrack& each : tracks) table.table.rows.push_back(DeltaRow(each, from, to));
  return table;
}

CursorTable HarmonicTable(Axis axis, const analysis::HarmonicReading& reading) {
  const auto text = analysis::WithBound(reading.f0, reading.f0Bound);
  CursorTable table{
      .summary = std::string("Harmonic on ") + Letter(axis) + ", f₀ " + text.value + " Hz",
      .table = analysis::TableOf(reading)};
  if (!text.bound.empty()) table.summary += " " + text.bound;
  table.summary += reading.used == 0 ? ", no member found"
                                     : ", least squares over " + std::to_string(reading.used) +
                                           (reading.used == 1 ? " member" : " members");
  return table;
}

CursorTable SidebandTable(Axis axis, const analysis::SidebandReading& reading) {
  const auto text = analysis::WithBound(reading.spacingHz, reading.spacingBound);
  CursorTable table{
      .summary = std::string("Sidebands on ") + Letter(axis) + ", spacing " + text.value + " Hz",
      .table = analysis::TableOf(reading)};
  if (!text.bound.empty()) table.summary += " " + text.bound;
  if (reading.used == 0) table.summary += ", no sideband found";
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
  if (const auto reading = HarmonicsAtCursor(study)) return HarmonicTable(choice.focus, *reading);
  if (const auto reading = SidebandsAtCursor(study)) return SidebandTable(choice.focus, *reading);
  const std::vector<AxisTrack> tracks = TracksOf(study);
  if (choice.cursor == CursorKind::Delta && places.second) {
    return DeltaTable(study, tracks, *places.at, *places.second);
  }
  return SingleTable(study, tracks, *places.at);
}

}  // namespace kestrel::study
