// Scenes like those of a machine, for tests and pictures of the analyser's plot.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <random>

#include "chart/plot_scene.h"

namespace kestrel {

inline constexpr double kBin = 195.7;  // Hz

// A noise floor with tones; every bin as wide as kBin.
inline std::vector<double> SampleSpectrum(unsigned seed,
                                          const std::vector<std::array<double, 2>>& tones) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> noise(0.002, 0.006);
  std::vector<double> values;
  for (int bin = 0; bin < 256; ++bin) {
    double value = noise(random) + 0.3 * std::exp(-bin * 1.7);
    for (const auto& [frequency, amplitude] : tones) {
      const double off = bin - frequency / kBin;
      if (std::abs(off) < 2) value += amplitude * std::pow(std::cos(off * 0.785), 2);
    }
    values.push_back(value);
  }
  return values;
}

inline std::vector<double> SampleBins() {
  std::vector<double> x;
  for (int bin = 0; bin < 256; ++bin) x.push_back(bin * kBin);
  return x;
}

inline SceneTrace SampleTrace(int axis) {
  const std::vector<std::vector<std::array<double, 2>>> tones{
      {{987, 0.16}, {22698, 0.601}, {21714, 0.088}, {23686, 0.072}, {1977, 0.06}},
      {{987, 0.619}, {1974, 0.240}, {2961, 0.110}, {22695, 0.079}},
      {{985, 0.1}, {8220.6, 0.581}, {16439, 0.300}, {24664, 0.171}, {32883, 0.09}, {41100, 0.05}}};
  const std::array names{"X", "Y", "Z"};
  const std::array figures{"0.454", "0.482", "0.491"};
  const auto index = static_cast<std::size_t>(axis);
  SceneTrace trace;
  trace.name = names[index];
  trace.figure = figures[index];
  trace.ink = static_cast<PlotInk>(axis);
  trace.isFocus = axis == 2;
  trace.isFilled = axis == 2;
  trace.x = SampleBins();
  trace.y = SampleSpectrum(static_cast<unsigned>(axis) + 1, tones[index]);
  return trace;
}

inline std::vector<PlotBand> SampleBands() {
  return {{587, 1370, "1", "+9.5 dB", 0.3, 0.5},     {1565, 5479, "2", "+13.4 dB", 0.2, 0.4},
          {7827, 8610, "3", "", 0.9, 1.25},          {20351, 23482, "4", "+30.5 dB", 0.2, 0.4},
          {25830, 31309, "5", "+22.9 dB", 0.1, 0.2}, {42659, 49899, "6", "+22.9 dB", 0.1, 0.2}};
}

inline PlotScene EmptyScene() {
  PlotScene scene;
  scene.head = "Spectrum";
  scene.line = "0 to 70 g, Hanning, 8 averages, option 0, \u0394f 195.7 Hz, 18:34:16";
  scene.hint = "No record yet. Capture takes one.";
  scene.source = "Simulated sensor, 21 November 2026, version 0.1.0";
  scene.across.title = "Frequency, Hz";
  scene.across.unit = "Hz";
  scene.across.whole = {0, 50000};
  scene.across.validFrom = 3 * kBin;
  scene.panes.resize(1);
  scene.panes[0].title = "Acceleration, g peak";
  scene.panes[0].unit = "g";
  return scene;
}

// Three axes in one pane.
inline PlotScene OverlaidScene(AxisKind up = AxisKind::Logarithmic) {
  PlotScene scene = EmptyScene();
  PlotPane& pane = scene.panes[0];
  pane.up = up;
  for (int axis = 0; axis < 3; ++axis) pane.traces.push_back(SampleTrace(axis));
  pane.bands = SampleBands();
  pane.peaks = {
      {987, 0.619, "987.0 Hz", "Y 0.619 g"},      {22698.2, 0.601, "22,698.2 Hz", "X 0.601 g"},
      {8220.6, 0.581, "8,220.6 Hz", "Z 0.581 g"}, {16439, 0.300, "16,439 Hz", "Z 0.300 g"},
      {1974, 0.240, "1,974.3 Hz", "Y 0.240 g"},   {24664, 0.171, "24,664 Hz", "Z 0.171 g"},
      {2961, 0.110, "2,961 Hz", "Y 0.110 g"}};
  return scene;
}

// One pane for each axis, with a reference, a gap and a band over its warning.
inline PlotScene StackedScene() {
  PlotScene scene = EmptyScene();
  scene.panes.assign(3, scene.panes[0]);
  for (int axis = 0; axis < 3; ++axis) {
    PlotPane& pane = scene.panes[static_cast<std::size_t>(axis)];
    SceneTrace trace = SampleTrace(axis);
    trace.figure.clear();
    SceneTrace reference = trace;
    reference.style = TraceStyle::Reference;
    reference.ink = PlotInk::Other;
    reference.isFocus = false;
    reference.isFilled = false;
    reference.name = "12 November";
    for (double& value : reference.y) value *= 0.6;
    pane.traces = {reference, trace};
    pane.bands = SampleBands();
  }
  scene.panes[2].bands[2].warning = 0.5;
  scene.panes[2].bands[2].state = BandState::Warning;
  scene.panes[2].bands[2].stateText = "Warning 3, +0.6 dB";
  scene.marks = {{35900, 36300, "Mesh 2\u00D7"}};
  scene.gaps = {{44000, 49000, "sensor unplugged"}};
  return scene;
}

inline SceneCursor HarmonicCursor() {
  SceneCursor cursor;
  cursor.members = {{8220.9, "f\u2080", MemberKind::Main, 0, 0.581},
                    {16441.8, "2\u00D7", MemberKind::Found, 0, 0.300},
                    {24662.7, "3\u00D7", MemberKind::Found, 0, 0.171},
                    {32883.6, "4\u00D7", MemberKind::Found, 0, 0.09},
                    {41104.5, "5\u00D7", MemberKind::Found, 0, 0.05},
                    {49325.4, "6\u00D7", MemberKind::Missing, 0, kNoValue}};
  cursor.readOut = {"8,220.9 Hz", {{PlotInk::Z, "Z", "0.581 g"}, {{}, "free", "3.6 dB"}}};
  cursor.spoken = "8,220.9 Hz, Z 0.581 g";
  return cursor;
}

inline SceneCursor DeltaCursor() {
  SceneCursor cursor;
  cursor.members = {{8220.9, "A", MemberKind::Main, 0, 0.581},
                    {24664, "B", MemberKind::Main, 0, 0.171}};
  cursor.isSpan = true;
  cursor.spanText = "16,443 Hz";
  return cursor;
}

}  // namespace kestrel
