// What differs between two set-ups, in words with units.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "setup/setup.h"

namespace kestrel::setup {

struct Difference {
  std::string place;  // "REC_CTRL, Windowing", "option 2, band 3, alarm 1 Y"
  std::string saved;  // "1: Hanning [default]", "120 (0.143 g)"
  std::string now;
  bool operator==(const Difference&) const = default;
};

// Registers first, field by field, then bands; none where the sensor would work alike. Name, time
// and identity are no configuration.
[[nodiscard]] std::vector<Difference> DifferenceOf(const Setup& saved, const Setup& now);

// Those of one register, and of one band.
[[nodiscard]] std::vector<Difference> DifferenceOfRegister(const Setup& saved, const Setup& now,
                                                           std::size_t index);
[[nodiscard]] std::vector<Difference> DifferenceOfBand(const Setup& saved, const Setup& now,
                                                       int option, int band);

}  // namespace kestrel::setup
