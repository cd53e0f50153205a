// Rolling bearings: geometry, defect frequencies as multiples of the shaft's, the user's library.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "analysis/refusal.h"

namespace kestrel::analysis {

// Diameters in one unit, whichever.
struct BearingGeometry {
  int elements = 0;            // rolling elements, 1..200
  double elementDiameter = 0;  // d
  double pitchDiameter = 0;    // D > d
  double contactDegrees = 0;   // α, 0 up to but not 90
  bool operator==(const BearingGeometry&) const = default;
};

// Multiples of the shaft's frequency, outer race standing.
struct BearingFactors {
  double outer = 0;  // n/2 (1 − γ), γ = d/D cos α
  double inner = 0;  // n/2 (1 + γ)
  double spin = 0;   // D/(2d) (1 − γ²); often seen at twice that
  double cage = 0;   // (1 − γ)/2
  bool operator==(const BearingFactors&) const = default;
};

// Refused with the value that is none.
[[nodiscard]] Told<BearingFactors> FactorsOf(const BearingGeometry& geometry);

// All finite and above 0, the cage below 1.
[[nodiscard]] bool AreFactors(const BearingFactors& factors);

// Number of rolling elements that factors belong to: outer + inner is a whole number. None where it
// is further than 0.05 from one, which tells a slip of the pen.
[[nodiscard]] std::optional<int> ElementsOf(const BearingFactors& factors);

// An entry of the user's library.
struct Bearing {
  std::string name{};
  BearingFactors factors;
  std::optional<BearingGeometry> geometry{};  // where the factors come from it
  bool operator==(const Bearing&) const = default;
};

}  // namespace kestrel::analysis
