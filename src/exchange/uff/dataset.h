// One dataset 58 of a universal file as its records have it.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "exchange/uff/cursor.h"
#include "exchange/uff/layout.h"

namespace kestrel::exchange {

struct UffAxis {
  std::int64_t type = 0;
  std::string label{};
  std::string unit{};
  bool operator==(const UffAxis&) const = default;
};

struct UffFunction {
  std::array<std::string, kUffIdLines> id{};
  std::int64_t type = 0;
  std::string entity{};
  std::int64_t node = 0;
  std::int64_t direction = 0;
  double first = 0;
  double step = 0;
  UffAxis abscissa{};
  UffAxis ordinate{};
  std::vector<double> values{};
};

// Reads a dataset 58 or 58b whose mark has been taken and whose next line, `kind`, too; up to the
// closing mark, which is left.
[[nodiscard]] UffFunction ReadUffFunction(UffCursor& cursor, std::string_view kind);

}  // namespace kestrel::exchange
