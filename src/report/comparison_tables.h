// Tables of differences between records: levels and peaks in dB over the first of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "report/report.h"
#include "study/measured.h"

namespace kestrel::report {

// "A" for the first record.
[[nodiscard]] std::string LetterOf(std::size_t record);

// One of the records that are compared.
using Compared = std::vector<study::Measured>;

// Why a record's values may not be held against those of the first; nothing where they may.
[[nodiscard]] std::optional<std::string> WhyNotAgainstFirst(const Compared& records,
                                                            std::size_t record);

// Overall RMS of each axis shown, and its difference to the first record's where both are told and
// comparable.
[[nodiscard]] Table LevelDifferences(const Compared& records, const study::StudyChoice& choice);

// Peaks of an axis by frequency: of two records the same where they lie within one bin of each
// other. The `most` largest of each record are looked at.
[[nodiscard]] Table PeakDifferences(const Compared& records, const study::StudyChoice& choice,
                                    Axis axis, std::size_t most);

}  // namespace kestrel::report
