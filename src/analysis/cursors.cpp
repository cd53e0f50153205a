// What cursors read, and how their members move together.
// SPDX-License-Identifier: MIT
#include "analysis/cursors.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kestrel::analysis {
namespace {

constexpr int kMostMembers = 1000;

std::size_t Points(const TraceView& trace) {
  return trace.values == nullptr ? 0 : trace.values->size();
}

bool IsReadable(const TraceView& trace) {
  return trace.firstValid < Points(trace) && trace.step > 0;
}

double LastX(const TraceView& trace) {
  return trace.x0 + static_cast<double>(Points(trace) - 1) * trace.step;
}

double FirstX(const TraceView& trace) {
  return trace.x0 + static_cast<double>(trace.firstValid) * trace.step;
}

std::optional<double> RatioDb(const TraceView& trace, double from, double to) {
  if (trace.decibel) return to - from;
  if (!(from > 0) || !(to > 0)) return std::nullopt;
  return (trace.power ? 10 : 20) * std::log10(to / from);
}

// Where a member may lie from its place: half a bin, and what a speed read slightly wrong adds.
double ReachOf(const Spectrum& spectrum, double expectedHz, double spacing) {
  const double reach = std::max(spectrum.binWidthHz, 0.005 * expectedHz);
  return std::min(reach, std::max(spacing / 3, spectrum.binWidthHz / 2));
}

double LargestWithin(const Spectrum& spectrum, double hz, double reach) {
  double largest = 0;
  const auto lastBin = static_cast<double>(spectrum.Bins()) - 1;
  const double first = std::max(std::floor(spectrum.BinOf(hz - reach)), 0.0);
  const double last = std::min(std::ceil(spectrum.BinOf(hz + reach)), lastBin);
  for (auto bin = static_cast<std::size_t>(first); bin <= static_cast<std::size_t>(last); ++bin) {
    largest = std::max(largest, spectrum.peakG[bin]);
  }
  return largest;
}

Member MemberAt(const Spectrum& spectrum, const std::vector<Peak>& peaks, int number, double hz,
                double spacing) {
  const double reach = ReachOf(spectrum, hz, spacing);
  Member member{.number = number,
                .expectedHz = hz,
                .found = NearestPeak(peaks, hz, reach),
                .belowG = LargestWithin(spectrum, hz, reach)};
  member.ownG = spectrum.peakG[static_cast<std::size_t>(
      std::clamp(std::round(spectrum.BinOf(hz)), 0.0, static_cast<double>(spectrum.Bins()) - 1))];
  return member;
}

// Decibels of the members to the one with this number.
void Relate(std::vector<Member>& members, int number) {
  const auto one = std::ranges::find(members, number, &Member::number);
  if (one == members.end() || !one->found || !(one->found->line.peakG > 0)) return;
  const double reference = one->found->line.peakG;
  for (Member& member : members) {
    if (member.found && member.found->line.peakG > 0) {
      member.relativeDb = 20 * std::log10(member.found->line.peakG / reference);
    }
  }
}

// Distance of the members by least squares, those known best counting most.
struct Slope {
  double value = 0;
  double bound = 0;
  int used = 0;
};

Slope LeastSquares(const std::vector<Member>& members, double centreHz, double otherwise) {
  double numerator = 0;
  double denominator = 0;
  double bounds = 0;
  Slope slope{.value = otherwise};
  for (const Member& member : members) {
    if (!member.found || member.number == 0) continue;
    const double bound = std::max(member.found->line.hzBound, 1e-9);
    const double weight = 1 / (bound * bound);
    numerator += weight * member.number * (member.found->line.hz - centreHz);
    denominator += weight * member.number * member.number;
    bounds += weight * std::abs(member.number) * bound;
    ++slope.used;
  }
  if (slope.used == 0) return slope;
  slope.value = numerator / denominator;
  // Leakage errs alike in all members, so that they do not average out.
  slope.bound = bounds / denominator;
  return slope;
}

bool IsOnAxis(const Spectrum& spectrum, double hz) {
  return std::isfinite(hz) && hz >= 0 && hz <= spectrum.TopHz();
}

std::vector<Member> Harmonics(const Spectrum& spectrum, const std::vector<Peak>& peaks, double f0,
                              int count) {
  std::vector<Member> members;
  for (int n = 1; n <= count && IsOnAxis(spectrum, n * f0); ++n) {
    members.push_back(MemberAt(spectrum, peaks, n, n * f0, f0));
  }
  return members;
}

std::vector<Member> Sidebands(const Spectrum& spectrum, const std::vector<Peak>& peaks,
                              double centre, double spacing, int count) {
  std::vector<Member> members;
  for (int m = -count; m <= count; ++m) {
    const double hz = centre + m * spacing;
    if (IsOnAxis(spectrum, hz)) members.push_back(MemberAt(spectrum, peaks, m, hz, spacing));
  }
  return members;
}

// The centre as found; its own place where no peak is there.
double CentreOf(const std::vector<Member>& members, double otherwise) {
  const auto centre = std::ranges::find(members, 0, &Member::number);
  return centre != members.end() && centre->found ? centre->found->line.hz : otherwise;
}

std::optional<double> PowerOfSidebands(const std::vector<Member>& members) {
  double centre = 0;
  double sum = 0;
  for (const Member& member : members) {
    if (!member.found) continue;
    const double power = member.found->line.peakG * member.found->line.peakG;
    (member.number == 0 ? centre : sum) += power;
  }
  if (!(centre > 0) || !(sum > 0)) return std::nullopt;
  return 10 * std::log10(sum / centre);
}

bool IsSpacing(const Spectrum& spectrum, double hz) {
  return spectrum.Bins() > 0 && std::isfinite(hz) && hz >= spectrum.binWidthHz && hz > 0;
}

}  // namespace

