// A wide spectrum: the records of one capture an option, and what they are when joined.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "analysis/joined.h"
#include "analysis/quantity.h"
#include "analysis/severity.h"
#include "record/record.h"

namespace kestrel::analysis {

struct WideChoice {
  unsigned wanted = 0b1111;  // rate options, a bit each, that there should be
  double limitDb = kSteadyLimitDb;
  MagnitudeMeaning meaning = MagnitudeMeaning::PeakOfSine;
};

struct WideSpectrum {
  std::vector<Record> records{};     // the finest option first, each option once
  std::vector<int> missing{};        // wanted options without a record, the finest first
  std::vector<Told<Joined>> axes{};  // X, Y, Z
  // Whether all axes could be joined and no two captures disagree.
  [[nodiscard]] bool Steady() const;
  // "X, options 2 and 1: 4.1 dB", a line each for what disagrees.
  [[nodiscard]] std::vector<std::string> Disagreements() const;
};

// Of two records of one option the later one counts.
[[nodiscard]] WideSpectrum WideOf(std::vector<Record> records, const WideChoice& choice = {});

// One value for each joined point: a density as it is, with the noise's power; what is no density
// as the sensor's magnitude in the bin. Values of half a step and less cannot be told from nothing.
struct WideCurve {
  std::vector<double> values{};
  std::vector<double> steps{};  // one step of the magnitude word, likewise
  std::string title{};
  std::string unit{};
};
[[nodiscard]] WideCurve CurveOf(const Joined& joined, const QuantityChoice& choice);

// What was given back to the noise, a sentence; empty where nothing was.
[[nodiscard]] std::string NoiseNotice(const Joined& joined);

}  // namespace kestrel::analysis
