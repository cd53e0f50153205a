// What the view of a wide spectrum shows: scene, rate options, lines, severity, as values.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/cursors.h"
#include "analysis/wide_spectrum.h"
#include "chart/plot_scene.h"
#include "display/severity_view.h"
#include "study/study_choice.h"

namespace kestrel::study {

// A moment as the user reads clocks.
using MomentText = std::function<std::string(std::chrono::system_clock::time_point)>;

// What is chosen of the view alone; axes, focus, machine and zones are those of the study.
struct WideLook {
  analysis::QuantityChoice quantity = {.quantity = analysis::Quantity::Density};
  Scale up = Scale::Logarithmic;
  bool hasOptions = true;  // where each option is used, in the plot
  bool hasLabels = true;
  bool operator==(const WideLook&) const = default;
};

// The head and line of the record line: "Wide spectrum", "1.15 Hz to 49.9 kHz, 0 to 70 g, ...".
[[nodiscard]] PlotScene WideScene(const analysis::WideSpectrum& wide, const WideLook& look,
                                  const StudyChoice& choice, const MomentText& moment);

// The values of the axes that are shown at the nearest joined point to x, Hz.
[[nodiscard]] PlotReadOut WideReadOutAt(const analysis::WideSpectrum& wide, const WideLook& look,
                                        const StudyChoice& choice, double x);

// Frequencies of the joined points, rising; empty where no axis could be joined.
[[nodiscard]] std::vector<double> WideFrequencies(const analysis::WideSpectrum& wide);
// The value of an axis at a joined point's frequency in the quantity; kNoValue where there is none.
[[nodiscard]] double WideValueAt(const analysis::WideSpectrum& wide, const WideLook& look,
                                 Axis axis, double hz);

// One rate option in the picture of what each capture holds.
struct OptionLane {
  int option = 0;
  bool isThere = false;   // a capture of it is at hand
  std::string text = {};  // "3: Δf 0.382 Hz"
  PlotRange holds = {};   // Hz
  PlotRange used = {};    // Hz; no longer than `holds`; empty (low = high) where it is not used
  struct Chip {
    Axis axis = Axis::X;
    std::string text = {};  // "+3.7": over the next coarser option where both hold, dB
    bool isUnsteady = false;
  };
  std::vector<Chip> chips = {};  // X, Y, Z; none where there is no overlap
};
// Four, the slowest option first; of options without a capture where they would hold.
[[nodiscard]] std::vector<OptionLane> OptionLanes(const analysis::WideSpectrum& wide);

struct WideLine {
  Axis axis = Axis::X;
  double hz = 0;
  double peakG = 0;
  int option = 0;
  std::string frequency = {};
  std::string frequencyBound = {};
  std::string acceleration = {};  // g peak
  std::string velocity = {};      // mm/s RMS; empty where it cannot be told
  std::string nearest = {};       // name of the known frequency it lies in
  bool unresolved = false;
};
struct WideLines {
  std::vector<WideLine> rows = {};  // of the axes shown, rising frequency
  [[nodiscard]] analysis::TextTable AsText() const;
};
[[nodiscard]] WideLines WideLinesOf(const analysis::WideSpectrum& wide, const StudyChoice& choice);

// The estimate of these captures alone.
[[nodiscard]] SeverityView WideSeverityOf(const analysis::WideSpectrum& wide,
                                          const StudyChoice& choice);

// What the user has to know before believing the picture, the gravest first.
struct WideDoubt {
  std::string id = {};
  std::string text = {};
  unsigned again = 0;  // options that are to be captured again or at all, a bit each
};
[[nodiscard]] std::vector<WideDoubt> WideDoubtsOf(const analysis::WideSpectrum& wide,
                                                  double limitDb = analysis::kSteadyLimitDb);

// The joined curves as CSV: frequency, option, and each axis in the quantity that is shown.
[[nodiscard]] std::string WideTable(const analysis::WideSpectrum& wide, const WideLook& look);

}  // namespace kestrel::study
