// What stands beside a wide spectrum: rate options, lines, severity, doubts, and its table.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>

#include "analysis/known_frequencies.h"
#include "display/known_table.h"
#include "display/scene.h"
#include "display/wide_view.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

using analysis::Joined;
using analysis::Overlap;
using analysis::Segment;
using analysis::WideSpectrum;

analysis::Window WindowOf(const WideSpectrum& wide) {
  return wide.records.empty() ? analysis::WindowOf(analysis::WindowKind::Hanning)
                              : analysis::WindowOfCode(wide.records.front().settings.window);
}

const Segment* SegmentOf(const WideSpectrum& wide, int option) {
  for (const auto& told : wide.axes) {
    if (!told) continue;
    const auto segment = std::ranges::find(told->segments, option, &Segment::option);
    return segment == told->segments.end() ? nullptr : &*segment;
  }
  return nullptr;
}

void AddChips(OptionLane& lane, const WideSpectrum& wide) {
  for (const Axis axis : kAxes) {
    const auto& told = wide.axes[Index(axis)];
    if (!told) continue;
    const auto overlap = std::ranges::find(told->overlaps, lane.option, &Overlap::fineOption);
    if (overlap == told->overlaps.end()) continue;
    lane.chips.push_back(
        {axis, analysis::SignedDecibelText(overlap->differenceDb), overlap->unsteady});
  }
}

const analysis::Spectrum& CaptureOf(const Joined& joined, int option) {
  return *std::ranges::find(joined.captures, option, &analysis::Spectrum::option);
}

std::string VelocityText(const analysis::Spectrum& capture, const analysis::Peak& peak) {
  const analysis::QuantityChoice velocity{.quantity = analysis::Quantity::Velocity,
                                          .amplitude = analysis::Amplitude::Rms};
  if (peak.bin < FirstValidBin(capture, velocity)) return "";
  const analysis::LineValue value = ValueOf(capture, velocity, peak.line);
  return value.bound ? analysis::WithBound(value.value, *value.bound).value
                     : analysis::SignificantText(value.value, 3);
}

WideLine LineOf(const Joined& joined, Axis axis, const analysis::JoinedLine& found,
                const std::vector<analysis::KnownFrequency>& known) {
  const analysis::Spectrum& capture = CaptureOf(joined, found.option);
  const analysis::Line& line = found.peak.line;
  const auto frequency = analysis::WithBound(line.hz, line.hzBound);
  const auto amplitude = ValueOf(capture, {}, line);
  WideLine row{.axis = axis,
               .hz = line.hz,
               .peakG = amplitude.value,
               .option = found.option,
               .frequency = frequency.value,
               .frequencyBound = frequency.bound,
               .acceleration = amplitude.bound
                                   ? analysis::WithBound(amplitude.value, *amplitude.bound).value
                                   : analysis::SignificantText(amplitude.value, 3),
               .velocity = VelocityText(capture, found.peak),
               .unresolved = line.unresolved};
  const auto markers = MarkersOf(known, capture);
  if (const auto marker = NearestMarker(markers, line)) row.nearest = marker->name;
  return row;
}

// "X: options 1 and 0 differ by 3.7 dB from 587 to 6,237 Hz."
std::string DoubtText(Axis axis, const Overlap& overlap) {
  return std::string(1, Letter(axis)) + ": options " + std::to_string(overlap.fineOption) +
         " and " + std::to_string(overlap.coarseOption) + " differ by " +
         analysis::NumberText(std::abs(overlap.differenceDb), 1) + " dB from " +
         analysis::HertzText(overlap.fromHz) + " to " + analysis::HertzText(overlap.toHz) + ".";
}

// As few digits as bring the same number back.
std::string Exact(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  return {digits.data(), end.ptr};
}

std::string Listed(const std::vector<int>& options) {
  std::string text;
  for (const int option : options) text += (text.empty() ? "" : ", ") + std::to_string(option);
  return (options.size() == 1 ? "option " : "options ") + text;
}

void Describe(SeverityView& view) {
  if (!view.IsTold()) {
    const auto refused = std::ranges::find_if(view.axes, [](const auto& told) { return !told; });
    view.heading = refused->Why().title;
    view.note = refused->Why().reason + " " + refused->Why().cure + ".";
    return;
  }
  view.heading = "Estimate, 10 to 1,000 Hz";
  view.note = "These captures cover the band. An estimate, not a certificate.";
  std::string uncertain;
  for (const Axis axis : kAxes) {
    if (!view.axes[Index(axis)]->uncertain) continue;
    uncertain += (uncertain.empty() ? "" : ", ") + std::string(1, Letter(axis));
  }
  if (uncertain.empty()) return;
  view.note += " Uncertain, since captures disagree: " + uncertain + ".";
}

}  // namespace

