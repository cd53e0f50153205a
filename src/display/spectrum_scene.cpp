// The scene of a spectrum: traces in the chosen quantity, bands, known frequencies, peak labels.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>

#include "analysis/known_frequencies.h"
#include "analysis/levels.h"
#include "display/known_table.h"
#include "display/scene.h"
#include "display/tables.h"
#include "display/track.h"
#include "numeric/number_texts.h"

namespace kestrel::study {
namespace {

constexpr std::size_t kLabels = 12;

std::vector<double> Frequencies(const analysis::Spectrum& spectrum) {
  std::vector<double> hz(spectrum.Bins());
  for (std::size_t bin = 0; bin < hz.size(); ++bin) {
    hz[bin] = spectrum.FrequencyOf(static_cast<double>(bin));
  }
  return hz;
}

AxisKind UpKind(const StudyChoice& choice) {
  if (choice.difference || choice.quantity.quantity == analysis::Quantity::Level) {
    return AxisKind::Decibel;
  }
  return choice.up == Scale::Logarithmic ? AxisKind::Logarithmic : AxisKind::Linear;
}

// A bin that reads nothing is drawn at half the smallest value that can be told: a logarithmic axis
// has no zero.
std::vector<double> Drawn(const analysis::QuantityCurve& curve, AxisKind kind) {
  std::vector<double> values = curve.values;
  if (kind != AxisKind::Logarithmic) return values;
  for (std::size_t bin = 0; bin < values.size(); ++bin) {
    values[bin] = std::max(values[bin], curve.floor[bin] / 2);
  }
  return values;
}

SceneTrace TraceOf(const MeasuredSpectrum& measured, AxisKind kind) {
  return {.ink = InkOf(measured.spectrum.axis),
          .x = Frequencies(measured.spectrum),
          .y = Drawn(*measured.curve, kind)};
}

std::string OverallText(const analysis::Spectrum& spectrum) {
  const auto level = analysis::OverallLevel(spectrum);
  return level ? LevelText(spectrum, *level) + " g RMS" : "";
}

void AddLive(PlotPane& pane, const Study& study, Axis axis) {
  const StudyChoice& choice = study.Choice();
  const MeasuredSpectrum* measured = study.SpectrumOf(axis);
  if (measured == nullptr || !measured->curve) return;
  SceneTrace trace = TraceOf(*measured, pane.up);
  trace.name = Letter(axis);
  trace.figure = OverallText(measured->spectrum);
  trace.isFocus = axis == choice.focus;
  trace.isFilled = trace.isFocus;
  pane.traces.push_back(std::move(trace));
}

void AddHeld(PlotScene& scene, PlotPane& pane, const MeasuredSpectrum& measured,
             const std::string& name, TraceStyle style) {
  if (!measured.curve) return NoteNotDrawn(scene, name, measured.curve.Why());
  SceneTrace trace = TraceOf(measured, pane.up);
  trace.name = name + " " + Letter(measured.spectrum.axis);
  trace.style = style;
  if (style == TraceStyle::Reference) trace.ink = PlotInk::Other;
  pane.traces.push_back(std::move(trace));
}

void AddExtras(PlotScene& scene, PlotPane& pane, const Study& study, Axis axis) {
  for (const Extra extra : study.Choice().extras) {
    const Measured* kept = extra == Extra::Frozen      ? study.Frozen()
                           : extra == Extra::Reference ? study.Reference()
                                                       : nullptr;
    if (kept != nullptr) {
      if (!kept->Of(axis)) continue;
      AddHeld(scene, pane, *kept->Of(axis), NameOf(extra, 0),
              extra == Extra::Reference ? TraceStyle::Reference : TraceStyle::Held);
    } else if (const auto* spectrum = study.Accumulation().Of(extra, axis)) {
      // Its peaks are not shown, and take longer to find than all else.
      AddHeld(scene, pane,
              {*spectrum, analysis::InQuantity(*spectrum, study.Choice().quantity), {}},
              NameOf(extra, spectrum->captures), TraceStyle::Held);
    }
  }
}

// Records of other options are overlaid too; a crowd needs the same bins.
void AddOthers(PlotScene& scene, PlotPane& pane, const Study& study, Axis axis) {
  const auto& others = study.Others();
  if (others.size() <= kTracesOfOthers) {
    for (const Measured& other : others) {
      if (!other.Of(axis)) continue;
      AddHeld(scene, pane, *other.Of(axis), study.TimeText(other.record->time),
              TraceStyle::Reference);
    }
    return;
  }
  const MeasuredSpectrum* shown = study.SpectrumOf(axis);
  if (shown == nullptr) return;
  PlotCrowd crowd{.x = Frequencies(shown->spectrum)};
  for (const Measured& other : others) {
    if (!other.Of(axis) || !other.Of(axis)->curve) continue;
    const MeasuredSpectrum& measured = *other.Of(axis);
    if (measured.spectrum.binWidthHz != shown->spectrum.binWidthHz) continue;
    crowd.y.push_back(Drawn(*measured.curve, pane.up));
  }
  if (crowd.y.empty()) return;
  crowd.name = CrowdName(crowd.y.size(), others.size(), "bins");
  crowd.ink = InkOf(axis);
  pane.crowd = std::move(crowd);
}

BandState StateOf(analysis::BandState state) {
  if (state == analysis::BandState::Fault) return BandState::Fault;
  return state == analysis::BandState::Warning ? BandState::Warning : BandState::Well;
}

// A threshold is one magnitude for the whole band: it has one value in acceleration alone.
void AddBands(PlotPane& pane, const Study& study, Axis axis) {
  const MeasuredSpectrum* measured = study.SpectrumOf(axis);
  if (!study.Choice().showBands || measured == nullptr || study.Choice().difference) return;
  const analysis::Spectrum& spectrum = measured->spectrum;
  if (spectrum.source != analysis::SpectrumSource::Sensor) return;
  const analysis::QuantityChoice& choice = study.Choice().quantity;
  const bool hasThresholds = choice.quantity == analysis::Quantity::Acceleration ||
                             choice.quantity == analysis::Quantity::Level;
  const auto* bands = study.BandsOf(spectrum.option, axis);
  if (bands == nullptr) return;
  const auto value = [&](double g, double hz) {
    return hasThresholds && g > 0 ? analysis::ValueIn(spectrum, choice, g, hz) : kNoValue;
  };
  for (const auto& band : analysis::LevelsOf(spectrum, *bands)) {
    if (band.state == analysis::BandState::Unused) continue;
    const double half = spectrum.binWidthHz / 2;
    pane.bands.push_back(
        {.from = band.fromHz - half,
         .to = band.toHz + half,
         .name = std::to_string(band.number),
         .headroom = band.toWarningDb ? analysis::SignedDecibelText(*band.toWarningDb) + " dB" : "",
         .warning = value(band.warningG, band.toHz),
         .fault = value(band.faultG, band.toHz),
         .state = StateOf(band.state),
         .stateText = analysis::TextOf(band)});
  }
}

void AddLabels(PlotPane& pane, const Study& study, const std::vector<Axis>& axes) {
  if (!study.Choice().showLabels || study.Choice().difference) return;
  std::vector<analysis::Peak> peaks;
  for (const Axis axis : axes) {
    const auto* measured = study.SpectrumOf(axis);
    if (measured == nullptr) continue;
    const auto told = ToldPeaks(*measured);
    peaks.insert(peaks.end(), told.begin(), told.end());
  }
  std::ranges::stable_sort(peaks, std::greater{}, [&](const analysis::Peak& peak) {
    return analysis::ValueIn(study.SpectrumOf(peak.axis)->spectrum, study.Choice().quantity,
                             peak.line.peakG, peak.line.hz);
  });
  peaks.resize(std::min(peaks.size(), kLabels));
  for (const analysis::Peak& peak : peaks) {
    const MeasuredSpectrum& measured = *study.SpectrumOf(peak.axis);
    const analysis::LineValue amplitude =
        analysis::ValueOf(measured.spectrum, study.Choice().quantity, peak.line);
    const analysis::Horizontal across = HorizontalOf(study.Choice(), measured.spectrum.binWidthHz);
    pane.peaks.push_back(
        {.x = peak.line.hz,
         .y = amplitude.value,
         .title = analysis::WithBound(analysis::FromHertz(across, peak.line.hz),
                                      analysis::FromHertz(across, peak.line.hzBound))
                      .value +
                  " " + analysis::UnitOf(across),
         .detail = std::string(1, Letter(peak.axis)) + " " +
                   AmplitudeText(study.Choice().quantity, amplitude.value) + " " +
                   analysis::ShortUnitOf(study.Choice().quantity)});
  }
}

void AddDifference(PlotPane& pane, PlotScene& scene, const Study& study, Axis axis) {
  const Measured* reference = study.Reference();
  const MeasuredSpectrum* measured = study.SpectrumOf(axis);
  if (measured == nullptr) return;
  if (reference == nullptr || !reference->Of(axis)) {
    scene.hint = "No reference. Take what is shown as reference (R) first.";
    return;
  }
  const auto difference = analysis::DifferenceDb(measured->spectrum, reference->Of(axis)->spectrum);
  if (!difference) {
    scene.hint = analysis::AsLine(difference.Why());
    return;
  }
  pane.traces.push_back({.name = std::string(1, Letter(axis)),
                         .ink = InkOf(axis),
                         .isFocus = axis == study.Choice().focus,
                         .x = Frequencies(measured->spectrum),
                         .y = difference->db});
}

PlotPane PaneOfAxes(PlotScene& scene, const Study& study, const std::vector<Axis>& axes) {
  const StudyChoice& choice = study.Choice();
  PlotPane pane{
      .title = choice.difference ? "Level over reference, dB" : analysis::TitleOf(choice.quantity),
      .unit = choice.difference ? "dB" : analysis::ShortUnitOf(choice.quantity),
      .up = UpKind(choice)};
  for (const Axis axis : axes) {
    if (choice.difference) {
      AddDifference(pane, scene, study, axis);
      continue;
    }
    AddLive(pane, study, axis);
    AddExtras(scene, pane, study, axis);
    if (axis == choice.focus || choice.stacked) AddOthers(scene, pane, study, axis);
  }
  AddBands(pane, study, axes.size() == 1 ? axes.front() : choice.focus);
  AddLabels(pane, study, axes);
  return pane;
}

PlotAcross AcrossOf(const StudyChoice& choice, const MeasuredSpectrum& measured) {
  const analysis::Spectrum& spectrum = measured.spectrum;
  const analysis::Horizontal axis = HorizontalOf(choice, spectrum.binWidthHz);
  const bool isOfQuantity = measured.curve && !choice.difference;
  const std::size_t first = isOfQuantity ? measured.curve->firstValid : spectrum.FirstVibration();
  const double validFrom = spectrum.FrequencyOf(static_cast<double>(first) - 0.5);
  const bool isLog = choice.across == Scale::Logarithmic;
  return {.title = analysis::TitleOf(axis),
          .unit = analysis::UnitOf(axis),
          .kind = isLog ? AxisKind::Logarithmic : AxisKind::Linear,
          .factor = analysis::FromHertz(axis, 1),
          .whole = {isLog ? std::max(validFrom, spectrum.binWidthHz / 2) : 0, spectrum.TopHz()},
          .validFrom = validFrom};
}

void AddMarks(PlotScene& scene, const Study& study, const analysis::Spectrum& spectrum) {
  if (study.Choice().showKnown) {
    const auto known = KnownOf(study.Choice());
    for (const analysis::Marker& marker : analysis::MarkersOf(known, spectrum)) {
      scene.marks.push_back({.from = marker.fromHz, .to = marker.toHz, .name = marker.name});
    }
  }
  for (const UserMarker& marker : study.Choice().markers) {
    scene.marks.push_back({.from = marker.hz, .to = marker.hz, .name = marker.text});
  }
}

}  // namespace

PlotScene SpectrumScene(const Study& study) {
  const StudyChoice& choice = study.Choice();
  PlotScene scene;
  TitleScene(scene, study);
  if (study.Refused() && !choice.difference) return scene;
  const MeasuredSpectrum* focus = study.SpectrumOf(choice.focus);
  if (focus == nullptr) return scene;
  scene.across = AcrossOf(choice, *focus);
  AddMarks(scene, study, focus->spectrum);
  const std::vector<Axis> shown = ShownAxes(choice);
  if (shown.empty()) scene.hint = "No axis is shown. Press X, Y or Z.";
  const int panes = choice.stacked ? static_cast<int>(shown.size()) : (shown.empty() ? 0 : 1);
  for (int pane = 0; pane < panes; ++pane) {
    scene.panes.push_back(PaneOfAxes(scene, study, AxesOfPane(choice, pane)));
  }
  return scene;
}

}  // namespace kestrel::study
