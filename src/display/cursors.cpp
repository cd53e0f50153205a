// How a study's cursor stands.
// SPDX-License-Identifier: MIT
#include "display/cursors.h"

#include <algorithm>
#include <cmath>

#include "display/scene.h"
#include "display/tables.h"
#include "display/track.h"

namespace kestrel::study {
namespace {

constexpr double kSidebandBins = 10;  // spacing before the user says another

// On a logarithmic axis a value of nothing is drawn at half the smallest that can be told.
double DrawnAt(const Study& study, const Track& track, double x) {
  const auto value = analysis::ReadAt(track.View(), x);
  if (!value) return kNoValue;
  const bool isLog = study.Choice().up == Scale::Logarithmic && !track.decibel && !track.isTime;
  if (!isLog || track.floor.empty()) return *value;
  const double place =
      std::clamp(std::round(x / track.step), 0.0, static_cast<double>(track.floor.size()) - 1);
  return std::max(*value, track.floor[static_cast<std::size_t>(place)] / 2);
}

PlotMember MemberAt(const Study& study, const Track& track, double x, const std::string& flag,
                    MemberKind kind) {
  return {.x = x,
          .flag = flag,
          .kind = kind,
          .pane = PaneOf(study.Choice(), study.Choice().focus),
          .y = DrawnAt(study, track, x)};
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

}  // namespace

CursorKind ShownKind(const StudyChoice& choice) {
  const bool needsSpectrum =
      choice.cursor == CursorKind::Harmonic || choice.cursor == CursorKind::Sideband;
  return needsSpectrum && choice.view == View::Time ? CursorKind::Single : choice.cursor;
}

std::optional<analysis::HarmonicReading> HarmonicsAtCursor(const Study& study) {
  const StudyChoice& choice = study.Choice();
  const MeasuredSpectrum* measured = study.SpectrumOf(choice.focus);
  const auto at = choice.Places().at;
  if (ShownKind(choice) != CursorKind::Harmonic || measured == nullptr || !at) return {};
  return analysis::ReadHarmonics(measured->spectrum, measured->peaks, *at, choice.cursorMembers);
}

std::optional<analysis::SidebandReading> SidebandsAtCursor(const Study& study) {
  const StudyChoice& choice = study.Choice();
  const MeasuredSpectrum* measured = study.SpectrumOf(choice.focus);
  const CursorPlaces& places = choice.Places();
  if (ShownKind(choice) != CursorKind::Sideband || measured == nullptr || !places.at) return {};
  return analysis::ReadSidebands(
      measured->spectrum, measured->peaks, *places.at,
      places.second.value_or(kSidebandBins * measured->spectrum.binWidthHz),
      choice.cursorMembers / 2);
}

SceneCursor CursorOf(const Study& study) {
  SceneCursor cursor;
  const StudyChoice& choice = study.Choice();
  const Track track = TrackOf(study, choice.focus);
  const CursorPlaces& places = choice.Places();
  if (track.Empty() || !places.at || choice.cursor == CursorKind::None) return cursor;
  if (const auto harmonics = HarmonicsAtCursor(study)) {
    AddMembers(cursor, study, track, harmonics->members, true);
  } else if (const auto sidebands = SidebandsAtCursor(study)) {
    AddMembers(cursor, study, track, sidebands->members, false);
  } else if (choice.cursor == CursorKind::Delta) {
    AddDelta(cursor, study, track, places);
  } else {
    AddSingle(cursor, study, track, *places.at);
  }
  if (!cursor.members.empty()) cursor.spoken = CursorTableOf(study).summary;
  return cursor;
}

}  // namespace kestrel::study
