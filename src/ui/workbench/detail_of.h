// From the workbench to what its pictures show.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "baseline/workbench.h"
#include "ui/workbench/detail_scene.h"
#include "ui/workbench/workbench_choice.h"

namespace kestrel {

// A threshold in steps as g; none for 0.
[[nodiscard]] std::optional<double> ThresholdG(const baseline::Workbench& bench, double steps);

// What a cell's levels are told against in decibels, g: the proposed warning, otherwise the present
// one, otherwise the mean of the good records; none without any.
[[nodiscard]] std::optional<double> ReferenceG(const baseline::CellState& state, double stepG);

// The curves of a cell, which depend on neither threshold: worked out anew only for other levels.
class DetailCurves {
 public:
  // Into the scene, whose horizontal range they cover.
  void Fill(const baseline::Workbench& bench, baseline::CellPlace cell, DetailScene& scene);

 private:
  struct Of {
    baseline::CellPlace cell;
    std::vector<double> good;
    std::vector<double> bad;
    baseline::Judgement judgement;
    double low = 0;
    double high = 0;
    bool operator==(const Of&) const = default;
  };
  Of of_;
  std::vector<DetailScene::Share> falseAlarms_;
  std::vector<DetailScene::Share> misses_;
};

// Without curves.
[[nodiscard]] DetailScene DetailOf(const baseline::Workbench& bench, baseline::CellPlace cell,
                                   const WorkbenchLook& look);

// One cell of the table of distributions, its places in dB re the reference or dB re 1 g.
struct SmallDistribution {
  bool isUsed = false;
  QString refusal = {};  // why there is nothing
  Axis axis = Axis::X;
  std::vector<double> heights = {};  // 0 to 1, one a class
  double fromDb = 0;                 // of the first class
  double widthDb = 1;
  std::vector<double> badDb = {};
  std::array<std::optional<double>, 2> proposedDb = {};  // by AlarmLevel
  std::array<std::optional<double>, 2> nowDb = {};
  int falseAlarms = 0;
  int caught = 0;
  bool hasBad = false;
  QString spoken = {};
};

// What all of them are drawn over: from low to high dB.
struct DistributionRange {
  double lowDb = -5;
  double highDb = 7;
  bool isRelative = true;  // re each cell's reference; otherwise dB re 1 g, labelled in g
};
[[nodiscard]] DistributionRange RangeOf(const baseline::Workbench& bench,
                                        const WorkbenchLook& look);
[[nodiscard]] SmallDistribution SmallOf(const baseline::Workbench& bench, baseline::CellPlace cell,
                                        const DistributionRange& range, const WorkbenchLook& look);

// "7,827 to 8,610"
[[nodiscard]] QString BandHzText(const baseline::Workbench& bench, int band);
// "3.8 % (1.2 to 8.6 %)", "1.2 to 8.6"
[[nodiscard]] QString ShareText(const baseline::Count& count);
[[nodiscard]] QString BoundsText(const baseline::Count& count);

}  // namespace kestrel
