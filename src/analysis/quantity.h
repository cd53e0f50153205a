// Quantities that a spectrum can be read in, where they hold, and where they are refused.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "analysis/refusal.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

enum class Quantity { Acceleration, Level, Density, Velocity, Displacement };
enum class Amplitude { Peak, Rms, PeakToPeak };
enum class LevelReference { OneG, MicrometrePerSecondSquared };  // both RMS

inline constexpr double kStandardGravity = 9.80665;  // m/s² a g, exact
// mm/s of 1 g at 1 Hz, 1560.777.
inline constexpr double kVelocityOfG = 1000 * kStandardGravity / (2 * std::numbers::pi);
// µm peak to peak of 1 g peak at 1 Hz, 496,811.
inline constexpr double kDisplacementOfG =
    2e6 * kStandardGravity / (4 * std::numbers::pi * std::numbers::pi);

struct QuantityChoice {
  Quantity quantity = Quantity::Acceleration;
  Amplitude amplitude = Amplitude::Peak;  // a level and a density are always RMS
  LevelReference reference = LevelReference::OneG;
  double lowestHz = 0;  // for velocity and displacement; 0: what the bins allow. Not finite or
                        // negative counts as 0.
  bool operator==(const QuantityChoice&) const = default;
};

// "Velocity, mm/s RMS", "Level, dB re 1 g RMS": quantity, unit and kind, for axes and heads.
[[nodiscard]] std::string TitleOf(const QuantityChoice& choice);
// "mm/s RMS", "dB re 1 g RMS", "g²/Hz".
[[nodiscard]] std::string UnitOf(const QuantityChoice& choice);
// "mm/s", "dB", "g²/Hz".
[[nodiscard]] std::string ShortUnitOf(const QuantityChoice& choice);

// A spectrum in a quantity: one value a bin.
struct QuantityCurve {
  QuantityChoice choice{};
  std::vector<double> values{};  // finite; below `firstValid` what the formula gives, drawn grey
  std::vector<double> floor{};   // one step of the magnitude word: nothing smaller can be told
  std::size_t firstValid = 0;    // bins below hold offset, or are too low to integrate
  std::string title{};
  std::string unit{};
};

// Refused: density of a held trace or of an unknown window; velocity and displacement where the
// lowest frequency is above the last bin.
[[nodiscard]] Told<QuantityCurve> InQuantity(const Spectrum& spectrum,
                                             const QuantityChoice& choice);

// A magnitude in g peak at a frequency in the quantity. A level of nothing is that of half a step;
// with velocity and displacement hz <= 0 gives 0. Density of a known window only, 0 otherwise.
[[nodiscard]] double ValueIn(const Spectrum& spectrum, const QuantityChoice& choice, double peakG,
                             double hz);

// 20 lg(rms / reference) in dB, rmsG in g; −400 for nothing.
[[nodiscard]] double LevelOf(double rmsG, LevelReference reference);

// First bin that holds the quantity: outside the lobe, and of velocity and displacement from 3 bins
// (flat top 5) or the lowest frequency on, whichever is higher. May be Bins() or more.
[[nodiscard]] std::size_t FirstValidBin(const Spectrum& spectrum, const QuantityChoice& choice);

// Why the quantity cannot be told over all of fromHz to toHz, with the option that would do;
// nothing where it can. Edges not finite or in the wrong order are refused as well.
[[nodiscard]] std::optional<Refusal> WhyNotBetween(const Spectrum& spectrum,
                                                   const QuantityChoice& choice, double fromHz,
                                                   double toHz);

// Where the four options hold a quantity with this window, the one at hand marked.
[[nodiscard]] std::vector<OptionOffer> OffersOf(const Window& window, bool integrated, int option);

}  // namespace kestrel::analysis
