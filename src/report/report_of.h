// Reports of kept records: of one, and of several compared with the first of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>

#include "archive/kept_record.h"
#include "report/report.h"
#include "study/study.h"

namespace kestrel::report {

// Each axis in a pane of its own, so that no trace hides another.
[[nodiscard]] study::StudyChoice UsualChoice();

struct ReportChoice {
  study::StudyChoice study = UsualChoice();   // quantity, axes, peaks, known frequencies, limits
  std::map<int, study::SensorBands> bands{};  // by option, as far as somebody knows them
  std::string title{};                        // one is made of machine and point where it is empty
  std::size_t peaks = 30;                     // the most a table holds
};

// Told apart by letter and dash.
inline constexpr std::size_t kMostCompared = kTraceDashes;

// What, where, when, with which settings; plots, peaks, levels, severity, alarm state, note. The
// same record and choice give the same report, whatever the time, its zone and the language.
[[nodiscard]] Report ReportOf(const archive::KeptRecord& kept, const ReportChoice& choice = {});

// The records A, B, ... with B and the later ones against A: spectra over each other, levels and
// peaks with their differences in dB; what cannot be compared is said, with the reason. Throws
// RuntimeError unless there are 2 to kMostCompared.
[[nodiscard]] Report ComparisonOf(std::span<const archive::KeptRecord> records,
                                  const ReportChoice& choice = {});

// Of one record or of several.
[[nodiscard]] Report ReportOn(std::span<const archive::KeptRecord> records,
                              const ReportChoice& choice = {});

}  // namespace kestrel::report
