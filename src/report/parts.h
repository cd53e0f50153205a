// Parts that reports of one record and comparisons share.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "report/report_of.h"

namespace kestrel::report {

// The records in a study of their own, the last of them shown, with the speed that was noted.
[[nodiscard]] study::Study StudyOf(std::span<const archive::KeptRecord> records,
                                   const ReportChoice& choice);

// What is shown in a view, ready for paper: no trace filled or half-bold, each with letter and
// dash.
[[nodiscard]] PlotScene PaperScene(const study::Study& study, study::View view);

[[nodiscard]] Section SeveritySection(const study::Study& study);

// A text table without the columns that hold nothing.
[[nodiscard]] Table WithoutEmptyColumns(Table table);

}  // namespace kestrel::report
