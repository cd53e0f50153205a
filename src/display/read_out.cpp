// What stands beside the pointer: the values of the traces at the nearest sample.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "display/scene.h"
#include "display/track.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

// The sample nearest to x; none of an axis without samples.
std::optional<double> NearestSample(const Track& track, double x) {
  if (track.step <= 0 || track.values.empty() || !std::isfinite(x)) return std::nullopt;
  const double place = std::max(std::round(x / track.step), 0.0);
  if (place > static_cast<double>(track.values.size()) - 1) return std::nullopt;
  return place * track.step;
}

std::string TitleAt(const Study& study, const Track& track, double x) {
  if (track.isTime) return TimePlaceText(x, track.step);
  return FrequencyPlaceText(HorizontalOf(study.Choice(), track.step), x);
}

// Value of the reference in the same bin and the trace over it, where they may be compared.
void AddReference(PlotReadOut& readOut, const Study& study, Axis axis, double x) {
  const StudyChoice& choice = study.Choice();
  const Measured* reference = study.Reference();
  const bool isShown = choice.Has(Extra::Reference) && !choice.difference;
  if (reference == nullptr || !isShown || choice.view == View::Time) return;
  const Track other = TrackOf(study, *reference, axis);
  const Track difference = DifferenceOf(study, axis);
  if (other.Empty() || difference.Empty()) return;
  const std::size_t bin = static_cast<std::size_t>(std::round(x / difference.step));
  if (bin < difference.firstValid || bin >= difference.values.size()) return;
  readOut.rows.push_back({.ink = PlotInk::Other, .name = "ref", .value = TextAt(other, x)});
  const double db = difference.values[bin];
  readOut.rows.push_back(
      {.ink = {},
       .name = "re ref",
       .value = std::isfinite(db) ? analysis::SignedDecibelText(db) + " dB" : analysis::kNoNumber});
}

}  // namespace

PlotReadOut ReadOutAt(const Study& study, double x, int pane) {
  PlotReadOut readOut;
  for (const Axis axis : AxesOfPane(study.Choice(), pane)) {
    const Track track = TrackOf(study, axis);
    const auto sample = NearestSample(track, x);
    if (!sample) continue;
    readOut.title = TitleAt(study, track, *sample);
    readOut.rows.push_back({.ink = InkOf(axis),
                            .name = std::string(1, Letter(axis)),
                            .value = TextAt(track, *sample)});
    AddReference(readOut, study, axis, *sample);
  }
  return readOut;
}

}  // namespace kestrel::study
