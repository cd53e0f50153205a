// The table of known frequencies, and how the machine they come from is changed.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "analysis/known_frequencies.h"
#include "study/study.h"

namespace kestrel::study {

// Those of the machine that are switched on.
[[nodiscard]] std::vector<analysis::KnownFrequency> KnownOf(const StudyChoice& choice);

struct KnownRow {
  analysis::KnownFrequency known = {};
  bool isOn = true;
  std::string name = {};
  std::string frequency = {};  // Hz
  std::string order = {};      // "8.33×"; empty where it does not turn with the shaft
  std::string lines = {};      // how many of it the spectrum holds; empty without a spectrum
  bool isSeen = true;          // its first line lies within the spectrum
  std::string why = {};        // where not: reason and cure in one line
};

struct KnownTable {
  std::vector<KnownRow> rows = {};
  std::string note = {};  // which lie outside this record, and the options that would do
};
[[nodiscard]] KnownTable KnownTableOf(const Study& study);

// The first frequency that a machine is given is shown.
void ChangeMachine(StudyChoice& choice, analysis::Machine machine);

// A part of the same name gives way to the new one.
[[nodiscard]] analysis::Machine With(analysis::Machine machine, analysis::GearMesh mesh);
[[nodiscard]] analysis::Machine With(analysis::Machine machine, analysis::Bearing bearing);
[[nodiscard]] analysis::Machine With(analysis::Machine machine, analysis::FreeFrequency free);
// Without the part that the frequency comes from: of a bearing all four go.
[[nodiscard]] analysis::Machine Without(analysis::Machine machine,
                                        const analysis::KnownFrequency& known);

// The shaft's frequency as the spectrum shows it: that of the cursor, or of the largest peak of the
// focus axis. Refused where there is neither.
[[nodiscard]] analysis::Told<double> ShaftHzOf(const Study& study);

}  // namespace kestrel::study
