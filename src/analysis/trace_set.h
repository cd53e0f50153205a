// Traces made of several captures: averages, holds, references, differences.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/quantity.h"
#include "analysis/spectrum.h"

namespace kestrel::analysis {

// Why two spectra may not be averaged, held or subtracted: "other sample-rate option: 2", "other
// window: Hanning", "other axis: Y"; the second spectrum is the one named. Nothing where they may.
// In Hz they may be overlaid whatever they are.
[[nodiscard]] std::optional<std::string> WhyNotWith(const Spectrum& one, const Spectrum& other);

enum class Averaging { Linear, Exponential };
enum class Hold { Maximum, Minimum };

// The average of captures: of power, shown as amplitude. Linear until `wanted` captures are there;
// then a linear average is complete and takes no more, an exponential one goes on with α =
// 2/(wanted + 1).
class TraceAverage {
 public:
  // `wanted` below 1 counts as 1.
  TraceAverage(Averaging averaging, int wanted);

  // Nothing where the capture was taken in or the average is complete; else why not.
  std::optional<std::string> Add(const Spectrum& capture);
  // Its `captures` tells how many are in it. None before the first.
  [[nodiscard]] const std::optional<Spectrum>& Value() const { return value_; }
  [[nodiscard]] bool Complete() const;

 private:
  Averaging averaging_;
  int wanted_;
  std::optional<Spectrum> value_;
};

// The largest (smallest) of each bin over captures.
class TraceHold {
 public:
  explicit TraceHold(Hold hold) : hold_(hold) {}
  std::optional<std::string> Add(const Spectrum& capture);
  [[nodiscard]] const std::optional<Spectrum>& Value() const { return value_; }

 private:
  Hold hold_;
  std::optional<Spectrum> value_;
};

// Lift of noise in dB by a maximum hold of this many captures: 4.7 dB for 10, 7.1 dB for 100. RMS
// of the largest of n magnitudes of Gaussian noise to that of one; 0 for one or fewer.
[[nodiscard]] double NoiseLiftDb(int captures);

// Trace over reference in dB, bin by bin; 0 dB where both show less than half a step. Refused where
// they are not compatible, with the reason.
struct DifferenceCurve {
  std::vector<double> db{};
  std::size_t firstValid = 0;
};
[[nodiscard]] Told<DifferenceCurve> DifferenceDb(const Spectrum& trace, const Spectrum& reference);

}  // namespace kestrel::analysis
