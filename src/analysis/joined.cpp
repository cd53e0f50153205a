// Joining captures of several rate options.
// SPDX-License-Identifier: MIT
#include "analysis/joined.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <optional>
#include <string>

#include "analysis/interpolation.h"
#include "analysis/levels.h"
#include "analysis/quantity.h"

namespace kestrel::analysis {
namespace {

constexpr double kLineDb = 6;  // above the noise: hardly any noise averaged four times stands so

Refusal NoJoin(std::string reason, std::string cure) {
  return {.title = "These captures cannot be joined",
          .reason = std::move(reason),
          .cure = std::move(cure)};
}

std::optional<Refusal> WhyNotJoined(const std::vector<Spectrum>& captures) {
  if (captures.empty()) return NoJoin("There is none.", "Capture at options 3, 2, 1 and 0");
  for (const Spectrum& capture : captures) {
    const std::string option = std::to_string(capture.option);
    if (capture.axis != captures.front().axis) {
      return NoJoin("They are of different axes.", "Choose captures of one axis");
    }
    if (std::ranges::count(captures, capture.option, &Spectrum::option) > 1) {
      return NoJoin("Two of them are of option " + option + ".", "Choose one of each option");
    }
    const Told<QuantityCurve> density = InQuantity(capture, {.quantity = Quantity::Density});
    if (!density)
      return NoJoin("Option " + option + ": " + density.Why().reason, density.Why().cure);
    if (FirstIntegrableBin(capture.window) >= capture.Bins() || !(capture.binWidthHz > 0)) {
      return NoJoin("The one of option " + option + " has no bins to use.", "Capture it again");
    }
  }
  return std::nullopt;
}

Segment HeldBy(const Spectrum& capture) {
  const auto first = static_cast<double>(FirstIntegrableBin(capture.window));
  return {.option = capture.option,
          .binWidthHz = capture.binWidthHz,
          .holdsFromHz = capture.FrequencyOf(first),
          .holdsToHz = capture.FrequencyOf(static_cast<double>(capture.Bins()) - 1)};
}

std::vector<Segment> SegmentsOf(const std::vector<Spectrum>& captures) {
  std::vector<Segment> segments;
  std::ranges::transform(captures, std::back_inserter(segments), HeldBy);
  for (std::size_t i = 0; i < segments.size(); ++i) {
    segments[i].usedFromHz = segments[i].holdsFromHz;
    segments[i].usedToHz = segments[i].holdsToHz;
    if (i + 1 < segments.size()) {
      segments[i].usedToHz = std::min(segments[i].holdsToHz, segments[i + 1].holdsFromHz);
    }
  }
  return segments;
}

double WidthOfOption(const Joined& joined, int option) {
  return std::ranges::find(joined.segments, option, &Segment::option)->binWidthHz;
}

// Share of the power of a line at hz that lands in a capture's bins within a band.
double LeakageInto(const Spectrum& capture, const Overlap& band, double hz) {
  double share = 0;
  for (std::size_t bin = capture.FirstVibration(); bin < capture.Bins(); ++bin) {
    const auto place = static_cast<double>(bin);
    const double at = capture.FrequencyOf(place);
    if (at < band.fromHz || at > band.toHz) continue;
    const double away = std::fabs(place - capture.BinOf(hz));
    // Half a bin nearer too: the line may lie anywhere in its own bin.
    const double shape = std::max(LobeShape(capture.window, away),
                                  LobeShape(capture.window, std::max(away - 0.5, 0.0)));
    share += shape * shape;
  }
  return share / capture.window.noiseBandwidth;
}

// Power that what lies beyond a band puts into a capture's bins within it; what is `negligible` is
// left out.
double LeakageOfOutside(const Joined& joined, const Spectrum& capture, const Overlap& band,
                        double negligible) {
  double power = 0;
  for (const JoinedPoint& point : joined.points) {
    const double there = point.density * WidthOfOption(joined, point.option);
    const bool outside = point.hz < band.fromHz || point.hz > band.toHz;
    if (outside && there > negligible) power += there * LeakageInto(capture, band, point.hz);
  }
  return power;
}

// What both captures show at least: rounding of the words, and a ten-thousandth of all there is.
double LeastRms(const Spectrum& fine, const Spectrum& coarse, const Overlap& overlap) {
  const double steps = std::sqrt((overlap.toHz - overlap.fromHz) / fine.binWidthHz) / 2;
  const double all =
      std::max(PowerBetween(fine, 0, fine.TopHz()), PowerBetween(coarse, 0, coarse.TopHz()));
  return std::max({steps * std::max(fine.stepG, coarse.stepG), 1e-4 * std::sqrt(all), 1e-12});
}

// Coarse over fine in dB; what lines beyond the overlap leak into the coarse bins does not count.
double DifferenceDb(const Joined& joined, std::size_t fineIndex, const Overlap& overlap) {
  const Spectrum& coarse = joined.power[fineIndex + 1];
  const double least = std::pow(LeastRms(joined.power[fineIndex], coarse, overlap), 2);
  const double finePower = std::max(overlap.fineRmsG * overlap.fineRmsG, least);
  double coarsePower = std::max(overlap.coarseRmsG * overlap.coarseRmsG, least);
  if (coarsePower > finePower) {
    const double leakage = LeakageOfOutside(joined, coarse, overlap, 1e-2 * least);
    coarsePower = std::max(coarsePower - 1.5 * leakage, finePower);
  }
  return 10 * std::log10(coarsePower / finePower);
}

std::vector<Overlap> OverlapsOf(const Joined& joined, double limitDb) {
  std::vector<Overlap> overlaps;
  for (std::size_t i = 0; i + 1 < joined.segments.size(); ++i) {
    const Spectrum& fine = joined.power[i];
    const Spectrum& coarse = joined.power[i + 1];
    Overlap overlap{.fineOption = fine.option,
                    .coarseOption = coarse.option,
                    .fromHz = joined.segments[i + 1].holdsFromHz,
                    .toHz = joined.segments[i].holdsToHz};
    if (overlap.fromHz >= overlap.toHz) continue;
    overlap.fineRmsG = std::sqrt(PowerBetween(fine, overlap.fromHz, overlap.toHz));
    overlap.coarseRmsG = std::sqrt(PowerBetween(coarse, overlap.fromHz, overlap.toHz));
    overlap.differenceDb = DifferenceDb(joined, i, overlap);
    overlap.unsteady = std::fabs(overlap.differenceDb) > limitDb;
    overlaps.push_back(overlap);
  }
  return overlaps;
}

bool IsLast(const Joined& joined, std::size_t i) {
  return i + 1 == joined.segments.size();
}

// Whether a frequency belongs to the used part of a capture; the border belongs to the coarser.
bool Uses(const Joined& joined, std::size_t i, double hz) {
  const Segment& segment = joined.segments[i];
  const bool toTheEnd = IsLast(joined, i) || segment.usedToHz == segment.holdsToHz;
  return hz >= segment.usedFromHz &&
         (hz < segment.usedToHz || (toTheEnd && hz <= segment.usedToHz));
}

std::vector<JoinedPoint> PointsOf(const Joined& joined) {
  std::vector<JoinedPoint> points;
  for (std::size_t i = 0; i < joined.captures.size(); ++i) {
    const Spectrum& capture = joined.captures[i];
    for (std::size_t bin = FirstIntegrableBin(capture.window); bin < capture.Bins(); ++bin) {
      const double hz = capture.FrequencyOf(static_cast<double>(bin));
      if (!Uses(joined, i, hz)) continue;
      const double power = joined.power[i].peakG[bin];
      points.push_back({hz, ValueIn(capture, {.quantity = Quantity::Density}, power, hz),
                        capture.peakG[bin], capture.option});
    }
  }
  return points;
}

// A line near the border may be found by both captures.
bool IsListed(const std::vector<JoinedLine>& lines, const Peak& peak, double widthHz) {
  return std::ranges::any_of(lines, [&](const JoinedLine& line) {
    return std::fabs(line.peak.line.hz - peak.line.hz) <= widthHz;
  });
}

// Averaging magnitudes takes the scatter of the noise away and leaves what its mean adds to a line:
// s²/2A for noise of s in each component. It shifts the line by up to 1.5 times (s/A)² of a bin.
void WidenForAverages(Peak& peak, const Spectrum& capture) {
  constexpr double kRayleighMedian = 1.1774;
  Line& line = peak.line;
  if (!line.peakBoundG || !(line.peakG > 0)) return;
  const double share = std::pow(peak.noiseG / kRayleighMedian / line.peakG, 2) *
                       (1 - 1.0 / std::max(capture.averages, 1));
  line.hzBound += 1.5 * share * capture.binWidthHz;
  *line.peakBoundG += share * line.peakG;
}

// Bins in the lobes of what is more than noise.
std::vector<bool> BinsOfLines(const Spectrum& capture) {
  std::vector<bool> bins(capture.Bins());
  for (const Peak& peak : FindPeaks(capture, {.prominenceDb = kLineDb, .atMost = bins.size()})) {
    const std::size_t first = peak.bin - std::min(peak.bin, capture.window.lobe);
    const std::size_t end = std::min(peak.bin + capture.window.lobe + 1, bins.size());
    for (std::size_t bin = first; bin < end; ++bin) bins[bin] = true;
  }
  return bins;
}

}  // namespace

// The part of the noise's power that is given back to a bin is a share of the noise in it.
Spectrum WithPowerOfNoise(Spectrum capture) {
  const double given = std::pow(10, -NoiseOfAveragedMagnitudesDb(capture.averages) / 10) - 1;
  if (!(given > 0)) return capture;
  const std::vector<bool> isLine = BinsOfLines(capture);
  const Spectrum read = capture;
  for (std::size_t bin = read.FirstVibration(); bin < read.Bins(); ++bin) {
    const double own = read.peakG[bin];
    const double noise = isLine[bin] ? std::min(own, LocalNoise(read, bin)) : own;
    capture.peakG[bin] = std::sqrt(own * own + given * noise * noise);
  }
  return capture;
}

bool Joined::Steady() const {
  return std::ranges::none_of(overlaps, &Overlap::unsteady);
}

Told<Joined> Join(std::vector<Spectrum> captures, double limitDb) {
  if (auto refusal = WhyNotJoined(captures)) return *refusal;
  std::ranges::sort(captures, std::less{}, &Spectrum::binWidthHz);
  Joined joined;
  joined.segments = SegmentsOf(captures);
  std::ranges::transform(captures, std::back_inserter(joined.power), WithPowerOfNoise);
  joined.captures = std::move(captures);
  joined.points = PointsOf(joined);
  joined.overlaps = OverlapsOf(joined, limitDb);
  return joined;
}

double PowerBetween(const Joined& joined, double fromHz, double toHz,
                    const std::function<double(double)>& weight) {
  double sum = 0;
  for (std::size_t i = 0; i < joined.power.size(); ++i) {
    const Segment& segment = joined.segments[i];
    sum += PowerBetween(joined.power[i], std::max(fromHz, segment.usedFromHz),
                        std::min(toHz, segment.usedToHz), weight);
  }
  return sum;
}

std::vector<JoinedLine> LinesOf(const Joined& joined, const PeakSettings& settings) {
  std::vector<JoinedLine> lines;
  for (std::size_t i = 0; i < joined.captures.size(); ++i) {
    const Spectrum& capture = joined.captures[i];
    const std::vector<JoinedLine> finer = lines;
    for (Peak& peak : FindPeaks(capture, settings)) {
      if (!Uses(joined, i, peak.line.hz)) continue;
      WidenForAverages(peak, capture);
      if (!IsListed(finer, peak, capture.binWidthHz)) lines.push_back({peak, capture.option});
    }
  }
  std::ranges::stable_sort(lines, std::greater{},
                           [](const JoinedLine& line) { return line.peak.line.peakG; });
  if (lines.size() > settings.atMost) lines.resize(settings.atMost);
  return lines;
}

}  // namespace kestrel::analysis
