// A record as the analyser reads it: spectra, curves and peaks of its axes, worked out once.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "analysis/peaks.h"
#include "analysis/quantity.h"
#include "analysis/refusal.h"
#include "analysis/spectrum.h"
#include "record/record.h"
#include "study/study_choice.h"

namespace kestrel::study {

using RecordPointer = std::shared_ptr<const Record>;

// A spectrum in the chosen quantity, with its peaks.
struct MeasuredSpectrum {
  analysis::Spectrum spectrum;
  analysis::Told<analysis::QuantityCurve> curve;
  std::vector<analysis::Peak> peaks;  // largest first, in g
};

// The peaks that are told in the chosen quantity, largest in it first; none where it is refused.
[[nodiscard]] std::vector<analysis::Peak> ToldPeaks(const MeasuredSpectrum& measured);

// One axis of a record; why there is no spectrum where there is none.
using MeasuredAxis = analysis::Told<MeasuredSpectrum>;

struct Measured {
  RecordPointer record;
  std::vector<MeasuredAxis> axes;  // X, Y, Z

  [[nodiscard]] const MeasuredAxis& Of(Axis axis) const { return axes[Index(axis)]; }
};

// Scaled by the range that the record itself tells, whatever it was scaled by for the plot of the
// main window.
[[nodiscard]] Measured Measure(RecordPointer record, const StudyChoice& choice);
[[nodiscard]] MeasuredSpectrum Measure(analysis::Spectrum spectrum, const StudyChoice& choice);
// The same record by another choice, working out again only what the two choices tell apart.
void MeasureAgain(Measured& measured, const StudyChoice& before, const StudyChoice& choice);

// Why two may not be averaged, held or subtracted; nothing where they may.
[[nodiscard]] std::optional<std::string> WhyNotTogether(const Measured& one, const Measured& other);

// Whether two records are of one capture: the same words, whatever they are scaled by and whatever
// was read of their alarms.
[[nodiscard]] bool IsSameCapture(const Record& one, const Record& other);

}  // namespace kestrel::study
