// From records to joined spectra, their curves, and what is said of them.
// SPDX-License-Identifier: MIT
#include "analysis/wide_spectrum.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "analysis/levels.h"
#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

int OptionOf(const Record& record) {
  return record.settings.option;
}

std::vector<Record> OnceEach(std::vector<Record> records) {
  std::ranges::stable_sort(records, std::greater{}, &Record::time);
  std::ranges::stable_sort(records, std::greater{}, OptionOf);
  const auto again = std::ranges::unique(records, {}, OptionOf);
  records.erase(again.begin(), again.end());
  return records;
}

Told<Joined> JoinedAxis(const std::vector<Record>& records, Axis axis, const WideChoice& choice) {
  std::vector<Spectrum> captures;
  for (const Record& record : records) {
    if (record.kind != RecordKind::Spectrum) {
      return Refusal{
          .title = "These captures cannot be joined",
          .reason = "The one of option " + std::to_string(OptionOf(record)) + " is a time record.",
          .cure = "Capture spectra"};
    }
    auto spectrum = SpectrumOf(record, axis, {.meaning = choice.meaning, .ownRange = true});
    if (!spectrum) return spectrum.Why();
    captures.push_back(*spectrum);
  }
  return Join(std::move(captures), choice.limitDb);
}

// Both members of a point of a capture, by the option that it comes from.
const Spectrum& CaptureOf(const Joined& joined, int option) {
  return *std::ranges::find(joined.captures, option, &Spectrum::option);
}

}  // namespace

WideSpectrum WideOf(std::vector<Record> records, const WideChoice& choice) {
  WideSpectrum wide{.records = OnceEach(std::move(records))};
  for (int option = kOptions - 1; option >= 0; --option) {
    const bool there = std::ranges::count(wide.records, option, OptionOf) > 0;
    if ((choice.wanted >> option & 1U) != 0 && !there) wide.missing.push_back(option);
  }
  for (const Axis axis : kAxes) wide.axes.push_back(JoinedAxis(wide.records, axis, choice));
  return wide;
}

bool WideSpectrum::Steady() const {
  return std::ranges::all_of(axes, [](const Told<Joined>& told) { return told && told->Steady(); });
}

std::vector<std::string> WideSpectrum::Disagreements() const {
  std::vector<std::string> lines;
  for (const Axis axis : kAxes) {
    const Told<Joined>& told = axes[Index(axis)];
    if (!told) continue;
    for (const Overlap& overlap : told->overlaps) {
      if (!overlap.unsteady) continue;
      lines.push_back(std::string(1, kestrel::Letter(axis)) + ", options " +
                      std::to_string(overlap.fineOption) + " and " +
                      std::to_string(overlap.coarseOption) + ": " +
                      NumberText(overlap.differenceDb, 1) + " dB");
    }
  }
  return lines;
}

WideCurve CurveOf(const Joined& joined, const QuantityChoice& choice) {
  WideCurve curve{.title = TitleOf(choice), .unit = UnitOf(choice)};
  const bool isDensity = choice.quantity == Quantity::Density;
  for (const JoinedPoint& point : joined.points) {
    const Spectrum& capture = CaptureOf(joined, point.option);
    curve.values.push_back(isDensity ? point.density
                                     : ValueIn(capture, choice, point.peakG, point.hz));
    curve.steps.push_back(ValueIn(capture, choice, capture.stepG, point.hz));
  }
  return curve;
}

std::string NoiseNotice(const Joined& joined) {
  double most = 0;
  for (const Spectrum& capture : joined.captures) {
    most = std::max(most, -NoiseOfAveragedMagnitudesDb(capture.averages));
  }
  if (!(most > 0)) return {};
  return "The sensor averages magnitudes, not power, by which noise reads up to " +
         NumberText(most, 1) +
         " dB low: densities and levels are corrected for it, lines need no correction.";
}

}  // namespace kestrel::analysis
