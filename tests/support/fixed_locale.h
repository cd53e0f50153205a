// Regional settings and a moment that stand still.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "seams/locale.h"

namespace kestrel {

// Regional settings and a moment that stand still.
class FixedLocale : public Locale {
 public:
  [[nodiscard]] char DecimalMark() override { return decimalMark; }
  [[nodiscard]] std::string ShortDate() override { return shortDate; }
  [[nodiscard]] std::string Time() override { return time; }

  char decimalMark = '.';
  std::string shortDate = "3/14/2024";
  std::string time = "9:26:53 AM";
};

}  // namespace kestrel
