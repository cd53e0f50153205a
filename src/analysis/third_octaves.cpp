// Sums over third octaves.
// SPDX-License-Identifier: MIT
#include "analysis/third_octaves.h"

#include <array>
#include <cmath>

#include "analysis/levels.h"

namespace kestrel::analysis {
namespace {

constexpr int kLowest = -33;  // 0.5 Hz
constexpr int kHighest = 17;  // 50 kHz
constexpr std::array kNominal{1.0, 1.25, 1.6, 2.0, 2.5, 3.15, 4.0, 5.0, 6.3, 8.0};

double Nominal(int number) {
  const int decade = static_cast<int>(std::floor(number / 10.0));
  return kNominal[static_cast<std::size_t>(number - 10 * decade)] * std::pow(10.0, 3 + decade);
}

ThirdOctave BandOf(int number) {
  const double centre = 1000 * std::pow(10.0, number / 10.0);
  const double edge = std::pow(10.0, 1.0 / 20);
  return {.number = number,
          .nominalHz = Nominal(number),
          .centreHz = centre,
          .fromHz = centre / edge,
          .toHz = centre * edge};
}

bool Holds(const Spectrum& capture, const ThirdOctave& band) {
  const double bottom = capture.FrequencyOf(static_cast<double>(capture.FirstVibration()) - 0.5);
  return band.fromHz >= bottom && band.toHz <= capture.TopHz() &&
         band.toHz - band.fromHz >= kLeastThirdOctaveBins * capture.binWidthHz;
}

bool IsPower(const Spectrum& capture) {
  return capture.window.Known() && capture.source != SpectrumSource::MaximumHold &&
         capture.source != SpectrumSource::MinimumHold;
}

const Spectrum* FinestWith(std::span<const Spectrum> captures, const ThirdOctave& band) {
  const Spectrum* finest = nullptr;
  for (const Spectrum& capture : captures) {
    if (!IsPower(capture) || !Holds(capture, band)) continue;
    if (finest == nullptr || capture.binWidthHz < finest->binWidthHz) finest = &capture;
  }
  return finest;
}

}  // namespace

std::vector<ThirdOctave> ThirdOctavesOf(std::span<const Spectrum> captures) {
  std::vector<ThirdOctave> bands;
  for (int number = kLowest; number <= kHighest; ++number) {
    ThirdOctave band = BandOf(number);
    const Spectrum* const capture = FinestWith(captures, band);
    if (capture == nullptr) continue;
    band.rmsG = std::sqrt(PowerBetween(*capture, band.fromHz, band.toHz));
    band.option = capture->option;
    bands.push_back(band);
  }
  return bands;
}

}  // namespace kestrel::analysis
