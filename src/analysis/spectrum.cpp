// Spectra from records: the sensor's own, or the transform of a time record.
// SPDX-License-Identifier: MIT
#include "analysis/spectrum.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <unsupported/Eigen/FFT>

#include "record/frequency.h"

namespace kestrel::analysis {
namespace {

bool AllFinite(const std::vector<double>& values) {
  return std::ranges::all_of(values, [](double value) { return std::isfinite(value); });
}

bool IsCode(int code) {
  return code >= 0 && code < 4;
}

Refusal NoSpectrum(std::string reason) {
  return {.title = "No spectrum can be determined from this record",
          .reason = std::move(reason),
          .cure = "Capture again"};
}

// Root mean square of the rounding to steps, as the magnitude it leaves in a bin.
double RoundingInBin(double stepG, const Window& window) {
  const double rms = stepG / std::sqrt(12.0);
  return 2 * rms * std::sqrt(window.noiseBandwidth / double{kTransformLength});
}

// Magnitudes of the sensor as peak of a sine.
void TakeMagnitudes(Spectrum& spectrum, std::vector<double> values) {
  const double factor = spectrum.meaning == MagnitudeMeaning::Rms ? std::numbers::sqrt2 : 1.0;
  for (std::size_t bin = 0; bin < values.size(); ++bin) {
    values[bin] = std::fabs(values[bin]) * (bin == 0 ? 1.0 : factor);
  }
  spectrum.stepG *= factor;
  spectrum.peakG = std::move(values);
}

void TakeTransform(Spectrum& spectrum, const std::vector<double>& samples, WindowKind window) {
  spectrum.window = WindowOf(window);
  spectrum.source = SpectrumSource::TimeRecord;
  spectrum.meaning = MagnitudeMeaning::PeakOfSine;
  spectrum.averages = 1;
  spectrum.peakG = Transform(samples, spectrum.window);
  spectrum.peakG.resize(kSpectrumBins);
  spectrum.stepG = RoundingInBin(spectrum.stepG, spectrum.window);
}

}  // namespace

double Spectrum::TopHz() const {
  return peakG.empty() ? 0 : (static_cast<double>(Bins()) - 0.5) * binWidthHz;
}

std::size_t Spectrum::FirstVibration() const {
  return std::min(FirstVibrationBin(window), Bins());
}

bool ScaledForOtherRange(const Record& record) {
  return record.scaledRange != record.settings.range;
}

double StepOf(const Record& record, bool ownRange) {
  if (!ownRange) return record.lsbWeight;
  return IsCode(record.settings.range) ? LsbWeightOf(record.settings.range, record.kind) : 0;
}

std::vector<double> ValuesInG(const Record& record, Axis axis, bool ownRange) {
  if (!ownRange || !ScaledForOtherRange(record)) {
    const std::span<const double> values = record.Values(axis);
    return {values.begin(), values.end()};
  }
  const std::span<const double> raw = record.Of(axis).raw.First(record.Points());
  std::vector<double> values(raw.begin(), raw.end());
  for (double& value : values) value *= StepOf(record, true);
  return values;
}

std::vector<double> Transform(std::span<const double> samples, const Window& window) {
  if (samples.size() != kTransformLength || !window.Known()) return {};
  std::vector<double> windowed = WindowSamples(window, kTransformLength);
  for (std::size_t n = 0; n < kTransformLength; ++n) windowed[n] *= samples[n];
  Eigen::FFT<double> fft;
  fft.SetFlag(Eigen::FFT<double>::HalfSpectrum);
  std::vector<std::complex<double>> bins(kTransformLength);
  fft.fwd(bins.data(), windowed.data(), static_cast<int>(kTransformLength));
  const double scale = 1 / (window.gain * double{kTransformLength});
  std::vector<double> magnitudes;
  for (std::size_t k = 0; k <= kTransformLength / 2; ++k) {
    magnitudes.push_back(2 * scale * std::abs(bins[k]));
  }
  magnitudes.front() /= 2;
  magnitudes.back() /= 2;
  return magnitudes;
}

Told<Spectrum> SpectrumOf(const Record& record, Axis axis, const SpectrumChoice& choice) {
  const RecordSettings& settings = record.settings;
  if (!IsCode(settings.option)) return NoSpectrum("Its sample-rate option is not one of 0 to 3.");
  if (!IsCode(settings.range)) return NoSpectrum("Its range is not one of the sensor's.");
  std::vector<double> values = ValuesInG(record, axis, choice.ownRange);
  if (!AllFinite(values)) return NoSpectrum("It holds values that are not numbers.");
  const int averages = std::max<int>(settings.averages, 1);
  Spectrum spectrum{.binWidthHz = BinWidth(settings.option),
                    .window = WindowOfCode(settings.window),
                    .option = settings.option,
                    .range = choice.ownRange ? settings.range : record.scaledRange,
                    .averages = averages,
                    .stepG = StepOf(record, choice.ownRange),
                    .axis = axis,
                    .meaning = choice.meaning,
                    .time = record.time};
  if (record.kind == RecordKind::Time) {
    if (choice.timeWindow == WindowKind::Unknown) {
      return NoSpectrum("A transform needs a window: rectangular, Hanning or flat top.");
    }
    TakeTransform(spectrum, values, choice.timeWindow);
  } else {
    TakeMagnitudes(spectrum, std::move(values));
  }
  return spectrum;
}

}  // namespace kestrel::analysis
