// Peaks and levels of a record: worked out as values, and told as text for people.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "alarms/band_table.h"
#include "analysis/band_levels.h"
#include "analysis/levels.h"
#include "analysis/peaks.h"
#include "cli/number_choice.h"
#include "record/record.h"

namespace kestrel {

// One of the sensor's bands. `limits` is as the sensor judges it, in g peak; `level` is none where
// the band has no bins of its own.
struct BandNumbers {
  analysis::SensorBand band{};
  analysis::SensorBandLevel limits{};
  std::optional<analysis::Told<analysis::QuantityLevel>> level{};
};

// Over the samples of a time record, their mean removed, in `unit` ("g", "mm/s").
struct ShapeNumbers {
  analysis::TimeLevels levels{};
  std::string unit{};
  double fromHz = 0;  // of velocity, where its high-pass begins; 0 for acceleration
};

// What is empty was not asked for; levels of a spectrum or of a time record.
struct AxisNumbers {
  std::optional<analysis::Told<std::vector<analysis::QuantityPeak>>> peaks{};
  std::optional<analysis::Told<analysis::QuantityLevel>> overall{};
  std::optional<analysis::Told<ShapeNumbers>> shape{};
  std::vector<BandNumbers> bands{};
};

struct NumberReport {
  analysis::QuantityChoice quantity{};
  std::string window{};       // of the spectrum that peaks come from
  bool ownTransform = false;  // that spectrum is the program's, of a time record
  double validFromHz = 0;     // the first bin that holds the quantity
  std::array<AxisNumbers, 3> axes{};
  std::vector<std::string> notices{};  // what makes the numbers other than they seem
};

// Scaled by the range in the record's own information word, whatever it was scaled by. `bands` are
// those of the sensor; none where nobody read them.
[[nodiscard]] NumberReport NumbersOf(const Record& record, const NumberChoice& choice,
                                     const std::optional<BandTable>& bands);

void PrintNumbers(std::ostream& out, const NumberReport& report);

}  // namespace kestrel
