// How a study's cursor is moved.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "display/cursors.h"
#include "display/track.h"

namespace kestrel::study {
namespace {

constexpr double kSnapBins = 10;
constexpr double kApartBins = 10;  // of the second line or the sidebands, to begin with

Track FocusTrack(const Study& study) {
  return TrackOf(study, study.Choice().focus);
}

double Within(const Track& track, double x) {
  return std::clamp(x, track.First(), track.Last());
}

bool IsOn(const Track& track, const std::optional<double>& place) {
  return place && *place >= track.First() && *place <= track.Last();
}

bool IsWhole(double bins) {
  return bins == std::round(bins);
}

// The line that keys move.
std::optional<double>& KeyedIn(CursorPlaces& places, CursorKind kind) {
  return kind == CursorKind::Delta && places.second ? places.second : places.at;
}

// The line that a click at x moves.
std::optional<double>& ClickedIn(CursorPlaces& places, CursorKind kind, double x) {
  if (kind != CursorKind::Delta || !places.at) return places.at;
  if (!places.second) return places.second;
  const bool isSecond = std::abs(x - *places.second) < std::abs(x - *places.at);
  return isSecond ? places.second : places.at;
}

// Peaks of the focus axis that are told in the quantity shown, largest first; none over time.
std::vector<analysis::Peak> FocusPeaks(const Study& study) {
  if (study.Choice().view == View::Time) return {};
  const MeasuredSpectrum* measured = study.SpectrumOf(study.Choice().focus);
  return measured != nullptr ? ToldPeaks(*measured) : std::vector<analysis::Peak>{};
}

// The number of a line of the cursor; none where there is no such line.
template <typename Reading>
std::optional<int> NumberOf(const Reading& reading, int member) {
  if (static_cast<std::size_t>(member) >= reading.members.size()) return std::nullopt;
  return reading.members[static_cast<std::size_t>(member)].number;
}

void DragHarmonic(CursorPlaces& places, const Study& study, int member, double x, double step) {
  const auto reading = HarmonicsAtCursor(study);
  const auto number = reading ? NumberOf(*reading, member) : std::nullopt;
  if (!number) return;
  if (const auto f0 = analysis::HarmonicDragged(*number, x)) places.at = std::max(*f0, step);
}

void DragSideband(CursorPlaces& places, const Study& study, int member, double x, double step) {
  const auto reading = SidebandsAtCursor(study);
  const auto number = reading ? NumberOf(*reading, member) : std::nullopt;
  if (!number) return;
  if (!places.second) places.second = reading->spacingHz;
  if (*number == 0) {
    places.at = x;
    return;
  }
  places.second = std::max((x - reading->centreHz) / *number, step);
}

}  // namespace

CursorPlaces Placed(const Study& study, double x) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (track.Empty() || !std::isfinite(x)) return places;
  ClickedIn(places, study.Choice().cursor, x) = analysis::OnPoint(track.View(), x);
  return places;
}

CursorPlaces Stepped(const Study& study, double bins) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  std::optional<double>& moved = KeyedIn(places, study.Choice().cursor);
  if (track.Empty() || !moved || !std::isfinite(bins) || !std::isfinite(*moved)) return places;
  const double to = Within(track, *moved + bins * track.step);
  moved = IsWhole(bins) ? analysis::OnPoint(track.View(), to) : to;
  return places;
}

CursorPlaces Dragged(const Study& study, int member, double x) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (track.Empty() || !places.at || member < 0 || !std::isfinite(x)) return places;
  const double within = Within(track, x);
  switch (ShownKind(study.Choice())) {
    case CursorKind::Harmonic:
      DragHarmonic(places, study, member, within, track.step);
      break;
    case CursorKind::Sideband:
      DragSideband(places, study, member, within, track.step);
      break;
    case CursorKind::Delta:
      (member == 0 ? places.at : places.second) = within;
      break;
    case CursorKind::Single:
    case CursorKind::None:
      places.at = within;
      break;
  }
  return places;
}

CursorPlaces SnappedTo(const Study& study, double x) {
  CursorPlaces places = Placed(study, x);
  const Track track = FocusTrack(study);
  if (track.Empty() || !std::isfinite(x)) return places;
  const auto peak = analysis::NearestPeak(FocusPeaks(study), x, kSnapBins * track.step);
  if (!peak) return places;
  CursorPlaces snapped = study.Choice().Places();
  ClickedIn(snapped, study.Choice().cursor, x) = peak->line.hz;
  return snapped;
}

CursorPlaces ToPeakBySize(const Study& study, int direction) {
  CursorPlaces places = study.Choice().Places();
  const std::vector<analysis::Peak> peaks = FocusPeaks(study);
  if (peaks.empty()) return places;
  std::optional<double>& moved = KeyedIn(places, study.Choice().cursor);
  const double half = FocusTrack(study).step / 2;
  const auto here = std::find_if(peaks.begin(), peaks.end(), [&](const analysis::Peak& peak) {
    return moved && std::abs(peak.line.hz - *moved) < half;
  });
  std::ptrdiff_t next = 0;
  if (here != peaks.end()) {
    const auto last = static_cast<std::ptrdiff_t>(peaks.size()) - 1;
    next = std::clamp<std::ptrdiff_t>((here - peaks.begin()) + direction, 0, last);
  }
  moved = peaks[static_cast<std::size_t>(next)].line.hz;
  return places;
}

CursorPlaces ToEnd(const Study& study, bool last) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (track.Empty()) return places;
  KeyedIn(places, study.Choice().cursor) = last ? track.Last() : track.First();
  return places;
}

CursorPlaces BeginningOf(const Study& study, CursorKind kind) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (kind == CursorKind::None || track.Empty()) return places;
  if (!IsOn(track, places.at)) {
    const std::vector<analysis::Peak> peaks = FocusPeaks(study);
    places.at = peaks.empty() ? (track.First() + track.Last()) / 2 : peaks.front().line.hz;
  }
  if (kind != study.Choice().cursor) places.second.reset();
  if (kind == CursorKind::Delta && !IsOn(track, places.second)) {
    places.second = std::min(track.Last(), *places.at + kApartBins * track.step);
  }
  if (kind == CursorKind::Sideband && !places.second) places.second = kApartBins * track.step;
  return places;
}

}  // namespace kestrel::study
