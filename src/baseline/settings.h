// What spectra have to share so that their levels can be compared.
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "analysis/spectrum.h"
#include "record/record.h"

namespace kestrel::baseline {

// Codes as the record's own information word has them; averages from 1.
struct Settings {
  int option = 0;
  int window = 0;
  int range = 0;
  int averages = 1;
  bool operator==(const Settings&) const = default;
};
[[nodiscard]] Settings SettingsOf(const RecordSettings& settings);

// Those that are asked for; what is empty is as most of the good records have it.
struct Wanted {
  std::optional<int> option{};
  std::optional<int> window{};
  std::optional<int> range{};
  std::optional<int> averages{};
  [[nodiscard]] bool Allows(const Settings& settings) const;
  // These with what is wanted in their place.
  [[nodiscard]] Settings Over(Settings settings) const;
  bool operator==(const Wanted&) const = default;
};

[[nodiscard]] std::string RangeText(int range);        // "0 to 20 g"
[[nodiscard]] std::string AveragesText(int averages);  // "4 averages"
[[nodiscard]] std::string WindowText(int window);      // "Hanning"
[[nodiscard]] std::string TextOf(
    const Settings& settings);  // "option 0, Hanning, 0 to 70 g, 4 averages"

// g peak of one step of the magnitude word, by what the magnitudes are taken for.
[[nodiscard]] double StepG(const Settings& settings, analysis::MagnitudeMeaning meaning =
                                                         analysis::MagnitudeMeaning::PeakOfSine);

}  // namespace kestrel::baseline