std::vector<OptionLane> OptionLanes(const WideSpectrum& wide) {
  const auto offers = analysis::OffersOf(WindowOf(wide), true, -1);
  std::vector<OptionLane> lanes;
  for (int option = analysis::kOptions - 1; option >= 0; --option) {
    const auto& offer = offers[static_cast<std::size_t>(option)];
    OptionLane lane{.option = option,
                    .text = std::to_string(option) + ": Δf " +
                            analysis::SignificantText(offer.binWidthHz, 3) + " Hz",
                    .holds = {offer.fromHz, offer.toHz},
                    .used = {offer.fromHz, offer.fromHz}};
    if (const Segment* segment = SegmentOf(wide, option)) {
      lane.isThere = true;
      lane.holds = {segment->holdsFromHz, segment->holdsToHz};
      lane.used = {segment->usedFromHz, std::max(segment->usedFromHz, segment->usedToHz)};
      AddChips(lane, wide);
    }
    lanes.push_back(std::move(lane));
  }
  return lanes;
}

WideLines WideLinesOf(const WideSpectrum& wide, const StudyChoice& choice) {
  WideLines lines;
  const auto known = KnownOf(choice);
  for (const Axis axis : ShownAxes(choice)) {
    if (Index(axis) >= wide.axes.size() || !wide.axes[Index(axis)]) continue;
    const Joined& joined = *wide.axes[Index(axis)];
    for (const analysis::JoinedLine& found : LinesOf(joined, choice.peaks)) {
      lines.rows.push_back(LineOf(joined, axis, found, known));
    }
  }
  std::ranges::stable_sort(lines.rows, {}, &WideLine::hz);
  return lines;
}

analysis::TextTable WideLines::AsText() const {
  analysis::TextTable text{.heads = {"Axis", "Hz", "±", "g peak", "mm/s RMS", "Option", "Nearest"}};
  for (const WideLine& row : rows) {
    text.rows.push_back({std::string(1, Letter(row.axis)), row.frequency, row.frequencyBound,
                         row.acceleration, row.velocity, std::to_string(row.option),
                         row.unresolved ? "unresolved" : row.nearest});
  }
  return text;
}

SeverityView WideSeverityOf(const WideSpectrum& wide, const StudyChoice& choice) {
  SeverityView view;
  std::vector<Segment> segments;
  for (const OptionLane& lane : OptionLanes(wide)) {
    const auto record = std::ranges::find_if(
        wide.records, [&](const Record& each) { return each.settings.option == lane.option; });
    view.options.push_back(
        {lane.option, lane.holds.low, lane.holds.high,
         record == wide.records.end() ? nullptr : std::make_shared<const Record>(*record)});
    if (const Segment* segment = SegmentOf(wide, lane.option)) segments.push_back(*segment);
  }
  if (wide.records.empty()) {
    view.missing = {3, 2, 1};
    view.heading = "No zone: there is no wide spectrum";
    view.note = "An estimate needs captures at options 3, 2 and 1.";
    return view;
  }
  view.missing = MissingForSeverity(segments, WindowOf(wide));
  for (const auto& told : wide.axes) {
    view.axes.push_back(told ? analysis::EstimateSeverity(*told, choice.zones) : told.Why());
  }
  Describe(view);
  return view;
}

std::vector<WideDoubt> WideDoubtsOf(const WideSpectrum& wide, double limitDb) {
  std::vector<WideDoubt> doubts;
  for (const Axis axis : kAxes) {
    if (Index(axis) >= wide.axes.size() || !wide.axes[Index(axis)]) continue;
    for (const Overlap& overlap : wide.axes[Index(axis)]->overlaps) {
      if (!overlap.unsteady) continue;
      doubts.push_back({std::string("unsteady") + Letter(axis) + std::to_string(overlap.fineOption),
                        DoubtText(axis, overlap) + " More than " +
                            analysis::NumberText(limitDb, 1) +
                            " dB: the machine was not steady, or there is aliasing.",
                        1U << overlap.fineOption | 1U << overlap.coarseOption});
    }
  }
  if (!wide.missing.empty()) {
    unsigned again = 0;
    for (const int option : wide.missing) again |= 1U << option;
    doubts.push_back({"missing",
                      "No capture at " + Listed(wide.missing) + ": frequencies that only " +
                          (wide.missing.size() == 1 ? "it holds" : "they hold") + " are not shown.",
                      again});
  }
  return doubts;
}

std::string WideTable(const WideSpectrum& wide, const WideLook& look) {
  const std::vector<double> hz = WideFrequencies(wide);
  std::string table = "Frequency Hz,Option";
  std::vector<std::vector<double>> columns;
  const Joined* any = nullptr;
  for (const Axis axis : kAxes) {
    if (Index(axis) >= wide.axes.size() || !wide.axes[Index(axis)]) continue;
    any = &*wide.axes[Index(axis)];
    table += std::string(",") + Letter(axis) + " " + UnitOf(look.quantity);
    columns.push_back(CurveOf(*any, look.quantity).values);
  }
  table += "\n";
  for (std::size_t i = 0; i < hz.size(); ++i) {
    table += Exact(hz[i]) + "," + std::to_string(any->points[i].option);
    for (const auto& column : columns) table += "," + Exact(column[i]);
    table += "\n";
  }
  return table;
}

}  // namespace kestrel::study
