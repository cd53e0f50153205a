// Vibration severity, 10 to 1000 Hz: an estimate beside published zone limits.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "analysis/joined.h"
#include "analysis/refusal.h"

namespace kestrel::analysis {

// Zone limits in mm/s RMS, rising.
struct ZoneLimits {
  std::string name{};  // "group 1, rigid"
  double ab = 0;
  double bc = 0;
  double cd = 0;
  bool operator==(const ZoneLimits&) const = default;
};

struct SeverityTable {
  std::string name{};    // "ISO 10816-3"
  std::string source{};  // where the numbers come from
  std::vector<ZoneLimits> rows{};
  bool operator==(const SeverityTable&) const = default;
};

// The tables the program comes with; the user's copy of them may be edited.
[[nodiscard]] std::vector<SeverityTable> SeverityTables();

// Finite, above 0 and rising.
[[nodiscard]] bool AreLimits(const ZoneLimits& limits);

inline constexpr double kSeverityFromHz = 10;
inline constexpr double kSeverityToHz = 1000;

// |H|² of third-order Butterworth edges at both ends.
[[nodiscard]] double SeverityPass(double hz);

enum class Zone { A, B, C, D };

struct SeverityEstimate {
  double mmPerS = 0;  // velocity, RMS
  Zone zone = Zone::A;
  bool uncertain = false;  // captures that overlap disagree
};

// An estimate, never a verdict of conformity. The captures must hold 10 to 1000 Hz and the edges
// down to one percent of power, 4.6 Hz to 2.2 kHz; otherwise refused with the captures that are
// missing.
[[nodiscard]] Told<SeverityEstimate> EstimateSeverity(const Joined& joined,
                                                      const ZoneLimits& limits);

// Options, slowest first, that hold what these captures do not; empty where they cover the band.
[[nodiscard]] std::vector<int> MissingForSeverity(const std::vector<Segment>& segments,
                                                  const Window& window);

[[nodiscard]] Zone ZoneOf(double mmPerS, const ZoneLimits& limits);
[[nodiscard]] char Letter(Zone zone);

}  // namespace kestrel::analysis
