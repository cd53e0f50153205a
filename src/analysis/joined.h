// One spectrum over all rate options, with the comparison where two overlap.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <vector>

#include "analysis/peaks.h"
#include "analysis/refusal.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

// What one capture holds and which part of it the joined spectrum uses, Hz.
struct Segment {
  int option = 0;
  double binWidthHz = 0;
  double holdsFromHz = 0;  // its third bin, of the flat top the fifth
  double holdsToHz = 0;    // its last bin
  double usedFromHz = 0;
  double usedToHz = 0;  // where the next coarser capture becomes valid; at most its own end
};

// Two captures where both hold: a steady machine shows the same RMS in both.
struct Overlap {
  int fineOption = 0;
  int coarseOption = 0;
  double fromHz = 0;
  double toHz = 0;
  double fineRmsG = 0;
  double coarseRmsG = 0;
  double differenceDb = 0;  // coarse over fine, less what lines beyond the overlap leak into it
  bool unsteady = false;    // beyond the limit: the machine was not steady, or there is aliasing
};

struct JoinedPoint {
  double hz = 0;
  double density = 0;  // g²/Hz, of WithPowerOfNoise
  double peakG = 0;    // as the sensor has it
  int option = 0;
};

struct Joined {
  std::vector<Spectrum> captures{};  // finest first
  std::vector<Spectrum> power{};     // the same WithPowerOfNoise: what densities and sums are of
  std::vector<Segment> segments{};   // one a capture
  std::vector<Overlap> overlaps{};   // between neighbours; none where they do not meet
  std::vector<JoinedPoint>
      points{};  // rising frequency; drawn with a break where the option changes
  [[nodiscard]] bool Steady() const;
};

inline constexpr double kSteadyLimitDb = 3;

// The sensor averages magnitudes, not power: of N transforms it takes from noise what
// NoiseOfAveragedMagnitudesDb(N) tells, 1.05 dB of many, and from lines nothing. This gives it
// back: magnitudes of noise become the roots of its mean power. In the lobes of what stands 6 dB
// or more above the noise around it only that noise's share is given; a line that stands out less
// is taken for noise, and may become up to 1.05 dB too large. What no averaging mends:
// noise that falls by 12 dB an octave reads up to 2 dB too large at the third bin, where a bin is a
// third of its frequency wide.
[[nodiscard]] Spectrum WithPowerOfNoise(Spectrum capture);

// Joins captures of one axis, each of another option; the order does not matter and not all four
// need be there. Refused: none, other axis, the same option twice, unknown window, a hold.
[[nodiscard]] Told<Joined> Join(std::vector<Spectrum> captures, double limitDb = kSteadyLimitDb);

// Σ over the used segments between two frequencies, g²; see PowerBetween.
[[nodiscard]] double PowerBetween(const Joined& joined, double fromHz, double toHz,
                                  const std::function<double(double)>& weight = {});

// Peaks of each capture within its used segment, each line once: at a border the finer capture's.
// Largest first. The bounds hold what the noise adds to a line's averaged magnitudes as well.
struct JoinedLine {
  Peak peak{};
  int option = 0;  // of the capture that shows it
};
[[nodiscard]] std::vector<JoinedLine> LinesOf(const Joined& joined,
                                              const PeakSettings& settings = {});

}  // namespace kestrel::analysis
