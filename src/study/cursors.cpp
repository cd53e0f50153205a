// How a study's cursor stands and moves.
// SPDX-License-Identifier: MIT
#include "study/cursors.h"

#include <algorithm>
#include <cmath>

#include "numeric/number_texts.h"
#include "study/scene.h"
#include "study/tables.h"

namespace kestrel::study {
namespace {

constexpr double kSnapBins = 10;

// The curve that the cursor stands on: of the focus axis, in the unit of the axis shown.
struct Track {
  std::vector<double> values;
  double step = 0;  // Hz or s
  std::size_t firstValid = 0;
  bool decibel = false;

  [[nodiscard]] bool Empty() const { return values.empty() || step <= 0; }
  [[nodiscard]] analysis::TraceView View() const {
    return {.values = &values, .step = step, .firstValid = firstValid, .decibel = decibel};
  }
  [[nodiscard]] double First() const { return step * static_cast<double>(firstValid); }
  [[nodiscard]] double Last() const { return step * static_cast<double>(values.size() - 1); }
};

Track TrackOf(const Study& study, Axis axis) {
  if (study.Shown() == nullptr) return {};
  if (study.Choice().view == View::Time) {
    const auto curve = study.TimeCurveOf(axis);
    if (!curve) return {};
    return {.values = curve->values, .step = curve->stepS};
  }
  const MeasuredSpectrum* measured = study.SpectrumOf(axis);
  if (measured == nullptr || !measured->curve) return {};
  return {.values = measured->curve->values,
          .step = measured->spectrum.binWidthHz,
          .firstValid = measured->curve->firstValid,
          .decibel = study.Choice().quantity.quantity == analysis::Quantity::Level};
}

Track FocusTrack(const Study& study) {
  return TrackOf(study, study.Choice().focus);
}

PlotMember MemberAt(const Study& study, const Track& track, double x, const std::string& flag,
                    MemberKind kind) {
  PlotMember member{
      .x = x, .flag = flag, .kind = kind, .pane = PaneOf(study.Choice(), study.Choice().focus)};
  if (const auto value = analysis::ReadAt(track.View(), x)) member.y = *value;
  return member;
}

std::string PlaceText(const Study& study, double x) {
  if (study.Choice().view == View::Time) return analysis::SecondsText(x);
  const auto* measured = study.SpectrumOf(study.Choice().focus);
  const analysis::Horizontal across =
      HorizontalOf(study.Choice(), measured != nullptr ? measured->spectrum.binWidthHz : 0);
  return analysis::NumberText(analysis::FromHertz(across, x), 1) + " " + analysis::UnitOf(across);
}

void AddSingle(SceneCursor& cursor, const Study& study, const Track& track, double at) {
  cursor.members.push_back(MemberAt(study, track, at, "A", MemberKind::Main));
  cursor.readOut = ReadOutAt(study, at, PaneOf(study.Choice(), study.Choice().focus));
}

void AddDelta(SceneCursor& cursor, const Study& study, const Track& track,
              const CursorPlaces& places) {
  cursor.members.push_back(MemberAt(study, track, *places.at, "A", MemberKind::Main));
  if (!places.second) return;
  cursor.members.push_back(MemberAt(study, track, *places.second, "B", MemberKind::Main));
  cursor.isSpan = true;
  cursor.spanText = PlaceText(study, std::abs(*places.second - *places.at));
}

std::string FlagOf(const analysis::Member& member, bool isHarmonic) {
  if (isHarmonic) return member.number == 1 ? "f₀" : std::to_string(member.number) + "×";
  if (member.number == 0) return "c";
  return (member.number > 0 ? "+" : "−") + std::to_string(std::abs(member.number));
}

void AddMembers(SceneCursor& cursor, const Study& study, const Track& track,
                const std::vector<analysis::Member>& members, bool isHarmonic) {
  for (const analysis::Member& member : members) {
    const bool isMain = member.number == (isHarmonic ? 1 : 0);
    const double x = member.found ? member.found->line.hz : member.expectedHz;
    const MemberKind kind = isMain         ? MemberKind::Main
                            : member.found ? MemberKind::Found
                                           : MemberKind::Missing;
    cursor.members.push_back(MemberAt(study, track, x, FlagOf(member, isHarmonic), kind));
    if (!member.found) cursor.members.back().y = kNoValue;
  }
}

double HertzWithin(const Track& track) {
  return kSnapBins * track.step;
}

}  // namespace

SceneCursor CursorOf(const Study& study) {
  SceneCursor cursor;
  const StudyChoice& choice = study.Choice();
  const Track track = FocusTrack(study);
  const CursorPlaces& places = choice.Places();
  if (track.Empty() || !places.at || choice.cursor == CursorKind::None) return cursor;
  const MeasuredSpectrum* measured =
      choice.view != View::Time ? study.SpectrumOf(choice.focus) : nullptr;
  if (choice.cursor == CursorKind::Delta) {
    AddDelta(cursor, study, track, places);
  } else if (choice.cursor == CursorKind::Harmonic && measured != nullptr) {
    const auto reading = analysis::ReadHarmonics(measured->spectrum, measured->peaks, *places.at,
                                                 choice.cursorMembers);
    AddMembers(cursor, study, track, reading.members, true);
  } else if (choice.cursor == CursorKind::Sideband && measured != nullptr) {
    const auto reading = analysis::ReadSidebands(
        measured->spectrum, measured->peaks, *places.at,
        places.second.value_or(10 * measured->spectrum.binWidthHz), choice.cursorMembers / 2);
    AddMembers(cursor, study, track, reading.members, false);
  } else {
    AddSingle(cursor, study, track, *places.at);
  }
  if (!cursor.members.empty()) {
    cursor.spoken = CursorTableOf(study).summary;
  }
  return cursor;
}

CursorPlaces Placed(const Study& study, double x) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (track.Empty()) return places;
  const double at = analysis::OnPoint(track.View(), x);
  if (study.Choice().cursor == CursorKind::Delta && places.at &&
      (!places.second || std::abs(x - *places.second) < std::abs(x - *places.at))) {
    places.second = at;
  } else {
    places.at = at;
  }
  return places;
}

