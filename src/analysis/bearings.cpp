// Defect frequencies from geometry.
// SPDX-License-Identifier: MIT
#include "analysis/bearings.h"

#include <cmath>
#include <numbers>

namespace kestrel::analysis {
namespace {

constexpr int kMostElements = 200;
constexpr double kWholeTolerance = 0.05;

Refusal NoFactors(std::string reason, std::string cure) {
  return {.title = "The bearing's frequencies cannot be determined",
          .reason = std::move(reason),
          .cure = std::move(cure)};
}

bool IsPositive(double value) {
  return std::isfinite(value) && value > 0;
}

}  // namespace

Told<BearingFactors> FactorsOf(const BearingGeometry& geometry) {
  if (geometry.elements < 1 || geometry.elements > kMostElements) {
    return NoFactors("The number of rolling elements is missing or out of range.", "Give 1 to 200");
  }
  const double d = geometry.elementDiameter;
  const double pitch = geometry.pitchDiameter;
  if (!IsPositive(d) || !IsPositive(pitch) || d >= pitch) {
    return NoFactors("An element must be above 0 and smaller than the pitch diameter.",
                     "Give both in the same unit");
  }
  if (!(geometry.contactDegrees >= 0 && geometry.contactDegrees < 90)) {
    return NoFactors("The contact angle is missing or out of range.", "Give 0 up to 90 degrees");
  }
  const double gamma = d / pitch * std::cos(geometry.contactDegrees * std::numbers::pi / 180);
  const double half = geometry.elements / 2.0;
  return BearingFactors{.outer = half * (1 - gamma),
                        .inner = half * (1 + gamma),
                        .spin = pitch / (2 * d) * (1 - gamma * gamma),
                        .cage = (1 - gamma) / 2};
}

bool AreFactors(const BearingFactors& factors) {
  return IsPositive(factors.outer) && IsPositive(factors.inner) && IsPositive(factors.spin) &&
         IsPositive(factors.cage) && factors.cage < 1;
}

std::optional<int> ElementsOf(const BearingFactors& factors) {
  const double sum = factors.outer + factors.inner;
  if (!AreFactors(factors) || sum > kMostElements) return std::nullopt;
  const double whole = std::round(sum);
  if (whole < 1 || std::fabs(sum - whole) > kWholeTolerance) return std::nullopt;
  return static_cast<int>(whole);
}

}  // namespace kestrel::analysis
