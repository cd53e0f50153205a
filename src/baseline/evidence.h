// The evidence of a baseline: sets, rule, thresholds and replay as headings, paragraphs and tables.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "baseline/workbench.h"

namespace kestrel::baseline {

struct EvidenceTable {
  std::vector<std::string> head{};
  std::vector<std::vector<std::string>> rows{};  // as many cells as the head
  bool operator==(const EvidenceTable&) const = default;
};

struct EvidenceSection {
  std::string heading{};
  std::vector<std::string> paragraphs{};
  std::vector<EvidenceTable> tables{};
  bool operator==(const EvidenceSection&) const = default;
};

// Who made it, and when; only these depend on more than the workbench.
struct EvidenceOrigin {
  std::string program{};  // with its version
  std::string archive{};  // the place of the records
  Moment time;            // UTC
};

[[nodiscard]] std::vector<EvidenceSection> EvidenceOf(const Workbench& workbench,
                                                      const EvidenceOrigin& origin);

// As plain text with columns, and as lines of comma-separated values (RFC 4180), CR LF.
[[nodiscard]] std::string EvidenceText(const std::vector<EvidenceSection>& evidence);
[[nodiscard]] std::string EvidenceCsv(const std::vector<EvidenceSection>& evidence);

}  // namespace kestrel::baseline
