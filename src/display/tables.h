// The tables beside a study's plot: peaks, levels, alarm bands, cursor.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "analysis/cursors.h"
#include "analysis/levels.h"
#include "study/study.h"

namespace kestrel::study {

struct PeakRow {
  Axis axis = Axis::X;
  double hz = 0;
  double amplitude = 0;  // in the chosen quantity, for sorting
  std::string frequency = {};
  std::string frequencyBound = {};  // "±0.9"; empty where none is known
  std::string value = {};
  std::string valueBound = {};
  std::string order = {};    // empty without a speed
  std::string nearest = {};  // name of the known frequency it lies in
  bool unresolved = false;
};

struct PeakTable {
  std::string summary = {};  // "14 above 0.012 g"
  std::string frequencyHead = {};
  std::string valueHead = {};
  std::vector<PeakRow> rows = {};  // largest first
  [[nodiscard]] analysis::TextTable AsText() const;
};
// Of the axes shown; empty with `summary` saying why where there are none.
[[nodiscard]] PeakTable PeaksOf(const Study& study);

struct LevelRow {
  std::string name = {};
  std::array<std::string, 3> values = {};  // X, Y, Z; "" where it cannot be told
  std::string note = {};                   // "noise: 2.7 to 4.0"
};
struct LevelTable {
  std::string summary = {};  // "587 Hz to 49.9 kHz"
  std::vector<LevelRow> rows = {};
  [[nodiscard]] analysis::TextTable AsText() const;
};
[[nodiscard]] LevelTable LevelsOf(const Study& study);
// Of the time record shown.
[[nodiscard]] LevelTable TimeLevelsOf(const Study& study);
// RMS of a band in g: "0.454"; "below 0.0012" where it is less than bins that read nothing may
// hide.
[[nodiscard]] std::string LevelText(const analysis::Spectrum& spectrum,
                                    const analysis::BandLevel& level);

// A level over another in dB: "+4.3"; empty where bins that read nothing may hide either.
[[nodiscard]] std::string LevelOverText(const analysis::Spectrum& spectrum,
                                        const analysis::BandLevel& level,
                                        const analysis::Spectrum& other,
                                        const analysis::BandLevel& otherLevel);

struct BandRow {
  int number = 0;
  std::string range = {};  // "587 to 1,370"
  std::string largest = {};
  std::string state = {};     // "3.6 dB free"
  std::string headroom = {};  // "+3.6"
  analysis::BandState kind = analysis::BandState::Unused;
  // For a bar: largest and thresholds as parts of the largest of them; 0 where there is none.
  double level = 0;
  double warning = 0;
  double fault = 0;
};
// The focus axis's bands for the option of what is shown; empty where nobody knows them, and of a
// transform, which has no words to hold against thresholds.
[[nodiscard]] std::vector<BandRow> BandsOf(const Study& study);

struct CursorTable {
  std::string summary = {};  // "Harmonic on Z, f₀ 8,220.9 Hz ±0.4, least squares over 5 members"
  analysis::TextTable table = {};
};
[[nodiscard]] CursorTable CursorTableOf(const Study& study);

}  // namespace kestrel::study
