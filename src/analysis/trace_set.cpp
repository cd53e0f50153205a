// Averages of power, holds, differences.
// SPDX-License-Identifier: MIT
#include "analysis/trace_set.h"

#include <algorithm>
#include <cmath>

namespace kestrel::analysis {
namespace {

std::string AxisName(Axis axis) {
  return std::string(1, Letter(axis));
}

bool IsCapture(const Spectrum& spectrum) {
  return spectrum.source == SpectrumSource::Sensor || spectrum.source == SpectrumSource::TimeRecord;
}

std::optional<std::string> WhyNotInto(const std::optional<Spectrum>& trace,
                                      const Spectrum& capture) {
  if (!IsCapture(capture)) return "not a capture but made of several";
  return trace ? WhyNotWith(*trace, capture) : std::nullopt;
}

// P ← P + share (x² − P).
void MixPower(Spectrum& average, const Spectrum& capture, double share) {
  for (std::size_t bin = 0; bin < average.Bins(); ++bin) {
    double& value = average.peakG[bin];
    const double power = value * value;
    const double x = capture.peakG[bin];
    value = std::sqrt(std::max(power + share * (x * x - power), 0.0));
  }
}

void TakeLater(Spectrum& trace, const Spectrum& capture) {
  ++trace.captures;
  trace.time = capture.time;
  trace.stepG = std::max(trace.stepG, capture.stepG);
}

}  // namespace

std::optional<std::string> WhyNotWith(const Spectrum& one, const Spectrum& other) {
  if (one.option != other.option || one.binWidthHz != other.binWidthHz) {
    return "other sample-rate option: " + std::to_string(other.option);
  }
  if (one.window != other.window) return "other window: " + std::string(other.window.name);
  if (one.axis != other.axis) return "other axis: " + AxisName(other.axis);
  if (one.meaning != other.meaning) return "magnitudes taken for another quantity";
  if (one.Bins() != other.Bins()) return "other number of bins";
  return std::nullopt;
}

TraceAverage::TraceAverage(Averaging averaging, int wanted)
    : averaging_(averaging), wanted_(std::max(wanted, 1)) {}

bool TraceAverage::Complete() const {
  return value_ && value_->captures >= wanted_;
}

std::optional<std::string> TraceAverage::Add(const Spectrum& capture) {
  if (auto reason = WhyNotInto(value_, capture)) return reason;
  if (!value_) {
    value_ = capture;
    value_->source = SpectrumSource::Average;
    value_->captures = 1;
    return std::nullopt;
  }
  if (Complete() && averaging_ == Averaging::Linear) return std::nullopt;
  const double share = Complete() ? 2.0 / (wanted_ + 1) : 1.0 / (value_->captures + 1);
  MixPower(*value_, capture, share);
  TakeLater(*value_, capture);
  return std::nullopt;
}

std::optional<std::string> TraceHold::Add(const Spectrum& capture) {
  if (auto reason = WhyNotInto(value_, capture)) return reason;
  if (!value_) {
    value_ = capture;
    value_->source =
        hold_ == Hold::Maximum ? SpectrumSource::MaximumHold : SpectrumSource::MinimumHold;
    value_->captures = 1;
    return std::nullopt;
  }
  for (std::size_t bin = 0; bin < value_->Bins(); ++bin) {
    double& value = value_->peakG[bin];
    const double x = capture.peakG[bin];
    value = hold_ == Hold::Maximum ? std::max(value, x) : std::min(value, x);
  }
  TakeLater(*value_, capture);
  return std::nullopt;
}

double NoiseLiftDb(int captures) {
  // The mean of the largest of n exponential powers is 1 + 1/2 + ... + 1/n.
  double sum = 0;
  for (int n = 1; n <= captures; ++n) sum += 1.0 / n;
  return captures > 1 ? 10 * std::log10(sum) : 0;
}

Told<DifferenceCurve> DifferenceDb(const Spectrum& trace, const Spectrum& reference) {
  if (auto reason = WhyNotWith(reference, trace)) {
    return Refusal{.title = "The difference to the reference cannot be determined",
                   .reason = "The trace has " + *reason + ".",
                   .cure = "Take a reference with the same settings"};
  }
  DifferenceCurve curve{.firstValid = trace.FirstVibration()};
  const double least = std::max(std::max(trace.stepG, reference.stepG) / 2, 1e-12);
  for (std::size_t bin = 0; bin < trace.Bins(); ++bin) {
    const double over = std::max(trace.peakG[bin], least);
    curve.db.push_back(20 * std::log10(over / std::max(reference.peakG[bin], least)));
  }
  return curve;
}

}  // namespace kestrel::analysis
