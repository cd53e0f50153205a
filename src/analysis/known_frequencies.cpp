// Known frequencies and their markers.
// SPDX-License-Identifier: MIT
#include "analysis/known_frequencies.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "analysis/horizontal.h"
#include "analysis/quantity.h"
#include "numeric/number_texts.h"

namespace kestrel::analysis {
namespace {

constexpr int kMostHarmonics = 50;
constexpr double kLeastBinsApart = 3;
constexpr double kSlip = 0.02;       // of a bearing's frequencies
constexpr double kSpeedOff = 0.005;  // of frequencies that follow a speed exactly

bool IsFrequency(double hz) {
  return std::isfinite(hz) && hz > 0;
}

bool IsOfBearing(KnownKind kind) {
  return kind >= KnownKind::OuterRace;
}

std::string Named(const char* part, const std::string& bearing) {
  return bearing.empty() ? part : part + (", " + bearing);
}

void AddBearing(std::vector<KnownFrequency>& known, const Bearing& bearing, double shaftHz,
                int harmonics) {
  if (!AreFactors(bearing.factors)) return;
  const auto add = [&](KnownKind kind, const char* part, double order, int sidebands) {
    known.push_back({.kind = kind,
                     .name = Named(part, bearing.name),
                     .hz = order * shaftHz,
                     .order = order,
                     .harmonics = harmonics,
                     .sidebands = sidebands,
                     .sidebandHz = shaftHz});
  };
  add(KnownKind::OuterRace, "Outer race", bearing.factors.outer, 0);
  add(KnownKind::InnerRace, "Inner race", bearing.factors.inner, 1);
  // Harmonics of the spin hold twice the spin, at which it is often seen.
  add(KnownKind::ElementSpin, "Element spin", bearing.factors.spin, 0);
  add(KnownKind::Cage, "Cage", bearing.factors.cage, 0);
}

void AddTurning(std::vector<KnownFrequency>& known, const Machine& machine, int harmonics) {
  const double shaftHz = *machine.rpm / 60;
  known.push_back({.kind = KnownKind::Shaft,
                   .name = "Shaft",
                   .hz = shaftHz,
                   .order = 1,
                   .harmonics = harmonics});
  for (const GearMesh& mesh : machine.meshes) {
    if (mesh.teeth <= 0) continue;
    known.push_back({.kind = KnownKind::GearMesh,
                     .name = mesh.name,
                     .hz = mesh.teeth * shaftHz,
                     .order = mesh.teeth,
                     .harmonics = std::min(harmonics, 3),
                     .sidebands = 3,
                     .sidebandHz = shaftHz});
  }
  for (const Bearing& bearing : machine.bearings) {
    AddBearing(known, bearing, shaftHz, harmonics);
  }
}

std::string MarkerName(const KnownFrequency& known, int harmonic, int sideband) {
  const bool single = known.kind == KnownKind::GearMesh || known.kind == KnownKind::Free;
  std::string name = known.name;
  if (!single || harmonic > 1) name += " " + std::to_string(harmonic) + "\u00D7";
  if (sideband != 0) {
    name += (sideband > 0 ? " + " : " \u2212 ") + std::to_string(std::abs(sideband)) + "\u00D7";
  }
  return name;
}

double LowestHz(const Spectrum& spectrum) {
  return spectrum.FrequencyOf(static_cast<double>(spectrum.FirstVibration()));
}

double HighestHz(const Spectrum& spectrum) {
  return spectrum.FrequencyOf(static_cast<double>(spectrum.Bins()) - 1);
}

void AddMarker(std::vector<Marker>& markers, const KnownFrequency& known, const Spectrum& spectrum,
               int harmonic, int sideband) {
  const double hz = harmonic * known.hz + sideband * known.sidebandHz;
  if (!(hz >= LowestHz(spectrum)) || !(hz <= HighestHz(spectrum))) return;
  const double width = WidthOf(known, hz, spectrum.binWidthHz);
  markers.push_back({.kind = known.kind,
                     .name = MarkerName(known, harmonic, sideband),
                     .hz = hz,
                     .fromHz = hz - width,
                     .toHz = hz + width,
                     .harmonic = harmonic,
                     .sideband = sideband});
}

void AddMarkers(std::vector<Marker>& markers, const KnownFrequency& known,
                const Spectrum& spectrum) {
  const double apart = kLeastBinsApart * spectrum.binWidthHz;
  const int harmonics = known.hz >= apart ? std::clamp(known.harmonics, 1, kMostHarmonics) : 1;
  const int sidebands = known.sidebandHz >= apart ? known.sidebands : 0;
  for (int harmonic = 1; harmonic <= harmonics; ++harmonic) {
    for (int sideband = -sidebands; sideband <= sidebands; ++sideband) {
      AddMarker(markers, known, spectrum, harmonic, sideband);
    }
  }
}

}  // namespace

std::vector<KnownFrequency> FrequenciesOf(const Machine& machine) {
  const int harmonics = std::clamp(machine.harmonics, 1, kMostHarmonics);
  std::vector<KnownFrequency> known;
  if (machine.rpm && IsSpeed(*machine.rpm)) AddTurning(known, machine, harmonics);
  if (machine.lineHz && IsFrequency(*machine.lineHz)) {
    known.push_back({.kind = KnownKind::Line,
                     .name = "Mains",
                     .hz = *machine.lineHz,
                     .order = std::nullopt,
                     .harmonics = harmonics});
  }
  for (const FreeFrequency& free : machine.free) {
    if (!IsFrequency(free.hz)) continue;
    known.push_back({.kind = KnownKind::Free, .name = free.name, .hz = free.hz});
  }
  return known;
}

double WidthOf(const KnownFrequency& known, double hz, double binWidthHz) {
  return IsOfBearing(known.kind) ? std::max(kSlip * hz, binWidthHz)
                                 : std::max(kSpeedOff * hz, binWidthHz / 2);
}

std::vector<Marker> MarkersOf(const std::vector<KnownFrequency>& known, const Spectrum& spectrum) {
  std::vector<Marker> markers;
  if (spectrum.Bins() == 0) return markers;
  for (const KnownFrequency& each : known) {
    if (IsFrequency(each.hz)) AddMarkers(markers, each, spectrum);
  }
  std::ranges::stable_sort(markers, std::less{}, &Marker::hz);
  return markers;
}

std::optional<Marker> NearestMarker(const std::vector<Marker>& markers, const Line& line) {
  std::optional<Marker> nearest;
  double least = 1;
  for (const Marker& marker : markers) {
    const double away = std::fabs(marker.hz - line.hz);
    const double relative = away / (marker.toHz - marker.hz + line.hzBound);
    if (!(relative <= least) || (nearest && relative == least)) continue;
    least = relative;
    nearest = marker;
  }
  return nearest;
}

std::optional<Refusal> WhyNotSeen(const KnownFrequency& known, const Spectrum& spectrum) {
  if (known.hz >= LowestHz(spectrum) && known.hz <= HighestHz(spectrum)) return std::nullopt;
  const bool low = known.hz < LowestHz(spectrum);
  const double limit = low ? LowestHz(spectrum) : HighestHz(spectrum);
  Refusal refusal{.title = known.name + " cannot be seen in this record",
                  .reason = HertzText(known.hz) + (low ? " lies below " : " lies above ") +
                            HertzText(low ? RoundedUp(limit) : RoundedDown(limit)) + ".",
                  .has = limit,
                  .needs = known.hz,
                  .unit = "Hz",
                  .options = OffersOf(spectrum.window, false, spectrum.option)};
  MarkWhatWouldDo(refusal, known.hz, known.hz);
  if (!refusal.cureOption) refusal.cure = "No sample-rate option reaches it";
  return refusal;
}

}  // namespace kestrel::analysis