std::optional<double> ReadAt(const TraceView& trace, double x) {
  if (!IsReadable(trace) || !std::isfinite(x)) return std::nullopt;
  const double place = (x - trace.x0) / trace.step;
  const auto first = static_cast<double>(trace.firstValid);
  const auto last = static_cast<double>(Points(trace) - 1);
  if (place < first - 1e-9 || place > last + 1e-9) return std::nullopt;
  const double below = std::clamp(std::floor(place), first, last);
  const auto index = static_cast<std::size_t>(below);
  const double rest = std::clamp(place - below, 0.0, 1.0);
  const double here = (*trace.values)[index];
  if (rest == 0 || index + 1 >= Points(trace)) return here;
  return here + rest * ((*trace.values)[index + 1] - here);
}

double Moved(const TraceView& trace, double x, CursorStep step, int count) {
  if (!IsReadable(trace) || !std::isfinite(x)) return trace.x0;
  const double size = step == CursorStep::TenBins ? 10 : step == CursorStep::Bin ? 1 : 0.1;
  const double moved = x + count * size * trace.step;
  const double kept = std::clamp(moved, FirstX(trace), LastX(trace));
  return step == CursorStep::TenthOfBin ? kept : OnPoint(trace, kept);
}

double OnPoint(const TraceView& trace, double x) {
  if (!IsReadable(trace) || !std::isfinite(x)) return trace.x0;
  const double point = trace.x0 + std::round((x - trace.x0) / trace.step) * trace.step;
  return std::clamp(point, FirstX(trace), LastX(trace));
}

DeltaReading ReadDelta(const std::vector<TraceView>& traces, double from, double to) {
  DeltaReading reading{.dx = to - from};
  if (!std::isfinite(reading.dx)) return {};
  if (reading.dx != 0) reading.reciprocal = 1 / std::fabs(reading.dx);
  for (const TraceView& trace : traces) {
    DeltaReading::Row row{.from = ReadAt(trace, from), .to = ReadAt(trace, to)};
    if (row.from && row.to) {
      row.difference = *row.to - *row.from;
      row.ratioDb = RatioDb(trace, *row.from, *row.to);
    }
    reading.rows.push_back(row);
  }
  return reading;
}

HarmonicReading ReadHarmonics(const Spectrum& spectrum, const std::vector<Peak>& peaks, double f0,
                              int count) {
  if (!IsSpacing(spectrum, f0)) return {.f0 = std::isfinite(f0) ? f0 : 0};
  const int most = std::clamp(count, 0, kMostMembers);
  const Slope first = LeastSquares(Harmonics(spectrum, peaks, f0, most), 0, f0);
  HarmonicReading reading{.members = Harmonics(spectrum, peaks, first.value, most)};
  const Slope second = LeastSquares(reading.members, 0, first.value);
  reading.f0 = second.value;
  reading.f0Bound = second.bound;
  reading.used = second.used;
  for (Member& member : reading.members) member.expectedHz = member.number * reading.f0;
  Relate(reading.members, 1);
  return reading;
}

SidebandReading ReadSidebands(const Spectrum& spectrum, const std::vector<Peak>& peaks,
                              double centreHz, double spacingHz, int count) {
  SidebandReading reading{.centreHz = centreHz, .spacingHz = spacingHz};
  if (!IsSpacing(spectrum, spacingHz) || !IsOnAxis(spectrum, centreHz)) {
    return {.centreHz = std::isfinite(centreHz) ? centreHz : 0,
            .spacingHz = std::isfinite(spacingHz) ? spacingHz : 0};
  }
  const int most = std::clamp(count, 0, kMostMembers);
  reading.members = Sidebands(spectrum, peaks, centreHz, spacingHz, most);
  reading.centreHz = CentreOf(reading.members, centreHz);
  const Slope slope = LeastSquares(reading.members, reading.centreHz, spacingHz);
  reading.spacingHz = slope.value;
  reading.spacingBound = slope.bound;
  reading.used = slope.used;
  for (Member& member : reading.members) {
    member.expectedHz = reading.centreHz + member.number * reading.spacingHz;
  }
  reading.sidebandsDb = PowerOfSidebands(reading.members);
  Relate(reading.members, 0);
  return reading;
}

std::optional<double> HarmonicDragged(int number, double hz) {
  if (number <= 0 || !std::isfinite(hz) || hz <= 0) return std::nullopt;
  return hz / number;
}

std::optional<double> SidebandDragged(double centreHz, int number, double hz) {
  if (number == 0 || !std::isfinite(hz) || !std::isfinite(centreHz)) return std::nullopt;
  const double spacing = (hz - centreHz) / number;
  if (!(spacing > 0)) return std::nullopt;
  return spacing;
}

double Snapped(const std::vector<Peak>& peaks, double hz, double withinHz) {
  const std::optional<Peak> peak = NearestPeak(peaks, hz, withinHz);
  return peak ? peak->line.hz : hz;
}

}  // namespace kestrel::analysis
