// A wide spectrum as text for people, JSON for scripts and a table for spreadsheets.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/wide_spectrum.h"
#include "archive/kept_record.h"
#include "cli/command.h"

namespace kestrel {

// A record's names: everywhere, and in the archive at hand.
struct WideRecordName {
  int option = 0;
  archive::Uid uid{};
  std::optional<std::int64_t> id{};
};

struct WideReport {
  archive::Uid set{};
  analysis::WideSpectrum wide{};
  std::vector<WideRecordName> names{};
  std::vector<int> deleted{};  // missing options whose records can be brought back
  analysis::QuantityChoice quantity{.quantity = analysis::Quantity::Density,
                                    .amplitude = analysis::Amplitude::Rms};
  int lines = 10;         // of each axis in the text; JSON has all
  bool withData = false;  // every point in the text as well; JSON always has them
  bool stopped = false;   // ended early
};

void WriteWide(const Output& output, const WideReport& report);

[[nodiscard]] Json WideJson(const WideReport& report);

// Comment lines that say what it is, then one line a point: frequency, option, the axes.
[[nodiscard]] std::string WideCsv(const WideReport& report);

// "3, 2 and 1".
[[nodiscard]] std::string OptionsText(const std::vector<int>& options);

}  // namespace kestrel
