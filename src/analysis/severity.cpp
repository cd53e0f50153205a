// Severity from joined captures.
// SPDX-License-Identifier: MIT
#include "analysis/severity.h"

#include <algorithm>
#include <cmath>

#include "analysis/quantity.h"
#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

struct Range {
  double fromHz = 0;
  double toHz = 0;
};

// Where the edges pass a hundredth of the power: (f1/f)⁶ = 99.
Range Needed() {
  const double reach = std::pow(99.0, 1.0 / 6);
  return {kSeverityFromHz / reach, kSeverityToHz * reach};
}

// What is left of `wanted` when the segments, finest first, are taken away.
std::vector<Range> Uncovered(const std::vector<Segment>& segments, Range wanted) {
  std::vector<Range> left;
  double at = wanted.fromHz;
  for (const Segment& segment : segments) {
    const double from = std::min(segment.holdsFromHz, wanted.toHz);
    if (from > at) left.push_back({at, from});
    at = std::max(at, segment.holdsToHz);
  }
  if (at < wanted.toHz) left.push_back({at, wanted.toHz});
  std::erase_if(left, [&](const Range& range) { return range.fromHz >= wanted.toHz; });
  return left;
}

// What each option would be used for if all four were there.
std::vector<Segment> AllSegments(const Window& window) {
  std::vector<Segment> segments;
  const std::vector<OptionOffer> offers = OffersOf(window, true, -1);
  for (int option = kOptions - 1; option >= 0; --option) {
    const OptionOffer& offer = offers[static_cast<std::size_t>(option)];
    const double to = option > 0 ? offers[static_cast<std::size_t>(option) - 1].fromHz : offer.toHz;
    segments.push_back({.option = option,
                        .binWidthHz = offer.binWidthHz,
                        .holdsFromHz = offer.fromHz,
                        .holdsToHz = offer.toHz,
                        .usedFromHz = offer.fromHz,
                        .usedToHz = to});
  }
  return segments;
}

std::string Listed(const std::vector<int>& options) {
  std::string text;
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (i > 0) text += i + 1 == options.size() ? " and " : ", ";
    text += std::to_string(options[i]);
  }
  return text;
}

std::string AtHand(const std::vector<Segment>& segments) {
  std::string text = "At hand: ";
  for (const Segment& segment : segments) {
    if (&segment != &segments.front()) text += "; ";
    text += "option " + std::to_string(segment.option) + ", from " +
            HertzText(RoundedUp(segment.holdsFromHz)) + " to " +
            HertzText(RoundedDown(segment.holdsToHz));
  }
  return text + ".";
}

Refusal NotCovered(const std::vector<Segment>& segments, const std::vector<int>& missing) {
  return {
      .title = "No zone: the band is not covered",
      .reason = AtHand(segments) + " Missing: " + Listed(missing) + ".",
      .has = segments.front().holdsFromHz,
      .needs = Needed().fromHz,
      .unit = "Hz",
      .cure = (missing.size() > 1 ? "Capture at options " : "Capture at option ") + Listed(missing),
      .cureOption = missing.empty() ? std::nullopt : std::optional<int>(missing.front())};
}

ZoneLimits Row(std::string name, double ab, double bc, double cd) {
  return {std::move(name), ab, bc, cd};
}

}  // namespace

std::vector<SeverityTable> SeverityTables() {
  return {{"ISO 10816-3",
           "ISO 10816-3, velocity, mm/s RMS. Group 1: above 300 kW or shaft height from 315 mm; "
           "group 2: 15 to 300 kW or 160 to 315 mm.",
           {Row("group 1, rigid", 2.3, 4.5, 7.1), Row("group 1, flexible", 3.5, 7.1, 11),
            Row("group 2, rigid", 1.4, 2.8, 4.5), Row("group 2, flexible", 2.3, 4.5, 7.1)}},
          {"ISO 10816-1",
           "ISO 10816-1:1995, annex B, velocity, mm/s RMS.",
           {Row("class I", 0.71, 1.8, 4.5), Row("class II", 1.12, 2.8, 7.1),
            Row("class III", 1.8, 4.5, 11.2), Row("class IV", 2.8, 7.1, 18)}}};
}

bool AreLimits(const ZoneLimits& limits) {
  return limits.ab > 0 && limits.bc > limits.ab && limits.cd > limits.bc &&
         std::isfinite(limits.cd);
}

double SeverityPass(double hz) {
  if (!(hz > 0)) return 0;
  return 1 / ((1 + std::pow(kSeverityFromHz / hz, 6)) * (1 + std::pow(hz / kSeverityToHz, 6)));
}

std::vector<int> MissingForSeverity(const std::vector<Segment>& segments, const Window& window) {
  const std::vector<Range> uncovered = Uncovered(segments, Needed());
  std::vector<int> missing;
  for (const Segment& segment : AllSegments(window)) {
    const bool helps = std::ranges::any_of(uncovered, [&](const Range& range) {
      return segment.usedFromHz < range.toHz && segment.usedToHz > range.fromHz;
    });
    const bool there = std::ranges::count(segments, segment.option, &Segment::option) > 0;
    if (helps && !there) missing.push_back(segment.option);
  }
  return missing;
}

Told<SeverityEstimate> EstimateSeverity(const Joined& joined, const ZoneLimits& limits) {
  if (joined.captures.empty() || !AreLimits(limits)) {
    return Refusal{
        .title = "No zone can be determined",
        .reason = joined.captures.empty()
                      ? "There is no capture."
                      : "The zone limits are not valid: they must be above 0 and rise.",
        .cure = joined.captures.empty() ? "Capture at options 3, 2 and 1" : "Correct the table"};
  }
  if (!Uncovered(joined.segments, Needed()).empty()) {
    return NotCovered(joined.segments,
                      MissingForSeverity(joined.segments, joined.captures.front().window));
  }
  const double power = PowerBetween(joined, 0, joined.segments.back().usedToHz, [](double hz) {
    return std::pow(kVelocityOfG / hz, 2) * SeverityPass(hz);
  });
  const double mmPerS = std::sqrt(power);
  return SeverityEstimate{mmPerS, ZoneOf(mmPerS, limits), !joined.Steady()};
}

Zone ZoneOf(double mmPerS, const ZoneLimits& limits) {
  if (mmPerS <= limits.ab) return Zone::A;
  if (mmPerS <= limits.bc) return Zone::B;
  return mmPerS <= limits.cd ? Zone::C : Zone::D;
}

char Letter(Zone zone) {
  return static_cast<char>('A' + static_cast<int>(zone));
}

}  // namespace kestrel::analysis
