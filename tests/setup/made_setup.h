// Set-ups for tests: one with something in every register and band, and random ones.
// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <random>

#include "record/utc_time.h"
#include "regmap/register_table.h"
#include "setup/difference.h"
#include "setup/setup.h"

namespace kestrel::setup {

inline void PrintTo(const Difference& difference, std::ostream* out) {
  *out << difference.place << ": " << difference.saved << " | " << difference.now;
}

inline Setup MadeSetup() {
  Setup setup{.name = "pump 3",
              .when = *UtcFrom("2024-03-14T08:26:53.250Z"),
              .program = "1.2.3",
              .sensor = {.product = 31407,
                         .interface = "Ezusb-0",
                         .adapter = "board \"7\"",
                         .simulated = true},
              .product = 31407,
              .revision = 2};
  setup.registers = {0xFFFE, 3, 0, 8, 5, 0x010A, 3000, 0x0302, 0x0035, 0x0101, 0, 0x1030};
  setup.Band(2, 3) = {40, 52, 120, 121, 122, 200, 201, 202};
  setup.Band(0, 1) = {0, 255, 65535, 0, 1, 2, 32768, 3};
  return setup;
}

inline Setup RandomSetup(std::mt19937& random) {
  Setup setup = MadeSetup();
  for (std::size_t index = 0; index < kRegisters; ++index) {
    setup.registers.at(index) = static_cast<std::uint16_t>(random() & LargestOf(index));
  }
  for (auto& option : setup.bands) {
    for (auto& band : option) {
      for (auto& word : band) word = static_cast<std::uint16_t>(random() & 0xFFFFU);
    }
  }
  return setup;
}

}  // namespace kestrel::setup
