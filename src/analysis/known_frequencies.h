// Frequencies that a machine is known to show: shaft, gear mesh, line, bearings; naming peaks by
// them. SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/bearings.h"
#include "analysis/interpolation.h"
#include "analysis/refusal.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

enum class KnownKind { Shaft, GearMesh, Line, Free, OuterRace, InnerRace, ElementSpin, Cage };

struct KnownFrequency {
  KnownKind kind = KnownKind::Free;
  std::string name{};  // "Outer race, front"
  double hz = 0;
  std::optional<double> order{};  // multiple of the shaft; none where it does not turn with it
  int harmonics = 1;              // how many are marked, the first included
  int sidebands = 0;              // pairs at shaft distance, of the inner race and of meshes
  double sidebandHz = 0;          // that distance
};

struct GearMesh {
  std::string name = "Gear mesh";
  int teeth = 0;
  bool operator==(const GearMesh&) const = default;
};
struct FreeFrequency {
  std::string name{};
  double hz = 0;
  bool operator==(const FreeFrequency&) const = default;
};

// A machine as far as it is known. What is none (not finite, not above 0, no speed) gives no
// frequency.
struct Machine {
  std::optional<double> rpm{};     // shaft speed of the capture
  std::optional<double> lineHz{};  // mains
  std::vector<GearMesh> meshes{};
  std::vector<Bearing> bearings{};
  std::vector<FreeFrequency> free{};
  int harmonics = 5;  // at most 50
  bool operator==(const Machine&) const = default;
};
[[nodiscard]] std::vector<KnownFrequency> FrequenciesOf(const Machine& machine);

// Half the width in Hz within which a known frequency is expected: bearings slip, max(2 %, one
// bin); others max(0.5 %, half a bin).
[[nodiscard]] double WidthOf(const KnownFrequency& known, double hz, double binWidthHz);

// A band of the overlay.
struct Marker {
  KnownKind kind = KnownKind::Free;
  std::string name{};  // "Shaft 2×", "Inner race 1× + 1×"
  double hz = 0;
  double fromHz = 0;
  double toHz = 0;
  int harmonic = 1;
  int sideband = 0;
};

// Markers that the spectrum can hold, rising: outside the offset, within the axis; harmonics and
// sidebands only where they are at least three bins from each other.
[[nodiscard]] std::vector<Marker> MarkersOf(const std::vector<KnownFrequency>& known,
                                            const Spectrum& spectrum);

// The marker that a line lies in, its bound taken into account; the nearest of several in its own
// width.
[[nodiscard]] std::optional<Marker> NearestMarker(const std::vector<Marker>& markers,
                                                  const Line& line);

// Why this frequency cannot be seen in the spectrum, with the option that would do; nothing where
// it can.
[[nodiscard]] std::optional<Refusal> WhyNotSeen(const KnownFrequency& known,
                                                const Spectrum& spectrum);

}  // namespace kestrel::analysis
