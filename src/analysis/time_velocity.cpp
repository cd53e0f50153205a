// Integration of a time record.
// SPDX-License-Identifier: MIT
#include "analysis/time_velocity.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <ranges>
#include <unsupported/Eigen/FFT>

#include "analysis/quantity.h"
#include "numeric/number_texts.h"
#include "record/frequency.h"

namespace kestrel::analysis {
namespace {

constexpr std::size_t kExtended = 2 * kTransformLength;

double LengthOf(int option) {
  return 1 / BinWidth(option);
}

// Least-squares line taken out.
std::vector<double> WithoutTrend(std::span<const double> samples) {
  const auto count = static_cast<double>(samples.size());
  const double middle = (count - 1) / 2;
  double mean = 0;
  double slope = 0;
  for (std::size_t n = 0; n < samples.size(); ++n) {
    mean += samples[n] / count;
    slope += samples[n] * (static_cast<double>(n) - middle);
  }
  slope /= count * (count * count - 1) / 12;
  std::vector<double> rest(samples.begin(), samples.end());
  for (std::size_t n = 0; n < rest.size(); ++n) {
    rest[n] -= mean + slope * (static_cast<double>(n) - middle);
  }
  return rest;
}

// The record, then the same backwards and turned over: velocity goes on without a jump at both
// ends, and nothing is added to the mean.
std::vector<std::complex<double>> Extended(const std::vector<double>& samples) {
  std::vector<std::complex<double>> extended(samples.begin(), samples.end());
  for (const double sample : samples | std::views::reverse) extended.emplace_back(-sample);
  return extended;
}

// Divides by 2πif and weakens what is below the edge.
void Integrate(std::vector<std::complex<double>>& bins, double widthHz, double fromHz) {
  const double toMmPerS = kVelocityOfG;
  bins[0] = 0;
  const std::size_t half = bins.size() / 2;
  for (std::size_t k = 1; k < bins.size(); ++k) {
    const double place = k <= half ? static_cast<double>(k)
                                   : static_cast<double>(k) - static_cast<double>(bins.size());
    const double hz = place * widthHz;
    const double pass = 1 / std::sqrt(1 + std::pow(fromHz / hz, 6));
    bins[k] *= std::complex<double>(0, -toMmPerS / hz * pass);
  }
  bins[half] = 0;  // its sign is not known
}

std::vector<double> Integrated(const std::vector<double>& samples, double rateHz, double fromHz) {
  Eigen::FFT<double> fft;
  std::vector<std::complex<double>> time = Extended(samples);
  std::vector<std::complex<double>> bins;
  fft.fwd(bins, time);
  Integrate(bins, rateHz / double{kExtended}, fromHz);
  fft.inv(time, bins);
  std::vector<double> velocity;
  for (std::size_t n = 0; n < samples.size(); ++n) {
    velocity.push_back(time[n].real());
  }
  return velocity;
}

Refusal TooShort(int option, double fromHz) {
  const double needed = kPeriodsNeeded / fromHz;
  Refusal refusal{
      .title = "Velocity from " + HertzText(fromHz) + " cannot be determined from this record",
      .reason = "It is " + SecondsText(LengthOf(option)) + " long. A high-pass at " +
                HertzText(fromHz) + " needs five periods, " + SecondsText(needed) + ".",
      .has = LengthOf(option),
      .needs = needed,
      .unit = "s"};
  for (int each = 0; each < kOptions; ++each) {
    refusal.options.push_back({.option = each,
                               .binWidthHz = BinWidth(each),
                               .lengthS = LengthOf(each),
                               .fromHz = LowestVelocityOf(each),
                               .toHz = SampleFrequency(each) / 2,
                               .current = each == option});
  }
  MarkWhatWouldDo(refusal, fromHz, fromHz);
  if (!refusal.cureOption) {
    refusal.cure = "Start from " + HertzText(RoundedUp(LowestVelocityOf(kOptions - 1)));
  }
  return refusal;
}

Refusal NoVelocity(std::string reason, std::string cure) {
  return {.title = "Velocity cannot be determined from this record",
          .reason = std::move(reason),
          .cure = std::move(cure)};
}

}  // namespace

double LowestVelocityOf(int option) {
  return kPeriodsNeeded / LengthOf(option);
}

Told<VelocityRecord> VelocityOf(std::span<const double> samplesG, int option, double fromHz) {
  const bool finite =
      std::ranges::all_of(samplesG, [](double sample) { return std::isfinite(sample); });
  if (samplesG.size() != kTransformLength || !finite || option < 0 || option >= kOptions) {
    return NoVelocity("It does not hold 512 samples of a known rate.", "Capture a time record");
  }
  if (!std::isfinite(fromHz) || fromHz <= 0) {
    return NoVelocity("The frequency to start from is not valid.", "Give one above 0 Hz");
  }
  if (fromHz < LowestVelocityOf(option) * (1 - 1e-9)) return TooShort(option, fromHz);
  if (fromHz >= SampleFrequency(option) / 2) {
    return NoVelocity("It ends at " + HertzText(RoundedDown(SampleFrequency(option) / 2)) + ".",
                      "Choose a lower frequency to start from");
  }
  const double rateHz = SampleFrequency(option);
  VelocityRecord velocity{.stepS = 1 / rateHz, .fromHz = fromHz};
  velocity.mmPerS = Integrated(WithoutTrend(samplesG), rateHz, fromHz);
  double power = 0;
  for (const double value : velocity.mmPerS) power += value * value;
  velocity.rms = std::sqrt(power / double{kTransformLength});
  return velocity;
}

}  // namespace kestrel::analysis