CursorPlaces Stepped(const Study& study, double bins) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (track.Empty() || !places.at) return places;
  const bool isDelta = study.Choice().cursor == CursorKind::Delta && places.second;
  double& moved = isDelta ? *places.second : *places.at;
  moved = std::clamp(moved + bins * track.step, track.First(), track.Last());
  return places;
}

CursorPlaces Dragged(const Study& study, int member, double x) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (track.Empty() || !places.at || member < 0) return places;
  const double within = std::clamp(x, track.First(), track.Last());
  switch (study.Choice().cursor) {
    case CursorKind::Harmonic:
      places.at = analysis::HarmonicDragged(member + 1, within).value_or(*places.at);
      break;
    case CursorKind::Sideband: {
      const int number = member - study.Choice().cursorMembers / 2;
      if (number == 0) {
        places.at = within;
      } else if (const auto spacing = analysis::SidebandDragged(*places.at, number, within)) {
        places.second = spacing;
      }
      break;
    }
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
  const MeasuredSpectrum* measured = study.SpectrumOf(study.Choice().focus);
  if (study.Choice().view == View::Time || measured == nullptr || !places.at) return places;
  const double hz = analysis::Snapped(measured->peaks, x, HertzWithin(FocusTrack(study)));
  const bool isSecond = study.Choice().cursor == CursorKind::Delta && places.second &&
                        std::abs(hz - *places.second) < std::abs(hz - *places.at);
  (isSecond ? places.second : places.at) = hz;
  return places;
}

CursorPlaces ToPeakBySize(const Study& study, int direction) {
  CursorPlaces places = study.Choice().Places();
  const MeasuredSpectrum* measured = study.SpectrumOf(study.Choice().focus);
  if (study.Choice().view == View::Time || measured == nullptr || measured->peaks.empty()) {
    return places;
  }
  const auto& peaks = measured->peaks;
  std::ptrdiff_t at = -1;
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    if (places.at && std::abs(peaks[i].line.hz - *places.at) < measured->spectrum.binWidthHz / 2) {
      at = static_cast<std::ptrdiff_t>(i);
    }
  }
  const auto last = static_cast<std::ptrdiff_t>(peaks.size()) - 1;
  places.at = peaks[static_cast<std::size_t>(
                        std::clamp<std::ptrdiff_t>(at < 0 ? 0 : at + direction, 0, last))]
                  .line.hz;
  return places;
}

CursorPlaces ToEnd(const Study& study, bool last) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (!track.Empty()) places.at = last ? track.Last() : track.First();
  return places;
}

CursorPlaces BeginningOf(const Study& study, CursorKind kind) {
  CursorPlaces places = study.Choice().Places();
  const Track track = FocusTrack(study);
  if (kind == CursorKind::None || track.Empty()) return places;
  if (!places.at) {
    const MeasuredSpectrum* measured = study.SpectrumOf(study.Choice().focus);
    const bool hasPeak =
        study.Choice().view != View::Time && measured != nullptr && !measured->peaks.empty();
    places.at = hasPeak ? measured->peaks.front().line.hz : (track.First() + track.Last()) / 2;
  }
  if (!places.second && kind == CursorKind::Delta) {
    places.second = std::min(track.Last(), *places.at + 10 * track.step);
  }
  if (!places.second && kind == CursorKind::Sideband) places.second = 10 * track.step;
  return places;
}

}  // namespace kestrel::study
