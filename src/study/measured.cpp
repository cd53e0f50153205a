// How records become spectra, curves and peaks for the analyser.
// SPDX-License-Identifier: MIT
#include "study/measured.h"

#include <utility>

namespace kestrel::study {

MeasuredSpectrum Measure(analysis::Spectrum spectrum, const StudyChoice& choice) {
  auto curve = analysis::InQuantity(spectrum, choice.quantity);
  auto peaks = analysis::FindPeaks(spectrum, choice.peaks);
  return {std::move(spectrum), std::move(curve), std::move(peaks)};
}

Measured Measure(RecordPointer record, const StudyChoice& choice) {
  Measured measured{std::move(record), {}};
  for (const Axis axis : kAxes) {
    auto spectrum = analysis::SpectrumOf(
        *measured.record, axis,
        {.meaning = choice.meaning, .timeWindow = choice.timeWindow, .ownRange = true});
    if (spectrum) {
      measured.axes.emplace_back(Measure(*spectrum, choice));
    } else {
      measured.axes.emplace_back(spectrum.Why());
    }
  }
  return measured;
}

Amplitude AmplitudeOf(const analysis::Spectrum& spectrum, const analysis::QuantityChoice& choice,
                      const analysis::Line& line) {
  const auto value = [&](double peakG) {
    return analysis::ValueIn(spectrum, choice, peakG, line.hz);
  };
  Amplitude amplitude{.value = value(line.peakG)};
  if (line.peakBoundG) amplitude.bound = value(line.peakG + *line.peakBoundG) - amplitude.value;
  return amplitude;
}

}  // namespace kestrel::study
