// Interpolation for the three windows, with bounds.
// SPDX-License-Identifier: MIT
#include "analysis/interpolation.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace kestrel::analysis {
namespace {

constexpr std::size_t kNoiseReach = 16;  // bins beyond the lobe, either side
// Median over RMS of noise magnitudes, and of what noise adds to a magnitude much larger than
// itself.
constexpr double kMedianAlone = 0.83;
constexpr double kMedianOnSkirt = 0.48;
// Scatter (RMS) that noise n causes in a line of amplitude A, a n/A: found by simulation.
constexpr double kBinScatter = 0.6;
constexpr double kFlatTopBinScatter = 1.4;
constexpr double kDecibelScatter = 6.8;
constexpr double kConfidence = 2.2;       // of a 95 % bound, in scatters
constexpr double kShapeTolerance = 0.03;  // of the amplitude, before a line counts as unresolved
constexpr double kCompany = 0.01;         // of the amplitude, likewise for another line's top
constexpr double kHalfSpectrum = 256;     // bins up to half the sample rate

// Where a line lies from its bin, and what was measured beside it.
struct Fit {
  double delta = 0;  // bins
  double peakG = 0;
  double boundBins = 0;
  double boundDb = 0;
};

double SincInverse(double delta) {
  const double angle = std::numbers::pi * delta;
  return std::fabs(angle) < 1e-9 ? 1.0 : angle / std::sin(angle);
}

double At(const Spectrum& spectrum, std::size_t bin) {
  return spectrum.peakG[bin];
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Calls `visit` with the bins about `bin` that lie beyond the lobe.
template <typename Visit>
void VisitSurrounding(const Spectrum& spectrum, std::size_t bin, Visit visit) {
  const std::size_t gap = spectrum.window.lobe + 1;
  for (std::size_t step = gap; step < gap + kNoiseReach; ++step) {
    if (bin >= step + spectrum.FirstVibration()) visit(bin - step);
    if (bin + step < spectrum.Bins()) visit(bin + step);
  }
}

// RMS of the noise magnitudes beside a line, the line's own skirt taken out.
double NoiseBeside(const Spectrum& spectrum, std::size_t bin, const Fit& fit) {
  std::vector<double> rest;
  rest.reserve(2 * kNoiseReach);
  VisitSurrounding(spectrum, bin, [&](std::size_t each) {
    const double away = static_cast<double>(each) - static_cast<double>(bin) - fit.delta;
    const double skirt = fit.peakG * LobeShape(spectrum.window, away);
    const bool onSkirt = skirt > At(spectrum, each) / 2;
    rest.push_back(std::fabs(At(spectrum, each) - skirt) /
                   (onSkirt ? kMedianOnSkirt : kMedianAlone));
  });
  return Median(std::move(rest));
}

// Envelope of the window's side lobes, so many bins away.
double SideLobe(const Window& window, double bins) {
  switch (window.kind) {
    case WindowKind::Hanning:
      return 1 / (std::numbers::pi * bins * (bins * bins - 1));
    case WindowKind::Rectangular:
      return 1 / (std::numbers::pi * bins);
    default:
      return 1e-4 / bins;
  }
}

bool IsLocalTop(const Spectrum& spectrum, std::size_t bin) {
  return At(spectrum, bin) > At(spectrum, bin - 1) && At(spectrum, bin) > At(spectrum, bin + 1);
}

// What the lines beyond the lobes, and the offset, leak into the bins of a line.
double LeakageOfOthers(const Spectrum& spectrum, std::size_t bin) {
  const std::size_t near = 2 * spectrum.window.lobe;
  double power = 0;
  for (std::size_t each = spectrum.window.lobe; each + 1 < spectrum.Bins(); ++each) {
    const std::size_t away = each > bin ? each - bin : bin - each;
    if (away <= near || !IsLocalTop(spectrum, each)) continue;
    const double leak =
        At(spectrum, each) * SideLobe(spectrum.window, static_cast<double>(away) - 1);
    power += leak * leak;
  }
  return std::sqrt(power);
}

// Distance in bins from the nearer mirror: 0 Hz or half the sample rate.
double FromMirror(std::size_t bin, double delta) {
  const double place = static_cast<double>(bin) + delta;
  return std::max(std::min(place, kHalfSpectrum - place), 1.0);
}

struct Neighbours {
  double side = 1;  // +1: the one above is the larger
  double larger = 0;
  double smaller = 0;
};

Neighbours Beside(const Spectrum& spectrum, std::size_t bin) {
  const double below = At(spectrum, bin - 1);
  const double above = At(spectrum, bin + 1);
  return {above >= below ? 1.0 : -1.0, std::max(above, below), std::min(above, below)};
}

Fit FitHanning(const Spectrum& spectrum, std::size_t bin) {
  const Neighbours beside = Beside(spectrum, bin);
  const double ratio = beside.larger / At(spectrum, bin);
  const double delta = (2 * ratio - 1) / (1 + ratio);
  const double mirror = std::pow(FromMirror(bin, beside.side * delta), 3);
  return {.delta = beside.side * delta,
          .peakG = At(spectrum, bin) * (1 - delta * delta) * SincInverse(delta),
          .boundBins = 0.08 / mirror + spectrum.stepG / At(spectrum, bin),
          .boundDb = 0.14 / mirror};
}

Fit FitRectangular(const Spectrum& spectrum, std::size_t bin) {
  const Neighbours beside = Beside(spectrum, bin);
  const double ratio = beside.larger / At(spectrum, bin);
  const double delta = ratio / (1 + ratio);
  const double place = FromMirror(bin, beside.side * delta);
  return {.delta = beside.side * delta,
          .peakG = At(spectrum, bin) * SincInverse(delta),
          .boundBins = 0.12 / place + spectrum.stepG / At(spectrum, bin) / 2,
          .boundDb = 0.9 / place};
}

Fit FitFlatTop(const Spectrum& spectrum, std::size_t bin) {
  const double below = At(spectrum, bin - 2);
  const double above = At(spectrum, bin + 2);
  const double q = 20 * std::log10(above / below);
  const double decibel = 20 / std::numbers::ln10;
  const double rounding = decibel * spectrum.stepG / 2 * (1 / above + 1 / below);
  return {.delta = std::clamp(0.0774 * q - 3.23e-5 * q * q * q, -0.6, 0.6),
          .peakG = At(spectrum, bin),
          .boundBins = 1.2e-4 + 0.0774 * rounding,
          .boundDb = 0.01};
}

Fit FitOf(const Spectrum& spectrum, std::size_t bin) {
  switch (spectrum.window.kind) {
    case WindowKind::Hanning:
      return FitHanning(spectrum, bin);
    case WindowKind::Rectangular:
      return FitRectangular(spectrum, bin);
    default:
      return FitFlatTop(spectrum, bin);
  }
}

// Bins either side that an interpolation looks at.
std::size_t Reach(const Window& window) {
  return window.kind == WindowKind::FlatTop ? 2 : 1;
}

bool CanInterpolate(const Spectrum& spectrum, std::size_t bin) {
  const std::size_t reach = Reach(spectrum.window);
  if (!spectrum.window.Known() || !(At(spectrum, bin) > 0)) return false;
  if (bin < FirstIntegrableBin(spectrum.window) || bin + reach >= spectrum.Bins()) return false;
  return spectrum.window.kind != WindowKind::FlatTop ||
         std::min(At(spectrum, bin - 2), At(spectrum, bin + 2)) > 0;
}

// Between two lines of nearly the same neighbours a rectangular window does not tell on which side
// of the bin the line lies: the image of the line at negative frequencies and noise decide.
bool IsSideUnsure(const Spectrum& spectrum, std::size_t bin, const Fit& fit, double noise) {
  if (spectrum.window.kind != WindowKind::Rectangular) return false;
  const Neighbours beside = Beside(spectrum, bin);
  const double image = beside.larger / FromMirror(bin, fit.delta);
  return beside.larger - beside.smaller < image + 3 * noise + spectrum.stepG;
}

bool IsWithinLobes(const Spectrum& spectrum, std::size_t bin, const Fit& fit, double noise) {
  const std::size_t lobe = spectrum.window.lobe;
  const double leakage =
      spectrum.window.kind == WindowKind::Rectangular ? 0.32 / FromMirror(bin, fit.delta) : 0;
  const double tolerance = (kShapeTolerance + leakage) * fit.peakG + 4 * noise + spectrum.stepG;
  for (std::size_t each = bin - std::min(lobe, bin); each <= bin + lobe; ++each) {
    if (each < spectrum.FirstVibration() || each >= spectrum.Bins()) continue;
    const double away = static_cast<double>(each) - static_cast<double>(bin) - fit.delta;
    const double model = fit.peakG * LobeShape(spectrum.window, away);
    if (std::fabs(At(spectrum, each) - model) > tolerance) return false;
  }
  return true;
}

// The highest top of another line within the two lobes' width, 0 where there is none.
double Company(const Spectrum& spectrum, std::size_t bin) {
  const std::size_t reach = 2 * spectrum.window.lobe;
  const std::size_t first = std::max(spectrum.FirstVibration() + 1, bin - std::min(bin, reach));
  double highest = 0;
  for (std::size_t each = first; each <= bin + reach && each + 1 < spectrum.Bins(); ++each) {
    const bool apart = bin > each + 1 || each > bin + 1;
    if (apart && IsLocalTop(spectrum, each)) highest = std::max(highest, At(spectrum, each));
  }
  return highest;
}

bool IsResolved(const Spectrum& spectrum, std::size_t bin, const Fit& fit, double noise) {
  const double least = std::max({5 * noise, 2 * spectrum.stepG, kCompany * At(spectrum, bin)});
  return Company(spectrum, bin) <= least && IsWithinLobes(spectrum, bin, fit, noise);
}

Line OwnValue(const Spectrum& spectrum, std::size_t bin, bool unresolved) {
  Line line{.hz = spectrum.FrequencyOf(static_cast<double>(bin)),
            .hzBound = spectrum.binWidthHz * (unresolved ? 1.0 : 0.5),
            .peakG = At(spectrum, bin),
            .peakBoundG = std::nullopt,
            .unresolved = unresolved};
  if (!unresolved && spectrum.window.Known()) {
    const double scallop = std::pow(10, spectrum.window.scallopDb / 20) - 1;
    line.peakBoundG = line.peakG * scallop + spectrum.stepG / 2;
  }
  return line;
}

// Transforms whose noise is averaged in the spectrum; a hold keeps the largest.
double Averaged(const Spectrum& spectrum) {
  const bool power = spectrum.source == SpectrumSource::Average;
  const bool held = spectrum.source == SpectrumSource::MaximumHold ||
                    spectrum.source == SpectrumSource::MinimumHold;
  return held ? 1 : std::max(spectrum.averages, 1) * (power ? std::max(spectrum.captures, 1) : 1);
}

void Widen(Fit& fit, const Spectrum& spectrum, std::size_t bin, double noise) {
  const double ratio = noise / fit.peakG;
  // What averaging cannot take away: noise lifts small magnitudes.
  const double scatter = kConfidence * (ratio / std::sqrt(Averaged(spectrum)) + ratio * ratio);
  const bool flatTop = spectrum.window.kind == WindowKind::FlatTop;
  const double company = Company(spectrum, bin) > 3 * noise ? Company(spectrum, bin) : 0;
  const double others = (company + 1.5 * LeakageOfOthers(spectrum, bin)) / fit.peakG;
  fit.boundBins += scatter * (flatTop ? kFlatTopBinScatter : kBinScatter) + 1.5 * others;
  fit.boundDb += scatter * kDecibelScatter + 20 / std::numbers::ln10 * others;
}

}  // namespace

double LocalNoise(const Spectrum& spectrum, std::size_t bin) {
  std::vector<double> values;
  values.reserve(2 * kNoiseReach);
  VisitSurrounding(spectrum, bin, [&](std::size_t each) { values.push_back(At(spectrum, each)); });
  return Median(std::move(values));
}

Line LineAt(const Spectrum& spectrum, std::size_t bin) {
  if (bin >= spectrum.Bins()) return {};
  if (!CanInterpolate(spectrum, bin)) return OwnValue(spectrum, bin, false);
  Fit fit = FitOf(spectrum, bin);
  const double noise = NoiseBeside(spectrum, bin, fit);
  if (!IsResolved(spectrum, bin, fit, noise)) return OwnValue(spectrum, bin, true);
  Widen(fit, spectrum, bin, noise);
  if (IsSideUnsure(spectrum, bin, fit, noise)) fit.boundBins += 2 * std::fabs(fit.delta);
  const double relative = std::pow(10, fit.boundDb / 20) - 1;
  return {.hz = spectrum.FrequencyOf(static_cast<double>(bin) + fit.delta),
          .hzBound = fit.boundBins * spectrum.binWidthHz,
          .peakG = fit.peakG,
          .peakBoundG = fit.peakG * relative + spectrum.stepG,
          .interpolated = true};
}

}  // namespace kestrel::analysis
