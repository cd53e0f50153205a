// The sensor's alarm bands of what is shown, with their headroom.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "display/tables.h"
#include "numeric/number_texts.h"

namespace kestrel::study {

std::vector<BandRow> BandsOf(const Study& study) {
  const MeasuredSpectrum* measured = study.SpectrumOf(study.Choice().focus);
  // Thresholds are words of the sensor's own magnitudes; a transform has no such words.
  if (measured == nullptr || measured->spectrum.source != analysis::SpectrumSource::Sensor) {
    return {};
  }
  const analysis::Spectrum& spectrum = measured->spectrum;
  const auto* bands = study.BandsOf(spectrum.option, study.Choice().focus);
  if (bands == nullptr) return {};
  std::vector<BandRow> rows;
  for (const auto& band : analysis::LevelsOf(spectrum, *bands)) {
    if (band.state == analysis::BandState::Unused) continue;
    const double most = std::max({band.largestG, band.warningG, band.faultG});
    const double scale = most > 0 ? 1 / most : 0;
    const double half = spectrum.binWidthHz / 2;
    const bool isBelow = band.largestG < spectrum.stepG / 2;
    rows.push_back(
        {.number = band.number,
         .range = analysis::WithBound(band.fromHz, half).value + " to " +
                  analysis::WithBound(band.toHz, half).value,
         .largest = isBelow ? "below " + analysis::SignificantText(spectrum.stepG, 2)
                            : analysis::SignificantText(band.largestG),
         .state = analysis::TextOf(band),
         .headroom = band.toWarningDb ? analysis::SignedDecibelText(*band.toWarningDb) : "",
         .kind = band.state,
         .level = band.largestG * scale,
         .warning = band.warningG * scale,
         .fault = band.faultG * scale});
  }
  return rows;
}

}  // namespace kestrel::study
