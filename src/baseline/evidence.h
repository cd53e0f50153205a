// The evidence of a baseline: sets, rule, thresholds and replay as a report, text or CSV.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "baseline/workbench.h"
#include "report/report.h"

namespace kestrel::baseline {

// What does not depend on the workbench.
struct EvidenceOrigin {
  std::string program{};  // with its version
  std::string archive{};  // the place of the records
  Moment time;            // UTC, when it was made
};

// Without plots; whoever has some adds them.
[[nodiscard]] report::Report EvidenceOf(const Workbench& workbench, const EvidenceOrigin& origin);

// Texts and tables of a report as plain text with columns, and as lines of comma-separated values
// (RFC 4180), ended by CR LF.
[[nodiscard]] std::string EvidenceText(const report::Report& evidence);
[[nodiscard]] std::string EvidenceCsv(const report::Report& evidence);

}  // namespace kestrel::baseline
