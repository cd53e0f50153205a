// What the analyser's user has chosen to see, as one value that can be kept and compared.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "analysis/horizontal.h"
#include "analysis/known_frequencies.h"
#include "analysis/peaks.h"
#include "analysis/quantity.h"
#include "analysis/severity.h"
#include "record/axis.h"

namespace kestrel::study {

enum class View { Spectrum, Time, Waterfall, Wide, Library, Trend, AlarmBands, Monitor };
// What the samples of a time record are read in.
enum class TimeQuantity { Acceleration, Velocity };
enum class Scale { Linear, Logarithmic };
// Traces beside the live one. At most one of each axis.
enum class Extra { Frozen, Reference, LinearAverage, ExponentialAverage, MaximumHold, MinimumHold };
enum class CursorKind { None, Single, Delta, Harmonic, Sideband };

// A cursor's places along x: Hz of a spectrum, s of a time record.
struct CursorPlaces {
  std::optional<double> at = {};      // single; first of delta; f0 of harmonic; centre of sideband
  std::optional<double> second = {};  // second of delta; spacing of sideband
  bool operator==(const CursorPlaces&) const = default;
};

// A band of the user's, in Hz.
struct FreeBand {
  std::string name = {};
  double fromHz = 0;
  double toHz = 0;
  bool operator==(const FreeBand&) const = default;
};

// A text of the user's at a frequency.
struct UserMarker {
  double hz = 0;
  std::string text = {};
  bool operator==(const UserMarker&) const = default;
};

// Limits that severity is judged by before the user chooses others.
[[nodiscard]] inline analysis::ZoneLimits DefaultZones() {
  return analysis::SeverityTables().front().rows.front();
}

inline constexpr double kMostHz = 50'000;  // what a spectrum of the sensor can hold
[[nodiscard]] inline bool IsFrequency(double hz) {
  return hz > 0 && hz <= kMostHz;
}

struct StudyChoice {
  View view = View::Spectrum;
  analysis::QuantityChoice quantity = {};
  TimeQuantity timeQuantity = TimeQuantity::Acceleration;
  double timeFromHz = 0;  // high-pass of velocity over time; 0: the lowest that the record allows
  Scale up = Scale::Linear;  // a level is in dB whatever this says
  Scale across = Scale::Linear;
  analysis::HorizontalUnit unit = analysis::HorizontalUnit::Hertz;
  analysis::MagnitudeMeaning meaning = analysis::MagnitudeMeaning::PeakOfSine;
  analysis::WindowKind timeWindow = analysis::WindowKind::Hanning;
  std::array<bool, 3> shown = {true, true, true};
  Axis focus = Axis::X;
  bool stacked = false;
  bool showBands = true;
  bool showLabels = true;
  bool showKnown = false;
  bool difference = false;  // to the reference, in dB, in the place of the quantity
  std::set<Extra> extras = {};
  int averageOf = 10;
  CursorKind cursor = CursorKind::None;
  CursorPlaces inSpectrum = {};
  CursorPlaces inTime = {};
  int cursorMembers = 6;
  analysis::PeakSettings peaks = {};
  analysis::Machine machine = {};
  std::set<std::string> knownOff = {};  // names of known frequencies that are not shown
  analysis::ZoneLimits zones = DefaultZones();
  std::vector<FreeBand> bands = {};
  std::vector<UserMarker> markers = {};

  // Whether the same numbers come of a record with either.
  [[nodiscard]] bool MeasuresAs(const StudyChoice& other) const {
    return quantity == other.quantity && meaning == other.meaning &&
           timeWindow == other.timeWindow && peaks == other.peaks;
  }
  [[nodiscard]] bool Shows(Axis axis) const { return shown[Index(axis)]; }
  [[nodiscard]] bool Has(Extra extra) const { return extras.contains(extra); }
  [[nodiscard]] CursorPlaces& Places() { return view == View::Time ? inTime : inSpectrum; }
  [[nodiscard]] const CursorPlaces& Places() const {
    return view == View::Time ? inTime : inSpectrum;
  }
  bool operator==(const StudyChoice&) const = default;
};

}  // namespace kestrel::study
